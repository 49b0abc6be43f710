// The names of controls.
#include "common/view/dialog_controls.h"

namespace tonewright {

QString ControlName(std::uint32_t number) {
    return QStringLiteral("control_%1").arg(number);
}

} // namespace tonewright
