// The looks of push buttons.
#include "common/settings.h"
#include "common/view/soft_button.h"
#include "support/pixels.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QDialog>
#include <QFont>
#include <QIcon>
#include <QImage>
#include <QPainter>
#include <QPushButton>
#include <QTest>

#include <algorithm>
#include <cstdlib>

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

TEST(SoftButton, ASoftOneHasABroadLightEdgeAboveAndOnTheLeftAndADarkLineAcross) {
    const QImage image = SampleImage(SoftButtonSoft);
    const auto grey = [&](int x, int y) { return qGray(image.pixel(x, y)); };
    const int face = grey(15, 15), right = image.width() - 1, bottom = image.height() - 1;
    for (const int inset : {1, 2}) {
        EXPECT_GT(grey(50, inset), face) << inset;
        EXPECT_GT(grey(inset, 15), face) << inset;
    }
    EXPECT_EQ(grey(50, 3), face);
    EXPECT_EQ(grey(3, 15), face);
    EXPECT_LT(grey(50, bottom - 1), face);
    EXPECT_LT(grey(right - 1, 15), face);
    EXPECT_EQ(grey(50, bottom - 2), face);
    EXPECT_EQ(grey(right - 2, 15), face);
}

TEST(SoftButton, LightAndShadeAreToldApartOnADarkPaletteToo) {
    QPalette dark;
    dark.setColor(QPalette::Button, QColor(53, 53, 53));
    dark.setColor(QPalette::Light, QColor(55, 55, 55)); // hardly brighter than the face
    dark.setColor(QPalette::ButtonText, Qt::white);
    for (const std::uint32_t style : {SoftButtonSoft, SoftButtonFlex}) {
        SoftButtons = style;
        QPushButton button;
        button.setPalette(dark);
        button.resize(100, 30);
        MakeSoftButton(&button);
        const QImage image = button.grab().toImage();
        const int face = qGray(image.pixel(50, 15));
        EXPECT_GE(qGray(image.pixel(50, 2)), face + 16) << style;
        const int shade = style == SoftButtonFlex ? 3 : 28;
        EXPECT_LE(qGray(image.pixel(50, shade)), face - 4) << style;
    }
    SoftButtons = 1;
}

TEST(SoftButton, AFlexOneHasADoubleFrameTwoPixelsInThatTurnsInsideOut) {
    const QImage rest = SoftButtonImage(SoftButtonFlex, false),
                 pressed = SoftButtonImage(SoftButtonFlex, true);
    const auto grey = [](const QImage &image, int y) { return qGray(image.pixel(20, y)); };
    EXPECT_GT(grey(rest, 2), grey(rest, 3));
    EXPECT_LT(grey(pressed, 2), grey(pressed, 3));
    EXPECT_EQ(grey(rest, 4), grey(rest, 10));
    EXPECT_EQ(grey(rest, 1), grey(rest, 4)); // the face, around the frame too
}

TEST(SoftButton, TheCaptionMovesDownTwoPixelsWhilePressed) {
    for (const std::uint32_t style : {SoftButtonSoft, SoftButtonFlex, SoftButtonWedge}) {
        SoftButtons = style;
        int top[2];
        for (const bool pressed : {false, true}) {
            QPushButton button("HHHH");
            QPalette colours = button.palette();
            colours.setColor(QPalette::ButtonText, Qt::red);
            button.setPalette(colours);
            // So large that a stroke fills pixels, whether it is put on their edges or not.
            QFont font = button.font();
            font.setPixelSize(18);
            font.setBold(true);
            button.setFont(font);
            button.resize(100, 40);
            MakeSoftButton(&button);
            button.setDown(pressed);
            const QImage image = button.grab().toImage();
            int row = 8;
            while (row < 32 && !HasPixel(image, QRect(20, row, 60, 1), 0xFFFF0000)) {
                ++row;
            }
            top[pressed] = row;
        }
        EXPECT_EQ(top[1], top[0] + 2) << style;
    }
    SoftButtons = 1;
}

// A button of a style in a window that has the keyboard.
struct ButtonInWindow {
    explicit ButtonInWindow(std::uint32_t style, const QString &text = "&Audition") {
        SoftButtons = style;
        button.setText(text);
        button.setGeometry(10, 10, 100, 30);
        other.setGeometry(10, 50, 100, 30);
        MakeSoftButton(&button);
        SoftButtons = 1;
        QObject::connect(&button, &QPushButton::clicked, [this] { ++clicks; });
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        other.setFocus();
    }

    QWidget window;
    QPushButton button{&window}, other{&window};
    int clicks = 0;
};
constexpr std::uint32_t DrawnStyles[] = {SoftButtonSoft, SoftButtonFlex, SoftButtonWedge};

