// What the choices of the box "Built-in Instruments" do.
#include "shell/instruments_flow.h"

#include "common/settings.h"
#include "core/current.h"
#include "settings_fixture.h"
#include "shell/settings_file.h"
#include "support/fake_midi.h"
#include "support/scripted_desktop.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

constexpr const char *Offer =
    "When an audition has sent its voice, it selects the last program of the instrument and then "
    "the first. A built-in instrument, like many others, then plays the first voice of its memory, "
    "and not the one that you have chosen.\n\nShall an audition select no program, so that you "
    "hear the voice that was sent? The menu Extras has an entry for it.";

class InstrumentsFlow : public SettingsHome {
protected:
    // The rows that stand in the user's file.
    std::string Kept() const {
        const std::string text =
            std::filesystem::exists(extras) ? ReadTestText(extras) : std::string();
        const auto rows = text.find("[Extras]\n");
        return rows == std::string::npos ? std::string() : text.substr(rows + 9);
    }

    ScriptedDesktop desktop;
    FakeMidi midi;
};

TEST_F(InstrumentsFlow, TheBoxShowsTheSettingsWithinTheirRanges) {
    EXPECT_EQ(CurrentInstrumentsChoice(),
              (InstrumentsChoice{
                  .wanted = false, .device = "", .volume = 100, .buffer = 256, .polyphony = 16}));
    BuiltinInstruments = 7; // any number but 0 is on
    InstrumentDevice = "Speaker";
    InstrumentVolume = 300;
    InstrumentBuffer = 1;
    InstrumentPolyphony = 65;
    EXPECT_EQ(
        CurrentInstrumentsChoice(),
        (InstrumentsChoice{
            .wanted = true, .device = "Speaker", .volume = 100, .buffer = 128, .polyphony = 64}));
}

TEST_F(InstrumentsFlow, WhatWasChosenIsKeptAndNothingElse) {
    InstrumentsChoice choice = CurrentInstrumentsChoice();
    AcceptInstrumentsChoice(choice);
    EXPECT_EQ(Kept(), "");
    InstrumentVolume = 300; // stays, since no other volume is chosen
    choice.device = "Speaker";
    choice.polyphony = 32;
    AcceptInstrumentsChoice(choice);
    EXPECT_EQ(InstrumentVolume, 300u);
    EXPECT_EQ(Kept(), "InstrumentDevice = Speaker\nInstrumentPolyphony = 32\n");
    EXPECT_TRUE(midi.calls.empty()); // no look for devices
}

TEST_F(InstrumentsFlow, SwitchedOnItLooksForDevicesAndOffersToKeepTheVoice) {
    InstrumentsChoice choice = CurrentInstrumentsChoice();
    choice.wanted = true;
    midi.onRescan = [] { EXPECT_EQ(BuiltinInstruments, 1u); };
    desktop.ExpectYesNo(Offer, ResultYes);
    AcceptInstrumentsChoice(choice);
    EXPECT_EQ(midi.calls, std::vector<std::string>{"RescanDevices()"});
    EXPECT_EQ(AuditionKeepsVoice, 1u);
    EXPECT_EQ(Kept(), "AuditionKeepsVoice = 1\nBuiltinInstruments = 1\n");
    midi.onRescan = nullptr;
    // Where the voice is kept already, nothing is asked.
    choice.wanted = false;
    AcceptInstrumentsChoice(choice);
    EXPECT_EQ(BuiltinInstruments, 0u);
    choice.wanted = true;
    AcceptInstrumentsChoice(choice);
    EXPECT_EQ(midi.calls.size(), 3u);
    EXPECT_EQ(BuiltinInstruments, 1u);
}

TEST_F(InstrumentsFlow, TheOfferThatIsDeclinedChangesNothing) {
    InstrumentsChoice choice = CurrentInstrumentsChoice();
    choice.wanted = true;
    desktop.ExpectYesNo(Offer, ResultNo);
    AcceptInstrumentsChoice(choice);
    EXPECT_EQ(BuiltinInstruments, 1u);
    EXPECT_EQ(AuditionKeepsVoice, 0u);
    EXPECT_EQ(Kept(), "BuiltinInstruments = 1\n");
    choice.volume = 5;
    AcceptInstrumentsChoice(choice); // it is asked when they come, not each time
    EXPECT_EQ(InstrumentVolume, 5u);
}

