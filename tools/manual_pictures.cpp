// Takes the pictures of the help pages anew: opens each window of the program with the example bank
// and the built-in instruments, without a display, and writes it as a PNG. The same windows give
// the same pictures.
//
// usage: manual_pictures EXAMPLE_BANK FOLDER
#include "common/audio_output.h"
#include "common/colour_table.h"
#include "common/folders.h"
#include "common/platform.h"
#include "common/settings.h"
#include "common/view/soft_button.h"
#include "common/view/theme.h"
#include "core/current.h"
#include "core/voice_list.h"
#include "extras/archive_update.h"
#include "extras/view/archive_window.h"
#include "extras/view/dump_box.h"
#include "midi/instruments/builtin_instruments.h"
#include "midi/midi_api.h"
#include "shell/command_table.h"
#include "shell/documents.h"
#include "shell/history.h"
#include "shell/list_state.h"
#include "shell/start_up.h"
#include "shell/undo.h"
#include "shell/view/colour_box.h"
#include "shell/view/desktop_qt.h"
#include "shell/view/main_window.h"
#include "shell/view/select_theme_box.h"
#include "shell/view/voice_list_view.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDateTime>
#include <QDialog>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QSet>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>

namespace tonewright {
namespace {

constexpr int ScreenHeight = 820;  // pixels, of the screen that the main window fits into
constexpr int TimeToStand = 400;   // milliseconds, for what a window does behind its first painting
constexpr int TimeToOpen = 10'000; // milliseconds
constexpr int LongestRun = 60'000; // milliseconds
constexpr int LargestPalette = 256; // colours
constexpr std::uint32_t SettingsPages = 2;
constexpr std::uint32_t Teal = 0x9C'AB'22; // blue, green and red
constexpr int VoiceRow = 2;                // of the voice that is shown in the editor

struct Pictures {
    QString folder;
    int failed = 0;
};

void Wait(int milliseconds) {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds) {
        QApplication::processEvents(QEventLoop::AllEvents, 10);
    }
}

// Few colours become a palette, which makes a small file; nothing is lost.
QImage WithPalette(const QImage &picture) {
    QSet<QRgb> colours;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            colours.insert(picture.pixel(x, y));
        }
    }
    if (colours.size() > LargestPalette) {
        return picture;
    }
    QList<QRgb> palette(colours.begin(), colours.end());
    std::sort(palette.begin(), palette.end());
    return picture.convertToFormat(QImage::Format_Indexed8, palette, Qt::ThresholdDither);
}

void Save(Pictures &pictures, const char *name, QWidget &widget) {
    constexpr int SmallestFile = 0; // quality of a PNG
    const QImage picture = widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
    const QString path = pictures.folder + '/' + name + ".png";
    if (!WithPalette(picture).save(path, "PNG", SmallestFile)) {
        std::fprintf(stderr, "manual_pictures: %s cannot be written\n", qPrintable(path));
        ++pictures.failed;
    }
}

// Takes a picture of the box that `open` shows until it is closed.
void TakeBox(Pictures &pictures, const char *name, const std::function<void()> &open) {
    bool taken = false;
    QTimer timer;
    QElapsedTimer waiting;
    waiting.start();
    QObject::connect(&timer, &QTimer::timeout, [&] {
        QWidget *box = QApplication::activeModalWidget();
        if (!box || !box->isVisible()) {
            return;
        }
        timer.stop();
        Wait(TimeToStand);
        Save(pictures, name, *box);
        taken = true;
        static_cast<QDialog *>(box)->done(QDialog::Rejected);
    });
    timer.start(10);
    open();
    while (!taken && waiting.elapsed() < TimeToOpen) {
        Wait(10);
    }
    if (!taken) {
        std::fprintf(stderr, "manual_pictures: %s: no box has opened\n", name);
        ++pictures.failed;
    }
    Wait(TimeToStand);
}

void TakeCommand(Pictures &pictures, const char *name, int command) {
    TakeBox(pictures, name, [command] { RunUserCommand(command); });
}

void OpenBank(const QString &path) {
    PendingOpenPath = path.toStdString();
    RunUserCommand(CommandOpen);
    Wait(TimeToStand);
}

void SelectRow(MainWindow &window, int row) {
    ListSelect(MainList, row);
    window.List()->setFocus();
    Wait(TimeToStand);
}

