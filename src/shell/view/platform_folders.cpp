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

void UsePlatformFolders() {
    PlatformFolders = {
        .applicationData =
            PlatformApplicationDataFolder(StandardFolder(QStandardPaths::GenericConfigLocation)),
        .documents = StandardFolder(QStandardPaths::DocumentsLocation),
        .pictures = StandardFolder(QStandardPaths::PicturesLocation),
        .programs = StandardFolder(QStandardPaths::ApplicationsLocation),
        .systemConfiguration = PlatformSystemConfigurationFolders(),
        .music = StandardFolder(QStandardPaths::MusicLocation),
        .videos = StandardFolder(QStandardPaths::MoviesLocation),
        .desktop = StandardFolder(QStandardPaths::DesktopLocation),
        .profile = StandardFolder(QStandardPaths::HomeLocation),
    };
}

} // namespace tonewright