TEST_F(InstrumentsFlow, ThePortsInUseFollowTheirDevices) {
    midi.AddInput("Keys");
    midi.AddOutput("Module");
    MidiInPort = 0;
    MidiOutPort = 1;
    AuditionKeepsVoice = 1;
    midi.onRescan = [this] {
        midi.devices.push_front({.name = "Built-in DX7", .input = true, .output = true});
    };
    InstrumentsChoice choice = CurrentInstrumentsChoice();
    choice.wanted = true;
    AcceptInstrumentsChoice(choice);
    EXPECT_EQ(MidiInPort, 1);
    EXPECT_EQ(MidiOutPort, 2);
}

TEST_F(InstrumentsFlow, WhatCannotBeKeptCountsAllTheSameAndIsSaidOnce) {
    std::filesystem::remove_all(maker);
    desktop.ExpectMessage("This choice counts until Tonewright ends. It could not be kept for the "
                          "next start:\n\n" +
                          extras + ": No such file or directory");
    InstrumentsChoice choice = CurrentInstrumentsChoice();
    choice.volume = 1;
    choice.buffer = 512;
    choice.polyphony = 8;
    AcceptInstrumentsChoice(choice);
    EXPECT_EQ(InstrumentVolume, 1u);
    EXPECT_EQ(InstrumentBuffer, 512u);
    EXPECT_EQ(InstrumentPolyphony, 8u);
}

TEST_F(InstrumentsFlow, WhatIsKeptWithoutABackupOfItsFileIsKeptAllTheSame) {
    WriteTestText(extras, "CarefulMode = 1\n");
    std::filesystem::create_directory(maker + "Tonewright 17/Backup of Extras.ini");
    const std::string message = "This choice is kept. The version of its file before it could not "
                                "be kept as a backup:\n\n" +
                                extras + ": File exists";
    desktop.ExpectMessage(message);
    desktop.ExpectMessage(message);
    InstrumentsChoice choice = CurrentInstrumentsChoice();
    choice.volume = 1;
    choice.buffer = 512;
    AcceptInstrumentsChoice(choice);
    EXPECT_EQ(Kept(), "CarefulMode = 1\nInstrumentVolume = 1\nInstrumentBuffer = 512\n");
}

std::vector<std::string> Texts(const std::vector<DeviceRow> &rows) {
    std::vector<std::string> texts;
    for (const DeviceRow &row : rows) {
        texts.push_back(row.text + "|" + row.name);
    }
    return texts;
}

TEST(InstrumentsRows, TheDefaultComesFirstAndAChosenDeviceStaysWhileItIsNotThere) {
    using Rows = std::vector<std::string>;
    EXPECT_EQ(Texts(DeviceRows({}, "", true)), Rows{"System default|"});
    EXPECT_EQ(Texts(DeviceRows({{.name = "Speaker"}, {.name = "Phones"}}, "Phones", true)),
              (Rows{"System default|", "Speaker|Speaker", "Phones|Phones"}));
    EXPECT_EQ(Texts(DeviceRows({{.name = "Speaker"}}, "Phones", false)),
              (Rows{"System default|", "Speaker|Speaker", "Phones|Phones"}));
}

TEST(InstrumentsRows, ABufferOfTheFileStandsAmongThoseToChooseFrom) {
    EXPECT_EQ(BufferRows(256), (std::vector<int>{128, 256, 512, 1024, 2048}));
    EXPECT_EQ(BufferRows(300), (std::vector<int>{128, 256, 300, 512, 1024, 2048}));
    EXPECT_EQ(BufferText(256), "256 frames (5.3 ms)");
    EXPECT_EQ(BufferText(2048), "2048 frames (42.7 ms)");
}

} // namespace
} // namespace tonewright
