// The box "MIDI Devices".
#include "shell/view/midi_devices_box.h"

#include "support/fake_midi.h"
#include "support/modal_box.h"
#include "support/scripted_desktop.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

#include <functional>

namespace tonewright {
namespace {

class MidiDevicesBox : public testing::Test {
protected:
    // Opens the box and hands it and its list to `use`, which closes it.
    void WithBox(const std::function<void(QDialog &, QListWidget &)> &use) {
        WithModalBox([] { ShowMidiDevices(nullptr); },
                     [&](QDialog &box) { use(box, *box.findChild<QListWidget *>("control_101")); });
    }
    static void Click(QDialog &box, int button) {
        QTest::mouseClick(box.findChild<QPushButton *>(QString("control_%1").arg(button)),
                          Qt::LeftButton);
    }
    static QPoint RowPoint(QListWidget &list, int row) {
        return list.visualItemRect(list.item(row)).center();
    }

    ScriptedDesktop desktop;
    FakeMidi midi;
};

TEST_F(MidiDevicesBox, ListsEveryDeviceAndSelectsTheFirst) {
    midi.AddInput("Keys");
    midi.AddDevice({.name = "Gone", .input = true, .absent = true});
    midi.AddDevice({.name = "Both", .input = true, .output = true, .interf = "ALSA"});
    WithBox([](QDialog &box, QListWidget &list) {
        EXPECT_EQ(box.windowTitle(), "MIDI Devices");
        ASSERT_EQ(list.count(), 2);
        EXPECT_EQ(list.item(0)->text(), "0: Fake, Keys (input)");
        EXPECT_EQ(list.item(1)->text(), "2: ALSA, Both (input) (output)");
        EXPECT_EQ(list.currentRow(), 0);
        auto *close = box.findChild<QPushButton *>("control_1");
        EXPECT_EQ(close->text(), "Close");
        EXPECT_TRUE(close->hasFocus());
        Click(box, 1);
    });
}

TEST_F(MidiDevicesBox, WithoutDevicesTheListIsEmptyAndTheBoxWorks) {
    WithBox([](QDialog &box, QListWidget &list) {
        EXPECT_EQ(list.count(), 0);
        QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 20));
        QTest::mouseDClick(list.viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 20));
        QTest::qWait(1);
        EXPECT_TRUE(box.isVisible());
        Click(box, 1);
    });
}

TEST_F(MidiDevicesBox, ADoubleClickOnARowClosesTheBox) {
    midi.AddInput("Keys");
    midi.AddInput("Pads");
    WithBox([](QDialog &box, QListWidget &list) {
        QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::NoModifier, RowPoint(list, 1));
        EXPECT_TRUE(box.isVisible());
        QTest::mouseDClick(list.viewport(), Qt::LeftButton, Qt::NoModifier, RowPoint(list, 1));
        QTest::qWait(1);
        EXPECT_FALSE(box.isVisible());
    });
}

TEST_F(MidiDevicesBox, HelpOpensItsTopicAndTheBoxStays) {
    WithBox([&](QDialog &box, QListWidget &) {
        Click(box, 9);
        QTest::keyClick(box.findChild<QPushButton *>("control_9"), Qt::Key_Return);
        EXPECT_EQ(desktop.helpTopics, std::vector<std::string>(2, "COMMUNICATING"));
        EXPECT_TRUE(box.isVisible());
        Click(box, 1);
    });
}

TEST_F(MidiDevicesBox, RowsAreEighteenPixelsHighAndWhiteAlsoTheSelectedOne) {
    midi.AddInput("Keys");
    midi.AddInput("Pads");
    WithBox([](QDialog &box, QListWidget &list) {
        EXPECT_EQ(list.visualItemRect(list.item(0)).height(), 18);
        const QImage picture = list.viewport()->grab().toImage();
        const QRect row = list.visualItemRect(list.item(0));
        for (int y = row.top(); y <= row.bottom(); ++y) {
            for (int x = row.left(); x < row.left() + 4; ++x) {
                ASSERT_EQ(picture.pixelColor(x, y), QColor(Qt::white)) << x << ", " << y;
            }
        }
        bool hasText = false;
        for (int x = row.left() + 4; x < row.left() + 60; ++x) {
            hasText |= picture.pixelColor(x, row.center().y()).lightness() < 100;
        }
        EXPECT_TRUE(hasText);
        Click(box, 1);
    });
}

TEST_F(MidiDevicesBox, ALongNameEndsInAnEllipsisInsideTheList) {
    midi.AddInput(std::string(200, 'W'));
    WithBox([](QDialog &box, QListWidget &list) {
        const QRect row = list.visualItemRect(list.item(0));
        EXPECT_LE(row.width(), list.viewport()->width());
        const QImage picture = list.viewport()->grab().toImage();
        // The dots stand on the base line: nothing dark in the upper half near the right end.
        for (int x = row.right() - 3; x <= row.right(); ++x) {
            EXPECT_GT(picture.pixelColor(x, row.top() + 4).lightness(), 200) << x;
        }
        Click(box, 1);
    });
}

} // namespace
} // namespace tonewright
