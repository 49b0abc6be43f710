// Drop-down lists that are filled from one text, and the wheel over them.
#include "common/view/drop_down.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <string>

namespace tonewright {
namespace {

TEST(FillComboFromList, ReplacesTheItemsAndSelectsNone) {
    QComboBox list;
    list.addItems({"former", "items"});
    EXPECT_EQ(FillComboFromList(&list, "Channel 1;Channel 2;Off"), 3);
    ASSERT_EQ(list.count(), 3);
    EXPECT_EQ(list.itemText(0).toStdString(), "Channel 1");
    EXPECT_EQ(list.itemText(2).toStdString(), "Off");
    EXPECT_EQ(list.currentIndex(), -1);
}

TEST(FillComboFromList, DropsEmptyItems) {
    QComboBox list;
    EXPECT_EQ(FillComboFromList(&list, ";;-Lin;;-Exp;"), 2);
    EXPECT_EQ(list.itemText(0).toStdString(), "-Lin");
    EXPECT_EQ(list.itemText(1).toStdString(), "-Exp");
    EXPECT_EQ(FillComboFromList(&list, ""), 0);
    EXPECT_EQ(list.count(), 0);
}

TEST(FillComboFromList, CutsAnItemAt260Bytes) {
    QComboBox list;
    EXPECT_EQ(FillComboFromList(&list, (std::string(300, 'x') + ";y").c_str()), 2);
    EXPECT_EQ(list.itemText(0).size(), 260);
    EXPECT_EQ(list.itemText(1).toStdString(), "y");
}

class Around : public QWidget {
public:
    int notches = 0;

protected:
    void wheelEvent(QWheelEvent *event) override {
        ++notches;
        event->accept();
    }
};

class WheelOverListTest : public testing::Test {
protected:
    void SetUp() override {
        auto *column = new QVBoxLayout(&window);
        column->addWidget(&other);
        column->addWidget(&list);
        FillComboFromList(&list, "one;two;three");
        list.setCurrentIndex(0);
        TakeWheelWithFocusOnly(&list);
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    // A notch of the wheel downwards over the list.
    void TurnDown() {
        const QPointF place = list.mapTo(&window, QPoint(5, 5));
        QWheelEvent event(place, window.mapToGlobal(place), {}, {0, -120}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QSpontaneKeyEvent::setSpontaneous(&event); // or it would not go on to what is around
        qApp->notify(window.windowHandle(), &event);
    }

    Around window;
    QLineEdit other;
    QComboBox list;
};

TEST_F(WheelOverListTest, ChangesAListThatHasTheFocus) {
    list.setFocus();
    TurnDown();
    EXPECT_EQ(list.currentIndex(), 1);
    EXPECT_EQ(window.notches, 0);
}

TEST_F(WheelOverListTest, GoesToWhatIsAroundAListWithoutTheFocusAndGivesItNone) {
    other.setFocus();
    TurnDown();
    EXPECT_EQ(list.currentIndex(), 0);
    EXPECT_EQ(window.notches, 1);
    EXPECT_TRUE(other.hasFocus());
}

} // namespace
} // namespace tonewright
