// Counts the notches of a wheel: finer wheels and touchpads turn in parts of one, which add up.
#pragma once

class QWheelEvent;

namespace tonewright {

class WheelNotches {
public:
    // How many notches are full with this event; positive upwards and to the right. What was turned
    // the other way before is forgotten.
    int Take(const QWheelEvent &event);

private:
    int rest = 0; // turned since the last whole notch, in eighths of a degree
};

} // namespace tonewright
