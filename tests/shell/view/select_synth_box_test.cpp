// The box "Select Synthesizer", used with mouse and keys.
#include "shell/view/select_synth_box.h"

#include "common/settings.h"
#include "core/current.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/voice_codec.h"
#include "shell/list_state.h"
#include "support/fake_midi.h"
#include "support/family_names.h"
#include "support/modal_box.h"
#include "support/pixels.h"
#include "support/scripted_desktop.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <functional>

namespace tonewright {
namespace {

const std::string SaveQuestion =
    "Your current document has not been saved. Do you wish to save it?\n\nClick on Yes to save it, "
    "or click on No to abandon it.\n\nClick on Cancel to return to the main window of Tonewright.";

class SelectSynthBox : public testing::Test {
protected:
    void SetUp() override {
        CurrentDriverId = RefaceDriverId;
        SelectKeyboardName = RefaceName;
        SelectKeyboardMidiIn = "Both";
        SelectKeyboardMidiOut = "Module";
        SelectKeyboardAutodetect = 1;
        CurrentMidiChannel = 4;
        midi.AddInput("Keys");
        midi.AddOutput("Module");
        midi.AddDevice({.name = "Both", .input = true, .output = true});
    }
    // Opens the box and hands it to `use`, which closes it. The box's result.
    int WithBox(const std::function<void(QDialog &)> &use) {
        int result = 0;
        WithModalBox([&] { result = SelectSynthesizer(nullptr, CurrentSelectParams()); }, use);
        return result;
    }

    static void Click(QDialog &box, int button) {
        QTest::mouseClick(Control<QPushButton>(box, button), Qt::LeftButton);
    }
    template <typename Widget> static Widget *Control(QDialog &box, int number) {
        auto *control = box.findChild<Widget *>(QString("control_%1").arg(number));
        EXPECT_NE(control, nullptr) << number;
        return control;
    }
    static QStringList Items(const QComboBox &combo) {
        QStringList items;
        for (int item = 0; item < combo.count(); ++item) {
            items += combo.itemText(item);
        }
        return items;
    }
    // Opens a drop-down list, clicks an item and thereby closes it.
    static void Choose(QComboBox &combo, int item) {
        combo.showPopup();
        QAbstractItemView *view = combo.view();
        QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier,
                          view->visualRect(view->model()->index(item, 0)).center());
        QTest::qWait(1);
        EXPECT_EQ(combo.currentIndex(), item);
    }
    static void Type(QDialog &box, const QString &channel) {
        auto *edit = Control<QLineEdit>(box, 105);
        edit->setFocus();
        edit->selectAll();
        if (channel.isEmpty()) {
            QTest::keyClick(edit, Qt::Key_Delete);
        }
        QTest::keyClicks(edit, channel);
        EXPECT_EQ(edit->text(), channel);
    }

