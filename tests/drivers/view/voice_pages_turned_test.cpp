// What the controls of a page tell while the sheet turns to another one.
#include "common/settings.h"
#include "common/view/dialog_controls.h"
#include "drivers/dx7/view/voice_editor.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/view/voice_editor.h"
#include "support/bank_bytes.h"
#include "support/modal_box.h"
#include "support/reface_bytes.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QToolButton>
#include <QWheelEvent>

namespace {

using namespace tonewright;

QTabWidget *TabsOf(QDialog &sheet) {
    return sheet.findChild<QTabWidget *>();
}

void ClickTab(QDialog &sheet, int index) {
    QTabBar *bar = TabsOf(sheet)->tabBar();
    QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, bar->tabRect(index).center());
    ASSERT_EQ(TabsOf(sheet)->currentIndex(), index);
}

template <typename Widget> Widget *OnPage(QDialog &sheet, std::uint32_t number) {
    return ControlOf<Widget>(TabsOf(sheet)->currentWidget(), number);
}

TEST(TurnedPages, TheLastRowOfAnOperatorsPageHasTheFocusAgainWhenThePageIsShownAgain) {
    VoiceObject voice{TestRefaceBlock(0)};
    const VoiceObject before = voice;
    WithModalBox([&] { RefaceEditVoice(nullptr, voice, {}, 0); },
                 [](QDialog &sheet) {
                     ClickTab(sheet, 1);
                     QTest::mouseClick(OnPage<QLineEdit>(sheet, 212), Qt::LeftButton);
                     ClickTab(sheet, 0);
                     ClickTab(sheet, 1);
                     ClickTab(sheet, 0);
                     QTest::mouseClick(ControlOf<QWidget>(&sheet, 2), Qt::LeftButton);
                 });
    EXPECT_EQ(voice, before);
}

TEST(TurnedPages, AnArrowThatIsHeldWhileThePageTurnsStepsNoRowOfTheNewPage) {
    VoiceObject voice = MakeVoiceObject(Dx7DriverId, TestUnpackedVoice());
    WithModalBox([&] { Dx7EditVoice(nullptr, voice, {}, 0); },
                 [](QDialog &sheet) {
                     auto *up = OnPage<QWidget>(sheet, 10000 + 109)->findChild<QToolButton *>("up");
                     QTest::mousePress(up, Qt::LeftButton);
                     TabsOf(sheet)->setCurrentIndex(1);
                     std::vector<QString> texts;
                     const auto read = [&] {
                         std::vector<QString> now;
                         for (std::uint32_t number = 202; number <= 224; ++number) {
                             if (auto *edit = OnPage<QLineEdit>(sheet, number)) {
                                 now.push_back(edit->text());
                             }
                         }
                         return now;
                     };
                     texts = read();
                     for (int step = 0; step < 3; ++step) {
                         Q_EMIT up->clicked();
                     }
                     EXPECT_EQ(read(), texts);
                     QTest::mouseRelease(up, Qt::LeftButton);
                     QTest::mouseClick(ControlOf<QWidget>(&sheet, 2), Qt::LeftButton);
                 });
}

TEST(TurnedPages, TheWheelOverTheTabsTurnsNone) {
    VoiceObject voice = MakeVoiceObject(Dx7DriverId, TestUnpackedVoice());
    WithModalBox([&] { Dx7EditVoice(nullptr, voice, {}, 0); },
                 [](QDialog &sheet) {
                     QTabBar *bar = TabsOf(sheet)->tabBar();
                     const QPointF point = bar->rect().center();
                     QWheelEvent event(point, bar->mapToGlobal(point), {}, {0, -120}, Qt::NoButton,
                                       Qt::NoModifier, Qt::NoScrollPhase, false);
                     QApplication::sendEvent(bar, &event);
                     EXPECT_EQ(TabsOf(sheet)->currentIndex(), 0);
                     QTest::mouseClick(ControlOf<QWidget>(&sheet, 2), Qt::LeftButton);
                 });
}

TEST(TurnedPages, PageUpOnTheKeypadMovesTheBarToo) {
    VoiceObject voice = MakeVoiceObject(Dx7DriverId, TestUnpackedVoice());
    WithModalBox([&] { Dx7EditVoice(nullptr, voice, {}, 0); },
                 [](QDialog &sheet) {
                     auto *speed = OnPage<QLineEdit>(sheet, 108);
                     speed->setFocus();
                     speed->setText("10");
                     QTest::keyClick(speed, Qt::Key_PageUp, Qt::KeypadModifier);
                     EXPECT_EQ(speed->text(), "22"); // an eighth of 99 more
                     QTest::mouseClick(ControlOf<QWidget>(&sheet, 2), Qt::LeftButton);
                 });
}

} // namespace
