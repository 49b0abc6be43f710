// The folders that the platform keeps for each user. Needs neither a window nor an application
// object, so that the command line can ask too.
#pragma once

namespace tonewright {

// Fills PlatformFolders from the standard paths of the platform. False: the user has no home
// folder, and PlatformFolders holds none but those that do not stand in it. Programs call it before
// they have a second thread and tell NoHomeFolder then.
bool UsePlatformFolders();

inline constexpr const char *NoHomeFolder =
    "HOME is not set and this user has no home folder: documents and settings have no place";

} // namespace tonewright
