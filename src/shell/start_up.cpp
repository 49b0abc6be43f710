// The decisions of start-up.
#include "shell/start_up.h"

#include "common/folders.h"
#include "common/settings.h"
#include "common/text.h"
#include "common/utf8_path.h"
#include "common/version.h"
#include "shell/clipboard.h"
#include "shell/command_queue.h"
#include "shell/command_table.h"
#include "shell/documents.h"
#include "shell/list_state.h"
#include "shell/tips.h"
#include "shell/wizard.h"

#include <string_view>

namespace tonewright {
namespace {

constexpr const char *HelpText =
    "usage: tonewright [FILE]\n"
    "\n"
    "Opens the window of the voice librarian, with the bank FILE in it if one is named. All\n"
    "arguments together are one path.\n"
    "\n"
    "  --help                print this text\n"
    "  --version             print the version\n"
    "\n"
    "Either counts as the only argument. tonewright-cli is the program without a window.\n";

constexpr int SmallestScreenWidth = 800;

} // namespace

WindowSize MainWindowSize(int screenHeight) {
    const int height = screenHeight * 95 / 100;
    return {.width = height * 372 / 460, .height = height};
}

bool DisplayIsSuitable(int bitsPerPixel, int screenWidth) {
    // The second test looks at the width again, not at the height.
    return bitsPerPixel > 8 && screenWidth >= SmallestScreenWidth && screenWidth >= 600;
}

int ColourDepthOf(int bitsPerPixel) {
    return bitsPerPixel >= 9 ? 24 : bitsPerPixel;
}

void FillDefaultFolders() {
    for (std::string *folder : {&OpenPath, &OpenImportPath, &OpenExportPath}) {
        if (folder->empty()) {
            *folder = DefaultDocumentsFolder();
        }
    }
}

std::optional<std::string> TextInsteadOfStart(int argumentCount, char **arguments) {
    const std::string_view argument = argumentCount == 2 ? arguments[1] : "";
    if (argument == "--version") {
        return FormatText("tonewright %s revision %d\n", ProgramVersion, ProgramRevision);
    }
    if (argument == "--help") {
        return HelpText;
    }
    return std::nullopt;
}

void PostFirstCommands() {
    Post([] { MainListChanged(1); });
    PostCommand(CommandFind);
    if (DownloadOnOpen != 0) {
        PostCommand(CommandDownload);
    }
}

void PostFirstDocument(const std::string &commandLinePath) {
    if (!commandLinePath.empty()) {
        PendingOpenPath = AbsolutePath(commandLinePath);
        PostCommand(CommandOpen);
    }
    if (OpenRecentDocument != 0 && !RecentDocumentPath.empty() && PendingOpenPath.empty()) {
        PendingOpenPath = RecentDocumentPath;
        PostCommand(CommandOpen);
    }
}

void PostFirstLookAtClipboard() {
    Post(ClipboardChanged);
}

bool StartupWindowWanted() {
    return ShowStartupWindow != 0 && ShowWelcomeWizard == 0;
}

void PostMainStartupDone() {
    Post(MainStartupDone);
}

void MainStartupDone() {
    if (ShowTipOfTheDay != 0 && TipDateChanged() && ShowWelcomeWizard == 0) {
        PostCommand(CommandTip);
    }
    // Behind what is posted already: a start that is to end with its first painting ends before it
    // can wait for an answer.
    Post([] { RunFirstWizard(); });
}

} // namespace tonewright
