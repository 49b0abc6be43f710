// Waits for the platform to have a window on the screen.
#include "common/view/show_at_once.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>
#include <QWidget>
#include <QWindow>

namespace tonewright {
namespace {

constexpr int ShowTimeOut = 500; // milliseconds until the window counts as shown

} // namespace

void ShowAtOnce(QWidget &window) {
    window.show();
    QElapsedTimer timer;
    timer.start();
    while (!window.windowHandle()->isExposed() && !timer.hasExpired(ShowTimeOut)) {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        QThread::msleep(1);
    }
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    window.repaint();
}

} // namespace tonewright
