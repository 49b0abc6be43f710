// The desktop table made of Qt: dialogs, cursor, browser, trash, sounds, keys.
#include "shell/view/desktop_qt.h"

#include "common/desktop.h"
#include "common/folders.h"
#include "common/sound.h"
#include "common/text.h"
#include "common/view/busy_box.h"
#include "common/view/message_dialog.h"
#include "common/view/status_bar.h"
#include "core/dispatch.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

#include <cstring>

namespace tonewright {
namespace {

// A list of pairs "text\0*.pattern\0" as a file dialog's filters.
QStringList FiltersOf(const char *pairs) {
    QStringList filters;
    while (pairs && *pairs) {
        const char *pattern = pairs + std::strlen(pairs) + 1;
        const QString shown = std::strcmp(pattern, "*.*") == 0 ? "*" : QString(pattern);
        filters += QString("%1 (%2)").arg(pairs, shown);
        pairs = pattern + std::strlen(pattern) + 1;
    }
    return filters;
}

constexpr const char *AllFilesFilter = "All files\0*.*\0";

enum class FileDialogKind { Open, Import, Extra, Save, Export };

// What a dialog takes from the driver's row.
struct FileTypeMembers {
    const char *SynthDriver::*filter;
    const char *SynthDriver::*extension;
    bool saves;
    const char *title;
};
FileTypeMembers MembersOf(FileDialogKind kind) {
    switch (kind) {
    case FileDialogKind::Open:
        return {&SynthDriver::bankFilter, &SynthDriver::bankExtension, false, "Open"};
    case FileDialogKind::Import:
        return {&SynthDriver::voiceFilter, &SynthDriver::voiceExtension, false, "Import"};
    case FileDialogKind::Extra:
        return {&SynthDriver::extraFilter, &SynthDriver::extraExtension, false, "Open"};
    case FileDialogKind::Save:
        return {&SynthDriver::bankFilter, &SynthDriver::bankExtension, true, "Save as"};
    case FileDialogKind::Export:
        return {&SynthDriver::voiceFilter, &SynthDriver::voiceExtension, true, "Export"};
    }
    return {};
}

std::optional<std::string> RunFileDialog(FileDialogKind kind, QWidget *window,
                                         const std::string &path, DriverId driverId) {
    const FileTypeMembers members = MembersOf(kind);
    const SynthDriver *driver = DriverOfId(driverId);
    const char *filter = driver ? driver->*members.filter : nullptr;
    const char *extension = driver ? driver->*members.extension : nullptr;
    const QString start = QString::fromStdString(path);

    QFileDialog dialog(window, members.title);
    dialog.setNameFilters(FiltersOf(filter && *filter ? filter : AllFilesFilter));
    dialog.setDefaultSuffix(extension && *extension ? extension : "Twl");
    dialog.setDirectory(QFileInfo(start).absolutePath());
    if (members.saves) {
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        dialog.selectFile(QFileInfo(start).fileName());
    } else {
        dialog.setFileMode(QFileDialog::ExistingFile);
    }
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return std::nullopt;
    }
    return dialog.selectedFiles().front().toStdString();
}

template <FileDialogKind kind>
std::optional<std::string> ChooseFile(QWidget *window, const std::string &path,
                                      std::uint32_t driverId) {
    return RunFileDialog(kind, window, path, driverId);
}

bool OpenAddress(const std::string &program, const std::string &address, bool) {
    const QString target = QString::fromStdString(address);
    if (program.empty()) {
        return QDesktopServices::openUrl(QUrl(target));
    }
    return QProcess::startDetached(QString::fromStdString(program), {target});
}

void SetWaitCursor(bool wait) {
    if (wait) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
    } else {
        QApplication::restoreOverrideCursor();
    }
}

std::string StandardFolder(QStandardPaths::StandardLocation location) {
    return QStandardPaths::writableLocation(location).toStdString();
}

} // namespace

void UseQtDesktop() {
    TheDesktop = Desktop{
        .RunMessage = RunMessageDialog,
        .SetStatusText = SetStatusBarText,
        .SetProgress = SetStatusBarProgress,
        .ShowBusyBox = ShowBusyBoxWindow,
        .SetBusyText = SetBusyBoxText,
        .CloseBusyBox = CloseBusyBoxWindow,
        .WaitCursor = SetWaitCursor,
        .ChooseOpenFile = ChooseFile<FileDialogKind::Open>,
        .ChooseImportFile = ChooseFile<FileDialogKind::Import>,
        .ChooseExtraFile = ChooseFile<FileDialogKind::Extra>,
        .ChooseSaveFile = ChooseFile<FileDialogKind::Save>,
        .ChooseExportFile = ChooseFile<FileDialogKind::Export>,
        .OpenAddress = OpenAddress,
        .MoveToTrash =
            [](const std::string &path) {
                return QFile::moveToTrash(QString::fromStdString(path));
            },
        .PutClipboard = {},
        .TakeClipboard = {},
        .PlaySoundFile = [](const std::string &path) { return PlaySoundFile(path.c_str()); },
        .ShiftKeyDown =
            [] { return QApplication::keyboardModifiers().testFlag(Qt::ShiftModifier); },
        .ControlKeyDown =
            [] { return QApplication::keyboardModifiers().testFlag(Qt::ControlModifier); },
    };
}

void UsePlatformFolders() {
    PlatformFolders = {
        .applicationData = StandardFolder(QStandardPaths::GenericConfigLocation),
        .documents = StandardFolder(QStandardPaths::DocumentsLocation),
        .pictures = StandardFolder(QStandardPaths::PicturesLocation),
        .programs = StandardFolder(QStandardPaths::ApplicationsLocation),
    };
}

} // namespace tonewright
