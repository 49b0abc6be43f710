// The box "Built-in Instruments" of the Extras menu.
#include "window_fixture.h"

#include "common/audio_output.h"
#include "support/environment.h"
#include "support/fake_midi.h"
#include "support/put_back.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>

#include <condition_variable>
#include <mutex>

namespace tonewright {
namespace {

// A search may outlive its test.
struct Cards {
    std::mutex mutex;
    std::condition_variable changed;
    bool hang = false; // the search goes on until it is false
    int asked = 0;
    std::vector<AudioDevice> found = {{.name = "Speaker"}, {.name = "Phones"}};
};

class InstrumentsBox : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        MakeProgramFolders();
        TheAudioOutput.Devices = [cards = cards](std::string &why) {
            std::unique_lock lock(cards->mutex);
            ++cards->asked;
            cards->changed.wait(lock, [&] { return !cards->hang; });
            why = cards->found.empty() ? "no sound card was found" : "";
            return cards->found;
        };
    }
    void LetAnswer() {
        const std::lock_guard lock(cards->mutex);
        cards->hang = false;
        cards->changed.notify_all();
    }
    void WithInstruments(const std::function<void(QDialog &)> &use) {
        EXPECT_TRUE(WithBox([this] { Trigger(CommandInstruments); }, use));
    }
    template <typename Widget> static Widget &Part(QDialog &box, int number) {
        auto *part = box.findChild<Widget *>(QString("control_%1").arg(number));
        EXPECT_NE(part, nullptr) << number;
        return *part;
    }
    static std::string LineOf(QDialog &box) { return Part<QLabel>(box, 103).text().toStdString(); }
    static std::vector<std::string> ItemsOf(QComboBox &combo) {
        std::vector<std::string> items;
        for (int item = 0; item < combo.count(); ++item) {
            items.push_back(combo.itemText(item).toStdString());
        }
        return items;
    }
    std::string Kept() const {
        const std::string file = home.File("Quillbrook/Tonewright 17/Extras.ini");
        return std::filesystem::exists(file) ? ReadTestText(file) : std::string();
    }

    const EnvironmentVariable sound{"TONEWRIGHT_SOUND", "1"};
    FakeMidi midi;
    const PutBack<AudioOutput> former{TheAudioOutput};
    const std::shared_ptr<Cards> cards = std::make_shared<Cards>();
};

TEST_F(InstrumentsBox, ShowsTheSettingsAndCancelLeavesThem) {
    InstrumentVolume = 40;
    InstrumentBuffer = 1024;
    InstrumentPolyphony = 24;
    WithInstruments([](QDialog &box) {
        EXPECT_EQ(box.windowTitle(), "Built-in Instruments");
        EXPECT_FALSE(Part<QCheckBox>(box, 101).isChecked());
        EXPECT_EQ(Part<QComboBox>(box, 102).currentText(), "System default");
        EXPECT_EQ(Part<QSlider>(box, 104).value(), 40);
        EXPECT_EQ(Part<QLabel>(box, 12104).text(), "40");
        EXPECT_EQ(Part<QComboBox>(box, 105).currentText(), "1024 frames (21.3 ms)");
        EXPECT_EQ(Part<QComboBox>(box, 105).count(), 5);
        EXPECT_EQ(Part<QLineEdit>(box, 106).text(), "24");
        QTest::keyClick(&Part<QSlider>(box, 104), Qt::Key_End);
        EXPECT_EQ(Part<QLabel>(box, 12104).text(), "100");
        Part<QCheckBox>(box, 101).click();
        QTest::mouseClick(&Part<QPushButton>(box, 2), Qt::LeftButton);
    });
    EXPECT_EQ(InstrumentVolume, 40u);
    EXPECT_EQ(BuiltinInstruments, 0u);
    EXPECT_EQ(Kept(), "");
    EXPECT_TRUE(midi.calls.empty());
}

TEST_F(InstrumentsBox, OkKeepsWhatWasChosenAndLooksForDevices) {
    AuditionKeepsVoice = 1;
    WithInstruments([](QDialog &box) {
        auto &devices = Part<QComboBox>(box, 102);
        EXPECT_TRUE(QTest::qWaitFor([&] { return devices.count() == 3; }));
        EXPECT_EQ(ItemsOf(devices),
                  (std::vector<std::string>{"System default", "Speaker", "Phones"}));
        EXPECT_EQ(LineOf(box), "");
        QTest::keyClick(&Part<QCheckBox>(box, 101), Qt::Key_Space);
        devices.setCurrentIndex(2);
        QTest::keyClick(&Part<QSlider>(box, 104), Qt::Key_Left);
        QTest::keyClick(&Part<QComboBox>(box, 105), Qt::Key_Down);
        Part<QLineEdit>(box, 106).setText("99");
    });
    EXPECT_TRUE(Kept().ends_with("[Extras]\nBuiltinInstruments = 1\nInstrumentDevice = Phones\n"
                                 "InstrumentVolume = 99\nInstrumentBuffer = 512\n"
                                 "InstrumentPolyphony = 64\n"))
        << Kept();
    EXPECT_EQ(midi.calls, std::vector<std::string>{"RescanDevices()"});
}

