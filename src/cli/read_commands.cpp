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
                                 std::vector<std::uint8_t> &bytes,
                                 std::uint64_t *unread = nullptr) {
    if (!format) {
        return {VoiceFileState::Refused, UnknownFormatReason(path)};
    }
    return ReadVoiceFile(path, *format, bytes, unread);
}

// What else is to be known of a file that can be opened, each behind a tab.
void PutRemarks(const VoiceFileFormat &format, std::span<const std::uint8_t> bytes,
                std::uint64_t unread) {
    if (unread > 0) {
        Put(StandardOutput,
            FormatText("\t%llu more byte%s not read", static_cast<unsigned long long>(unread),
                       unread == 1 ? "" : "s"));
    }
    if (const std::size_t misfits = format.misfits ? format.misfits(bytes) : 0) {
        Put(StandardOutput, FormatText("\t%zu voice%s bytes above 7F", misfits,
                                       misfits == 1 ? " holds" : "s hold"));
    }
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
        std::uint64_t unread = 0;
        const VoiceFileReport report = ReadAnyVoiceFile(path, format, bytes, &unread);
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
        if (report.state != VoiceFileState::Refused) {
            PutRemarks(*format, bytes, unread);
        }
        Put(StandardOutput, '\n');
    }
    return status;
}

} // namespace tonewright
