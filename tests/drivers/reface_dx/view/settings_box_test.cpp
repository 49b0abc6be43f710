// The box "Configure DX Reface", used with mouse and keys.
#include "drivers/reface_dx/view/settings_box.h"

#include "common/settings.h"
#include "common/view/up_down.h"
#include "support/fake_midi.h"
#include "support/modal_box.h"
#include "support/program_texts.h"
#include "support/pixels.h"
#include "support/reface_bytes.h"
#include "support/scripted_desktop.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QToolButton>
#include <QWheelEvent>

#include <functional>
#include <string>
#include <vector>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;

// Of no check box and no list an index that another control could be taken for.
const Bytes Shown = {3, 16, 0, 4, 0, 0, 1, 67, 1, 72, 33, 1, 0, 1, 0};

class RefaceSettingsBoxTest : public testing::Test {
protected:
    RefaceSettingsBoxTest() {
        block.driverId = RefaceDriverId;
        block.midiIn = 4;
        block.midiOut = 5;
        SetBytes(Shown);
    }
    void SetBytes(const Bytes &bytes) {
        block.system.fill(0x55);
        std::ranges::copy(bytes, block.system.begin());
    }
    // The bytes 0 to 14 of the block; those behind them must be as they were.
    Bytes TheBytes(std::uint8_t behind = 0x55) const {
        for (std::size_t n = 15; n < block.system.size(); ++n) {
            EXPECT_EQ(block.system[n], behind) << n;
        }
        return {block.system.begin(), block.system.begin() + 15};
    }

    // Opens the box and hands it to `use`, which closes it. The box's result.
    bool WithBox(const std::function<void()> &use) {
        bool result = false;
        WithModalBox([&] { result = RunRefaceSettingsBox(nullptr, block); },
                     [&](QDialog &opened) {
                         box = &opened;
                         use();
                     });
        return result;
    }
    // The same, with OK at the end.
    void ChangeInBox(const std::function<void()> &use) {
        EXPECT_TRUE(WithBox([&] {
            use();
            Click(1);
        }));
    }