void TakeEditor(Pictures &pictures, const char *name, std::uint32_t page) {
    VoiceEditPage = page;
    TakeCommand(pictures, name, CommandEdit);
}

// A copy of a bank that was written at a time of its own.
QString CopyOfBank(const QString &bank, const QString &copy) {
    constexpr qint64 Time = 1'793'973'909; // seconds
    QFile::copy(bank, copy);
    QFile file(copy);
    if (file.open(QIODevice::ReadWrite)) {
        file.setFileTime(QDateTime::fromSecsSinceEpoch(Time), QFileDevice::FileModificationTime);
    }
    return copy;
}

// Makes a built-in instrument the current one.
void Connect(const char *family, const char *ports) {
    SelectKeyboardName = family;
    SelectKeyboardMidiIn = SelectKeyboardMidiOut = ports;
    MainListChanged(1);
    RunCommand(CommandFind);
    Wait(TimeToStand);
}

// As with an instrument of the user: built-in ones have more in their boxes.
void TakeWithoutSound(Pictures &pictures, const char *name, int command) {
    const MidiApi builtin = TheMidi;
    MidiDeviceInfo shown;
    TheMidi.Pm_GetDeviceInfo = [&](int device) -> const MidiDeviceInfo * {
        const MidiDeviceInfo *info = builtin.Pm_GetDeviceInfo(device);
        if (!info) {
            return nullptr;
        }
        shown = *info;
        shown.interf = "ALSA";
        return &shown;
    };
    TakeCommand(pictures, name, command);
    TheMidi = builtin;
}

void WriteBytes(const QString &path, const QByteArray &bytes) {
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(bytes);
    }
}

// Files as collectors have them, of the voices of a bank. The folder's own path is in the pictures.
bool MakeCollection(const QString &folder, const QString &bank) {
    QFile file(bank);
    if (QDir(folder).exists() || !QDir().mkpath(folder + "/Old disks") ||
        !file.open(QIODevice::ReadOnly)) {
        return false;
    }
    constexpr qsizetype HeaderSize = 6, ChannelByte = 2, ChecksumByte = 4102, VoiceSize = 128;
    const QByteArray whole = file.readAll();
    QByteArray forChannel = whole, wrongSum = whole;
    forChannel[ChannelByte] = 4;
    wrongSum[ChecksumByte] = static_cast<char>(wrongSum[ChecksumByte] ^ 1);
    const QByteArray headerless = whole.mid(HeaderSize, 32 * VoiceSize);
    WriteBytes(folder + "/Tonewright.syx", whole);
    WriteBytes(folder + "/Bells.syx", forChannel);
    WriteBytes(folder + "/Old disks/Side B.bin", headerless);
    WriteBytes(folder + "/Old disks/Disk 7.dat",
               QByteArray(64, ' ') + forChannel + wrongSum.left(HeaderSize + 20 * VoiceSize) +
                   wrongSum + QByteArray::fromHex("f0411001021203f7"));
    return true;
}

// The window of any dump, and that of the archive, which stands beside the main one.
void TakeBeyondTheBank(Pictures &pictures, MainWindow &window, const QString &bank) {
    const QString folder = QDir::tempPath() + "/Voices";
    if (!MakeCollection(folder, bank)) {
        std::fprintf(stderr, "manual_pictures: %s cannot be made anew\n", qPrintable(folder));
        ++pictures.failed;
        return;
    }
    TakeBox(pictures, "dump",
            [&] { ShowDumpBox(&window, (folder + "/Old disks/Disk 7.dat").toStdString()); });
    {
        ArchiveError error;
        const ArchiveStorePointer store = OpenArchive(ArchivePath(), ArchiveUse::Write, error);
        const std::string folders[] = {folder.toStdString()};
        if (store) {
            AddToArchive(*store, folders, {}, error);
        }
    }
    ShowArchiveWindow();
    Wait(TimeToStand);
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *search = widget->findChild<QLineEdit *>("search")) {
            search->setText("e");
            Wait(TimeToStand);
            if (auto *rows = widget->findChild<QWidget *>("voices")) {
                rows->setFocus();
                QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
                QApplication::sendEvent(rows, &down);
            }
            Wait(2 * TimeToStand);
            Save(pictures, "archive", *widget);
        }
    }
    EndArchiveWindow();
    DropArchiveWindow();
    QDir(folder).removeRecursively();
}

