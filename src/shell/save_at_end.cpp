// Saving the settings and the history, and saying so when that fails.
#include "shell/save_at_end.h"

#include "common/setting_rows.h"
#include "shell/history.h"
#include "shell/settings_file.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

namespace tonewright {
namespace {

void Tell(const std::string &path, const char *failure, int reason) {
    std::fprintf(stderr, "tonewright: %s: %s: %s\n", path.c_str(), failure, std::strerror(reason));
}

} // namespace

void SaveSettings() {
    ConfigWrite([](const SettingsList &list, SettingsWrite outcome) {
        const int reason = errno;
        Tell(SettingsFilePath(list), WordsOfOutcome(outcome), reason);
    });
}

void SaveHistory() {
    if (!HistorySave()) {
        Tell(HistoryFilePath(), "the history could not be written", errno);
    }
}

void SaveWhatChanged() {
    if (!ConfigIsWritten()) {
        SaveSettings();
    }
    SaveHistory();
}

} // namespace tonewright