// What tells the default button with the keyboard from the default button without it.
TEST(SoftButton, TheFocusIsADottedFrameInsideTheFace) {
    QPalette dark(QColor(50, 50, 50), QColor(50, 50, 50));
    dark.setColor(QPalette::ButtonText, Qt::white);
    for (const QPalette &palette : {QApplication::palette(), dark}) {
        for (const std::uint32_t style : DrawnStyles) {
            const int inset = style == SoftButtonSoft ? 4 : style == SoftButtonFlex ? 5 : 3;
            ButtonInWindow shown(style);
            shown.button.setPalette(palette);
            shown.button.setDefault(true);
            const QImage without = shown.button.grab().toImage();
            shown.button.setFocus();
            const QImage with = shown.button.grab().toImage();
            const int right = with.width() - 1 - inset, bottom = with.height() - 1 - inset;
            const auto dots = [&](QPoint from, QPoint step, int count) {
                int seen = 0;
                for (QPoint at = from; count > 0; at += step, --count) {
                    seen += std::abs(qGray(with.pixel(at)) - qGray(without.pixel(at))) >= 96;
                }
                return seen;
            };
            EXPECT_NEAR(dots({20, inset}, {1, 0}, 60), 30, 3) << style;
            EXPECT_NEAR(dots({20, bottom}, {1, 0}, 60), 30, 3) << style;
            EXPECT_NEAR(dots({inset, 10}, {0, 1}, 10), 5, 1) << style;
            EXPECT_NEAR(dots({right, 10}, {0, 1}, 10), 5, 1) << style;
            // Edge and lines of the look stay, and so does all that is inside the frame.
            for (int y = 0; y < with.height(); ++y) {
                for (int x = 0; x < with.width(); ++x) {
                    const int edge = std::min({x, y, with.width() - 1 - x, with.height() - 1 - y});
                    if (edge < inset || edge > inset + 3) {
                        EXPECT_EQ(with.pixel(x, y), without.pixel(x, y))
                            << style << ": " << x << ", " << y;
                    }
                }
            }
            shown.button.setDown(true);
            EXPECT_NE(shown.button.grab().toImage(), with) << style;
        }
    }
}

TEST(SoftButton, TheFocusLeavesTheInkOfACaptionThatReachesIt) {
    for (const std::uint32_t style : DrawnStyles) {
        ButtonInWindow shown(style, "W\nW");
        QPalette colours = shown.button.palette();
        colours.setColor(QPalette::ButtonText, Qt::white); // what differs is darker
        shown.button.setPalette(colours);
        const QImage without = shown.button.grab().toImage();
        shown.button.setFocus();
        const QImage with = shown.button.grab().toImage();
        int ink = 0;
        for (int y = 3; y < 7; ++y) {
            for (int x = 30; x < 70; ++x) {
                if (without.pixel(x, y) == White) {
                    ++ink;
                    EXPECT_EQ(with.pixel(x, y), White) << style << ": " << x << ", " << y;
                }
            }
        }
        EXPECT_GT(ink, 0) << style;
    }
}

TEST(SoftButton, TheDefaultButtonIsSeenInEachStyle) {
    for (const std::uint32_t style : DrawnStyles) {
        ButtonInWindow shown(style);
        const QImage without = shown.button.grab().toImage();
        shown.button.setDefault(true);
        EXPECT_NE(shown.button.grab().toImage(), without) << style;
    }
}

TEST(SoftButton, SpaceEnterAndTheLetterOfTheCaptionPress) {
    for (const std::uint32_t style : DrawnStyles) {
        ButtonInWindow shown(style);
        QTest::keyClick(&shown.other, Qt::Key_A, Qt::AltModifier);
        QTest::qWait(150); // it is seen pressed for a moment
        EXPECT_EQ(shown.clicks, 1) << style;
        shown.button.setFocus();
        QTest::keyClick(&shown.button, Qt::Key_Space);
        EXPECT_EQ(shown.clicks, 2) << style;
        QDialog dialog;
        SoftButtons = style;
        QPushButton inDialog("Done", &dialog);
        MakeSoftButton(&inDialog);
        SoftButtons = 1;
        int clicks = 0;
        QObject::connect(&inDialog, &QPushButton::clicked, [&] { ++clicks; });
        dialog.show();
        inDialog.setFocus();
        QTest::keyClick(&inDialog, Qt::Key_Return);
        QTest::keyClick(&inDialog, Qt::Key_Enter);
        EXPECT_EQ(clicks, 2) << style;
    }
}

