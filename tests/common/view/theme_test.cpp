// Measures, pictures and buttons of the look.
#include "common/desktop.h"
#include "common/settings.h"
#include "common/view/theme.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QPushButton>
#include <QTest>

namespace tonewright {
namespace {

bool HasInk(const QPixmap &picture) {
    const QImage image = picture.toImage();
    QImage empty(image.size(), image.format());
    empty.fill(Qt::transparent);
    return image.copy() != empty.copy();
}

QImage DrawnButton(unsigned state) {
    QImage image(48, 48, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    ThemeDrawButton(painter, image.rect(), state, PictureOf(50, {32, 32}));
    return image;
}

TEST(Theme, MetricsHaveTheirValuesAndOthersAre0) {
    const std::pair<int, int> metrics[] = {{1, 56}, {2, 48}, {3, 48},  {4, 0},   {5, 16}, {6, 8},
                                           {7, 4},  {8, 4},  {17, 96}, {18, 96}, {19, 0}, {-1, 0}};
    for (const auto &[number, pixels] : metrics) {
        EXPECT_EQ(ThemeGetMetric(number), pixels) << number;
    }
}

TEST(Theme, EveryPictureOfTheToolBarIsThere) {
    for (const std::uint32_t number : {50u, 51u, 54u, 55u, 56u, 58u, 59u, 60u, 103u, 9003u}) {
        EXPECT_FALSE(PictureSize(number).isEmpty()) << number;
        EXPECT_TRUE(HasInk(PictureOf(number, {32, 32}))) << number;
    }
    EXPECT_FALSE(PictureSize(ApplicationPicture).isEmpty());
}

TEST(Theme, APictureHasItsSizeInLogicalPixels) {
    EXPECT_EQ(PictureOf(50, {32, 24}).size(), QSize(32, 24));
    const QPixmap fine = PictureOf(50, {32, 24}, 2.0);
    EXPECT_EQ(fine.size(), QSize(64, 48));
    EXPECT_EQ(fine.deviceIndependentSize(), QSizeF(32, 24));
}

TEST(Theme, APictureKeepsItsProportions) {
    // A square picture leaves the left and the right third of a wide rectangle empty.
    const QImage image = PictureOf(ApplicationPicture, {300, 100}).toImage();
    EXPECT_EQ(image.pixelColor(50, 50).alpha(), 0);
    EXPECT_EQ(image.pixelColor(250, 50).alpha(), 0);
    EXPECT_EQ(image.pixelColor(110, 50).alpha(), 255);
}

TEST(Theme, ANumberWithoutAPictureGivesAGreyTile) {
    EXPECT_TRUE(PictureSize(12345).isEmpty());
    const QColor tile = PictureOf(12345, {40, 40}).toImage().pixelColor(20, 20);
    EXPECT_EQ(tile.alpha(), 255);
    EXPECT_EQ(tile.red(), tile.green());
    EXPECT_EQ(tile.green(), tile.blue());
}

TEST(Theme, SenselessSizesGiveASmallPicture) {
    EXPECT_EQ(PictureOf(50, {0, -5}).size(), QSize(1, 1));
    EXPECT_EQ(PictureOf(50, {10, 10}, 0).size(), QSize(10, 10));
    EXPECT_LE(PictureOf(12345, {1 << 30, 1}).width(), 4096);
}

TEST(Theme, ThePictureOfADialogIsDrawnIntoItsRectangle) {
    QImage image(96, 96, QImage::Format_RGB32);
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        ThemeDrawPicture(painter, ApplicationPicture, QRect(0, 0, 48, 48));
    }
    EXPECT_NE(image.pixelColor(24, 3), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(60, 60), QColor(Qt::white));
}

TEST(Theme, EachStateOfAToolButtonLooksDifferent) {
    const unsigned states[] = {0, ButtonHover, ButtonPressed, ButtonDisabled, ButtonFocus};
    for (const unsigned first : states) {
        for (const unsigned second : states) {
            if (first != second) {
                EXPECT_NE(DrawnButton(first), DrawnButton(second)) << first << " " << second;
            }
        }
    }
    EXPECT_EQ(DrawnButton(ButtonDisabled), DrawnButton(ButtonDisabled | ButtonHover));
}

TEST(Theme, TheBackgroundOfTheToolBarFillsItsRectangleOnly) {
    QImage image(20, 80, QImage::Format_RGB32);
    image.fill(Qt::magenta);
    {
        QPainter painter(&image);
        ThemeDrawToolbarBackground(painter, QRect(0, 0, 20, 56));
    }
    EXPECT_NE(image.pixelColor(10, 0), QColor(Qt::magenta));
    EXPECT_NE(image.pixelColor(19, 55), QColor(Qt::magenta));
    EXPECT_EQ(image.pixelColor(10, 56), QColor(Qt::magenta));
}

TEST(SoftButton, ASoftButtonPaintsItselfAndStillClicks) {
    QWidget window;
    QPushButton soft("Dismiss", &window);
    soft.setGeometry(0, 40, 100, 30);
    soft.setFocusPolicy(Qt::NoFocus);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    const QImage before = soft.grab().toImage();
    SoftButtons = 1;
    MakeSoftButton(&soft);
    MakeSoftButton(&soft);
    EXPECT_EQ(soft.findChildren<QObject *>().size(), 1);
    const QImage atRest = soft.grab().toImage();
    EXPECT_NE(atRest, before);

    int clicks = 0;
    QObject::connect(&soft, &QPushButton::clicked, [&] { ++clicks; });
    QTest::mousePress(&soft, Qt::LeftButton);
    const QImage pressed = soft.grab().toImage();
    QTest::mouseRelease(&soft, Qt::LeftButton);
    EXPECT_EQ(clicks, 1);
    soft.setEnabled(false);
    const QImage disabled = soft.grab().toImage();
    EXPECT_NE(pressed, atRest);
    EXPECT_NE(disabled, atRest);
    EXPECT_NE(disabled, pressed);
}

TEST(SoftButton, WithTheSettingNoneNothingIsReplaced) {
    SoftButtons = 0;
    QPushButton button("Dismiss");
    MakeSoftButton(&button);
    MakeSoftButton(nullptr);
    EXPECT_TRUE(button.children().isEmpty());
    SoftButtons = 1;
}

QImage SoftButtonImage(std::uint32_t style, bool pressed) {
    SoftButtons = style;
    QPushButton button("Dismiss");
    button.resize(100, 30);
    MakeSoftButton(&button);
    button.setDown(pressed);
    SoftButtons = 1;
    return button.grab().toImage();
}

QImage SampleImage(std::uint32_t style) {
    QImage image(100, 30, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    DrawSoftButtonSample(painter, image.rect(), style, "Sample");
    return image;
}

TEST(SoftButton, EachStyleHasALookOfItsOwnAtRestAndPressed) {
    for (const std::uint32_t first : {0u, 1u, 2u, 3u}) {
        EXPECT_NE(SoftButtonImage(first, true), SoftButtonImage(first, false)) << first;
        for (const std::uint32_t second : {0u, 1u, 2u, 3u}) {
            if (first != second) {
                EXPECT_NE(SoftButtonImage(first, false), SoftButtonImage(second, false))
                    << first << " " << second;
                EXPECT_NE(SoftButtonImage(first, true), SoftButtonImage(second, true))
                    << first << " " << second;
            }
        }
    }
}

TEST(SoftButton, AStyleThatDoesNotExistIsDrawnAsSoft) {
    EXPECT_EQ(SoftButtonImage(77, false), SoftButtonImage(1, false));
    EXPECT_EQ(SoftButtonImage(0xFFFFFFFF, true), SoftButtonImage(1, true));
}

TEST(SoftButton, TheCornersOfAWedgeAreCutOff) {
    const auto corner = [](std::uint32_t style, int distance) {
        return SampleImage(style).pixelColor(distance, distance);
    };
    EXPECT_EQ(corner(3, 2), QColor(Qt::white));
    EXPECT_EQ(corner(1, 0), QColor(Qt::white));
    EXPECT_NE(corner(1, 2), QColor(Qt::white));
    EXPECT_NE(corner(2, 0), QColor(Qt::white));
}

TEST(SoftButton, AButtonKeepsTheLookThatItWasMadeWith) {
    SoftButtons = 2;
    QPushButton button("Dismiss");
    button.resize(100, 30);
    MakeSoftButton(&button);
    SoftButtons = 3;
    const QImage after = button.grab().toImage();
    EXPECT_EQ(after, SoftButtonImage(2, false));
    EXPECT_NE(after, SoftButtonImage(3, false));
}

TEST(SoftButton, ASampleShowsEachStyleInsideItsRectangle) {
    for (const std::uint32_t first : {0u, 1u, 2u, 3u}) {
        for (const std::uint32_t second : {0u, 1u, 2u, 3u}) {
            if (first != second) {
                EXPECT_NE(SampleImage(first), SampleImage(second)) << first << " " << second;
            }
        }
        QImage image(60, 60, QImage::Format_RGB32);
        image.fill(Qt::magenta);
        {
            QPainter painter(&image);
            DrawSoftButtonSample(painter, QRect(10, 15, 40, 30), first, "");
        }
        EXPECT_NE(image.pixelColor(30, 30), QColor(Qt::magenta)) << first;
        for (int x = 0; x < 60; ++x) {
            EXPECT_EQ(image.pixelColor(x, 14), QColor(Qt::magenta)) << first;
            EXPECT_EQ(image.pixelColor(x, 45), QColor(Qt::magenta)) << first;
        }
    }
}

} // namespace
} // namespace tonewright
