// Asks the toolkit and the platform for the standard paths.
#include "shell/view/platform_folders.h"

#include "common/folders.h"
#include "common/platform.h"

#include <QDir>
#include <QStandardPaths>

namespace tonewright {
namespace {

std::string StandardFolder(QStandardPaths::StandardLocation location) {
    return QDir::toNativeSeparators(QStandardPaths::writableLocation(location)).toStdString();
}

} // namespace

bool UsePlatformFolders() {
    if (!PlatformFindHome()) {
        // The toolkit would take the root of the file system for the home folder.
        PlatformFolders = {};
        PlatformFolders.systemConfiguration = PlatformSystemConfigurationFolders();
        if (!qEnvironmentVariableIsEmpty("XDG_CONFIG_HOME")) {
            PlatformFolders.applicationData = StandardFolder(QStandardPaths::GenericConfigLocation);
        }
        return false;
    }
    PlatformFolders = {
        .applicationData =
            PlatformApplicationDataFolder(StandardFolder(QStandardPaths::GenericConfigLocation)),
        .documents = StandardFolder(QStandardPaths::DocumentsLocation),
        .pictures = StandardFolder(QStandardPaths::PicturesLocation),
        .programs = PlatformProgramsFolder(StandardFolder(QStandardPaths::ApplicationsLocation)),
        .systemConfiguration = PlatformSystemConfigurationFolders(),
        .music = StandardFolder(QStandardPaths::MusicLocation),
        .videos = StandardFolder(QStandardPaths::MoviesLocation),
        .desktop = StandardFolder(QStandardPaths::DesktopLocation),
        .profile = StandardFolder(QStandardPaths::HomeLocation),
        .programMenu = StandardFolder(QStandardPaths::ApplicationsLocation),
    };
    return true;
}

} // namespace tonewright
