// The command that paints the main window with a bank open, as a picture. Like all that paint it is
// part of tonewright-picture only, since the toolkit's libraries take longer to load than most of
// what the other commands do.
#include "cli/cli_commands.h"
#include "cli/offscreen_toolkit.h"
#include "cli/terminal_desktop.h"
#include "cli/text_output.h"
#include "cli/user_settings.h"
#include "common/text.h"
#include "common/theme_files.h"
#include "common/utf8_path.h"
#include "common/view/theme.h"
#include "shell/view/desktop_qt.h"
#include "shell/view/window_picture.h"

#include <QApplication>

namespace tonewright {

int CliPicture(const CliCall &call) {
    const char *bank = call.words[0], *picture = call.words[1];
    ScreenSize screen{1920, 1080};
    if (const char *text = call[CliOption::Screen]) {
        const auto size = ReadScreenSize(text);
        if (!size) {
            TellError(text, "not a screen size: WIDTHxHEIGHT in pixels, each 200 to 16384, is");
            return ExitWrongCall;
        }
        screen = *size;
    }
    if (!EqualNoCase(ExtensionOfPath(picture), "png")) {
        TellError(picture, "the extension of the picture must be \"png\"");
        return ExitWrongCall;
    }

    UseOffscreenToolkit();
    char name[] = "tonewright-cli";
    char *arguments[] = {name, nullptr};
    int count = 1;
    QApplication application(count, arguments);
    UseQtDesktop(); // its status bar is in the picture
    UseTerminalDesktop(call);
    ReadThemeSettings();
    ThemeChooseDefault(screen.width);
    ThemeLoad();
    std::string error;
    const bool painted =
        PaintMainWindowPicture(AbsolutePath(bank), AbsolutePath(picture), screen.height, error);
    ThemeUnload();
    if (!painted) {
        TellError("", error);
        return ExitFailed;
    }
    return ExitDone;
}

} // namespace tonewright
