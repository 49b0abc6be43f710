// System colours out of palettes of another kind.
#include "common/view/system_colours.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPalette>

namespace tonewright {
namespace {

// A palette with a face of buttons, and the text and the shadow on it.
void UsePalette(const char *face, const char *text, const char *shadow) {
    QPalette palette = QApplication::palette();
    palette.setColor(QPalette::Button, QColor(face));
    palette.setColor(QPalette::ButtonText, QColor(text));
    palette.setColor(QPalette::Shadow, QColor(shadow));
    QApplication::setPalette(palette);
}

class SystemColours : public testing::Test {
protected:
    void TearDown() override { QApplication::setPalette(former); }

    const QPalette former = QApplication::palette();
};

TEST_F(SystemColours, ADarkShadowIsThatOfThePaletteOnABrightFace) {
    UsePalette("#efefef", "#000000", "#767676");
    EXPECT_EQ(SystemColourOf(SystemColour::DarkShadow3D), QColor("#767676"));
}

TEST_F(SystemColours, OnADarkFaceItIsTheColourOfText) {
    UsePalette("#2d2d2d", "#e6e6e6", "#000000");
    EXPECT_EQ(SystemColourOf(SystemColour::DarkShadow3D), QColor("#e6e6e6"));
    EXPECT_EQ(SystemColourOf(SystemColour::ButtonFace), QColor("#2d2d2d"));
}

} // namespace
} // namespace tonewright
