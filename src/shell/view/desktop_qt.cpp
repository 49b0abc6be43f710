// The desktop table made of Qt: dialogs, cursor, browser, trash, sounds, keys.
#include "shell/view/desktop_qt.h"

#include "common/desktop.h"
#include "common/settings.h"
#include "common/sound.h"
#include "common/text.h"
#include "common/view/busy_box.h"
#include "common/view/centre_window.h"
#include "common/view/message_dialog.h"
#include "common/view/status_bar.h"
#include "core/dispatch.h"
#include "shell/settings_file.h"
#include "shell/settings_flow.h"
#include "shell/show_document.h"
#include "shell/view/start_program.h"

#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QScreen>
#include <QStandardPaths>
#include <QUrl>

#include <cstring>
#include <utility>

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

enum class FileDialogKind { Open, Import, Extra, Save, Export, SaveExtra, Any };

// What a dialog takes from the driver's row; of any file nothing.
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
    case FileDialogKind::SaveExtra:
        return {&SynthDriver::extraFilter, &SynthDriver::extraExtension, true, "Save as"};
    case FileDialogKind::Any:
        break;
    }
    return {nullptr, nullptr, false, "Open any dump"};
}

// The driver's part in a dialog; without its own filter every name is taken as it is typed.
struct FileTypes {
    QStringList filters;
    std::string extension;
    bool hasOwnFilter;
};
FileTypes FileTypesOf(const FileTypeMembers &members, const SynthDriver *driver) {
    if (!members.filter) {
        return {.filters = FiltersOf(AllFilesFilter), .extension = "", .hasOwnFilter = false};
    }
    const char *filter = driver ? driver->*members.filter : nullptr;
    const char *extension = driver ? driver->*members.extension : nullptr;
    const bool hasOwnFilter = filter && *filter;
    return {.filters = FiltersOf(hasOwnFilter ? filter : AllFilesFilter),
            .extension = extension && *extension ? extension : "Twl",
            .hasOwnFilter = hasOwnFilter};
}

// A dialog that adds the extension, while the driver's own filter is chosen, to every name that has
// none of the program's: a file of another name is shown by no such dialog. (The toolkit adds one
// to names without a dot.)
class FileDialog : public QFileDialog {
public:
    FileDialog(QWidget *window, const char *title, FileTypes fileTypes)
        : QFileDialog(window, title), types(std::move(fileTypes)) {
        setNameFilters(types.filters);
        setDefaultSuffix(QString::fromStdString(types.extension));
    }

    // The path that stands for a chosen one. A file to open is looked for under both names.
    QString PathOf(const QString &chosen) const {
        if (chosen.isEmpty() || QFileInfo(chosen).isDir() || !types.hasOwnFilter ||
            selectedNameFilter() != types.filters.constFirst()) {
            return chosen;
        }
        const QString named =
            QString::fromStdString(WithProgramExtension(chosen.toStdString(), types.extension));
        const bool isToBeOpened = acceptMode() == AcceptOpen;
        return isToBeOpened && (QFileInfo::exists(chosen) || !QFileInfo::exists(named)) ? chosen
                                                                                        : named;
    }

protected:
    // Before the toolkit's own checks, so that its question is about the file that is written.
    void accept() override {
        const QString chosen = selectedFiles().value(0), named = PathOf(chosen);
        auto *edit = findChild<QLineEdit *>("fileNameEdit"); // a platform's dialog has none
        if (edit && named != chosen) {
            const QFileInfo file(named);
            edit->setText(file.dir() == directory() ? file.fileName() : named);
        }
        QFileDialog::accept();
    }

private:
    FileTypes types;
};

// The size of the last file dialog, as far as the screen has room for it; always in the middle.
void PlaceDialog(QFileDialog &dialog) {
    constexpr std::uint32_t smallest = 127; // a remembered size counts above this
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (screen && FileWindowX > smallest && FileWindowY > smallest) {
        const auto cut = [](std::uint32_t size, int limit) {
            return static_cast<int>(std::min<std::uint32_t>(size, static_cast<unsigned>(limit)));
        };
        // Its controls may need more than that, which counts for the middle.
        dialog.resize(QSize(cut(FileWindowX, screen->size().width()),
                            cut(FileWindowY, screen->size().height()))
                          .expandedTo(dialog.minimumSizeHint()));
    }
    CentreWindow(dialog);
}

// True when something was chosen.
bool RunPlaced(QFileDialog &dialog) {
    PlaceDialog(dialog);
    const bool accepted = dialog.exec() == QDialog::Accepted;
    FileWindowX = static_cast<std::uint32_t>(dialog.width());
    FileWindowY = static_cast<std::uint32_t>(dialog.height());
    return accepted && !dialog.selectedFiles().isEmpty();
}

std::string ChosenPath(const QString &path) {
    return QDir::toNativeSeparators(path).toStdString();
}

