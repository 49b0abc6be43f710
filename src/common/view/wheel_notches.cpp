// Counts the notches of a wheel.
#include "common/view/wheel_notches.h"

#include <QWheelEvent>

namespace tonewright {

int WheelNotches::Take(const QWheelEvent &event) {
    constexpr int Notch = QWheelEvent::DefaultDeltasPerStep;
    const QPoint turned = event.angleDelta();
    const int delta = turned.y() != 0 ? turned.y() : -turned.x(); // to the left is positive there
    if ((delta < 0 && rest > 0) || (delta > 0 && rest < 0)) {
        rest = 0;
    }
    rest += delta;
    const int notches = rest / Notch;
    rest -= notches * Notch;
    return notches;
}

} // namespace tonewright