    template <typename Widget = QWidget> Widget *Control(int number) {
        auto *control = box->findChild<Widget *>(QString("control_%1").arg(number));
        EXPECT_NE(control, nullptr) << number;
        return control;
    }
    QComboBox &List(int number) { return *Control<QComboBox>(number); }
    QCheckBox &Check(int number) { return *Control<QCheckBox>(number); }
    QLineEdit &Edit(int number) { return *Control<QLineEdit>(number); }
    std::string Text(int number) { return Edit(number).text().toStdString(); }
    void Click(int button) { QTest::mouseClick(Control<QPushButton>(button), Qt::LeftButton); }
    void Press(int number, Qt::Key key) { QTest::keyClick(Control(number), key); }
    void ClickArrow(int number, const char *arrow) {
        auto *arrows = dynamic_cast<UpDown *>(Control(number + 10000));
        QTest::mouseClick(arrows->findChild<QToolButton *>(arrow), Qt::LeftButton);
    }
    void Type(int number, const char *text) {
        Edit(number).setFocus();
        Edit(number).selectAll();
        QTest::keyClick(&Edit(number), Qt::Key_Delete);
        QTest::keyClicks(&Edit(number), text);
    }
    void Wheel(int number, int notches) {
        QWidget *widget = Control(number);
        QWheelEvent event(QPointF(5, 5), widget->mapToGlobal(QPointF(5, 5)), {}, {0, 120 * notches},
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(widget, &event);
    }

    ScriptedDesktop desktop;
    FakeMidi midi; // no call of which may come
    TempFolder folder;
    SynthConfigBlock block;
    QDialog *box = nullptr;
};

// ---- how it opens

TEST_F(RefaceSettingsBoxTest, ShowsTheSettingsWithTheFocusOnOkInTheMiddleOfTheScreen) {
    EXPECT_FALSE(WithBox([this] {
        EXPECT_EQ(box->windowTitle(), "Configure DX Reface");
        EXPECT_EQ(List(101).currentText(), "Channel 4");
        EXPECT_EQ(List(102).currentText(), "All");
        EXPECT_EQ(Text(103), "440.0");
        EXPECT_TRUE(Check(104).isChecked());
        EXPECT_EQ(Text(105), "3");
        EXPECT_EQ(Text(106), "200");
        EXPECT_EQ(Text(107), "33");
        EXPECT_EQ(List(108).currentText(), "Yamaha FC4/5");
        EXPECT_FALSE(Check(109).isChecked());
        EXPECT_TRUE(Check(110).isChecked());
        EXPECT_FALSE(Check(111).isChecked());
        EXPECT_TRUE(Control(1)->hasFocus());
        EXPECT_TRUE(HasInk(*Control<QLabel>(10)));
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        EXPECT_NEAR(box->frameGeometry().center().x(), screen.center().x(), 3);
        EXPECT_NEAR(box->frameGeometry().center().y(), screen.center().y(), 3);
        Click(2);
    }));
    EXPECT_EQ(TheBytes(), Shown);
}

TEST_F(RefaceSettingsBoxTest, HasTheControlsLabelsRangesAndItemsOfTheRows) {
    WithBox([this] {
        for (const RefaceSettingRow &row : RefaceSettingRows) {
            const int number = static_cast<int>(row.control);
            if (row.kind == RefaceSettingKind::Switch) {
                EXPECT_EQ(Check(number).text(), row.label);
                continue;
            }
            const auto *label = Control<QLabel>(20000 + number);
            EXPECT_EQ(label->text(), row.label);
            EXPECT_EQ(label->buddy(), Control(number)) << row.label;
            if (*row.items) {
                std::string items;
                for (int item = 0; item < List(number).count(); ++item) {
                    items += (item ? ";" : "") + List(number).itemText(item).toStdString();
                }
                EXPECT_EQ(items, row.items);
                continue;
            }
            const auto range = SpinRangeOf(box, row.control);
            EXPECT_EQ(range.has_value(), row.kind != RefaceSettingKind::MasterTune) << row.label;
            if (range) {
                EXPECT_EQ(range->minimum, row.range.minimum) << row.label;
                EXPECT_EQ(range->maximum, row.range.maximum) << row.label;
                EXPECT_EQ(range->start, row.range.start) << row.label;
            }
        }
        EXPECT_EQ(List(101).count(), 17);
        EXPECT_EQ(List(102).count(), 17);
        EXPECT_EQ(List(108).count(), 2);
        Click(2);
    });
}

TEST_F(RefaceSettingsBoxTest, TransmitChannels16And127ShowAsOffAndReceiveChannel16AsAll) {
    for (const std::uint8_t channel : {std::uint8_t{16}, std::uint8_t{127}}) {
        block.system[0] = channel;
        ChangeInBox([this] {
            EXPECT_EQ(List(101).currentText(), "Off");
            EXPECT_EQ(List(102).currentText(), "All");
        });
        EXPECT_EQ(block.system[0], 127);
        EXPECT_EQ(block.system[1], 16);
    }
}

TEST_F(RefaceSettingsBoxTest, AByteWithoutItemSelectsNoneAndIsTakenAsZero) {
    SetBytes({17, 127, 0, 4, 0, 0, 1, 67, 1, 72, 33, 2, 0, 1, 0});
    ChangeInBox([this] {
        EXPECT_EQ(List(101).currentIndex(), -1);
        EXPECT_EQ(List(102).currentIndex(), -1);
        EXPECT_EQ(List(108).currentIndex(), -1);
    });
    EXPECT_EQ(TheBytes(), (Bytes{0, 0, 0, 4, 0, 0, 1, 67, 1, 72, 33, 0, 0, 1, 0}));
}

TEST_F(RefaceSettingsBoxTest, EveryControlHasANameForAScreenReader) {
    WithBox([this] {
        // A list says its item; what it is called says the label that it is tied to.
        const auto name = [this](int number) {
            QAccessibleInterface *face = QAccessible::queryAccessibleInterface(Control(number));
            for (const auto &[label, relation] : face->relations(QAccessible::Label)) {
                return label->text(QAccessible::Name).toStdString();
            }
            return face->text(QAccessible::Name).toStdString();
        };
        EXPECT_EQ(name(101), "Transmit channel:");
        EXPECT_EQ(name(102), "Receive channel:");
        EXPECT_EQ(name(103), "Master tune:");
        EXPECT_EQ(name(104), "Local control");
        EXPECT_EQ(name(105), "Transpose:");
        EXPECT_EQ(name(106), "Tempo:");
        EXPECT_EQ(name(107), "LCD Contrast:");
        EXPECT_EQ(name(108), "Sustain pedal:");
        EXPECT_EQ(name(109), "Power auto off");
        EXPECT_EQ(name(110), "Speaker");
        EXPECT_EQ(name(111), "MIDI control");
        EXPECT_EQ(name(112), "Save As...");
        EXPECT_EQ(name(113), "Open...");
        EXPECT_EQ(name(10103), "Master tune");
        EXPECT_EQ(name(10106), "Tempo");
        Click(2);
    });
}

TEST_F(RefaceSettingsBoxTest, NothingIsCutInALargerFontEither) {
    WithBox([this] {
        for (const int height : {16, 24, 32}) {
            QFont font = box->font();
            font.setPixelSize(height);
            box->setFont(font);
            QTest::qWait(1);
            for (const QWidget *widget : box->findChildren<QWidget *>()) {
                if (qobject_cast<const QLabel *>(widget) ||
                    qobject_cast<const QComboBox *>(widget) ||
                    qobject_cast<const QAbstractButton *>(widget)) {
                    const bool isArrow = qobject_cast<const QToolButton *>(widget) != nullptr;
                    if (widget->isVisible() && !isArrow) {
                        EXPECT_GE(widget->width(), widget->sizeHint().width())
                            << widget->objectName().toStdString() << " at " << height;
                    }
                }
            }
            for (const int number : {103, 105, 106, 107}) {
                const QLineEdit &edit = Edit(number);
                EXPECT_GE(edit.width(), edit.fontMetrics().horizontalAdvance("18271.1") + 16)
                    << number << " at " << height;
                EXPECT_GE(edit.height(), edit.fontMetrics().height()) << number;
            }
        }
        Click(2);
    });
}

TEST_F(RefaceSettingsBoxTest, TheTabKeyGoesThroughItInReadingOrder) {
    WithBox([this] {
        std::vector<int> order;
        for (int press = 0; press < 16; ++press) {
            order.push_back(QApplication::focusWidget()->objectName().mid(8).toInt());
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        EXPECT_EQ(order, (std::vector<int>{1, 2, 9, 112, 113, 101, 102, 103, 105, 106, 107, 108,
                                           104, 109, 110, 111}));
        Click(2);
    });
}

// ---- how it ends

TEST_F(RefaceSettingsBoxTest, OkTakesEveryControlByMouse) {
    ChangeInBox([this] {
        List(101).setCurrentIndex(16);
        List(102).setCurrentIndex(0);
        ClickArrow(103, "up");
        ClickArrow(103, "up");
        QTest::mouseClick(&Check(104), Qt::LeftButton, {}, QPoint(8, Check(104).height() / 2));
        ClickArrow(105, "down");
        ClickArrow(106, "up");
        ClickArrow(107, "down");
        List(108).setCurrentIndex(0);
        QTest::mouseClick(&Check(109), Qt::LeftButton, {}, QPoint(8, Check(109).height() / 2));
        QTest::mouseClick(&Check(110), Qt::LeftButton, {}, QPoint(8, Check(110).height() / 2));
        QTest::mouseClick(&Check(111), Qt::LeftButton, {}, QPoint(8, Check(111).height() / 2));
        EXPECT_EQ(Text(103), "440.2");
    });
    // 440.2 Hz are 0.787 cents above 440: tuning 1032, in hexadecimal 408.
    EXPECT_EQ(TheBytes(), (Bytes{127, 0, 0, 4, 0, 8, 0, 66, 1, 73, 32, 0, 1, 0, 1}));
}

TEST_F(RefaceSettingsBoxTest, OkTakesEveryControlByKeys) {
    ChangeInBox([this] {
        Press(101, Qt::Key_Home);
        Press(102, Qt::Key_Up);
        Press(103, Qt::Key_Down);
        Press(103, Qt::Key_Down);
        Press(104, Qt::Key_Space);
        Type(105, "-12");
        Type(106, "120");
        Press(107, Qt::Key_Up);
        Press(108, Qt::Key_Up);
        Press(109, Qt::Key_Space);
        Press(110, Qt::Key_Space);
        Press(111, Qt::Key_Space);
        EXPECT_EQ(Text(103), "439.8");
    });
    // 439.8 Hz are 0.787 cents below 440: tuning 1016, in hexadecimal 3F8.
    EXPECT_EQ(TheBytes(), (Bytes{0, 15, 0, 3, 15, 8, 0, 52, 0, 120, 34, 0, 1, 0, 1}));
}

TEST_F(RefaceSettingsBoxTest, ReturnInANumberIsOk) {
    EXPECT_TRUE(WithBox([this] {
        Type(106, "90");
        Press(106, Qt::Key_Return);
    }));
    EXPECT_EQ(block.system[9], 90);
}

TEST_F(RefaceSettingsBoxTest, ReturnOnAButtonPressesThatButton) {
    const auto pressReturnOn = [this](int button) {
        Control(button)->setFocus();
        Press(button, Qt::Key_Return);
    };
    EXPECT_FALSE(WithBox([&] {
        Type(106, "90");
        pressReturnOn(2);
        EXPECT_FALSE(box->isVisible());
    }));
    EXPECT_EQ(TheBytes(), Shown);
    EXPECT_TRUE(WithBox([&] {
        pressReturnOn(9);
        EXPECT_EQ(desktop.helpTopics, std::vector<std::string>{"CONFIGURE"});
        desktop.Expect(
            ExpectedFileDialog{.kind = FileDialogKind::SaveExtra, .answer = std::nullopt});
        pressReturnOn(112);
        desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Extra, .answer = std::nullopt});
        pressReturnOn(113);
        EXPECT_TRUE(box->isVisible());
        pressReturnOn(1);
    }));
}

