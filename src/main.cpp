// Tonewright, the window program.
#include "common/platform.h"
#include "shell/start_up.h"
#include "shell/view/application.h"

#include <cstdio>

int main(int argc, char **argv) {
    tonewright::PlatformLetLongWritesFail();
    std::vector<char *> arguments = tonewright::PlatformArguments(argc, argv);
    argc = static_cast<int>(arguments.size()) - 1;
    argv = arguments.data();
    if (const auto text = tonewright::TextInsteadOfStart(argc, argv)) {
        tonewright::PlatformUseTerminalOfParent();
        return std::fputs(text->c_str(), stdout) < 0 || std::fflush(stdout) != 0 ? 1 : 0;
    }
    return tonewright::RunApplication(argc, argv);
}
