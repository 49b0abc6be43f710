// The commands for the parameters of a voice: show and edit. What they are called and what their
// values mean, the rows of the families say.
#include "cli/bank_document.h"
#include "cli/changes.h"
#include "cli/cli_commands.h"
#include "cli/terminal_desktop.h"
#include "cli/text_output.h"
#include "common/text.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "core/synth_driver.h"
#include "core/voice_file_reader.h"
#include "drivers/parameter_text.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tonewright {
namespace {

// The voice of a call, and what its family says of its parameters.
struct ParameterFile {
    const VoiceFileFormat *format = nullptr;
    const SynthDriver *family = nullptr;
    int row = 0; // from 0
};

// What a call says of file and place, before anything is opened. The exit status; a failure has
// been told.
int ReadParameterFile(const CliCall &call, ParameterFile &file) {
    const char *path = call.words[0];
    const auto place = ReadPlace(call.words[1]);
    if (!place) {
        return TellWrongCall(call.words[1], NotAPlace);
    }
    file.row = *place - 1;
    file.format = FormatOfPath(path);
    if (!file.format) {
        return TellWrongCall(path, UnknownFormatReason(path));
    }
    file.family = DriverOfId(file.format->driver);
    if (!file.family->parameters) {
        return TellWrongCall(
            path, FormatText("the parameters of the %s are not known", file.family->name));
    }
    return ExitDone;
}

// Opens the file and looks for its voice; nullptr after telling why not.
const VoiceObject *OpenVoice(const CliCall &call, const ParameterFile &file) {
    const char *path = call.words[0];
    UseTerminalDesktop(call);
    if (!OpenVoices(path, *file.format)) {
        return nullptr;
    }
    if (file.row >= ListCount(MainList)) {
        TellError(path, NoSuchPlace(file.row + 1));
        return nullptr;
    }
    const VoiceObject *voice = ListVoice(MainList, file.row);
    if (!voice || !file.family->parameters->IsWhole(*voice)) {
        TellError(path, FormatText("place %d holds no whole voice of the %s", file.row + 1,
                                   file.family->name));
        return nullptr;
    }
    return voice;
}

using ParameterChange = Change<NamedParameter>;

int TellValue(const ParameterChange &change, const std::string &reason) {
    return TellWrongCall(ParameterName(change.parameter), FieldText(reason));
}

// Gives the voice all these values. The exit status; a failure has been told.
int Apply(const ParameterFile &file, const std::vector<ParameterChange> &changes,
          VoiceObject &voice) {
    const VoiceParameters &family = *file.family->parameters;
    for (const ParameterChange &change : changes) {
        const std::string reason =
            SetParameterText(family, change.parameter, voice, change.value, file.format->kind);
        if (!reason.empty()) {
            return TellValue(change, reason);
        }
    }
    for (const ParameterChange &change : changes) { // by now each beside all others
        const std::string reason =
            ReasonNotKept(family, change.parameter, voice, file.format->kind);
        if (!reason.empty()) {
            return TellValue(change, reason);
        }
    }
    return ExitDone;
}

} // namespace

int CliShow(const CliCall &call) {
    ParameterFile file;
    if (const int status = ReadParameterFile(call, file)) {
        return status;
    }
    const VoiceObject *voice = OpenVoice(call, file);
    if (!voice) {
        return ExitFailed;
    }
    const VoiceParameters &family = *file.family->parameters;
    for (const NamedParameter &parameter : NamedParameters(family)) {
        Put(StandardOutput, ParameterName(parameter));
        Put(StandardOutput, '\t');
        Put(StandardOutput, ParameterText(family, parameter, *voice));
        Put(StandardOutput, '\n');
    }
    return ExitDone;
}

int CliEdit(const CliCall &call) {
    ParameterFile file;
    if (const int status = ReadParameterFile(call, file)) {
        return status;
    }
    const char *out = call.words.back();
    std::string reason;
    if (!ExtensionFits(file.format->driver, out, file.format->kind, reason)) {
        return TellWrongCall(out, reason);
    }
    const VoiceParameters &family = *file.family->parameters;
    std::vector<ParameterChange> changes;
    if (const int status = ReadChanges(
            call.words.subspan(2, call.words.size() - 3), "NAME=VALUE",
            [&](std::string_view name) { return ParameterOfName(family, name); },
            FormatText("no such parameter of the %s; show prints all", file.family->name),
            changes)) {
        return status;
    }
    const VoiceObject *voice = OpenVoice(call, file);
    const bool isBank = file.format->kind == VoiceFileKind::Bank;
    if (!voice || (isBank && !HasWrittenPlace(call.words[0], file.row + 1))) {
        return ExitFailed;
    }
    VoiceObject changed = *voice;
    if (const int status = Apply(file, changes, changed)) {
        return status;
    }
    std::vector<std::string> remarks;
    for (const ParameterChange &change : changes) {
        remarks.push_back(RemarkOnValue(family, change.parameter, changed, file.format->kind));
    }
    ListSetVoice(MainList, file.row, std::move(changed));
    if (const int status = isBank ? SaveBankDocument(out) : ExportVoiceDocument(file.row, out)) {
        return status;
    }
    for (std::size_t at = 0; at < changes.size(); ++at) {
        if (!remarks[at].empty()) {
            TellError(ParameterName(changes[at].parameter), remarks[at]);
        }
    }
    return ExitDone;
}

} // namespace tonewright
