// Start, run, stop: the order matters, because settings, theme, fonts and posted commands depend on
// one another.
#include "shell/view/application.h"

#include "common/colour_table.h"
#include "common/desktop.h"
#include "common/folders.h"
#include "common/platform.h"
#include "common/settings.h"
#include "common/sound.h"
#include "common/text.h"
#include "common/theme_files.h"
#include "common/view/show_at_once.h"
#include "common/view/soft_button.h"
#include "common/view/theme.h"
#include "common/view/tool_tip.h"
#include "common/windows_version.h"
#include "core/current.h"
#include "midi/instrument_settings.h"
#include "midi/midi_start.h"
#include "shell/command_queue.h"
#include "shell/command_table.h"
#include "shell/documents.h"
#include "shell/end_signals.h"
#include "shell/history.h"
#include "shell/settings_migration.h"
#include "shell/shell_window.h"
#include "shell/single_setting.h"
#include "shell/start_up.h"
#include "shell/undo.h"
#include "shell/view/desktop_qt.h"
#include "shell/view/main_window.h"
#include "shell/view/platform_folders.h"
#include "shell/view/refusal_box.h"
#include "shell/view/session_end.h"
#include "shell/view/startup_window.h"
#include "shell/view/voice_list_view.h"

#include <QApplication>
#include <QDir>
#include <QScreen>

#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace tonewright {
namespace {

// The toolkit's application, but that its end, which the session asks for after all that it was
// told to save, is not another question to the user.
class Application : public QApplication {
public:
    using QApplication::QApplication;

    MainWindow *window = nullptr; // while it stands

protected:
    bool event(QEvent *event) override {
        if (event->type() == QEvent::Quit && window) {
            window->EndAtOnce();
            return true;
        }
        return QApplication::event(event);
    }
};

void SeedRandomNumbers() {
    std::srand(static_cast<unsigned>(std::time(nullptr)));
}

void ReadEarlySettings() {
    TipFont01Size = ReadSingleInteger(ProgramSettings, "TipFont01Size", TipFont01Size);
    ThemeCurrent = ReadSingleText(ProgramSettings, "ThemeCurrent", ThemeCurrent);
}

int RunLoop(Application &application, const std::string &commandLinePath) {
    const QScreen *screen = QGuiApplication::primaryScreen();
    const QSize screenSize = screen ? screen->size() : QSize();
    const int colourDepth = ColourDepthOf(screen ? screen->depth() : 0);

    ReadEarlySettings();
    ThemeChooseDefault(screenSize.width());
    ThemeLoad();
    FillDefaultFolders();
    RegisterToolTipClass();
    MainWindow window(MainWindowSize(screenSize.height()), true);
    FollowInstrumentSettings();
    ThemeChooseDefault(screenSize.width()); // again: the file that was read may name no theme
    UndoInit(&window);
    HistoryInit();
    HistoryRead();
    window.AddBars();
    window.AddList();
    PostFirstCommands();
    {
        const RunningMark running; // the first commands find a painted window
        ShowAtOnce(window);
    }
    window.List()->setFocus();
    RefreshTitle();
    if (!DisplayIsSuitable(colourDepth, screenSize.width())) {
        const RunningMark running; // the first commands do not start behind the box
        ShowScreenDriverMessage();
        return 0;
    }
    InstallColourTable(); // not in front of the first painting, since it waits for the disk
    FollowSessionEnd(window);
    PostFirstDocument(commandLinePath);
    PostFirstLookAtClipboard();
    std::unique_ptr<QWidget> startupWindow;
    if (StartupWindowWanted()) {
        startupWindow = ShowStartupWindowBox(PostMainStartupDone);
    } else {
        PostMainStartupDone();
    }
    SeedRandomNumbers();
    if (std::getenv("TONEWRIGHT_EXIT_AFTER_FIRST_PAINT")) {
        PostCommand(CommandCloseAtOnce); // for measuring and testing the start
    }
    // A window that was closed before the loop runs has left nothing to wait for.
    application.window = &window;
    const int exitCode = window.isVisible() ? QApplication::exec() : 0;
    application.window = nullptr;
    ReleaseEndSignals(); // nobody looks for requests any more
    HistoryEnd();
    return exitCode;
}

} // namespace

int RunApplication(int argc, char **argv) {
    if (!UsePlatformFolders()) {
        std::fprintf(stderr, "tonewright: %s\n", NoHomeFolder);
    }
    QApplication::setApplicationName("Tonewright");
    QApplication::setDesktopFileName("tonewright");
    Application application(argc, argv);
    application.setQuitOnLastWindowClosed(false);
    UseQtDesktop();
    MakeDialogButtonsSoft();
    ApplicationPath =
        QDir::toNativeSeparators(QCoreApplication::applicationDirPath()).toStdString();
    if (!ApplicationPath.ends_with(PathSeparator)) { // as it does in the root of a drive
        ApplicationPath += PathSeparator;
    }
    if (!IsWindows10OrLater()) {
        ShowVersionRefusedBox();
        return 0;
    }
    UseMidi(InstrumentsAre::Heard);
    MakeProgramFolders();
    SeedRandomNumbers();
    ConfigMigrate();
    const int exitCode = RunLoop(application, UnquotedPath(PlatformCommandLine(argc, argv)));
    ThemeUnload();
    UnregisterToolTipClass();
    UndoEnd();
    StopSounds();
    EndMidi();
    return exitCode;
}

} // namespace tonewright
