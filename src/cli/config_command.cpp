// The command that shows a configuration file as the program would read it.
#include "cli/cli_commands.h"
#include "cli/text_output.h"
#include "common/platform.h"
#include "common/settings.h"
#include "common/text.h"
#include "shell/config.h"
#include "shell/start_up.h"
#include "shell/view/desktop_qt.h"

#include <cerrno>
#include <cstring>

namespace tonewright {

int CliConfig(const CliCall &call) {
    // What start-up has filled in by the time it reads the file.
    UsePlatformFolders();
    ApplicationPath = FolderOfPath(PlatformExecutablePath());
    FillDefaultFolders();

    const char *path = call.words[0];
    errno = 0;
    if (!ConfigReadFile(path)) {
        std::string reason = "not readable";
        if (errno != 0) {
            reason += std::string(": ") + std::strerror(errno);
        }
        TellError(path, reason);
        return ExitFailed;
    }
    for (const ConfigKey &key : ConfigKeys) {
        Put(StandardOutput, key.name);
        Put(StandardOutput, '\t');
        if (const auto *text = std::get_if<std::string *>(&key.value)) {
            Put(StandardOutput, FieldText(**text));
        } else {
            PutNumber(StandardOutput, *std::get<std::uint32_t *>(key.value));
        }
        Put(StandardOutput, '\n');
    }
    return ExitDone;
}

} // namespace tonewright
