// The arrow buttons beside a number.
#include "common/view/dialog_controls.h"
#include "common/view/up_down.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QTest>
#include <QToolButton>
#include <QWheelEvent>

#include <string>
#include <utility>

namespace tonewright {
namespace {

class UpDownTest : public testing::Test {
protected:
    void SetUp() override {
        window.resize(200, 60);
        edit.setGeometry(10, 10, 64, 26);
        arrows.setGeometry(74, 10, 20, 26);
        StepNumberIn(&edit, &arrows, {.minimum = 1, .maximum = 32, .start = 10});
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    }

    void Click(const char *arrow) {
        QTest::mouseClick(arrows.findChild<QToolButton *>(arrow), Qt::LeftButton);
    }
    void Turn(QWidget *widget, int angle) {
        QWheelEvent event(QPointF(5, 5), widget->mapToGlobal(QPointF(5, 5)), QPoint(),
                          QPoint(0, angle), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(widget, &event);
    }
    // What stands in the edit after a click, when `text` stood there before.
    std::string After(const char *arrow, const char *text) {
        edit.setText(text);
        Click(arrow);
        return edit.text().toStdString();
    }

    QWidget window;
    QLineEdit edit{&window};
    UpDown arrows{&window};
};

TEST_F(UpDownTest, EachClickIsOneStepAndStaysInTheRange) {
    EXPECT_EQ(After("up", "3"), "4");
    EXPECT_EQ(After("down", "3"), "2");
    EXPECT_EQ(After("up", "31"), "32");
    EXPECT_EQ(After("up", "32"), "32");
    EXPECT_EQ(After("down", "2"), "1");
    EXPECT_EQ(After("down", "1"), "1");
}

TEST_F(UpDownTest, ANumberBeyondTheRangeCountsAsItsNearestEnd) {
    EXPECT_EQ(After("up", "99"), "32");
    EXPECT_EQ(After("down", "99"), "31");
    EXPECT_EQ(After("up", "4294967291"), "32");
    EXPECT_EQ(After("up", "0"), "2");
    EXPECT_EQ(After("down", "0"), "1");
    EXPECT_EQ(After("up", ""), "2");
    EXPECT_EQ(After("up", "many"), "2");
}

TEST_F(UpDownTest, ARangeBelowZeroReadsSignedNumbers) {
    StepNumberIn(&edit, &arrows, {.minimum = -12, .maximum = 12, .start = 0});
    EXPECT_EQ(After("down", "0"), "-1");
    EXPECT_EQ(After("down", "-11"), "-12");
    EXPECT_EQ(After("down", "-12"), "-12");
    EXPECT_EQ(After("up", "-50"), "-11");
}

TEST_F(UpDownTest, AWideRangeDoesNotOverflow) {
    StepNumberIn(&edit, &arrows, {.minimum = -2147483647, .maximum = 2147483647, .start = 0});
    EXPECT_EQ(After("up", "2147483647"), "2147483647");
    EXPECT_EQ(After("down", "-2147483647"), "-2147483647");
}

TEST_F(UpDownTest, TheArrowKeysOfTheEditStep) {
    edit.setText("5");
    QTest::keyClick(&edit, Qt::Key_Up);
    EXPECT_EQ(edit.text(), "6");
    QTest::keyClick(&edit, Qt::Key_Down);
    QTest::keyClick(&edit, Qt::Key_Down);
    EXPECT_EQ(edit.text(), "4");
    QTest::keyClick(&edit, Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(edit.text(), "4");
    QTest::keyClick(&edit, Qt::Key_Left);
    EXPECT_EQ(edit.text(), "4");
}

TEST_F(UpDownTest, EachNotchOfTheWheelIsOneStep) {
    edit.setText("5");
    Turn(&edit, 120);
    EXPECT_EQ(edit.text(), "6");
    Turn(&arrows, -240);
    EXPECT_EQ(edit.text(), "4");
    // Three thirds of a notch, as a fine wheel reports them.
    Turn(&edit, 40);
    Turn(&edit, 40);
    EXPECT_EQ(edit.text(), "4");
    Turn(&edit, 40);
    EXPECT_EQ(edit.text(), "5");
}

TEST_F(UpDownTest, AnArrowThatIsHeldGoesOnStepping) {
    edit.setText("1");
    auto *up = arrows.findChild<QToolButton *>("up");
    up->setAutoRepeatDelay(20);
    up->setAutoRepeatInterval(5);
    QTest::mousePress(up, Qt::LeftButton);
    EXPECT_TRUE(QTest::qWaitFor([&] { return edit.text().toInt() >= 4; }, 5000));
    QTest::mouseRelease(up, Qt::LeftButton);
}

TEST_F(UpDownTest, DisabledOrReadOnlyNothingSteps) {
    edit.setText("5");
    arrows.setEnabled(false);
    Turn(&edit, 120);
    QTest::keyClick(&edit, Qt::Key_Up);
    EXPECT_EQ(edit.text(), "5");
    arrows.setEnabled(true);
    edit.setReadOnly(true);
    Click("up");
    EXPECT_EQ(edit.text(), "5");
    edit.setReadOnly(false);
    edit.setEnabled(false);
    Click("up");
    EXPECT_EQ(edit.text(), "5");
}

TEST_F(UpDownTest, ArrowsWithoutAnEditTellTheirSteps) {
    UpDown lone(&window);
    lone.setGeometry(120, 10, 20, 26);
    lone.show();
    QTest::mouseClick(lone.findChild<QToolButton *>("up"), Qt::LeftButton);
    std::vector<int> steps;
    lone.stepped = [&](int step) { steps.push_back(step); };
    QTest::mouseClick(lone.findChild<QToolButton *>("up"), Qt::LeftButton);
    QTest::mouseClick(lone.findChild<QToolButton *>("down"), Qt::LeftButton);
    EXPECT_EQ(steps, (std::vector{1, -1}));
}

TEST_F(UpDownTest, TheRangeTextIsAProperty) {
    EXPECT_EQ(arrows.RangeText(), "");
    arrows.setProperty("rangeText", "1,32,10");
    EXPECT_EQ(arrows.RangeText(), "1,32,10");
}

TEST_F(UpDownTest, WhatIsTypedIsReadWithinTheRangeOfItsArrows) {
    edit.setObjectName("control_105");
    arrows.setObjectName("control_10105");
    edit.setText("99");
    EXPECT_FALSE(SpinRangeOf(&window, 105));
    EXPECT_EQ(ClampedDlgInt(&window, 105), 0);
    arrows.setProperty("rangeText", "-12,12,3");
    EXPECT_EQ(ClampedDlgInt(&window, 105), 12);
    edit.setText("-99");
    EXPECT_EQ(ClampedDlgInt(&window, 105), -12);
    edit.setText("7 and more");
    EXPECT_EQ(ClampedDlgInt(&window, 105), 7);
    EXPECT_EQ(SpinRangeOf(&window, 105)->start, 3);
    EXPECT_EQ(ClampedDlgInt(&window, 104), 0);
}

TEST(DialogControls, AControlIsFoundByItsNumberAndKind) {
    QWidget page;
    QWidget inner(&page);
    QLineEdit edit(&inner);
    edit.setObjectName("control_118");
    EXPECT_EQ(ControlName(118), "control_118");
    EXPECT_EQ(ControlOf(&page, 118), &edit);
    EXPECT_EQ(ControlOf<QLineEdit>(&page, 118), &edit);
    EXPECT_EQ(ControlOf<QToolButton>(&page, 118), nullptr);
    EXPECT_EQ(ControlOf(&page, 119), nullptr);
}

} // namespace
} // namespace tonewright
