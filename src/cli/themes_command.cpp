// The command that lists the themes. Each is loaded as the window program would load it, so that it
// is part of the program that paints.
#include "cli/cli_commands.h"
#include "cli/offscreen_toolkit.h"
#include "cli/text_output.h"
#include "cli/user_settings.h"
#include "common/settings.h"
#include "common/text.h"
#include "common/theme_files.h"
#include "common/view/theme_library.h"

#include <QApplication>

#include <utility>

namespace tonewright {
namespace {

// Why the program cannot draw with the theme in a file; that it loads when it can, and what keeps
// it from being used or shown nevertheless.
std::string StateOfTheme(const std::string &path) {
    StartedTheme theme = StartTheme(path);
    std::string state = theme.fault;
    if (theme.fault.empty()) {
        state = "loads";
        if (path !=
            ThemeFilePath(ApplicationPath, ThemeSettingName(FileNameOfPath(path.c_str())))) {
            state += ", but is used only from the folder \"theme\" beside the program";
        }
        if (!TakeThemeBitmap(theme.drawing.getBitmap(THEME_BITMAP_PREVIEW))) {
            state += "; has no valid preview, so that \"Select theme...\" does not show it";
        }
    }
    if (theme.module) {
        EndTheme(std::move(theme.module));
    }
    return state;
}

} // namespace

int CliThemes(const CliCall &) {
    PrepareSettings();
    UseOffscreenToolkit();
    char name[] = "tonewright-cli";
    char *arguments[] = {name, nullptr};
    int count = 1;
    QApplication application(count, arguments);
    for (const std::string &path : ThemeFiles()) {
        for (const std::string &field : {ThemeDisplayName(FileNameOfPath(path.c_str())), path}) {
            Put(StandardOutput, FieldText(field));
            Put(StandardOutput, '\t');
        }
        Flush(StandardOutput); // a theme may end the program: the line that stops tells which
        Put(StandardOutput, FieldText(StateOfTheme(path)));
        Put(StandardOutput, '\n');
    }
    return ExitDone;
}

} // namespace tonewright
