// The commands that only read voice files: list and check. They are made for thousands of files in
// one call: memory does not grow with their number, and a file costs one open, read and close.
#include "cli/cli_commands.h"
#include "cli/terminal_desktop.h"
#include "cli/text_output.h"
#include "common/text.h"
#include "core/voice_file_reader.h"

namespace tonewright {
namespace {

VoiceFileReport ReadAnyVoiceFile(const char *path, const VoiceFileFormat *format,
                                 std::vector<std::uint8_t> &bytes) {
    if (!format) {
        return {VoiceFileState::Refused, UnknownFormatReason()};
    }
    return ReadVoiceFile(path, *format, bytes);
}

} // namespace

int CliList(const CliCall &call) {
    UseTerminalDesktop(call);
    int status = ExitDone;
    std::vector<std::uint8_t> bytes;
    for (const char *path : call.words) {
        const VoiceFileFormat *format = FormatOfPath(path);
        const VoiceFileReport report = ReadAnyVoiceFile(path, format, bytes);
        if (report.state == VoiceFileState::Refused ||
            (report.state == VoiceFileState::Damaged && !AskToOpenDamaged(nullptr, path))) {
            TellError(path, report.reason);
            status = ExitFailed;
            continue;
        }
        const std::string prefix = call.words.size() > 1 ? FieldText(path) + '\t' : std::string();
        const std::size_t count = format->count(bytes);
        for (std::size_t index = 0; index < count; ++index) {
            const VoiceLine voice = format->voice(bytes, index);
            Put(StandardOutput, prefix);
            PutNumber(StandardOutput, index + 1);
            Put(StandardOutput, '\t');
            PutVoiceName(StandardOutput, voice.name);
            Put(StandardOutput, '\t');
            PutNumber(StandardOutput, static_cast<unsigned>(voice.algorithm));
            Put(StandardOutput, '\n');
        }
    }
    return status;
}

int CliCheck(const CliCall &call) {
    int status = ExitDone;
    std::vector<std::uint8_t> bytes;
    for (const char *path : call.words) {
        const VoiceFileFormat *format = FormatOfPath(path);
        const VoiceFileReport report = ReadAnyVoiceFile(path, format, bytes);
        Put(StandardOutput, FieldText(path));
        if (report.state == VoiceFileState::Ok) {
            Put(StandardOutput, "\tok\t");
            PutNumber(StandardOutput, format->count(bytes));
        } else {
            const char *state = report.state == VoiceFileState::Damaged ? "damaged" : "refused";
            Put(StandardOutput, FormatText("\t%s\t", state));
            Put(StandardOutput, report.reason);
            TellError(path, FormatText("%s: ", state) + report.reason);
            status = ExitFailed;
        }
        Put(StandardOutput, '\n');
    }
    return status;
}

} // namespace tonewright