TEST_F(RefaceSettingsBoxTest, ReturnInAnyControlIsOkAndChangesNoCheckBox) {
    for (const RefaceSettingRow &row : RefaceSettingRows) {
        SetBytes(Shown);
        EXPECT_TRUE(WithBox([&] {
            const int number = static_cast<int>(row.control);
            Control(number)->setFocus();
            Press(number, Qt::Key_Return);
            EXPECT_FALSE(box->isVisible()) << row.name;
        }));
        EXPECT_EQ(TheBytes(), Shown) << row.name;
    }
}

TEST_F(RefaceSettingsBoxTest, CancelEscapeAndTheFrameLeaveTheBlockAlone) {
    const std::function<void()> waysOut[] = {
        [this] { Click(2); },
        [this] { Press(105, Qt::Key_Escape); },
        [this] { box->close(); },
    };
    for (const auto &wayOut : waysOut) {
        EXPECT_FALSE(WithBox([&] {
            Type(106, "90");
            Check(104).setChecked(false);
            wayOut();
        }));
        EXPECT_EQ(TheBytes(), Shown);
        EXPECT_EQ(block.driverId, RefaceDriverId);
    }
}

TEST_F(RefaceSettingsBoxTest, NoMidiCallIsMadeWhileItStands) {
    midi.recordEverything = true;
    ChangeInBox([this] {
        ClickArrow(103, "up");
        Type(105, "5");
        desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::SaveExtra,
                                          .answer = folder.File("mine.crg")});
        Click(112);
    });
    EXPECT_TRUE(midi.calls.empty());
}

