// The looks of push buttons.
#include "common/settings.h"
#include "common/view/soft_button.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <QPushButton>
#include <QTest>

namespace tonewright {
namespace {

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
