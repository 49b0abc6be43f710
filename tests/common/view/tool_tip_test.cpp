// Tool tips over real controls: when they come and go, where they stand and how they are painted.
#include "common/view/tool_tip.h"

#include "common/settings.h"
#include "common/tip_step.h"
#include "common/view/fonts.h"
#include "support/mouse_buttons.h"
#include "support/pixels.h"

#include <gtest/gtest.h>

#include <QAbstractEventDispatcher>
#include <QAccessible>
#include <QApplication>
#include <QElapsedTimer>
#include <QFontMetrics>
#include <QLineEdit>
#include <QPixmap>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QTest>

#include <optional>

namespace tonewright {
namespace {

constexpr QRgb Paper = 0xFFFFEEBB, Ink = 0xFF0000AA;
constexpr int LongerThanTheDelay = ToolTipDelay + 150; // milliseconds

class ToolTips : public testing::Test {
protected:
    ToolTips() : former(QApplication::palette()) {
        QPalette colours = former;
        colours.setColor(QPalette::ToolTipBase, QColor(Paper));
        colours.setColor(QPalette::ToolTipText, QColor(Ink));
        QApplication::setPalette(colours);
        window.setGeometry(100, 100, 300, 200);
        control = new QPushButton("Open", &window);
        control->setGeometry(40, 30, 100, 50);
        edit = new QLineEdit(&window);
        edit->setGeometry(160, 100, 100, 30);
        RegisterToolTipClass();
        tip = MakeToolTip(control, "Loads a document from disk");
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
        ReleaseMouseButtons(&window);
        MoveTo({290, 190});
    }
    ~ToolTips() override { QApplication::setPalette(former); }

    // The mouse, to a place in the window.
    void MoveTo(QPoint place) {
        QCursor::setPos(window.mapToGlobal(place));
        QTest::mouseMove(window.windowHandle(), place);
        QCoreApplication::processEvents();
    }
    bool TipComes() const {
        return QTest::qWaitFor([this] { return tip->isVisible(); });
    }
    void RestOnControl() {
        MoveTo({60, 50});
        ASSERT_TRUE(TipComes());
    }
    // The timers that run for the tip.
    QList<QAbstractEventDispatcher::TimerInfo> Timers() const {
        return QAbstractEventDispatcher::instance()->registeredTimers(tip);
    }
    static QImage Painted(QWidget &tip) {
        QImage image = EmptyImage(tip.width(), tip.height());
        tip.render(&image, QPoint(), QRegion(), {});
        return image;
    }
    static int WidthOf(const char *text) {
        return QFontMetrics(FontOfHeight("Arial", 16)).horizontalAdvance(text);
    }

