// The commands that open a bank as a document, change it and write it: save, move, export, import.
// They go the way of the window's commands: the same functions, questions, backups.
#include "cli/bank_document.h"
#include "cli/cli_commands.h"
#include "cli/text_output.h"
#include "common/utf8_path.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "core/voice_file_reader.h"

#include <utility>

namespace tonewright {

int CliSave(const CliCall &call) {
    const char *in = call.words[0], *out = call.words[1];
    const int status = OpenBankFor(call, in, out, VoiceFileKind::Bank);
    return status == ExitDone ? SaveBankDocument(out) : status;
}

int CliMove(const CliCall &call) {
    const char *in = call.words[0], *out = call.words[3];
    const auto from = ReadPlace(call.words[1]);
    const auto to = ReadPlace(call.words[2]);
    if (!from || !to) {
        return TellWrongCall(call.words[from ? 2 : 1], NotAPlace);
    }
    if (const int status = OpenBankFor(call, in, out, VoiceFileKind::Bank)) {
        return status;
    }
    if (*from > ListCount(MainList)) {
        return TellFailure(in, NoSuchPlace(*from));
    }
    if (!HasWrittenPlace(in, *to)) {
        return ExitFailed;
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
        return TellWrongCall(call.words[1], NotAPlace);
    }
    if (const int status = OpenBankFor(call, in, out, VoiceFileKind::SingleVoice)) {
        return status;
    }
    if (!ListVoice(MainList, *place - 1)) {
        return TellFailure(in, NoSuchPlace(*place));
    }
    return ExportVoiceDocument(*place - 1, out);
}

int CliImport(const CliCall &call) {
    const char *in = call.words[0], *voice = call.words[2], *out = call.words[3];
    const auto place = ReadPlace(call.words[1]);
    if (!place) {
        return TellWrongCall(call.words[1], NotAPlace);
    }
    if (const int status = OpenBankFor(call, in, out, VoiceFileKind::Bank)) {
        return status;
    }
    if (!HasWrittenPlace(in, *place)) {
        return ExitFailed;
    }
    if (!ImportVoiceFrom(nullptr, MainList, *place - 1, AbsolutePath(voice).c_str(), nullptr)) {
        return TellFailure(
            voice,
            ReasonNotOpened(voice, FormatOfDriver(CurrentDriverId, VoiceFileKind::SingleVoice)));
    }
    return SaveBankDocument(out);
}

} // namespace tonewright
