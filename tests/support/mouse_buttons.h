// The buttons of the mouse of tests.
#pragma once

#include <QGuiApplication>
#include <QTest>
#include <QWidget>

namespace tonewright {

// The toolkit remembers buttons that a test has left pressed: lets them up over a widget.
inline void ReleaseMouseButtons(QWidget *widget) {
    for (const auto button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
        if (QGuiApplication::mouseButtons() & button) {
            QTest::mouseRelease(widget, button);
        }
    }
}

} // namespace tonewright
