// Taking over the settings of the version before this one.
#pragma once

#include <functional>
#include <string>

namespace tonewright {

// What the take-over of an earlier version's settings needs to know. File and folder names
// are names in the maker's application-data folder.
struct Migration {
    const char *programName;
    const char *newFile;
    const char *section;
    const char *oldFile;
    const char *newFolder;
    const char *oldFolder;
    const char *patterns; // "*.txt;*.dat": files copied from folder to folder
    const char *uninstallShortcut;
};

// How an earlier version is found and removed. Empty members: there is none.
struct PreviousInstallation {
    std::function<bool(const std::string &shortcut)> Exists;
    // Runs the shortcut's command and waits for its end. False when it cannot be started.
    std::function<bool(const std::string &shortcut)> Uninstall;
};
extern PreviousInstallation ThePreviousInstallation;

// At the very start: offers to copy the earlier version's settings and files, nothing of this
// version being overwritten, and then to remove that version. Does nothing once this version has a
// file of settings, or when the earlier one has none. The folders must have been made.
void ConfigMigrate(const Migration &migration);
// The same for the version before this one.
void ConfigMigrate();

} // namespace tonewright
