// The command that lists the themes. Each is loaded as the window program would load it, so that it
// is part of the program that paints.
#include "cli/cli_commands.h"
#include "cli/offscreen_toolkit.h"
#include "cli/text_output.h"
#include "cli/user_settings.h"
#include "common/text.h"
#include "common/theme_files.h"
#include "common/view/theme_library.h"

#include <QApplication>

#include <utility>

namespace tonewright {
namespace {

// Why the program cannot draw with the theme in a file; empty when it can.
std::string FaultOfTheme(const std::string &path) {
    StartedTheme theme = StartTheme(path);
    if (theme.module) {
        EndTheme(std::move(theme.module));
    }
    return theme.fault;
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
        const std::string fault = FaultOfTheme(path);
        for (const std::string &field : {ThemeDisplayName(FileNameOfPath(path.c_str())), path}) {
            Put(StandardOutput, FieldText(field));
            Put(StandardOutput, '\t');
        }
        Put(StandardOutput, fault.empty() ? "loads" : FieldText(fault));
        Put(StandardOutput, '\n');
    }
    return ExitDone;
}

} // namespace tonewright
