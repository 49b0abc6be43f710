// Where the centre of the screen is for a window with its frame.
#include "common/view/centre_window.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace tonewright {
namespace {

constexpr int FrameTime = 1000; // milliseconds for a window manager to tell of its frame

void MoveToCentre(QWidget &window) {
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen) {
        return;
    }
    const QRect area = screen->availableGeometry();
    QWindow *handle = window.windowHandle();
    const QMargins frame = handle ? handle->frameMargins() : QMargins();
    const QSize size = window.size().grownBy(frame);
    // A window larger than the screen keeps its title bar in reach.
    const QPoint corner(area.left() + std::max(0, (area.width() - size.width()) / 2),
                        area.top() + std::max(0, (area.height() - size.height()) / 2));
    if (frame.isNull()) {
        window.move(corner);
    } else {
        handle->setFramePosition(corner); // the widget may not know its frame yet
    }
}

// Moves a window to the centre once more when it has got its frame, which is soon after it has been
// shown.
class FrameWatch : public QObject {
public:
    explicit FrameWatch(QWidget &window) : QObject(&window), window(window) {
        window.installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override {
        if (watched == &window && event->type() == QEvent::Show) {
            window.windowHandle()->installEventFilter(this);
            QTimer::singleShot(FrameTime, this, &QObject::deleteLater);
        } else if (watched == window.windowHandle() && TellsOfTheScreen(*event) &&
                   !window.windowHandle()->frameMargins().isNull()) {
            watched->removeEventFilter(this);
            deleteLater();
            MoveToCentre(window);
        }
        return false;
    }

private:
    static bool TellsOfTheScreen(const QEvent &event) {
        return event.type() == QEvent::Expose || event.type() == QEvent::Move ||
               event.type() == QEvent::UpdateRequest;
    }

    QWidget &window;
};

} // namespace

void CentreWindow(QWidget &window) {
    MoveToCentre(window);
    if (!window.isVisible() && !window.windowFlags().testFlag(Qt::FramelessWindowHint)) {
        new FrameWatch(window); // a child of the window
    }
}

} // namespace tonewright
