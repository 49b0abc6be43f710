// The keys of the computer that play, and the chords that they play over a scripted MIDI table.
#include "midi/computer_keys.h"

#include "common/settings.h"
#include "drivers/dx7/voice_codec.h"
#include "midi/audition.h"
#include "support/bank_bytes.h"
#include "support/fake_midi.h"
#include "support/scripted_desktop.h"

#include <gtest/gtest.h>

#include <string_view>

namespace tonewright {
namespace {

using Calls = std::vector<std::string>;

TEST(ComputerKeys, TheTwoRowsAreTwoKeyboardsAnOctaveApart) {
    int expected = 0;
    for (const char letter : std::string_view("ZSXDCVGBHNJM,L.;/")) {
        EXPECT_EQ(PianoKeyOfLetter(letter), expected++) << letter;
    }
    expected = 12;
    for (const char letter : std::string_view("Q2W3ER5T6Y7UI9O0P[=]")) {
        EXPECT_EQ(PianoKeyOfLetter(letter), expected++) << letter;
    }
    for (const char letter : std::string_view("AFK14 8z-'")) {
        EXPECT_EQ(PianoKeyOfLetter(letter), std::nullopt) << letter;
    }
}

TEST(ComputerKeys, APlaceIsThatOfAPcKeyboardInRowsFromLeftToRight) {
    // 2 to 13 the digits from 1, 16 to 27 the row from Q, 30 to 40 that from A, 44 to 53 from Z.
    constexpr std::string_view Board = "1234567890-=";
    constexpr std::string_view Upper = "QWERTYUIOP[]";
    constexpr std::string_view Middle = "ASDFGHJKL;'";
    constexpr std::string_view Lower = "ZXCVBNM,./";
    std::uint32_t code = 2;
    for (const auto &[row, first] : std::vector<std::pair<std::string_view, std::uint32_t>>{
             {Board, 2}, {Upper, 16}, {Middle, 30}, {Lower, 44}}) {
        code = first;
        for (const char letter : row) {
            EXPECT_EQ(PianoKeyAtPlace(code), PianoKeyOfLetter(letter)) << letter;
            ++code;
        }
    }
    EXPECT_EQ(PianoKeyAtPlace(0), std::nullopt);
    EXPECT_EQ(PianoKeyAtPlace(57), std::nullopt); // the space bar
    EXPECT_EQ(PianoKeyAtPlace(28), std::nullopt); // Enter
}

class Chords : public testing::Test {
protected:
    void SetUp() override {
        CurrentMidiChannel = 1;
        AuditionCurrentOctave = 5;
        AuditionCurrentVelocity = 100;
        state = *PrepareAudition(nullptr, &voice, Dx7DriverId, {in, out}, 0);
        ASSERT_TRUE(SendAudition(state, nullptr));
        midi.calls.clear();
    }
    void TearDown() override { CloseAudition(state); }

    ScriptedDesktop desktop;
    FakeMidi midi;
    const int in = midi.AddInput("Instrument");
    const int out = midi.AddOutput("Instrument");
    const VoiceObject voice = MakeVoiceObject(Dx7DriverId, TestUnpackedVoice());
    AuditionState state;
};

TEST_F(Chords, EachKeySoundsUntilItIsLetGo) {
    EXPECT_TRUE(PressComputerKey(state, 52, 0));
    EXPECT_TRUE(PressComputerKey(state, 54, 4));
    EXPECT_FALSE(PressComputerKey(state, 52, 0)); // held already
    EXPECT_EQ(ReleaseComputerKey(state, 52), 0);
    EXPECT_EQ(ReleaseComputerKey(state, 52), std::nullopt);
    EXPECT_EQ(ReleaseComputerKey(state, 54), 4);
    EXPECT_EQ(midi.calls, (Calls{"Pm_Write(1, 0, 90 3C 64)", "Pm_Write(1, 0, 90 40 64)",
                                 "Pm_Write(1, 0, 80 3C 64)", "Pm_Write(1, 0, 80 40 64)"}));
    EXPECT_EQ(state.sustainedNote, NoNote); // the mouse's
}

TEST_F(Chords, AKeyEndsTheNoteThatItBeganWhateverTheOctaveIsByThen) {
    PressComputerKey(state, 1, 0);
    SetAuditionOctave(3);
    ReleaseComputerKey(state, 1);
    EXPECT_EQ(midi.calls, (Calls{"Pm_Write(1, 0, 90 3C 64)", "Pm_Write(1, 0, 80 3C 64)"}));
}

TEST_F(Chords, ANoteThatTwoKeysHoldBeginsWithTheFirstAndEndsWithTheLast) {
    PressComputerKey(state, 1, 12); // the comma
    PressComputerKey(state, 2, 12); // and the Q
    ReleaseComputerKey(state, 1);
    EXPECT_EQ(midi.calls, Calls{"Pm_Write(1, 0, 90 48 64)"});
    ReleaseComputerKey(state, 2);
    EXPECT_EQ(midi.calls, (Calls{"Pm_Write(1, 0, 90 48 64)", "Pm_Write(1, 0, 80 48 64)"}));
}

TEST_F(Chords, ANoteOfTheMouseGoesOnAndEndsAsItDoesWithoutKeys) {
    PressAuditionKey(state, 0);
    PressComputerKey(state, 1, 0);
    ReleaseComputerKey(state, 1);
    EXPECT_EQ(midi.calls, Calls{"Pm_Write(1, 0, 90 3C 64)"});
    PressComputerKey(state, 1, 0);
    ReleaseAuditionKey(state);
    EXPECT_EQ(midi.calls, (Calls{"Pm_Write(1, 0, 90 3C 64)", "Pm_Write(1, 0, 80 3C 64)"}));
    ReleaseComputerKey(state, 1); // once more does no harm
    EXPECT_EQ(midi.calls.back(), "Pm_Write(1, 0, 80 3C 64)");
}

TEST_F(Chords, TheEndOfTheBoxEndsEveryKeyAheadOfWhatItSendsAnyway) {
    PressComputerKey(state, 1, 0);
    PressComputerKey(state, 2, 7);
    EndAudition(state);
    EXPECT_EQ(
        midi.calls,
        (Calls{"Pm_Write(1, 0, 90 3C 64)", "Pm_Write(1, 0, 90 43 64)", "Pm_Write(1, 0, 80 43 64)",
               "Pm_Write(1, 0, 80 3C 64)", "Pm_Write(1, 0, 80 7F 64)", "Pm_Write(1, 0, B0 78 00)",
               "Pm_WriteShort(1, 0, C0 1F 00)", "Pm_WriteShort(1, 0, C0 00 00)"}));
    EXPECT_TRUE(state.computerKeys.empty());
}

} // namespace
} // namespace tonewright
