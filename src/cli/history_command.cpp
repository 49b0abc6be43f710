// The command that prints the history of the File menu.
#include "cli/cli_commands.h"
#include "cli/text_output.h"
#include "shell/history.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

namespace tonewright {

int CliHistory(const CliCall &call) {
    const char *named = call[CliOption::File];
    const std::string path = named ? named : HistoryFilePath();
    std::vector<HistoryEntry> entries;
    errno = 0;
    // No history has been kept yet: that is no error unless the file was asked for.
    if (!ReadHistoryFile(path.c_str(),
                         [&](const HistoryEntry &entry) { entries.push_back(entry); }) &&
        (named || errno != ENOENT)) {
        TellError(path, errno != 0 ? std::string("not readable: ") + std::strerror(errno)
                                   : std::string("not readable"));
        return ExitFailed;
    }
    std::ranges::stable_sort(entries, StandsBefore);
    for (const HistoryEntry &entry : entries) {
        Put(StandardOutput, FieldText(PlainPath(entry)));
        Put(StandardOutput, IsPinned(entry) ? "\tyes\t" : "\tno\t");
        PutNumber(StandardOutput, entry.time);
        Put(StandardOutput, '\n');
    }
    return ExitDone;
}

} // namespace tonewright
