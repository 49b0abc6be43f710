// Reads the settings as the start of the window program does.
#include "cli/user_settings.h"

#include "common/platform.h"
#include "common/settings.h"
#include "common/text.h"
#include "shell/settings_file.h"
#include "shell/start_up.h"
#include "shell/view/desktop_qt.h"

namespace tonewright {

void PrepareSettings() {
    UsePlatformFolders();
    ApplicationPath = FolderOfPath(PlatformExecutablePath());
    FillDefaultFolders();
}

void ReadUserSettings() {
    PrepareSettings();
    ConfigRead();
}

} // namespace tonewright