TEST_F(RefaceSettingsBoxTest, HelpAndF1OpenItsTopic) {
    WithBox([this] {
        Click(9);
        QTest::keyClick(qApp->activeModalWidget()->focusWidget(), Qt::Key_F1);
        Click(2);
    });
    EXPECT_EQ(desktop.helpTopics, std::vector<std::string>(2, "CONFIGURE"));
}

TEST_F(RefaceSettingsBoxTest, AMissingControlIsTakenAsZero) {
    ChangeInBox([this] {
        for (const int number : {101, 103, 104, 105, 106}) {
            delete Control(number);
        }
    });
    // 414.8 Hz, the lowest tune, is the tuning 3; transpose 0 is 64.
    EXPECT_EQ(TheBytes(), (Bytes{0, 16, 0, 0, 0, 3, 0, 64, 0, 0, 33, 1, 0, 1, 0}));
}

// ---- numbers

TEST_F(RefaceSettingsBoxTest, ATempoUpTo255ReadsBackAndOneAboveLosesItsHighBits) {
    const struct {
        const char *typed, *readBack;
        Bytes bytes;
    } cases[] = {
        {"120", "120", {0, 120}}, {"200", "200", {1, 72}}, {"256", "0", {0, 0}},
        {"300", "44", {0, 44}},   {"999", "44", {0, 44}},  {"1", "30", {0, 30}},
    };
    for (const auto &each : cases) {
        ChangeInBox([&] { Type(106, each.typed); });
        EXPECT_EQ((Bytes{block.system[8], block.system[9]}), each.bytes) << each.typed;
        WithBox([&] {
            EXPECT_EQ(Text(106), each.readBack);
            Click(2);
        });
    }
}