TEST(SoftButton, ALongCaptionEndsBeforeTheEdge) {
    for (const std::uint32_t style : DrawnStyles) {
        SoftButtons = style;
        const auto image = [](const QString &text) {
            QPushButton button(text);
            button.resize(100, 30);
            MakeSoftButton(&button);
            return button.grab().toImage();
        };
        const QImage empty = image(""), full = image("WWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWW");
        EXPECT_NE(full, empty);
        EXPECT_EQ(full.copy(0, 0, 4, 30), empty.copy(0, 0, 4, 30)) << style;
        EXPECT_EQ(full.copy(96, 0, 4, 30), empty.copy(96, 0, 4, 30)) << style;
    }
    SoftButtons = 1;
}

// How many pixels a red caption takes from its left to its right end.
int WidthOfRed(const QImage &image) {
    int first = image.width(), last = -1;
    for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < image.height(); ++y) {
            const QRgb pixel = image.pixel(x, y);
            if (qRed(pixel) - qGreen(pixel) > 150) {
                first = std::min(first, x);
                last = x;
            }
        }
    }
    return last - first + 1;
}

TEST(SoftButton, ACaptionIsWholeAtTheSizeThatTheToolkitGivesIt) {
    constexpr int LargeFont = 16; // points
    for (const std::uint32_t style : DrawnStyles) {
        SoftButtons = style;
        const auto width = [](int more) {
            QPushButton button("Cancellation");
            QFont font = button.font();
            font.setPointSize(LargeFont);
            button.setFont(font);
            QPalette colours = button.palette();
            colours.setColor(QPalette::ButtonText, Qt::red);
            button.setPalette(colours);
            button.resize(button.sizeHint() + QSize(more, 0));
            MakeSoftButton(&button);
            return WidthOfRed(button.grab().toImage());
        };
        EXPECT_GT(width(40), 60) << style;
        EXPECT_EQ(width(0), width(40)) << style;
    }
    SoftButtons = 1;
}

TEST(SoftButton, AnIconStandsBesideTheCaption) {
    QPixmap picture(16, 16);
    picture.fill(QColor(Qt::green));
    for (const std::uint32_t style : DrawnStyles) {
        SoftButtons = style;
        QPushButton button(QIcon(picture), "Open");
        button.resize(120, 30);
        MakeSoftButton(&button);
        const QImage image = button.grab().toImage();
        EXPECT_TRUE(HasPixel(image, QRect(0, 0, 60, 30), 0xFF00FF00)) << style;
        EXPECT_FALSE(HasPixel(image, QRect(70, 0, 50, 30), 0xFF00FF00)) << style;
    }
    SoftButtons = 1;
}

TEST(SoftButton, AScreenReaderFindsAButtonAndPressesIt) {
    for (const std::uint32_t style : DrawnStyles) {
        ButtonInWindow shown(style);
        QAccessibleInterface *seen = QAccessible::queryAccessibleInterface(&shown.button);
        ASSERT_NE(seen, nullptr);
        EXPECT_EQ(seen->role(), QAccessible::PushButton);
        EXPECT_EQ(seen->text(QAccessible::Name), "Audition");
        ASSERT_NE(seen->actionInterface(), nullptr);
        seen->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        EXPECT_TRUE(QTest::qWaitFor([&] { return shown.clicks == 1; })) << style;
    }
}

TEST(SoftButton, AButtonThatWasMeasuredBeforeItCameIntoItsDialogIsDrawn) {
    QPushButton button("One");
    EXPECT_GT(button.sizeHint().width(), 0);
    QDialog dialog;
    button.setParent(&dialog);
    dialog.show();
    EXPECT_NE(button.findChild<QObject *>("SoftButtonPainter"), nullptr);
    button.setParent(nullptr);
}

TEST(SoftButton, TheButtonsOfADialogAreDrawnAndThoseOfAnotherWindowAreNot) {
    const auto isSoft = [](const QPushButton &button) {
        return button.findChild<QObject *>("SoftButtonPainter") != nullptr;
    };
    for (const std::uint32_t style : {0u, 1u, 2u, 3u}) {
        SoftButtons = style;
        QDialog dialog;
        QWidget page(&dialog), window;
        QPushButton onPage("One", &page), elsewhere("Two", &window);
        dialog.show();
        window.show();
        EXPECT_EQ(isSoft(onPage), style != 0) << style;
        EXPECT_FALSE(isSoft(elsewhere)) << style;
        QPushButton late("Three", &dialog);
        late.show();
        EXPECT_EQ(isSoft(late), style != 0) << style;
    }
    SoftButtons = 1;
}

} // namespace
} // namespace tonewright
