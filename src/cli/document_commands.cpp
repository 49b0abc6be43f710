// The commands that open a bank as a document, change it and write it: save, move, export, import.
// They go the way of the window's commands: the same functions, questions, backups.
#include "cli/cli_commands.h"
#include "cli/paths.h"
#include "cli/terminal_desktop.h"
#include "cli/text_output.h"
#include "cli/voice_file.h"
#include "common/desktop.h"
#include "common/text.h"
#include "core/current.h"
#include "core/dispatch.h"

#include <cerrno>
#include <cstring>
#include <optional>
#include <utility>

namespace tonewright {
namespace {

int WrongCall(std::string_view subject, std::string_view reason) {
    TellError(subject, reason);
    return ExitWrongCall;
}

// Why the file could not be opened as `format`: what is wrong with it, in words.
std::string ReasonNotOpened(const char *path, const VoiceFileFormat *format) {
    if (!format) {
        return UnknownFormatReason();
    }
    std::vector<std::uint8_t> bytes;
    const VoiceFileReport report = ReadVoiceFile(path, *format, bytes);
    switch (report.state) {
    case VoiceFileState::Ok:
        return "could not be opened";
    case VoiceFileState::Refused:
        return report.reason;
    case VoiceFileState::Damaged:
        break;
    }
    return report.reason + ", and the answer was not to open it";
}

// The format of a path that is a bank, else nullptr.
const VoiceFileFormat *BankFormatOfPath(const char *path) {
    const VoiceFileFormat *format = FormatOfPath(path);
    return format && format->kind == VoiceFileKind::Bank ? format : nullptr;
}

bool OpenBankDocument(const char *path) {
    CurrentDocumentPath = AbsolutePath(path);
    std::int64_t time = 0;
    if (OpenDocument(nullptr, MainList, CurrentDocumentPath.c_str(), &CurrentDriverId, &time)) {
        return true;
    }
    const VoiceFileFormat *format = BankFormatOfPath(path);
    TellError(path, format ? ReasonNotOpened(path, format)
                           : "not a bank that can be opened, by its extension");
    return false;
}

// The reason of a failed write. The system's own words are the last error that it reported.
void TellNotWritten(const char *path, int systemError) {
    std::string reason = "could not be written";
    if (SomethingWasRefused()) {
        reason = "not written, as answered";
    } else if (systemError != 0) {
        reason += std::string(": ") + std::strerror(systemError);
    }
    TellError(path, reason);
}

// Whether the row can be written into a file of the current family; else says why `path` is not
// written, which is then left as it was.
bool RowCanBeWritten(const VoiceFileFormat *format, int row, const char *path) {
    if (!format || format->canBeWritten(ListVoice(MainList, row))) {
        return true;
    }
    TellError(path, FormatText("not written: place %d holds no whole voice", row + 1));
    return false;
}

int SaveBankDocument(const char *path) {
    const VoiceFileFormat *format = FormatOfDriver(CurrentDriverId, VoiceFileKind::Bank);
    for (int row = 0; format && row < format->voicesWritten; ++row) {
        if (!RowCanBeWritten(format, row, path)) {
            return ExitFailed;
        }
    }
    errno = 0;
    if (!SaveDocument(nullptr, MainList, AbsolutePath(path).c_str())) {
        TellNotWritten(path, errno);
        return ExitFailed;
    }
    return ExitDone;
}

// True when `out` has the extension that the files of `in`'s family have. When `in` is no bank at
// all, opening it will say so.
bool ExtensionFits(const char *in, const char *out, VoiceFileKind kind, std::string &reason) {
    const VoiceFileFormat *format = BankFormatOfPath(in);
    if (!format) {
        return true;
    }
    const char *extension = kind == VoiceFileKind::Bank ? BankExtension(format->driver)
                                                        : VoiceExtension(format->driver);
    if (EqualNoCase(ExtensionOfPath(out), extension)) {
        return true;
    }
    reason = FormatText("the extension of the file to write must be \"%s\"", extension);
    return false;
}

std::string NoSuchPlace(int place) {
    return FormatText("there is no place %d among its %d voices", place, ListCount(MainList));
}

constexpr const char *NotAPlace = "not a place: a number from 1 is";

} // namespace

int CliSave(const CliCall &call) {
    const char *in = call.words[0], *out = call.words[1];
    std::string reason;
    if (!ExtensionFits(in, out, VoiceFileKind::Bank, reason)) {
        return WrongCall(out, reason);
    }
    UseTerminalDesktop(call);
    return OpenBankDocument(in) ? SaveBankDocument(out) : ExitFailed;
}

int CliMove(const CliCall &call) {
    const char *in = call.words[0], *out = call.words[3];
    const auto from = ReadPlace(call.words[1]);
    const auto to = ReadPlace(call.words[2]);
    if (!from || !to) {
        return WrongCall(call.words[from ? 2 : 1], NotAPlace);
    }
    std::string reason;
    if (!ExtensionFits(in, out, VoiceFileKind::Bank, reason)) {
        return WrongCall(out, reason);
    }
    UseTerminalDesktop(call);
    if (!OpenBankDocument(in)) {
        return ExitFailed;
    }
    for (const int place : {*from, *to}) {
        if (place > ListCount(MainList)) {
            TellError(in, NoSuchPlace(place));
            return ExitFailed;
        }
    }
    VoiceObject voice = ListTakeVoice(MainList, *from - 1);
    ListDelete(MainList, *from - 1);
    ListInsert(MainList, *to - 1);
    ListSetVoice(MainList, *to - 1, std::move(voice));
    return SaveBankDocument(out);
}

int CliExport(const CliCall &call) {
    const char *in = call.words[0], *out = call.words[2];
    const auto place = ReadPlace(call.words[1]);
    if (!place) {
        return WrongCall(call.words[1], NotAPlace);
    }
    std::string reason;
    if (!ExtensionFits(in, out, VoiceFileKind::SingleVoice, reason)) {
        return WrongCall(out, reason);
    }
    UseTerminalDesktop(call);
    TheDesktop.ChooseExportFile = [out](QWidget *, const std::string &, std::uint32_t) {
        return std::optional(AbsolutePath(out));
    };
    if (!OpenBankDocument(in)) {
        return ExitFailed;
    }
    if (!ListVoice(MainList, *place - 1)) {
        TellError(in, NoSuchPlace(*place));
        return ExitFailed;
    }
    if (!RowCanBeWritten(FormatOfDriver(CurrentDriverId, VoiceFileKind::SingleVoice), *place - 1,
                         out)) {
        return ExitFailed;
    }
    errno = 0;
    if (!ExportOneVoice(nullptr, MainList, *place - 1)) {
        TellNotWritten(out, errno);
        return ExitFailed;
    }
    return ExitDone;
}

int CliImport(const CliCall &call) {
    const char *in = call.words[0], *voice = call.words[2], *out = call.words[3];
    const auto place = ReadPlace(call.words[1]);
    if (!place) {
        return WrongCall(call.words[1], NotAPlace);
    }
    std::string reason;
    if (!ExtensionFits(in, out, VoiceFileKind::Bank, reason)) {
        return WrongCall(out, reason);
    }
    UseTerminalDesktop(call);
    TheDesktop.ChooseImportFile = [voice](QWidget *, const std::string &, std::uint32_t) {
        return std::optional(AbsolutePath(voice));
    };
    if (!OpenBankDocument(in)) {
        return ExitFailed;
    }
    if (!ListVoice(MainList, *place - 1)) {
        TellError(in, NoSuchPlace(*place));
        return ExitFailed;
    }
    if (!ImportOneVoice(nullptr, MainList, *place - 1, nullptr, nullptr)) {
        TellError(voice, ReasonNotOpened(
                             voice, FormatOfDriver(CurrentDriverId, VoiceFileKind::SingleVoice)));
        return ExitFailed;
    }
    return SaveBankDocument(out);
}

} // namespace tonewright