TEST_F(RefaceSettingsBoxTest, AMasterTuneIsLimitedWhenItIsCollectedButItsTextIsNot) {
    const struct {
        const char *typed;
        Bytes bytes;
    } cases[] = {
        {"440.0", {0, 4, 0, 0}}, {"440.1", {0, 4, 0, 0}}, {"500", {0, 8, 0, 0}},
        {"nan", {0, 0, 0, 3}},   {"inf", {0, 8, 0, 0}},   {"1e999", {0, 8, 0, 0}},
        {"", {0, 0, 0, 3}},      {"-", {0, 0, 0, 3}},     {"440,8", {0, 4, 0, 0}},
    };
    for (const auto &each : cases) {
        ChangeInBox([&] {
            Type(103, each.typed);
            desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::SaveExtra,
                                              .answer = folder.File("tune.crg")});
            Click(112);
            EXPECT_EQ(Text(103), each.typed);
        });
        EXPECT_EQ((Bytes{block.system.begin() + 2, block.system.begin() + 6}), each.bytes)
            << each.typed;
    }
}

TEST_F(RefaceSettingsBoxTest, OtherNumbersAreLimitedWhenTheyAreCollected) {
    const struct {
        int control;
        const char *typed;
        std::size_t byte;
        int value;
    } cases[] = {
        {105, "99", 7, 76},           {105, "-99", 7, 52},   {105, "-", 7, 64},
        {105, "nan", 7, 64},          {107, "64", 10, 63},   {107, "-5", 10, 0},
        {107, "99999999999", 10, 63}, {107, "1e999", 10, 1}, {106, "inf", 9, 30},
    };
    for (const auto &each : cases) {
        ChangeInBox([&] { Type(each.control, each.typed); });
        EXPECT_EQ(block.system[each.byte], each.value) << each.control << " " << each.typed;
    }
}

TEST_F(RefaceSettingsBoxTest, TheWheelAndTheArrowsStepANumberWithinItsLimits) {
    WithBox([this] {
        Wheel(103, 1);
        EXPECT_EQ(Text(103), "440.1");
        Wheel(103, -3);
        EXPECT_EQ(Text(103), "439.8");
        Type(103, "500");
        ClickArrow(103, "down");
        EXPECT_EQ(Text(103), "466.8");
        Press(103, Qt::Key_Up);
        EXPECT_EQ(Text(103), "466.8");
        Type(103, "1");
        ClickArrow(103, "up");
        EXPECT_EQ(Text(103), "414.8");
        Wheel(105, 20);
        EXPECT_EQ(Text(105), "12");
        Type(106, "299");
        ClickArrow(106, "up");
        ClickArrow(106, "up");
        EXPECT_EQ(Text(106), "300");
        Press(107, Qt::Key_Down);
        EXPECT_EQ(Text(107), "32");
        Click(2);
    });
}

TEST_F(RefaceSettingsBoxTest, AListChangesUnderTheWheelOnlyWithTheFocus) {
    WithBox([this] {
        Wheel(101, 1);
        EXPECT_EQ(List(101).currentIndex(), 3);
        List(101).setFocus();
        Wheel(101, 1);
        EXPECT_EQ(List(101).currentIndex(), 2);
        Click(2);
    });
}

// ---- "Save As..." and "Open..."

TEST_F(RefaceSettingsBoxTest, SaveAsCollectsBehindTheQuestionAboutTheBackupAndStaysOpen) {
    CreateBackups = 1;
    folder.WriteText("mine.crg", "former");
    std::filesystem::create_directory(folder.path / "Backup of mine.crg");
    EXPECT_FALSE(WithBox([this] {
        Type(106, "90");
        desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::SaveExtra,
                                          .answer = folder.File("mine.crg"),
                                          .driverId = RefaceDriverId});
        desktop.Expect(ExpectedMessage{.text = BackupQuestion,
                                       .buttons = {"Yes", "No"},
                                       .answer = ResultYes,
                                       .during = [this](MessageRequest &request) {
                                           EXPECT_EQ(request.owner, box);
                                           EXPECT_EQ(block.system[9], 72);
                                       }});
        Click(112);
        EXPECT_TRUE(box->isVisible());
        EXPECT_EQ(block.system[9], 90);
        Click(2);
    }));
    EXPECT_NE(ReadTestText(folder.File("mine.crg")).find("\nTempo1:90\n"), std::string::npos);
    EXPECT_EQ(desktop.configurationsSaved, 1);
}

