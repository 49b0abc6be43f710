// System colours out of the application's palette.
#include "common/view/system_colours.h"

#include <QApplication>
#include <QPalette>

#include <cstdlib>

namespace tonewright {
namespace {

// The darkest shadow of a palette, which lines are drawn with on the face of buttons. On a face
// that is nearly as dark they would not be seen; then it is the colour of the text there.
QColor DarkShadow(const QPalette &palette) {
    constexpr int LeastDifference = 64; // of 255 steps from black to white
    const QColor face = palette.color(QPalette::Active, QPalette::Button);
    const QColor shadow = palette.color(QPalette::Active, QPalette::Shadow);
    return std::abs(qGray(face.rgb()) - qGray(shadow.rgb())) < LeastDifference
               ? palette.color(QPalette::Active, QPalette::ButtonText)
               : shadow;
}

} // namespace

QColor SystemColourOf(SystemColour colour) {
    const QPalette palette = QApplication::palette();
    switch (colour) {
    case SystemColour::ButtonFace:
        return palette.color(QPalette::Active, QPalette::Button);
    case SystemColour::ButtonShadow:
        return palette.color(QPalette::Active, QPalette::Mid);
    case SystemColour::ButtonText:
        return palette.color(QPalette::Active, QPalette::ButtonText);
    case SystemColour::DarkShadow3D:
        return DarkShadow(palette);
    case SystemColour::Highlight3D:
        return palette.color(QPalette::Active, QPalette::Light);
    case SystemColour::AppWorkspace:
        return palette.color(QPalette::Active, QPalette::Dark);
    case SystemColour::Highlight:
        return palette.color(QPalette::Active, QPalette::Highlight);
    case SystemColour::HighlightText:
        return palette.color(QPalette::Active, QPalette::HighlightedText);
    case SystemColour::Info:
        return palette.color(QPalette::Active, QPalette::ToolTipBase);
    case SystemColour::InfoText:
        return palette.color(QPalette::Active, QPalette::ToolTipText);
    case SystemColour::GrayText:
        return palette.color(QPalette::Disabled, QPalette::Text);
    case SystemColour::Menu:
        return palette.color(QPalette::Active, QPalette::Window);
    case SystemColour::MenuText:
    case SystemColour::WindowText:
        return palette.color(QPalette::Active, QPalette::WindowText);
    case SystemColour::Window:
        return palette.color(QPalette::Active, QPalette::Base);
    }
    return {};
}

} // namespace tonewright