std::optional<std::string> RunFileDialog(FileDialogKind kind, QWidget *window,
                                         const std::string &path, DriverId driverId) {
    const FileTypeMembers members = MembersOf(kind);
    const QString start = QString::fromStdString(path);

    FileDialog dialog(window, members.title, FileTypesOf(members, DriverOfId(driverId)));
    dialog.setDirectory(QFileInfo(start).absolutePath());
    if (members.saves) {
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        dialog.selectFile(QFileInfo(start).fileName());
    } else {
        dialog.setFileMode(QFileDialog::ExistingFile);
    }
    if (!RunPlaced(dialog)) {
        return std::nullopt;
    }
    const QString chosen = dialog.selectedFiles().front(), taken = dialog.PathOf(chosen);
    // A platform's dialog has asked about the name without the extension.
    const bool isAsked = members.saves && taken != chosen && QFileInfo::exists(taken);
    if (isAsked &&
        AskYesNo(window, QFileInfo(taken).fileName().toStdString() +
                             " already exists.\nDo you want to replace it?") != ResultYes) {
        return std::nullopt;
    }
    return ChosenPath(taken);
}

template <FileDialogKind kind>
std::optional<std::string> ChooseFile(QWidget *window, const std::string &path,
                                      std::uint32_t driverId) {
    return RunFileDialog(kind, window, path, driverId);
}

std::optional<std::string> ChooseAFile(QWidget *window, const std::string &path) {
    return RunFileDialog(FileDialogKind::Any, window, path, NoDriverId);
}

std::optional<std::string> ChooseAFolder(QWidget *window, const std::string &path) {
    QFileDialog dialog(window, "Choose a folder", QString::fromStdString(path));
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    return RunPlaced(dialog) ? std::optional(ChosenPath(dialog.selectedFiles().front()))
                             : std::nullopt;
}

bool OpenAddress(const std::string &program, const std::string &address, bool) {
    const QString target = QString::fromStdString(address);
    if (program.empty()) {
        return QDesktopServices::openUrl(QUrl(target));
    }
    return StartProgram(QString::fromStdString(program), target);
}

// The trash of a home whose data folder is missing would be made in the current folder, and so it
// would from a path against that folder.
bool MoveToTrash(const std::string &path) {
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    const QFileInfo file(QFileInfo(QString::fromStdString(path)).absoluteFilePath());
    const auto isThere = [&file] {
        return QFileInfo::exists(file.filePath()) || QFileInfo(file.filePath()).isSymLink();
    };
    return isThere() && QDir::isAbsolutePath(data) && QDir().mkpath(data) &&
           QFile::moveToTrash(file.filePath()) && !isThere();
}

// The program's own mark for a voice block on the clipboard.
const QString VoiceMimeType = QStringLiteral("application/x-tonewright-voice");

bool PutClipboard(std::span<const std::uint8_t> block, const std::string &name) {
    auto *data = new QMimeData; // the clipboard takes it over
    data->setData(VoiceMimeType, QByteArray(reinterpret_cast<const char *>(block.data()),
                                            static_cast<qsizetype>(block.size())));
    data->setText(QString::fromStdString(name));
    QGuiApplication::clipboard()->setMimeData(data);
    return true;
}

void PutTextOnClipboard(const std::string &text) {
    QGuiApplication::clipboard()->setText(QString::fromStdString(text));
}

// What lies on the clipboard, when that is a voice block; else null.
const QMimeData *VoiceOnClipboard() {
    const QMimeData *data = QGuiApplication::clipboard()->mimeData();
    return data && data->hasFormat(VoiceMimeType) ? data : nullptr;
}

bool ClipboardHasVoice() {
    return VoiceOnClipboard() != nullptr;
}

std::optional<std::vector<std::uint8_t>> TakeClipboard() {
    const QMimeData *data = VoiceOnClipboard();
    if (!data) {
        return std::nullopt;
    }
    const QByteArray block = data->data(VoiceMimeType);
    return std::vector<std::uint8_t>(block.begin(), block.end());
}

void SetWaitCursor(bool wait) {
    if (wait) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
    } else {
        QApplication::restoreOverrideCursor();
    }
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
        .ChooseSaveExtraFile = ChooseFile<FileDialogKind::SaveExtra>,
        .ChooseAnyFile = ChooseAFile,
        .ChooseFolder = ChooseAFolder,
        .SaveConfiguration = [] { ConfigWrite(); },
        .KeepSetting = [](std::uint32_t &setting) { KeepChosen(&setting); },
        .OpenAddress = OpenAddress,
        .ShowHelp = [](QWidget *owner, ReferenceTopic topic) { ShowHelpTopic(owner, topic); },
        .MoveToTrash = MoveToTrash,
        .PutClipboard = PutClipboard,
        .PutClipboardText = PutTextOnClipboard,
        .ClipboardHasVoice = ClipboardHasVoice,
        .TakeClipboard = TakeClipboard,
        .PlaySoundFile = [](const std::string &path) { return PlaySoundFile(path.c_str()); },
        .Beep = [] { QApplication::beep(); },
        .ShiftKeyDown =
            [] { return QApplication::keyboardModifiers().testFlag(Qt::ShiftModifier); },
        .ControlKeyDown =
            [] { return QApplication::keyboardModifiers().testFlag(Qt::ControlModifier); },
    };
}

} // namespace tonewright