TEST_F(RefaceSettingsBoxTest, AFailedSaveTellsSoAndStaysOpen) {
    EXPECT_FALSE(WithBox([this] {
        desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::SaveExtra,
                                          .answer = folder.File("none/mine.crg")});
        desktop.ExpectMessage(NoSuchText);
        Click(112);
        EXPECT_TRUE(box->isVisible());
        Click(2);
    }));
}

TEST_F(RefaceSettingsBoxTest, OpenShowsTheFileInAllControls) {
    const std::string path = folder.WriteText(
        "mine.crg", CrgFirstLine + "transch:3\nRcvCh:2\nMasterTune1:4\nTranspose:70\nTempo1:100\n"
                                   "LCDConstrast:5\nSustain:0\nAutoPower:1\nMIDICtrl:1\n");
    ChangeInBox([&] {
        desktop.Expect(ExpectedFileDialog{
            .kind = FileDialogKind::Extra, .answer = path, .driverId = RefaceDriverId});
        Click(113);
        EXPECT_EQ(List(101).currentText(), "Channel 4");
        EXPECT_EQ(List(102).currentText(), "Channel 3");
        EXPECT_EQ(Text(103), "440.0");
        EXPECT_EQ(Text(105), "6");
        EXPECT_EQ(Text(106), "100");
        EXPECT_EQ(Text(107), "5");
        EXPECT_EQ(List(108).currentText(), "Yamaha FC3");
        EXPECT_TRUE(Check(109).isChecked());
        EXPECT_TRUE(Check(111).isChecked());
    });
    EXPECT_EQ(desktop.configurationsSaved, 1);
    // Boxes 104 and 110 were checked before.
    EXPECT_EQ(TheBytes(0), (Bytes{3, 2, 0, 4, 0, 0, 1, 70, 0, 100, 5, 0, 1, 1, 1}));
}

TEST_F(RefaceSettingsBoxTest, ChannelsOfAFileShowAsOffAndAll) {
    for (const char *transmit : {"16", "127"}) {
        SetBytes(Shown);
        ChangeInBox([&] {
            desktop.Expect(ExpectedFileDialog{
                .kind = FileDialogKind::Extra,
                .answer = folder.WriteText("mine.crg",
                                           CrgFirstLine + "TransCh:" + transmit + "\nRcvCh:16\n")});
            Click(113);
            EXPECT_EQ(List(101).currentText(), "Off") << transmit;
            EXPECT_EQ(List(102).currentText(), "All");
        });
        EXPECT_EQ(block.system[0], 127);
        EXPECT_EQ(block.system[1], 16);
    }
}

TEST_F(RefaceSettingsBoxTest, AFileOfTheFirstLineAloneShowsAsZerosButForCheckedBoxes) {
    ChangeInBox([&] {
        desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Extra,
                                          .answer = folder.WriteText("mine.crg", CrgFirstLine)});
        Click(113);
        EXPECT_EQ(List(101).currentText(), "Channel 1");
        EXPECT_EQ(List(102).currentText(), "Channel 1");
        EXPECT_EQ(Text(103), "414.7");
        EXPECT_TRUE(Check(104).isChecked());
        EXPECT_EQ(Text(105), "-64");
        EXPECT_EQ(Text(106), "0");
        EXPECT_EQ(Text(107), "0");
        EXPECT_EQ(List(108).currentText(), "Yamaha FC3");
        EXPECT_FALSE(Check(109).isChecked());
        EXPECT_TRUE(Check(110).isChecked());
        EXPECT_FALSE(Check(111).isChecked());
    });
    // What is shown below a range is collected as its lowest number.
    EXPECT_EQ(TheBytes(0), (Bytes{0, 0, 0, 0, 0, 3, 1, 52, 0, 30, 0, 0, 0, 1, 0}));
}