TEST_F(InstrumentsBox, TheOfferToKeepTheVoiceComesBehindTheBox) {
    desktop.Expect(ExpectedMessage{
        .text = "When an audition has sent its voice, it selects the last program of the "
                "instrument and then the first. A built-in instrument, like many others, then "
                "plays the first voice of its memory, and not the one that you have chosen.\n\n"
                "Shall an audition select no program, so that you hear the voice that was sent? "
                "The menu Extras has an entry for it.",
        .buttons = {"Yes", "No"},
        .answer = ResultYes,
        .during = [](MessageRequest &) { EXPECT_EQ(QApplication::activeModalWidget(), nullptr); }});
    WithInstruments([](QDialog &box) { Part<QCheckBox>(box, 101).click(); });
    EXPECT_EQ(AuditionKeepsVoice, 1u);
    EXPECT_TRUE(window->MenuAction(CommandAuditionKeepsVoice)->isChecked());
}

TEST_F(InstrumentsBox, IsThereBeforeTheDevicesAreAndShowsASignOfLife) {
    cards->hang = true;
    InstrumentDevice = "Phones";
    WithInstruments([this](QDialog &box) {
        auto &devices = Part<QComboBox>(box, 102);
        EXPECT_EQ(ItemsOf(devices), (std::vector<std::string>{"System default", "Phones"}));
        EXPECT_EQ(devices.currentText(), "Phones");
        EXPECT_TRUE(LineOf(box).starts_with("Looking for sound devices"));
        const std::string line = LineOf(box);
        EXPECT_TRUE(QTest::qWaitFor([&] { return LineOf(box) != line; }));
        EXPECT_TRUE(LineOf(box).starts_with("Looking for sound devices"));
        LetAnswer();
        EXPECT_TRUE(QTest::qWaitFor([&] { return devices.count() == 3; }));
        EXPECT_EQ(devices.currentText(), "Phones");
    });
}

TEST_F(InstrumentsBox, SaysOfADeviceThatIsGoneThatItWasNotFound) {
    InstrumentDevice = "Headset";
    WithInstruments([](QDialog &box) {
        const auto &devices = Part<QComboBox>(box, 102);
        EXPECT_TRUE(QTest::qWaitFor([&] { return devices.count() == 4; }));
        EXPECT_EQ(devices.currentText(), "Headset (not found)");
    });
    EXPECT_EQ(InstrumentDevice, "Headset");
    cards->found.clear();
    WithInstruments([](QDialog &box) {
        EXPECT_TRUE(QTest::qWaitFor([&] { return LineOf(box).starts_with("No sound"); }));
        EXPECT_EQ(Part<QComboBox>(box, 102).currentText(), "Headset (not found)");
    });
}

TEST_F(InstrumentsBox, ASearchThatHangsIsSaidNotToAnswerAndMayStillEnd) {
    cards->hang = true;
    WithInstruments([this](QDialog &box) {
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return LineOf(box) == "No sound: the sound system does not answer."; }, 20000));
        LetAnswer();
        EXPECT_TRUE(QTest::qWaitFor([&] { return Part<QComboBox>(box, 102).count() == 3; }));
        EXPECT_EQ(LineOf(box), "");
    });
}

TEST_F(InstrumentsBox, MayBeClosedWhileTheSearchGoesOn) {
    cards->hang = true;
    WithInstruments([](QDialog &) {});
    LetAnswer();
}

TEST_F(InstrumentsBox, SaysWhyThereIsNoSound) {
    cards->found.clear();
    WithInstruments([](QDialog &box) {
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return LineOf(box) == "No sound: no sound card was found."; }));
    });
}

TEST_F(InstrumentsBox, WhereTheComputerIsToBeQuietNobodyLooksForDevices) {
    const EnvironmentVariable quiet("TONEWRIGHT_SOUND", "0");
    WithInstruments([](QDialog &box) {
        EXPECT_EQ(LineOf(box), "No sound: TONEWRIGHT_SOUND=0 keeps the instruments silent.");
    });
    EXPECT_EQ(cards->asked, 0);
}

} // namespace
} // namespace tonewright
