// What an audition sends from its opening to its end, and where its keys lie.
#include "midi/audition.h"

#include "common/settings.h"
#include "drivers/dx7/transfer.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/voice_codec.h"
#include "midi/short_messages.h"
#include "support/bank_bytes.h"
#include "support/driver_rows.h"
#include "support/fake_midi.h"
#include "support/scripted_desktop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace tonewright {
namespace {

using Calls = std::vector<std::string>;

const std::string NotUploaded = "The selected voice could not be uploaded.";
const std::string NotOpened = "The MIDI output could not be opened.";

// The calls by which the voice is sent, and what follows them.
Calls BehindTheVoice(const Calls &more) {
    Calls calls = {"Pt_Start(1)",
                   "Pm_OpenOutput(1, 0, 0)",
                   "Pm_WriteShort(1, 0, B2 7D 00)",
                   "Pm_WriteSysEx(1, 0, 163 bytes)",
                   "Pm_WriteShort(1, 0, B2 7C 00)",
                   "Pt_Stop()",
                   "Pm_Close(1)"};
    calls.insert(calls.end(), more.begin(), more.end());
    return calls;
}

class Audition : public testing::Test {
protected:
    void SetUp() override {
        RestoreDriverRows();
        Dx7Row.UploadVoice = Dx7UploadVoice;
        CurrentMidiChannel = 3;
        AuditionCurrentOctave = 5;
        AuditionCurrentVelocity = 100;
    }

    AuditionState Prepared() {
        return *PrepareAudition(nullptr, &voice, Dx7DriverId, {in, out}, 0);
    }
    // An open audition, with nothing recorded so far.
    AuditionState Opened() {
        AuditionState state = Prepared();
        EXPECT_TRUE(OpenAudition(state, nullptr));
        midi.calls.clear();
        midi.written.clear();
        return state;
    }

