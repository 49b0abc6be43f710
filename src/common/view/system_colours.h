// The platform's system colours by the names that the drawing rules use, in one mapping to palette
// roles.
#pragma once

#include <QColor>

namespace tonewright {

enum class SystemColour {
    ButtonFace,
    ButtonShadow,
    ButtonText,
    DarkShadow3D,
    Highlight3D,
    AppWorkspace,
    Highlight,
    HighlightText,
    Info,
    InfoText,
    GrayText,
    Menu,
    MenuText,
    Window,
    WindowText,
};

// The colour of the application's palette for a role.
QColor SystemColourOf(SystemColour colour);

} // namespace tonewright
