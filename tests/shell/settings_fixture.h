// A home of its own for the files of settings.
#pragma once

#include "common/folders.h"
#include "common/platform.h"
#include "common/setting_rows.h"
#include "common/settings.h"
#include "shell/settings_file.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace tonewright {

// The maker's folder in a temporary home, with nothing in it.
struct SettingsHome : testing::Test {
    TempFolder temp;
    std::string maker = temp.File("app/Quillbrook/");
    std::string path = maker + "Tonewright 17.ini";
    std::string backup = maker + "Backup of Tonewright 17.ini";
    std::string older = maker + "Backup of Backup of Tonewright 17.ini";
    std::string extras = maker + "Tonewright 17" + PathSeparator + "Extras.ini";

    SettingsHome() {
        ResetSettings();
        PlatformFolders.applicationData = temp.File("app");
        MakeProgramFolders();
    }
    // Writes Extras.ini for all users of the machine, as the file that counts least.
    void WriteSystemExtras(const std::string &text) {
        const std::string folder =
            temp.File("system" + std::to_string(PlatformFolders.systemConfiguration.size()));
        PlatformFolders.systemConfiguration.push_back(folder);
        std::filesystem::create_directories(folder + "/Quillbrook");
        WriteTestText(folder + "/Quillbrook/Extras.ini", text);
    }

    ~SettingsHome() override { ResetSettings(); }

    void Read(const std::string &text) {
        WriteTestText(path, text);
        ConfigRead();
    }
    std::vector<std::string> FilesOfMaker() const {
        std::vector<std::string> names;
        for (const auto &entry : std::filesystem::directory_iterator(maker)) {
            if (entry.is_regular_file()) {
                names.push_back(entry.path().filename().string());
            }
        }
        std::ranges::sort(names);
        return names;
    }
};

inline std::string LineOf(const std::string &text, const std::string &key) {
    const std::size_t at = text.find("\n" + key + " =");
    return at == std::string::npos ? "" : text.substr(at + 1, text.find('\n', at + 1) - at - 1);
}

} // namespace tonewright
