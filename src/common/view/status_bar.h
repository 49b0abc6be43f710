// The status bar at the foot of the main window: text panes and meters, painted at once also while
// the program is busy.
#pragma once

#include <QFont>
#include <QString>

#include <array>
#include <string>

class QWidget;

namespace tonewright {

constexpr int StatusPaneLimit = 10;
constexpr int StatusMeterWidth = 300; // pixels, of every meter
constexpr int StatusWidthOfText = -1; // as a pane's width: as wide as its text

enum StatusPaneKind { StatusPaneText = 0, StatusPaneMeter = 1 };

struct StatusPane {
    QString text;
    int alignment = 0; // Qt::Alignment of the text
    StatusPaneKind kind = StatusPaneText;
    int end = 0;      // right edge, pixels
    int position = 0; // of the meter, out of `range`
    int range = 1;
};

struct StatusBarState {
    QFont font;
    int gap = 0;    // pixels
    int height = 0; // of the bar, pixels
    int paneCount = 0;
    std::array<StatusPane, StatusPaneLimit> panes;
};

// Creates the bar as a visible child at the foot of a window, where it stays when the window
// changes its size. The bar that the window has already is returned instead; nullptr for no window.
QWidget *CreateStatusBar(QWidget *mainWindow);

// The state of a window's bar, or nullptr when it has none.
const StatusBarState *StatusBarStateOf(const QWidget *owner);

// Adds a pane at the right of the last one. `width` is in pixels or StatusWidthOfText; a meter is
// 300 wide, whatever is asked. False without a bar, with ten panes already, and for a pane as wide
// as a text that is empty.
bool AddStatusPane(QWidget *owner, const std::string &text, int width, StatusPaneKind kind);

// Replaces the text of pane 0 of a window's bar; an empty text clears it. False without a bar or
// without panes.
bool SetStatusBarText(QWidget *owner, const std::string &text);

// Moves the meter in pane 1 of the main window's bar to `position` out of `total`. Until a position
// of 0 clears it, the meter only grows. False with fewer than two panes.
bool SetStatusBarProgress(int position, int total);

} // namespace tonewright