    const QPalette former;
    QWidget window;
    QPushButton *control = nullptr;
    QLineEdit *edit = nullptr;
    QWidget *tip = nullptr;
};

TEST_F(ToolTips, AWindowForAControlWithoutTextDoesNotComeIntoBeing) {
    EXPECT_EQ(MakeToolTip(edit, ""), nullptr);
    EXPECT_TRUE(edit->findChildren<QWidget *>("TonewrightTip").isEmpty());
}

TEST_F(ToolTips, WithoutAControlOrForATipThereIsNone) {
    EXPECT_EQ(MakeToolTip(nullptr, "Text"), nullptr);
    ASSERT_NE(tip, nullptr);
    EXPECT_EQ(MakeToolTip(tip, "Text"), nullptr);
}

TEST_F(ToolTips, WithoutARegisteredClassThereAreNone) {
    UnregisterToolTipClass();
    EXPECT_EQ(MakeToolTip(edit, "Text"), nullptr);
    RegisterToolTipClass();
    EXPECT_NE(MakeToolTip(edit, "Text"), nullptr);
}

TEST_F(ToolTips, AreAsLargeAsTheTextAndEightAndThreePixels) {
    ASSERT_NE(tip, nullptr);
    EXPECT_EQ(tip->size(), QSize(WidthOf("Loads a document from disk") + 8, 16 + 3));
    EXPECT_FALSE(tip->isVisible());
    EXPECT_TRUE(tip->isWindow());
}

TEST_F(ToolTips, TheSettingGivesTheHeightOfTheFont) {
    for (const std::uint32_t height : {1u, 16u, 24u, 64u, 0xFFFFFFFFu, 4'000'000u}) {
        TipFont01Size = height;
        RegisterToolTipClass();
        const QWidget *other = MakeToolTip(edit, "Text");
        ASSERT_NE(other, nullptr);
        if (height >= 16 && height <= 64) {
            EXPECT_NEAR(other->height(), static_cast<int>(height) + 3, 1);
        } else {
            EXPECT_LE(other->height(), 19);
            EXPECT_GT(other->height(), 3);
        }
    }
}

TEST_F(ToolTips, ShowAfterTheMouseHasRestedOnTheControl) {
    QElapsedTimer rest;
    rest.start();
    MoveTo({60, 50});
    EXPECT_TRUE(TipComes());
    EXPECT_GE(rest.elapsed(), ToolTipDelay - 13); // the toolkit's timers may be a twentieth early
    // 12 pixels right of the control, a pixel below it.
    EXPECT_EQ(tip->pos(), window.mapToGlobal(QPoint(40 + 12, 30 + 50 + 1)));
    EXPECT_TRUE(window.isActiveWindow());
    MoveTo({70, 55});
    EXPECT_TRUE(tip->isVisible());
}

TEST_F(ToolTips, ATimerOfTheDelayRunsUntilTheyShow) {
    EXPECT_TRUE(Timers().isEmpty());
    MoveTo({60, 50});
    ASSERT_EQ(Timers().size(), 1);
    EXPECT_EQ(Timers()[0].interval, ToolTipDelay);
    ASSERT_TRUE(TipComes());
    EXPECT_TRUE(Timers().isEmpty());
}

TEST_F(ToolTips, AMoveOnTheControlDoesNotBeginTheDelayAnew) {
    MoveTo({60, 50});
    QTest::qWait(100);
    MoveTo({70, 55});
    if (!tip->isVisible()) {
        ASSERT_EQ(Timers().size(), 1);
        auto *dispatcher = QAbstractEventDispatcher::instance();
        EXPECT_LE(dispatcher->remainingTime(Timers()[0].timerId), 200);
    }
    EXPECT_TRUE(TipComes());
}

TEST_F(ToolTips, ShowOnADisabledControlToo) {
    control->setEnabled(false);
    RestOnControl();
}

TEST_F(ToolTips, HideWhenTheMouseLeaves) {
    RestOnControl();
    MoveTo({200, 20});
    EXPECT_FALSE(tip->isVisible());
}

TEST_F(ToolTips, AMouseThatGoesBeforeTheDelayShowsNothing) {
    MoveTo({60, 50});
    MoveTo({200, 20});
    QTest::qWait(LongerThanTheDelay);
    EXPECT_FALSE(tip->isVisible());
}

TEST_F(ToolTips, AMouseOnTheEdgeShowsNothing) {
    MoveTo({40, 50});
    QTest::qWait(LongerThanTheDelay);
    EXPECT_FALSE(tip->isVisible());
}

TEST_F(ToolTips, HideAtAnyButtonAndKeyAndTurnOfTheWheel) {
    edit->setFocus();
    const std::vector<std::function<void()>> messages = {
        [&] { QTest::mouseClick(control, Qt::LeftButton); },
        [&] { QTest::mouseClick(control, Qt::RightButton); },
        [&] { QTest::keyClick(edit, Qt::Key_A); },
        [&] { QTest::keyClick(&window, Qt::Key_Shift); },
        [&] {
            QWheelEvent turn(QPointF(10, 10), control->mapToGlobal(QPointF(10, 10)), {}, {0, 120},
                             Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(control, &turn);
        },
    };
    for (std::size_t index = 0; index < messages.size(); ++index) {
        MoveTo({200, 20});
        RestOnControl();
        messages[index]();
        EXPECT_FALSE(tip->isVisible()) << index;
    }
    EXPECT_EQ(edit->text(), "a"); // what hides a tip is not taken away
}

TEST_F(ToolTips, HideAtThePressOfAShortcut) {
    const QShortcut shortcut(Qt::Key_F1, &window);
    int presses = 0;
    QObject::connect(&shortcut, &QShortcut::activated, [&] { ++presses; });
    RestOnControl();
    QTest::keyPress(edit, Qt::Key_F1);
    EXPECT_FALSE(tip->isVisible());
    EXPECT_EQ(presses, 1);
    QTest::keyRelease(edit, Qt::Key_F1);
}

TEST_F(ToolTips, AKeyStopsTheTimer) {
    MoveTo({60, 50});
    QTest::keyClick(edit, Qt::Key_A);
    QTest::qWait(LongerThanTheDelay);
    EXPECT_FALSE(tip->isVisible());
}

TEST_F(ToolTips, AMoveWithTheButtonDownStartsNothing) {
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, {60, 50});
    QCursor::setPos(window.mapToGlobal(QPoint(62, 51)));
    QMouseEvent move(QEvent::MouseMove, QPointF(22, 21), control->mapToGlobal(QPointF(22, 21)),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(control, &move);
    QTest::qWait(LongerThanTheDelay);
    EXPECT_FALSE(tip->isVisible());
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, {62, 51});
}

TEST_F(ToolTips, ABoxThatComesUpHidesThem) {
    RestOnControl();
    QWidget box(&window, Qt::Dialog);
    box.setWindowModality(Qt::ApplicationModal);
    box.show();
    QCoreApplication::processEvents();
    EXPECT_FALSE(tip->isVisible());
}

TEST_F(ToolTips, StayOnTheScreen) {
    const QRect screen = window.screen()->geometry();
    window.move(screen.right() - 160, screen.bottom() - 81);
    MoveTo({60, 50});
    MoveTo({61, 50});
    ASSERT_TRUE(TipComes());
    const QPoint place = window.mapToGlobal(QPoint(40 + 12, 30 + 50 + 1));
    EXPECT_LE(tip->geometry().right(), screen.right());
    EXPECT_GT(tip->geometry().right(), screen.right() - 8);
    EXPECT_LE(tip->geometry().bottom(), screen.bottom());
    EXPECT_GT(tip->geometry().bottom(), screen.bottom() - 8);
    EXPECT_EQ((place.x() - tip->x()) % 8, 0);
    EXPECT_EQ((place.y() - tip->y()) % 8, 0);
}

TEST_F(ToolTips, GoWithTheirControl) {
    RestOnControl();
    const QPointer<QWidget> watched = tip;
    delete control;
    EXPECT_EQ(watched, nullptr);
    MoveTo({62, 52});
    QTest::keyClick(edit, Qt::Key_A);
    EXPECT_EQ(edit->text(), "a");
}

TEST_F(ToolTips, HaveABlackFrameAndADarkerShadowRightAndBelow) {
    const QImage image = Painted(*tip);
    const int right = image.width() - 1, bottom = image.height() - 1;
    EXPECT_TRUE(IsAll(image, QRect(0, 0, right, 1), Black));
    EXPECT_TRUE(IsAll(image, QRect(0, 0, 1, bottom), Black));
    EXPECT_TRUE(IsAll(image, QRect(right - 1, 0, 1, bottom), Black));
    EXPECT_TRUE(IsAll(image, QRect(0, bottom - 1, right, 1), Black));
    const QRgb shade = image.pixel(right, bottom);
    EXPECT_LT(qGray(shade), qGray(Paper));
    EXPECT_NE(shade, Black);
    EXPECT_TRUE(IsAll(image, QRect(0, bottom, right + 1, 1), shade));
    EXPECT_TRUE(IsAll(image, QRect(right, 0, 1, bottom + 1), shade));
    EXPECT_EQ(image.pixel(1, 1), Paper);
}

TEST_F(ToolTips, WriteTheTextInTheMiddle) {
    const QWidget *plain = MakeToolTip(edit, "HHHH");
    ASSERT_NE(plain, nullptr);
    const QImage image = Painted(const_cast<QWidget &>(*plain));
    const QRect inner(1, 1, image.width() - 3, image.height() - 3);
    EXPECT_TRUE(HasPixel(image, inner, Ink));
    const QRect ink = InkOf(image, inner, Paper);
    EXPECT_NEAR(ink.left(), image.width() - 1 - ink.right(), 2);
}

TEST_F(ToolTips, APictureStandsAboveTheText) {
    QWidget *other = MakeToolTip(edit, "HH");
    ASSERT_NE(other, nullptr);
    const QSize plain = other->size();
    QPixmap picture(120, 40);
    picture.fill(QColor(Qt::green));
    SetToolTipPicture(*other, picture);
    EXPECT_EQ(other->size(), QSize(127, plain.height() + 40 + 8));
    const QImage image = Painted(*other);
    EXPECT_TRUE(IsAll(image, QRect(3, 3, 120, 40), 0xFF00FF00));
    EXPECT_EQ(image.pixel(2, 3), Paper);
    EXPECT_EQ(image.pixel(60, 2), Paper);
    const QRect below(1, 43, 124, other->height() - 45);
    const QRect belowNothing(1, 1, plain.width() - 3, 16);
    EXPECT_EQ(InkOf(image, below, Paper).top(),
              InkOf(Painted(*MakeToolTip(edit, "HH")), belowNothing, Paper).top() + 40 + 8);
}

TEST_F(ToolTips, LetTheMouseThrough) {
    EXPECT_TRUE(tip->windowFlags().testFlag(Qt::WindowTransparentForInput));
    EXPECT_TRUE(tip->windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
    EXPECT_TRUE(tip->testAttribute(Qt::WA_TransparentForMouseEvents));
}

TEST_F(ToolTips, BelongToTheWindowOfTheirControl) {
    RestOnControl();
    ASSERT_NE(tip->windowHandle(), nullptr);
    EXPECT_EQ(tip->windowHandle()->transientParent(), window.windowHandle());
    const QAccessibleInterface *seen = QAccessible::queryAccessibleInterface(tip);
    ASSERT_NE(seen, nullptr);
    EXPECT_EQ(seen->role(), QAccessible::ToolTip);
    EXPECT_EQ(seen->text(QAccessible::Name), "Loads a document from disk");
}

} // namespace
} // namespace tonewright
