// The sheets of both families, opened over voices of the test and used through mouse and keys.
#pragma once

#include "common/settings.h"
#include "common/view/dialog_controls.h"
#include "common/view/up_down.h"
#include "core/voice_object.h"
#include "drivers/dx7/view/voice_editor.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/dx7/voice_parameters.h"
#include "drivers/reface_dx/view/voice_editor.h"
#include "drivers/reface_dx/voice_codec.h"
#include "drivers/reface_dx/voice_parameters.h"
#include "drivers/sheet_controls.h"
#include "support/bank_bytes.h"
#include "support/modal_box.h"
#include "support/reface_bytes.h"
#include "support/scripted_desktop.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QStyleOptionComboBox>
#include <QTabWidget>
#include <QTest>
#include <QToolButton>
#include <QWheelEvent>

#include <functional>
#include <vector>

namespace tonewright {

using Bytes = std::vector<std::uint8_t>;

struct SheetFamily {
    const char *name;
    const VoiceParameters &parameters;
    int (*edit)(QWidget *window, VoiceObject &voice, MidiPorts ports, int index);
    VoiceObject voice;
    std::size_t voiceSize;
};

inline VoiceObject TestDx7Voice() {
    return MakeVoiceObject(Dx7DriverId, TestUnpackedVoice());
}
inline VoiceObject TestRefaceVoice() {
    return VoiceObject{TestRefaceBlock(0)};
}
inline const SheetFamily Dx7Sheets = {"DX7", Dx7Parameters, Dx7EditVoice, TestDx7Voice(), 156};
inline const SheetFamily RefaceSheets = {"reface DX", RefaceParameters, RefaceEditVoice,
                                         TestRefaceVoice(), 150};

// The bytes of the voice in a block.
inline Bytes VoiceBytes(const VoiceObject &voice) {
    return Bytes(voice.bytes.begin() + VoiceObjectHeaderSize, voice.bytes.end());
}

class SheetWindow : public testing::Test {
protected:
    void SetUp() override { VoiceEditPage = 0; }

    // Opens the sheet over `voice`, hands it to `use`, which closes it, and returns its result.
    int Edit(const SheetFamily &sheets, VoiceObject &voice, const std::function<void()> &use,
             int index = 0, MidiPorts ports = {}) {
        int result = -1;
        family = &sheets;
        WithModalBox([&] { result = sheets.edit(nullptr, voice, ports, index); },
                     [&](QDialog &box) {
                         sheet = &box;
                         use();
                     });
        return result;
    }
    // The same over a copy of the family's voice, whose bytes are returned.
    Bytes Edited(const SheetFamily &sheets, const std::function<void()> &use) {
        VoiceObject voice = sheets.voice;
        Edit(sheets, voice, use);
        return VoiceBytes(voice);
    }

    QTabWidget *Tabs() const { return sheet->findChild<QTabWidget *>(); }
    QWidget *Page() const { return Tabs()->currentWidget(); }
    // A control of the page that is shown, or a button of the sheet.
    template <typename Widget = QWidget> Widget *Control(std::uint32_t number) const {
        Widget *control = ControlOf<Widget>(Page(), number);
        return control ? control : ControlOf<Widget>(sheet, number);
    }
    QString Text(std::uint32_t number) const { return Control<QLineEdit>(number)->text(); }
    int Bar(std::uint32_t number) const { return Control<QScrollBar>(number + 12000)->value(); }

    void Press(std::uint32_t button) const { QTest::mouseClick(Control(button), Qt::LeftButton); }
    void Ok() const { Press(1); }
    void Cancel() const { Press(2); }

    void ShowTab(int index) const {
        QTabBar *bar = Tabs()->tabBar();
        QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, bar->tabRect(index).center());
        ASSERT_EQ(Tabs()->currentIndex(), index);
    }
    void Focus(std::uint32_t number) const {
        Control(number)->setFocus();
        ASSERT_TRUE(Control(number)->hasFocus()) << number;
    }
    // Keys go to whatever has the focus, as in life.
    static void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    void Type(std::uint32_t number, const QString &text) const {
        Focus(number);
        Key(Qt::Key_A, Qt::ControlModifier);
        Key(Qt::Key_Delete);
        QTest::keyClicks(QApplication::focusWidget(), text);
    }
    void Choose(std::uint32_t number, int index) const {
        Focus(number);
        Key(Qt::Key_Home);
        for (int step = 0; step < index; ++step) {
            Key(Qt::Key_Down);
        }
    }
    // One notch of the wheel over a control, upwards or downwards.
    void Wheel(QWidget *control, int notches) const {
        const QPointF point = control->rect().center();
        QWheelEvent event(point, control->mapToGlobal(point), {}, {0, 120 * notches}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(control, &event);
    }
    // The same as the window hears of it, so that what ignores it hands it on.
    void WheelInWindow(QWidget *control, int notches) const {
        const QPointF point = control->mapTo(sheet, control->rect().center());
        QWheelEvent event(point, sheet->mapToGlobal(point), {}, {0, 120 * notches}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QSpontaneKeyEvent::setSpontaneous(&event);
        qApp->notify(sheet->windowHandle(), &event);
    }
    void ClickArrow(std::uint32_t number, const char *arrow) const {
        QTest::mouseClick(Control(number + 10000)->findChild<QToolButton *>(arrow), Qt::LeftButton);
    }
    // A part of a row's scroll bar.
    QRect BarPart(std::uint32_t number, QStyle::SubControl part) const {
        auto *bar = Control<QScrollBar>(number + 12000);
        QStyleOptionSlider option;
        option.initFrom(bar);
        option.orientation = Qt::Horizontal;
        option.minimum = bar->minimum();
        option.maximum = bar->maximum();
        option.pageStep = bar->pageStep();
        option.singleStep = bar->singleStep();
        option.sliderPosition = option.sliderValue = bar->value();
        option.subControls = QStyle::SC_All;
        option.state |= QStyle::State_Horizontal;
        return bar->style()->subControlRect(QStyle::CC_ScrollBar, &option, part, bar);
    }
    void ClickBar(std::uint32_t number, QStyle::SubControl part) const {
        QTest::mouseClick(Control(number + 12000), Qt::LeftButton, Qt::NoModifier,
                          BarPart(number, part).center());
    }

    ScriptedDesktop desktop;
    const SheetFamily *family = nullptr;
    QDialog *sheet = nullptr;
};

} // namespace tonewright