TEST_F(RefaceSettingsBoxTest, AFileWithAZeroForACheckedBoxLeavesItCheckedAndOkSendsOne) {
    const std::string path = folder.WriteText("mine.crg", CrgFirstLine + "LocalCtrl:0\n");
    ChangeInBox([&] {
        desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Extra, .answer = path});
        Click(113);
        EXPECT_EQ(block.system[6], 0);
        EXPECT_TRUE(Check(104).isChecked());
    });
    EXPECT_EQ(block.system[6], 1);
}

TEST_F(RefaceSettingsBoxTest, ABadFileShowsAsZerosAfterTheMessageAndOkStillWorks) {
    ChangeInBox([this] {
        desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Extra,
                                          .answer = folder.WriteText("bad.crg", "TransCh:3\n")});
        desktop.ExpectMessage(NoSuchText);
        Click(113);
        EXPECT_EQ(List(101).currentText(), "Channel 1");
        EXPECT_EQ(List(102).currentText(), "Channel 1");
        EXPECT_EQ(Text(103), "414.7");
        EXPECT_EQ(Text(105), "-64");
        EXPECT_EQ(Text(106), "0");
        EXPECT_EQ(Text(107), "0");
    });
    // What is shown below a range is collected as its lowest number.
    EXPECT_EQ(TheBytes(0), (Bytes{0, 0, 0, 0, 0, 3, 1, 52, 0, 30, 0, 0, 0, 1, 0}));
}

TEST_F(RefaceSettingsBoxTest, AfterAnyOpenTheDialogsAreThoseOfNoDriver) {
    OpenExportPath = folder.Folder();
    const std::string path = folder.WriteText("mine.crg", CrgFirstLine);
    WithBox([&] {
        desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::SaveExtra,
                                          .answer = std::nullopt,
                                          .start = folder.File("Untitled.crg"),
                                          .driverId = RefaceDriverId});
        Click(112);
        desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Extra, .answer = path});
        Click(113);
        desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::SaveExtra,
                                          .answer = std::nullopt,
                                          .start = folder.File("Untitled.Twl"),
                                          .driverId = 0u});
        Click(112);
        desktop.Expect(ExpectedFileDialog{
            .kind = FileDialogKind::Extra, .answer = std::nullopt, .driverId = 0u});
        Click(113);
        Click(2);
    });
}

TEST_F(RefaceSettingsBoxTest, ACancelledOpenLeavesWhatWasTyped) {
    WithBox([this] {
        Type(106, "90");
        desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Extra, .answer = std::nullopt});
        Click(113);
        EXPECT_EQ(Text(106), "90");
        EXPECT_EQ(block.system[9], 72);
        Click(2);
    });
}

// ---- over a link

TEST_F(RefaceSettingsBoxTest, EveryWayOutClosesTheLinkAndOnlyOkSends) {
    const int in = midi.AddInput("reface DX"), out = midi.AddOutput("reface DX");
    midi.onWrite = [&](const FakeMidi::Message &message) {
        if (message.bytes[2] == 0x20) {
            Bytes dump = {0xF0, 0x43, 0x00, 0x7F, 0x1C, 0x00, 0x24, 0x05, 0x00, 0x00, 0x00};
            dump.insert(dump.end(), Shown.begin(), Shown.end());
            dump.resize(11 + 32);
            dump.insert(dump.end(), {0x00, 0xF7});
            midi.Send(in, dump);
        }
    };
    const struct {
        std::function<void()> leave;
        std::size_t messages;
    } ways[] = {
        {[this] { Click(1); }, 1 + 11},
        {[this] { Click(2); }, 1},
        {[this] { box->close(); }, 1},
    };
    for (const auto &way : ways) {
        midi.written.clear();
        int result = 0;
        WithModalBox([&] { result = RefaceConfigureSynth(nullptr, {.in = in, .out = out}); },
                     [&](QDialog &opened) {
                         box = &opened;
                         EXPECT_EQ(midi.OpenStreams(), 2);
                         EXPECT_EQ(Text(106), "200");
                         way.leave();
                     });
        EXPECT_EQ(result, 1);
        EXPECT_EQ(midi.OpenStreams(), 0);
        EXPECT_FALSE(midi.clockRuns);
        EXPECT_EQ(midi.written.size(), way.messages);
    }
}

} // namespace
} // namespace tonewright
