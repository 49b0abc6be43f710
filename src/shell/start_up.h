// The decisions of start-up: sizes, default folders, the display test and the first commands.
#pragma once

#include <optional>
#include <string>

namespace tonewright {

struct WindowSize {
    int width = 0, height = 0; // pixels
};
// 95 percent of the screen's height, and the width that goes with it.
WindowSize MainWindowSize(int screenHeight);

// True for a display of more than 8 bits per pixel and a width of 800 pixels or more. (The height
// does not count.)
bool DisplayIsSuitable(int bitsPerPixel, int screenWidth);

// 24 for a display of 9 bits or more, else the display's own value.
int ColourDepthOf(int bitsPerPixel);

// Gives OpenPath, OpenImportPath and OpenExportPath their default where they are empty.
void FillDefaultFolders();

// What a command line of one argument, "--help" or "--version", asks to have printed instead of
// starting. Nothing for any other command line.
std::optional<std::string> TextInsteadOfStart(int argumentCount, char **arguments);

// Posts the first work of the window: the driver of the settings, the search for its instrument, a
// download if DownloadOnOpen.
void PostFirstCommands();
// Posts Open for the path of the command line, or else for the recent document if
// OpenRecentDocument. The path is made absolute against the current folder.
void PostFirstDocument(const std::string &commandLinePath);

// Posts the look at the clipboard from which Paste takes its first state. An owner that does not
// answer holds it up for seconds, so that it is the only one and comes when all else is shown.
void PostFirstLookAtClipboard();

// True when the startup window is to be shown: not at the start that shows the welcome wizard.
bool StartupWindowWanted();

// After the startup window: the tip of the day, once a day, or, as long as it has not been shown,
// the welcome wizard. That keeps the tip away, and the day counts as used up all the same.
void PostMainStartupDone();
void MainStartupDone();

} // namespace tonewright