    ScriptedDesktop desktop;
    FakeMidi midi;
};

TEST_F(SelectSynthBox, ShowsTheStoredValuesWithTheFocusOnOk) {
    EXPECT_EQ(WithBox([](QDialog &box) {
                  EXPECT_EQ(box.windowTitle(), "Select Synthesizer");
                  EXPECT_EQ(Items(*Control<QComboBox>(box, 101)),
                            (QStringList{"Unknown", Dx7Name, RefaceName}));
                  EXPECT_EQ(Control<QComboBox>(box, 101)->currentText().toStdString(), RefaceName);
                  EXPECT_EQ(Items(*Control<QComboBox>(box, 104)), (QStringList{"Keys", "Both"}));
                  EXPECT_EQ(Control<QComboBox>(box, 104)->currentText(), "Both");
                  EXPECT_EQ(Items(*Control<QComboBox>(box, 103)), (QStringList{"Module", "Both"}));
                  EXPECT_EQ(Control<QComboBox>(box, 103)->currentText(), "Module");
                  EXPECT_TRUE(Control<QCheckBox>(box, 102)->isChecked());
                  EXPECT_TRUE(Control<QCheckBox>(box, 102)->isEnabled());
                  EXPECT_EQ(Control<QLineEdit>(box, 105)->text(), "4");
                  EXPECT_TRUE(Control<QPushButton>(box, 1)->hasFocus());
                  EXPECT_TRUE(HasInk(*Control<QLabel>(box, 10)));
                  Click(box, 2);
              }),
              0);
}

TEST_F(SelectSynthBox, ItsTextsStandInTheBox) {
    WithBox([](QDialog &box) {
        QStringList labels;
        for (const QLabel *label : box.findChildren<QLabel *>()) {
            labels += label->text();
            EXPECT_GE(label->width(), label->sizeHint().width()) << label->text().toStdString();
        }
        for (const char *text : {"Synthesizer:", "MIDI in:", "MIDI out:", "MIDI channel:"}) {
            EXPECT_TRUE(labels.contains(text)) << text;
        }
        EXPECT_EQ(Control<QCheckBox>(box, 102)->text(), "Detect MIDI ports automatically");
        EXPECT_EQ(Control<QPushButton>(box, 1)->text(), "OK");
        EXPECT_EQ(Control<QPushButton>(box, 2)->text(), "Cancel");
        EXPECT_EQ(Control<QPushButton>(box, 9)->text(), "Help");
        Click(box, 2);
    });
}

TEST_F(SelectSynthBox, OkStoresWhatWasChosen) {
    EXPECT_EQ(WithBox([](QDialog &box) {
                  QTest::mouseClick(Control<QCheckBox>(box, 102), Qt::LeftButton, Qt::NoModifier,
                                    QPoint(8, Control<QCheckBox>(box, 102)->height() / 2));
                  Choose(*Control<QComboBox>(box, 101), 1);
                  Choose(*Control<QComboBox>(box, 104), 0);
                  Choose(*Control<QComboBox>(box, 103), 1);
                  Type(box, "12");
                  Click(box, 1);
              }),
              1);
    EXPECT_EQ(CurrentDriverId, Dx7DriverId);
    EXPECT_EQ(SelectKeyboardName, Dx7Name);
    EXPECT_EQ(SelectKeyboardMidiIn, "Keys");
    EXPECT_EQ(SelectKeyboardMidiOut, "Both");
    EXPECT_EQ(SelectKeyboardAutodetect, 0u);
    EXPECT_EQ(CurrentMidiChannel, 12u);
}

TEST_F(SelectSynthBox, CancelEscAndTheCloseBoxChangeNothing) {
    const std::function<void(QDialog &)> ways[] = {
        [](QDialog &box) { Click(box, 2); },
        [](QDialog &box) { QTest::keyClick(Control<QPushButton>(box, 2), Qt::Key_Return); },
        [](QDialog &box) { QTest::keyClick(&box, Qt::Key_Escape); },
        [](QDialog &box) { box.close(); },
    };
    ListAdd(MainList);
    for (const auto &close : ways) {
        EXPECT_EQ(WithBox([&](QDialog &box) {
                      Choose(*Control<QComboBox>(box, 101), 1);
                      Choose(*Control<QComboBox>(box, 104), 0);
                      Type(box, "9");
                      close(box);
                  }),
                  0);
    }
    EXPECT_EQ(CurrentDriverId, RefaceDriverId);
    EXPECT_EQ(SelectKeyboardName, RefaceName);
    EXPECT_EQ(SelectKeyboardMidiIn, "Both");
    EXPECT_EQ(CurrentMidiChannel, 4u);
    EXPECT_EQ(ListCount(MainList), 1);
}

TEST_F(SelectSynthBox, UnknownWithOkKeepsTheDriver) {
    EXPECT_EQ(WithBox([](QDialog &box) {
                  Choose(*Control<QComboBox>(box, 101), 0);
                  EXPECT_TRUE(Control<QCheckBox>(box, 102)->isEnabled());
                  Click(box, 1);
              }),
              1);
    EXPECT_EQ(CurrentDriverId, RefaceDriverId);
    EXPECT_EQ(SelectKeyboardName, "Unknown");
}

TEST_F(SelectSynthBox, ChoosingTheDx7GreysTheCheckBoxAndKeepsItsState) {
    EXPECT_EQ(WithBox([](QDialog &box) {
                  auto &check = *Control<QCheckBox>(box, 102);
                  Choose(*Control<QComboBox>(box, 101), 1);
                  EXPECT_FALSE(check.isEnabled());
                  EXPECT_TRUE(check.isChecked());
                  Choose(*Control<QComboBox>(box, 101), 0);
                  EXPECT_FALSE(check.isEnabled()); // "Unknown" leaves it
                  Choose(*Control<QComboBox>(box, 101), 2);
                  EXPECT_TRUE(check.isEnabled());
                  Choose(*Control<QComboBox>(box, 101), 1);
                  Click(box, 1);
              }),
              1);
    EXPECT_EQ(SelectKeyboardAutodetect, 1u);
}

TEST_F(SelectSynthBox, WithTheDx7StoredTheCheckBoxOpensGrey) {
    SelectKeyboardName = Dx7Name;
    WithBox([](QDialog &box) {
        EXPECT_FALSE(Control<QCheckBox>(box, 102)->isEnabled());
        Click(box, 2);
    });
}

TEST_F(SelectSynthBox, WhatIsTypedAsAChannelIsLimitedToItsRange) {
    const std::pair<const char *, std::uint32_t> typed[] = {
        {"16", 16}, {"99", 16}, {"0", 1}, {"", 1}, {"x", 1}, {"7 and more", 7}, {"1", 1}};
    for (const auto &[text, channel] : typed) {
        EXPECT_EQ(WithBox([&text = text](QDialog &box) {
                      Type(box, text);
                      Click(box, 1);
                  }),
                  1);
        EXPECT_EQ(CurrentMidiChannel, channel) << text;
    }
}

TEST_F(SelectSynthBox, TheArrowsOfTheChannelStayInItsRange) {
    CurrentMidiChannel = 15;
    WithBox([](QDialog &box) {
        auto &channel = *Control<QLineEdit>(box, 105);
        for (int press = 0; press < 3; ++press) {
            QTest::keyClick(&channel, Qt::Key_Up);
        }
        EXPECT_EQ(channel.text(), "16");
        for (int press = 0; press < 20; ++press) {
            QTest::keyClick(&channel, Qt::Key_Down);
        }
        Click(box, 1);
    });
    EXPECT_EQ(CurrentMidiChannel, 1u);
}

TEST_F(SelectSynthBox, WhenTheQuestionAboutChangesIsCancelledTheBoxStays) {
    ListAdd(MainList);
    MainListState.dirty = true;
    desktop.ExpectYesNoCancel(SaveQuestion, ResultCancel);
    EXPECT_EQ(WithBox([](QDialog &box) {
                  Choose(*Control<QComboBox>(box, 101), 1);
                  Click(box, 1);
                  EXPECT_TRUE(box.isVisible());
                  Click(box, 2);
              }),
              0);
    EXPECT_EQ(SelectKeyboardName, RefaceName);
    EXPECT_EQ(ListCount(MainList), 1);
}

TEST_F(SelectSynthBox, OkEmptiesTheListAfterTheQuestion) {
    ListAdd(MainList);
    MainListState.dirty = true;
    desktop.ExpectYesNoCancel(SaveQuestion, ResultNo);
    EXPECT_EQ(WithBox([](QDialog &box) { Click(box, 1); }), 1);
    EXPECT_EQ(ListCount(MainList), 0);
}

TEST_F(SelectSynthBox, WithoutDevicesTheListsAreEmptyAndTheBoxWorks) {
    midi.devices.clear();
    EXPECT_EQ(WithBox([](QDialog &box) {
                  EXPECT_EQ(Control<QComboBox>(box, 104)->count(), 0);
                  EXPECT_EQ(Control<QComboBox>(box, 103)->count(), 0);
                  Click(box, 1);
              }),
              1);
    EXPECT_EQ(SelectKeyboardMidiIn, "");
    EXPECT_EQ(SelectKeyboardMidiOut, "");
}

TEST_F(SelectSynthBox, ANameOfAnyBytesIsStoredAsItIs) {
    midi.devices.clear();
    midi.AddInput("Cl\xC3\xA9 \xFF");
    EXPECT_EQ(WithBox([](QDialog &box) { Click(box, 1); }), 1);
    EXPECT_EQ(SelectKeyboardMidiIn, "Cl\xC3\xA9 \xFF");
}

TEST_F(SelectSynthBox, HelpOpensItsTopicAndTheBoxStays) {
    WithBox([&](QDialog &box) {
        Click(box, 9);
        EXPECT_EQ(desktop.helpTopics, std::vector<std::string>{"SELECT"});
        EXPECT_TRUE(box.isVisible());
        Click(box, 2);
    });
}

} // namespace
} // namespace tonewright
