// Opens and writes banks and single voices as documents.
#include "cli/bank_document.h"

#include "cli/terminal_desktop.h"
#include "cli/text_output.h"
#include "common/file_time.h"
#include "common/settings.h"
#include "common/text.h"
#include "common/utf8_path.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "core/voice_fault.h"

#include <cerrno>
#include <utility>

namespace tonewright {
namespace {

// The reason of a failed write. The system's own words are the last error that it reported.
int TellNotWritten(const char *path, int systemError) {
    return TellFailure(path, SomethingWasRefused()
                                 ? "not written, as answered"
                                 : WithSystemReason("could not be written", systemError));
}

// Whether the row can be written into a file of the current family; else says why `path` is not
// written, which is then left as it was.
bool RowCanBeWritten(const VoiceFileFormat *format, int row, const char *path) {
    if (CarefulRefusesVoice(row, path, "not written")) {
        return false;
    }
    const VoiceObject *voice = ListVoice(MainList, row);
    if (format && !format->canBeWritten(voice)) {
        TellError(path, FormatText("not written: place %d holds no whole voice", row + 1));
        return false;
    }
    if (CarefulMode != 0 && format && format->isKept && !format->isKept(voice)) {
        TellError(path, FormatText("not written: place %d holds more than a file keeps", row + 1));
        return false;
    }
    return true;
}

// In careful mode a bank is not written without the voices that it has no room for.
bool CarefulRefusesToLeaveOut(const VoiceFileFormat &format, const char *path) {
    if (CarefulMode == 0 || ListCount(MainList) <= format.voicesWritten) {
        return false;
    }
    TellError(path, FormatText("not written: there are %d voices, and a bank has %d",
                               ListCount(MainList), format.voicesWritten));
    return true;
}

} // namespace

bool OpenBankDocument(const char *path) {
    CurrentDocumentPath = AbsolutePath(path);
    std::int64_t time = 0;
    if (OpenDocument(nullptr, MainList, CurrentDocumentPath.c_str(), &CurrentDriverId, &time)) {
        CurrentDocumentTime = time;
        return true;
    }
    const VoiceFileFormat *format = BankFormatOfPath(path);
    TellError(path, format ? ReasonNotOpened(path, format)
                           : "not a bank that can be opened, by its extension");
    return false;
}

bool OpenVoices(const char *path, const VoiceFileFormat &format) {
    if (format.kind == VoiceFileKind::Bank) {
        return OpenBankDocument(path);
    }
    CurrentDriverId = format.driver;
    VoiceObject voice;
    if (!ImportVoiceFrom(nullptr, MainList, 0, AbsolutePath(path).c_str(), &voice)) {
        TellError(path, ReasonNotOpened(path, &format));
        return false;
    }
    CurrentDocumentPath = AbsolutePath(path);
    CurrentDocumentTime = ModificationTimeOrNow(path);
    ListFill(MainList, {std::move(voice)});
    return true;
}

int OpenBankFor(const CliCall &call, const char *in, const char *out, VoiceFileKind kind) {
    // When `in` is no bank at all, opening it will say so.
    const VoiceFileFormat *format = BankFormatOfPath(in);
    std::string reason;
    if (format && !ExtensionFits(format->driver, out, kind, reason)) {
        return TellWrongCall(out, reason);
    }
    UseTerminalDesktop(call);
    return OpenBankDocument(in) ? ExitDone : ExitFailed;
}

bool ExtensionFits(DriverId family, const char *out, VoiceFileKind kind, std::string &reason) {
    const char *extension =
        kind == VoiceFileKind::Bank ? BankExtension(family) : VoiceExtension(family);
    if (EqualNoCase(ExtensionOfPath(out), extension)) {
        return true;
    }
    reason = FormatText("the extension of the file to write must be \"%s\"", extension);
    return false;
}

int SaveBankDocument(const char *path) {
    const VoiceFileFormat *format = FormatOfDriver(CurrentDriverId, VoiceFileKind::Bank);
    if (format && CarefulRefusesToLeaveOut(*format, path)) {
        return ExitFailed;
    }
    for (int row = 0; format && row < format->voicesWritten; ++row) {
        if (!RowCanBeWritten(format, row, path)) {
            return ExitFailed;
        }
    }
    errno = 0;
    if (!SaveDocument(nullptr, MainList, AbsolutePath(path).c_str())) {
        return TellNotWritten(path, errno);
    }
    return ExitDone;
}

int ExportVoiceDocument(int row, const char *path) {
    if (!RowCanBeWritten(FormatOfDriver(CurrentDriverId, VoiceFileKind::SingleVoice), row, path)) {
        return ExitFailed;
    }
    errno = 0;
    if (!ExportVoiceTo(nullptr, MainList, row, AbsolutePath(path).c_str())) {
        return TellNotWritten(path, errno);
    }
    return ExitDone;
}

bool CarefulRefusesVoice(int row, const char *path, const char *notDone) {
    const SynthDriver *family = CurrentDriver();
    if (CarefulMode == 0 || !family ||
        VoiceFaultOf(ListVoice(MainList, row), *family) != VoiceFault::OtherFamily) {
        return false;
    }
    TellError(path,
              FormatText("%s: place %d holds no voice of the %s", notDone, row + 1, family->name));
    return true;
}

bool CanBeSent(const char *path, const VoiceFileFormat &format, int first, int last) {
    for (int row = first; row <= last; ++row) {
        if (CarefulRefusesVoice(row, path, "not sent")) {
            return false;
        }
        if (!format.canBeSent(ListVoice(MainList, row))) {
            TellError(path, FormatText("place %d holds no whole voice", row + 1));
            return false;
        }
    }
    const std::string places = PlacesOf(first, last, [&](int row) {
        return format.fitsAMessage && !format.fitsAMessage(ListVoice(MainList, row));
    });
    if (!places.empty()) {
        TellError(path, "not sent, since a message cannot carry bytes above 7F, which are in the "
                        "voices at these places: " +
                            places);
    }
    return places.empty();
}

const VoiceObject *OpenVoiceAt(const char *path, const VoiceFileFormat &format, int place) {
    if (!OpenVoices(path, format)) {
        return nullptr;
    }
    const VoiceObject *voice = ListVoice(MainList, place - 1);
    if (!voice) {
        TellError(path, NoSuchPlace(place));
        return nullptr;
    }
    return CanBeSent(path, format, place - 1, place - 1) ? voice : nullptr;
}

bool HasWrittenPlace(const char *path, int place) {
    if (place > ListCount(MainList)) {
        TellError(path, NoSuchPlace(place));
        return false;
    }
    const VoiceFileFormat *format = FormatOfDriver(CurrentDriverId, VoiceFileKind::Bank);
    if (format && place > format->voicesWritten) {
        TellError(path, FormatText("a bank has places 1 to %d, and no place %d",
                                   format->voicesWritten, place));
        return false;
    }
    return true;
}

std::string NoSuchPlace(int place) {
    return FormatText("there is no place %d among its %d voices", place, ListCount(MainList));
}

} // namespace tonewright
