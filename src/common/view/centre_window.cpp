// Where the centre of the screen is for a window with its frame.
#include "common/view/centre_window.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace tonewright {

void CentreWindow(QWidget &window) {
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen) {
        return;
    }
    // The frame is known once the window has been shown; until then it counts as nothing.
    const QRect area = screen->availableGeometry();
    const QSize size = window.frameGeometry().size();
    // A window larger than the screen keeps its title bar in reach.
    window.move(area.left() + std::max(0, (area.width() - size.width()) / 2),
                area.top() + std::max(0, (area.height() - size.height()) / 2));
}

} // namespace tonewright