void TakeAll(Pictures &pictures, MainWindow &window, const QString &bank, const QString &home) {
    const QString dx7Bank = CopyOfBank(bank, home + "/Tonewright.syx");
    Connect("Yamaha DX7, TX7, Korg Volca FM", "Built-in DX7");
    OpenBank(dx7Bank);
    SelectRow(window, VoiceRow);
    Save(pictures, "window-dx7", window);

    QTimer::singleShot(TimeToStand, [&] {
        if (QWidget *menu = QApplication::activePopupWidget()) {
            Save(pictures, "menu", *menu);
            menu->close();
        }
    });
    const QPoint point = window.List()->RowRectangle(VoiceRow).center();
    QContextMenuEvent request(QContextMenuEvent::Keyboard, point,
                              window.List()->viewport()->mapToGlobal(point));
    QApplication::sendEvent(window.List()->viewport(), &request);
    Wait(TimeToStand);

    TakeEditor(pictures, "editor-dx7", 0);
    TakeEditor(pictures, "editor-dx7-operator", 1);
    TakeCommand(pictures, "audition-sound", CommandAudition);
    TakeWithoutSound(pictures, "audition", CommandAudition);
    TakeCommand(pictures, "instruments", CommandInstruments);
    TakeCommand(pictures, "select-synthesizer", CommandSelectSynth);
    TakeCommand(pictures, "midi-devices", CommandMidiDevices);
    for (SetupPageIndex = 0; SetupPageIndex < SettingsPages; ++SetupPageIndex) {
        const std::string name = "settings-" + std::to_string(SetupPageIndex + 1);
        TakeCommand(pictures, name.c_str(), CommandSettings);
    }
    TakeCommand(pictures, "tip", CommandTip);
    TakeCommand(pictures, "wizard", CommandWizard);
    std::string theme = ThemeCurrent;
    TakeBox(pictures, "themes", [&] { SelectThemeBox(&window, theme); });
    TakeBox(pictures, "colors", [&window] { ChooseColour(&window, Teal); });
    for (int row = 0; row < MainList.count; ++row) {
        MainListState.clickedIndex = row;
        RunUserCommand(CommandAddToDatabase);
    }
    TakeCommand(pictures, "catalogue", CommandInsertFromDatabase);
    TakeBeyondTheBank(pictures, window, bank);

    Connect("Yamaha reface DX", "Built-in reface DX");
    RunUserCommand(CommandDownload);
    SelectRow(window, VoiceRow);
    Save(pictures, "window-reface", window);
    RefaceZero64 = 1;
    TakeEditor(pictures, "editor-reface", 0);
    TakeEditor(pictures, "editor-reface-operator", 1);
    TakeCommand(pictures, "configure", CommandConfigure);
}

int Take(const QString &bank, const QString &folder) {
    const QTemporaryDir home;
    const std::string path = home.path().toStdString();
    PlatformFolders = {
        .applicationData = path, .documents = path, .pictures = path, .programs = path};
    ApplicationPath = QCoreApplication::applicationDirPath().toStdString() + PathSeparator;
    TheMidi = MakeBuiltinInstruments({.simulatedClock = true});
    TheAudioOutput.Devices = [](std::string &) {
        return std::vector<AudioDevice>{{.name = "Speakers"}};
    };
    MakeProgramFolders();
    InstallColourTable();
    FillDefaultFolders();
    QApplication::setCursorFlashTime(0);
    UseQtDesktop();
    MakeDialogButtonsSoft();

    ThemeCurrent = "THEME_Slate Medium.dll";
    ThemeLoad();

    Pictures pictures{.folder = folder};
    MainWindow window(MainWindowSize(ScreenHeight), true);
    UndoInit(&window);
    HistoryInit();
    window.AddBars();
    window.AddList();
    QTimer::singleShot(LongestRun, [] {
        std::fputs("manual_pictures: a box stands that nobody has asked for\n", stderr);
        std::_Exit(1);
    });
    window.show();
    window.activateWindow();
    Wait(TimeToStand);
    TakeAll(pictures, window, bank, home.path());
    ThemeUnload();
    HistoryEnd();
    UndoEnd();
    return pictures.failed == 0 ? 0 : 1;
}

} // namespace
} // namespace tonewright

int main(int argc, char **argv) {
    if (argc != 3) {
        std::fputs("usage: manual_pictures EXAMPLE_BANK FOLDER\n", stderr);
        return 2;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    return tonewright::Take(argv[1], argv[2]);
}