    ScriptedDesktop desktop;
    FakeMidi midi;
    const int in = midi.AddInput("Instrument");
    const int out = midi.AddOutput("Instrument");
    const VoiceObject voice = MakeVoiceObject(Dx7DriverId, TestUnpackedVoice());
};

TEST_F(Audition, TheWholeLifeOfABox) {
    AuditionState state = Prepared();
    ASSERT_TRUE(OpenAudition(state, nullptr));
    midi.now = 17;
    PressAuditionKey(state, 0);
    EXPECT_EQ(state.sustainedNote, 60);
    midi.now = 30;
    ReleaseAuditionKey(state);
    EXPECT_EQ(state.sustainedNote, NoNote);
    EndAudition(state);
    CloseAudition(state);
    EXPECT_EQ(midi.calls, BehindTheVoice({
                              // The clock stays off from here on.
                              "Pm_OpenOutput(1, 0, 0)",
                              "Pm_WriteShort(1, 0, C2 1F 00)",
                              "Pm_WriteShort(1, 0, C2 00 00)",
                              "Pm_Write(1, 17, 92 3C 64)",
                              "Pm_Write(1, 30, 82 3C 64)",
                              "Pm_Write(1, 30, 82 7F 64)",
                              "Pm_Write(1, 30, B2 78 00)",
                              "Pm_WriteShort(1, 30, C2 1F 00)",
                              "Pm_WriteShort(1, 30, C2 00 00)",
                              "Pm_Close(1)",
                          }));
    std::vector<std::uint8_t> dump = {0xF0, 0x43, 0x00, 0x00, 0x01, 0x1B};
    const auto bytes = TestUnpackedVoice();
    dump.insert(dump.end(), bytes.begin(), bytes.begin() + 155);
    dump.push_back(TestChecksum(std::span(bytes).first(155)));
    dump.push_back(0xF7);
    EXPECT_EQ(midi.written[1].bytes, dump);
}

TEST_F(Audition, OneThatKeepsItsVoiceSelectsNoProgramAndSendsAllElse) {
    AuditionKeepsVoice = 1;
    AuditionState state = Prepared();
    ASSERT_TRUE(OpenAudition(state, nullptr));
    PressAuditionKey(state, 0);
    EndAudition(state);
    CloseAudition(state);
    EXPECT_EQ(midi.calls, BehindTheVoice({
                              "Pm_OpenOutput(1, 0, 0)",
                              "Pm_Write(1, 0, 92 3C 64)",
                              "Pm_Write(1, 0, 82 3C 64)",
                              "Pm_Write(1, 0, B2 78 00)",
                              "Pm_Close(1)",
                          }));
}

TEST_F(Audition, OnClosingWithNoKeyDownTheCloseSequenceGoesOutAllTheSame) {
    AuditionState state = Opened();
    EndAudition(state);
    CloseAudition(state);
    EXPECT_EQ(midi.calls, (Calls{"Pm_Write(1, 0, 82 7F 64)", "Pm_Write(1, 0, B2 78 00)",
                                 "Pm_WriteShort(1, 0, C2 1F 00)", "Pm_WriteShort(1, 0, C2 00 00)",
                                 "Pm_Close(1)"}));
}

TEST_F(Audition, OnClosingWithAKeyDownItsNoteEnds) {
    AuditionState state = Opened();
    PressAuditionKey(state, 7);
    EndAudition(state);
    CloseAudition(state);
    EXPECT_EQ(midi.calls, (Calls{"Pm_Write(1, 0, 92 43 64)", "Pm_Write(1, 0, 82 43 64)",
                                 "Pm_Write(1, 0, B2 78 00)", "Pm_WriteShort(1, 0, C2 1F 00)",
                                 "Pm_WriteShort(1, 0, C2 00 00)", "Pm_Close(1)"}));
}

TEST_F(Audition, TheHighestOctaveWithTheLastKeyGivesNote107) {
    AuditionCurrentOctave = 7;
    AuditionState state = Opened();
    PressAuditionKey(state, 23);
    EXPECT_EQ(state.sustainedNote, 107);
    EndAudition(state);
    CloseAudition(state);
    EXPECT_EQ(midi.calls.front(), "Pm_Write(1, 0, 92 6B 64)");
}

TEST_F(Audition, TheLowestOctaveWithTheFirstKeyGivesNoteZero) {
    AuditionCurrentOctave = 0;
    AuditionState state = Opened();
    PressAuditionKey(state, 0);
    ReleaseAuditionKey(state);
    CloseAudition(state);
    EXPECT_EQ(midi.calls,
              (Calls{"Pm_Write(1, 0, 92 00 64)", "Pm_Write(1, 0, 82 00 64)", "Pm_Close(1)"}));
}

TEST_F(Audition, ANumberBelowZeroPlaysNothingAndLeavesTheNote) {
    AuditionState state = Opened();
    PressAuditionKey(state, 4);
    PressAuditionKey(state, -1);
    EXPECT_EQ(state.sustainedNote, 64);
    EXPECT_EQ(midi.calls, (Calls{"Pm_Write(1, 0, 92 40 64)"}));
    CloseAudition(state);
}

TEST_F(Audition, ANoteIsPlayedWhateverTheOctave) {
    AuditionState state = Opened();
    PlayAuditionNote(state, 60);
    EXPECT_EQ(state.sustainedNote, 60);
    EXPECT_EQ(AuditionCurrentOctave, 5u);
    ReleaseAuditionKey(state);
    CloseAudition(state);
    EXPECT_EQ(midi.calls,
              (Calls{"Pm_Write(1, 0, 92 3C 64)", "Pm_Write(1, 0, 82 3C 64)", "Pm_Close(1)"}));
}

TEST_F(Audition, AKeyIsNamedByItsNoteWithTheMakersOctaves) {
    AuditionCurrentOctave = 5;
    EXPECT_EQ(AuditionKeyName(0), "C3"); // note 60
    EXPECT_EQ(AuditionKeyName(1), "C sharp 3");
    EXPECT_EQ(AuditionKeyName(11), "B3");
    EXPECT_EQ(AuditionKeyName(22), "A sharp 4");
    AuditionCurrentOctave = 0;
    EXPECT_EQ(AuditionKeyName(0), "C-2"); // note 0
    EXPECT_EQ(AuditionKeyName(12), "C-1");
    AuditionCurrentOctave = 7;
    EXPECT_EQ(AuditionKeyName(23), "B6"); // note 107
}

TEST_F(Audition, TheNoteOffNamesTheNoteOfTheLastPress) {
    AuditionState state = Opened();
    PressAuditionKey(state, 0);
    PressAuditionKey(state, 4);
    ReleaseAuditionKey(state);
    ReleaseAuditionKey(state);
    CloseAudition(state);
    EXPECT_EQ(midi.calls,
              (Calls{"Pm_Write(1, 0, 92 3C 64)", "Pm_Write(1, 0, 92 40 64)",
                     "Pm_Write(1, 0, 82 40 64)", "Pm_Write(1, 0, 82 7F 64)", "Pm_Close(1)"}));
}

TEST_F(Audition, AChangeOfTheOctaveWhileAKeyIsDownDoesNotReachTheNoteOff) {
    AuditionState state = Opened();
    PressAuditionKey(state, 0);
    SetAuditionOctave(2);
    SetAuditionVelocity(33);
    ReleaseAuditionKey(state);
    PressAuditionKey(state, 0);
    ReleaseAuditionKey(state);
    CloseAudition(state);
    EXPECT_EQ(midi.calls,
              (Calls{"Pm_Write(1, 0, 92 3C 64)", "Pm_Write(1, 0, 82 3C 21)",
                     "Pm_Write(1, 0, 92 18 21)", "Pm_Write(1, 0, 82 18 21)", "Pm_Close(1)"}));
}

TEST_F(Audition, VelocityOneIsPlayedAndZeroCannotBeReached) {
    AuditionState state = Opened();
    EXPECT_EQ(SetAuditionVelocity(0), 1);
    EXPECT_EQ(AuditionCurrentVelocity, 1u);
    PressAuditionKey(state, 0);
    ReleaseAuditionKey(state);
    CloseAudition(state);
    EXPECT_EQ(midi.calls,
              (Calls{"Pm_Write(1, 0, 92 3C 01)", "Pm_Write(1, 0, 82 3C 01)", "Pm_Close(1)"}));
}

TEST_F(Audition, OctaveAndVelocityAreLimitedToTheirRanges) {
    const std::pair<std::uint32_t, int> octaves[] = {{0, 0}, {7, 7}, {8, 7}, {0xFFFFFFFF, 0}};
    for (const auto &[stored, octave] : octaves) {
        AuditionCurrentOctave = stored;
        EXPECT_EQ(AuditionOctave(), octave) << stored;
        EXPECT_EQ(AuditionCurrentOctave, static_cast<std::uint32_t>(octave));
    }
    const std::pair<std::uint32_t, int> velocities[] = {
        {0, 1}, {1, 1}, {127, 127}, {128, 127}, {0x80000000, 1}};
    for (const auto &[stored, velocity] : velocities) {
        AuditionCurrentVelocity = stored;
        EXPECT_EQ(AuditionVelocity(), velocity) << stored;
        EXPECT_EQ(AuditionCurrentVelocity, static_cast<std::uint32_t>(velocity));
    }
    EXPECT_EQ(SetAuditionOctave(9), 7);
    EXPECT_EQ(SetAuditionOctave(-1), 0);
    EXPECT_EQ(SetAuditionVelocity(200), 127);
}

TEST_F(Audition, EveryChannelHasItsStatusBytes) {
    const std::pair<std::uint32_t, const char *> channels[] = {
        {1, "Pm_Write(1, 0, 90 3C 64)"},
        {16, "Pm_Write(1, 0, 9F 3C 64)"},
        {17, "Pm_Write(1, 0, 90 3C 64)"},
        {0, "Pm_Write(1, 0, 9F 3C 64)"},
    };
    for (const auto &[channel, call] : channels) {
        CurrentMidiChannel = channel;
        AuditionState state = Opened();
        PressAuditionKey(state, 0);
        EXPECT_EQ(midi.calls.back(), call) << channel;
        CloseAudition(state);
    }
}

TEST_F(Audition, TheChannelOfTheRunCountsInsteadOfTheUsers) {
    CurrentMidiChannel = 4;
    for (const auto &[channel, call] :
         {std::pair{16u, "Pm_Write(1, 0, 9F 3C 64)"}, std::pair{0u, "Pm_Write(1, 0, 93 3C 64)"}}) {
        ChannelOfThisRun = channel;
        AuditionState state = Opened();
        PressAuditionKey(state, 0);
        EXPECT_EQ(midi.calls.back(), call) << channel;
        CloseAudition(state);
    }
}

TEST_F(Audition, TheUploadGetsListVoicePortsPlaceAndNoPrompts) {
    static std::string received;
    received.clear();
    RefaceRow.UploadVoice = [](QWidget *, VoiceList &list, const VoiceObject *sent, MidiPorts ports,
                               int index, std::uint8_t flags) {
        received = std::to_string(ListCount(list)) + " rows, " +
                   std::to_string(sent->bytes.size()) + " bytes, " + std::to_string(ports.in) +
                   " to " + std::to_string(ports.out) + ", item " + std::to_string(index) +
                   ", flags " + std::to_string(flags);
        return 1;
    };
    VoiceList list;
    ListAdd(list);
    ListAdd(list);
    ListSetVoice(list, 1, voice);
    auto state = PrepareAudition(&list, nullptr, RefaceDriverId, {in, out}, 1);
    ASSERT_TRUE(state.has_value());
    EXPECT_TRUE(OpenAudition(*state, nullptr));
    EXPECT_EQ(received, "2 rows, 208 bytes, 0 to 1, item 1, flags 0");
    CloseAudition(*state);

    state = PrepareAudition(nullptr, &voice, RefaceDriverId, {in, out}, 0);
    EXPECT_TRUE(OpenAudition(*state, nullptr));
    EXPECT_EQ(received, "0 rows, 208 bytes, 0 to 1, item 0, flags 0");
    CloseAudition(*state);
}

TEST_F(Audition, AFailedUploadIsToldAndTheOpeningGoesOn) {
    Dx7Row.UploadVoice = [](QWidget *, VoiceList &, const VoiceObject *, MidiPorts, int,
                            std::uint8_t) { return 0; };
    desktop.ExpectMessage(NotUploaded);
    AuditionState state = Prepared();
    EXPECT_FALSE(OpenAudition(state, nullptr));
    EXPECT_EQ(midi.calls, (Calls{"Pm_OpenOutput(1, 0, 0)", "Pm_WriteShort(1, 0, C2 1F 00)",
                                 "Pm_WriteShort(1, 0, C2 00 00)"}));
    CloseAudition(state);
}

TEST_F(Audition, ARowWithoutUploadAndAnIdWithoutRowCountAsAFailedUpload) {
    Dx7Row.UploadVoice = nullptr;
    for (const DriverId id : {Dx7DriverId, NoDriverId}) {
        desktop.ExpectMessage(NotUploaded);
        auto state = PrepareAudition(nullptr, &voice, id, {in, out}, 0);
        ASSERT_TRUE(state.has_value());
        EXPECT_FALSE(OpenAudition(*state, nullptr));
        CloseAudition(*state);
    }
}

TEST_F(Audition, AnOutputThatDoesNotOpenIsToldAndNothingIsSent) {
    Dx7Row.UploadVoice = [](QWidget *, VoiceList &, const VoiceObject *, MidiPorts, int,
                            std::uint8_t) { return 1; };
    midi.devices[static_cast<std::size_t>(out)].opens = false;
    desktop.ExpectMessage(NotOpened);
    AuditionState state = Prepared();
    EXPECT_FALSE(OpenAudition(state, nullptr));
    EndAudition(state);
    CloseAudition(state);
    EXPECT_EQ(midi.calls, (Calls{"Pm_OpenOutput(1, 0, 0)"}));
}

TEST_F(Audition, WithoutAPortBothMessagesFollowEachOther) {
    desktop.ExpectMessage(NotUploaded);
    desktop.ExpectMessage(NotOpened);
    auto state = PrepareAudition(nullptr, &voice, Dx7DriverId, {}, 0);
    ASSERT_TRUE(state.has_value());
    EXPECT_FALSE(OpenAudition(*state, nullptr));
    EndAudition(*state);
    CloseAudition(*state);
    EXPECT_TRUE(midi.written.empty());
}

TEST_F(Audition, WithoutAVoiceNothingIsPrepared) {
    VoiceList list;
    ListAdd(list); // a row without a voice
    EXPECT_FALSE(PrepareAudition(&list, nullptr, Dx7DriverId, {in, out}, 0).has_value());
    EXPECT_FALSE(PrepareAudition(&list, nullptr, Dx7DriverId, {in, out}, 1).has_value());
    EXPECT_FALSE(PrepareAudition(&list, nullptr, Dx7DriverId, {in, out}, -1).has_value());
    EXPECT_FALSE(PrepareAudition(nullptr, nullptr, Dx7DriverId, {in, out}, 0).has_value());
}

TEST_F(Audition, AGivenVoiceGoesBeforeTheListsAndIsACopy) {
    VoiceList list;
    ListAdd(list);
    ListSetVoice(list, 0, MakeVoiceObject(Dx7DriverId, std::vector<std::uint8_t>(156, 1)));
    VoiceObject given = voice;
    const auto state = PrepareAudition(&list, &given, Dx7DriverId, {in, out}, 0);
    given.bytes.clear();
    ASSERT_TRUE(state.has_value());
    EXPECT_EQ(state->voice, voice);
    EXPECT_EQ(state->sustainedNote, NoNote);
    EXPECT_EQ(state->outputStream, NoMidiStream);
}

TEST_F(Audition, HoldingShiftWhileTheBoxOpensSwapsTheColours) {
    EXPECT_EQ(Prepared().colours, (AuditionColours{.whiteKey = {0xF1, 0xED, 0xE0},
                                                   .blackKey = {0x30, 0x29, 0x16},
                                                   .outline = {0x12, 0x0F, 0x00}}));
    desktop.shiftDown = true;
    const AuditionState state = Prepared();
    desktop.shiftDown = false;
    EXPECT_EQ(state.colours, (AuditionColours{.whiteKey = {0x10, 0x0C, 0x0A},
                                              .blackKey = {0xF1, 0xED, 0xE0},
                                              .outline = {0xF1, 0xED, 0xE0}}));
}

constexpr int WhiteKeys[] = {0, 2, 4, 5, 7, 9, 11, 12, 14, 16, 17, 19, 21, 23};
constexpr int BlackKeys[] = {1, 3, 6, 8, 10, 13, 15, 18, 20, 22};
constexpr std::pair<int, int> KeyboardSizes[] = {
    {336, 98}, {588, 196}, {337, 99}, {1091, 317}, {200, 61}};

std::map<int, KeyPart> PartsByControl(int width, int height) {
    std::map<int, KeyPart> parts;
    for (const KeyPart &part : AuditionKeyParts(width, height)) {
        EXPECT_TRUE(parts.emplace(part.control, part).second) << part.control << " comes twice";
    }
    return parts;
}

TEST(AuditionKeys, AWhiteKeyHasTwoPartsAndABlackKeyOne) {
    const auto parts = PartsByControl(336, 98);
    EXPECT_EQ(parts.size(), 38u);
    for (const int key : WhiteKeys) {
        ASSERT_TRUE(parts.contains(500 + key)) << key;
        ASSERT_TRUE(parts.contains(12500 + key)) << key;
        EXPECT_EQ(parts.at(500 + key).kind, KeyPartKind::LowerWhite);
        EXPECT_EQ(parts.at(12500 + key).kind, KeyPartKind::UpperWhite);
        EXPECT_EQ(parts.at(500 + key).key, key);
        EXPECT_EQ(parts.at(12500 + key).key, key);
    }
    for (const int key : BlackKeys) {
        ASSERT_TRUE(parts.contains(500 + key)) << key;
        EXPECT_EQ(parts.at(500 + key).kind, KeyPartKind::Black);
        EXPECT_EQ(parts.at(500 + key).key, key);
        EXPECT_FALSE(parts.contains(12500 + key)) << key;
    }
}

TEST(AuditionKeys, InDialogUnitsTheyHaveTheirMeasures) {
    const auto parts = PartsByControl(336, 98);
    int place = 0;
    for (const int key : WhiteKeys) {
        const KeyPart &lower = parts.at(500 + key);
        EXPECT_EQ(lower.area.left, 24 * place);
        EXPECT_EQ(lower.area.right, 24 * place + 24);
        EXPECT_EQ(lower.area.top, 56);
        EXPECT_EQ(lower.area.bottom, 98);
        EXPECT_EQ(parts.at(12500 + key).area.top, 0);
        EXPECT_EQ(parts.at(12500 + key).area.bottom, 56);
        ++place;
    }
    for (const int key : BlackKeys) {
        const KeyPart &black = parts.at(500 + key);
        EXPECT_EQ(black.area.right - black.area.left, 16);
        EXPECT_EQ(black.area.top, 0);
        EXPECT_EQ(black.area.bottom, 56);
    }
}

TEST(AuditionKeys, ThePartsCoverTheKeyboardWithoutGapOrOverlap) {
    for (const auto &[width, height] : KeyboardSizes) {
        std::vector<int> covered(static_cast<std::size_t>(width) * static_cast<unsigned>(height));
        for (const KeyPart &part : AuditionKeyParts(width, height)) {
            for (int y = part.area.top; y < part.area.bottom; ++y) {
                for (int x = part.area.left; x < part.area.right; ++x) {
                    ++covered.at(static_cast<std::size_t>(y * width + x));
                }
            }
        }
        EXPECT_TRUE(std::ranges::all_of(covered, [](int times) { return times == 1; }))
            << width << " x " << height;
    }
}

TEST(AuditionKeys, ABlackKeyStandsOverTheEdgeOfItsNeighbours) {
    for (const auto &[width, height] : KeyboardSizes) {
        const auto parts = PartsByControl(width, height);
        for (const int key : BlackKeys) {
            const KeyPart &black = parts.at(500 + key);
            const int edge = parts.at(500 + key - 1).area.right;
            EXPECT_EQ(parts.at(500 + key + 1).area.left, edge) << key;
            EXPECT_LT(black.area.left, edge) << key;
            EXPECT_GT(black.area.right, edge) << key;
            EXPECT_EQ(parts.at(12500 + key - 1).area.right, black.area.left) << key;
            EXPECT_EQ(parts.at(12500 + key + 1).area.left, black.area.right) << key;
        }
    }
}

TEST(AuditionKeys, TheUpperPartLiesOverTheLowerPartOfItsKey) {
    for (const auto &[width, height] : KeyboardSizes) {
        const auto parts = PartsByControl(width, height);
        for (const int key : WhiteKeys) {
            const KeyPart &upper = parts.at(12500 + key), &lower = parts.at(500 + key);
            EXPECT_GE(upper.area.left, lower.area.left) << key;
            EXPECT_LE(upper.area.right, lower.area.right) << key;
            EXPECT_EQ(upper.area.bottom, lower.area.top) << key;
            EXPECT_GT(upper.area.right, upper.area.left) << key;
        }
    }
}

} // namespace
} // namespace tonewright
