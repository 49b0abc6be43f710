// The folders that the platform keeps for each user. Needs neither a window nor an application
// object, so that the command line can ask too.
#pragma once

namespace tonewright {

// Fills PlatformFolders from the standard paths of the platform.
void UsePlatformFolders();

} // namespace tonewright
