// Every operation that talks to a reface DX against every fault of the built-in one: what is told,
// what the list holds, and in which state instrument, ports and desktop are left.
#include "common/settings.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "drivers/reface_dx/find.h"
#include "drivers/reface_dx/transfer.h"
#include "drivers/reface_dx/voice_codec.h"
#include "midi/instruments/builtin_instruments.h"
#include "support/builtin_midi.h"
#include "support/reface_bytes.h"
#include "support/scripted_desktop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <ctime>
#include <utility>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr auto Reface = BuiltinInstrument::Reface;
constexpr int In = 4, Out = 5;    // ports of the built-in reface DX
constexpr int Voices = 32;        // of its memory
constexpr int Wait = 1500;        // SysexWait
constexpr int EventsOfVoice = 65; // of four bytes: 4, 13, 4 * 11, 4
constexpr int EventsOfSystem = 12;
constexpr int EditedVoice = 40; // what the edit buffer holds at first
constexpr int GivenVoice = 50;  // sent by the uploads

// The settings of a user: channels of their own and MIDI control off, so that no program change is
// heard before a transfer has seen to it.
const Bytes UserSettings = {
    0x04, 0x03, 0x00, 0x03, 0x0F, 0x05, 0x00, 0x45, // channels, tune, local control, transpose
    0x01, 0x10, 0x2A, 0x01, 0x01, 0x01, 0x00,       // tempo, contrast, pedal, power, speaker, MIDI
    0x51, 0x52, 0x53, 0x54, 0x55, 0x56, 0x57, 0x58, 0x59,
    0x5A, 0x5B, 0x5C, 0x5D, 0x5E, 0x5F, 0x60, 0x61,
};

// A voice as the instrument holds it: 38 and 4 * 28 bytes, all telling which voice they are of.
Bytes CommonOf(int number) {
    return TestRefaceCommon(number);
}
Bytes OperatorOf(int number, int index) {
    Bytes bytes = TestRefaceOperator(index);
    bytes[17] = static_cast<std::uint8_t>(number);
    return bytes;
}

// Of which voices the five blocks are; None for zeros.
constexpr int None = -1;
using Sources = std::array<int, 5>; // common, operators 0 to 3
Sources All(int number) {
    return {number, number, number, number, number};
}
Bytes VoiceOf(const Sources &sources) {
    Bytes voice = sources[0] == None ? Bytes(38, 0) : CommonOf(sources[0]);
    for (int index = 0; index < 4; ++index) {
        const int source = sources[static_cast<std::size_t>(index) + 1];
        const Bytes bytes = source == None ? Bytes(28, 0) : OperatorOf(source, index);
        voice.insert(voice.end(), bytes.begin(), bytes.end());
    }
    return voice;
}
VoiceObject ObjectOf(const Bytes &voice) {
    Bytes block = TestRefaceBlock(0);
    block.resize(52);
    block.insert(block.end(), voice.begin(), voice.end());
    return VoiceObject{block};
}

std::vector<Sources> AllVoices() {
    std::vector<Sources> voices;
    for (int number = 0; number < Voices; ++number) {
        voices.push_back(All(number));
    }
    return voices;
}

// One instrument, one list of two voices and one desktop, for one operation.
struct Session {
    BuiltinMidi midi;
    ScriptedDesktop desktop;
    VoiceList list;
    Bytes memory;

    explicit Session(const InstrumentFaults &faults = {}) {
        for (int number = 0; number < Voices; ++number) {
            const Bytes voice = VoiceOf(All(number));
            memory.insert(memory.end(), voice.begin(), voice.end());
        }
        MemoryOf(Reface) = memory;
        EditBufferOf(Reface) = VoiceOf(All(EditedVoice));
        SystemSettingsOf(Reface) = UserSettings;
        FaultsOf(Reface) = faults;
        SysexWait = Wait;
        CurrentDriverId = RefaceDriverId;
        SynthFirmware = 0x10200;
        ListSetVoice(list, ListAdd(list), ObjectOf(VoiceOf(All(GivenVoice))));
        ListSetVoice(list, ListAdd(list), ObjectOf(VoiceOf(All(GivenVoice + 1))));
        ListSelect(list, 1);
    }

    // Of the simulated clock, since the operation started it.
    static int Milliseconds() { return TheMidi.Pt_Time(); }

    // What holds after every operation, whatever its outcome.
    void ExpectClosed() {
        EXPECT_EQ(OpenBuiltinStreams(), 0);
        EXPECT_FALSE(BuiltinClockRuns());
        EXPECT_EQ(desktop.busyBoxesOpen, 0);
        EXPECT_EQ(MemoryOf(Reface), memory);
        desktop.ExpectNothingLeft();
    }
    // Neither the list nor anything of the instrument or the desktop was touched.
    void ExpectNothingTouched() {
        ExpectClosed();
        EXPECT_EQ(EditBufferOf(Reface), VoiceOf(All(EditedVoice)));
        EXPECT_EQ(SystemSettingsOf(Reface), UserSettings);
        EXPECT_EQ(SelectedProgramOf(Reface), 0);
        ExpectListUntouched();
        EXPECT_EQ(desktop.busyBoxesShown, 0);
        EXPECT_TRUE(desktop.statusTexts.empty());
        EXPECT_TRUE(desktop.progress.empty());
    }
    void ExpectListUntouched(bool enabled = true) {
        ASSERT_EQ(ListCount(list), 2);
        EXPECT_EQ(list.items[0], ObjectOf(VoiceOf(All(GivenVoice))));
        EXPECT_EQ(list.items[1], ObjectOf(VoiceOf(All(GivenVoice + 1))));
        EXPECT_EQ(list.selection, 1);
        EXPECT_EQ(list.enabled, enabled);
        EXPECT_TRUE(list.redraw);
    }
    // What a download that ended with 1 leaves on the screen.
    void ExpectDownloadEnded() {
        ExpectClosed();
        EXPECT_TRUE(list.enabled);
        EXPECT_TRUE(list.redraw);
        EXPECT_EQ(list.selection, 0);
        EXPECT_EQ(desktop.busyTexts, std::vector<std::string>{"Downloading voices"});
        ASSERT_GE(desktop.statusTexts.size(), 2u);
        EXPECT_EQ(*(desktop.statusTexts.end() - 2), "");
        EXPECT_EQ(desktop.statusTexts.back(), "Yamaha reface DX version 01.20");
        ASSERT_FALSE(desktop.progress.empty());
        EXPECT_EQ(desktop.progress.back(), (std::pair{0, 1}));
    }
    void ExpectList(const std::vector<Sources> &voices) {
        ASSERT_EQ(list.items.size(), voices.size());
        for (std::size_t row = 0; row < voices.size(); ++row) {
            EXPECT_EQ(list.items[row], ObjectOf(VoiceOf(voices[row]))) << "row " << row;
        }
    }

    int Read(Bytes &destination) {
        destination.assign(RefaceSystemSize, 0xEE);
        MidiLink link;
        if (!MidiLinkOpen(link, true, In, Out)) {
            return 0;
        }
        const int result = ReadSystemCommon(link, std::span(destination).first<RefaceSystemSize>());
        MidiLinkClose(link);
        return result;
    }
    int Download() { return RefaceDownloadBank(nullptr, list, {In, Out}); }
    int UploadBank() { return RefaceUploadBank(nullptr, list, {In, Out}); }
    int UploadVoice() { return RefaceUploadVoice(nullptr, list, nullptr, {In, Out}, 0, 1); }
};

constexpr const char *InvalidSystem = "Invalid system common.";
// Told after an upload that was asked to.
const std::string Stored =
    TestRefaceName(GivenVoice) +
    " has been uploaded to your reface DX.\n\nPress Store, select the bank and program you want to "
    "store your uploaded voice to and then use the red Data Entry controls to confirm the upload.";

// The three operations that begin with the system settings.
struct Operation {
    const char *name;
    int (Session::*run)();
    // What holds when nothing failed.
    void (*expectDone)(Session &session);
};
const Operation Operations[] = {
    {"download", &Session::Download,
     [](Session &session) {
         session.ExpectDownloadEnded();
         session.ExpectList(AllVoices());
         EXPECT_EQ(EditBufferOf(Reface), VoiceOf(All(0)));
     }},
    {"upload of the bank", &Session::UploadBank,
     [](Session &session) {
         session.ExpectClosed();
         session.ExpectListUntouched(false);
         EXPECT_EQ(session.desktop.busyBoxesShown, 0);
         EXPECT_EQ(EditBufferOf(Reface), VoiceOf(All(GivenVoice)));
     }},
    {"upload of a voice", &Session::UploadVoice,
     [](Session &session) {
         session.ExpectClosed();
         session.ExpectListUntouched();
         EXPECT_EQ(session.desktop.busyBoxesShown, 1);
         EXPECT_EQ(EditBufferOf(Reface), VoiceOf(All(GivenVoice)));
     }},
};
bool Tells(const Operation &operation) {
    return operation.run == &Session::UploadVoice;
}

// Runs an operation that the faults do not keep from its end, and from restoring the settings.
void ExpectDoneUnder(const InstrumentFaults &faults, const Operation &operation) {
    Session session(faults);
    if (Tells(operation)) {
        session.desktop.ExpectMessage(Stored);
    }
    EXPECT_EQ((session.*operation.run)(), 1);
    operation.expectDone(session);
    EXPECT_EQ(SystemSettingsOf(Reface), UserSettings);
}

// ---- ports

TEST(RefaceFaults, APortThatDoesNotOpenEndsEachOperationInSilence) {
    for (const bool input : {true, false}) {
        for (const Operation &operation : Operations) {
            SCOPED_TRACE(std::string(operation.name) + (input ? ", input" : ", output"));
            Session session({.inputDoesNotOpen = input, .outputDoesNotOpen = !input});
            EXPECT_EQ((session.*operation.run)(), 0);
            session.ExpectNothingTouched();
            EXPECT_EQ(session.Milliseconds(), 0);
        }
    }
}

TEST(RefaceFaults, NoPortsAtAllEndEachOperationInSilence) {
    for (const auto &[in, out] : {std::pair{-1, -1}, {In, -1}, {-1, Out}, {Out, In}, {99, 99}}) {
        Session session;
        EXPECT_EQ(RefaceDownloadBank(nullptr, session.list, {in, out}), 0);
        EXPECT_EQ(RefaceUploadBank(nullptr, session.list, {in, out}), 0);
        EXPECT_EQ(RefaceUploadVoice(nullptr, session.list, nullptr, {in, out}, 0, 1), 0);
        session.ExpectNothingTouched();
    }
}

// ---- the answer to the request for the settings

struct SystemCase {
    const char *name;
    InstrumentFaults faults; // of the first answer only
    bool accepted;
    int milliseconds = -1; // until it is refused; -1: not looked at
};

const std::vector<SystemCase> &SystemCases() {
    static const std::vector<SystemCase> cases = {
        {"nothing wrong", {}, true},
        {"silence", {.silent = true}, false, Wait},
        {"silence from the start", {.silentAfterMessages = 0}, false, Wait},
        {"first byte late, in time", {.lateByMilliseconds = 1499, .lateEvent = 0}, true},
        {"first byte at the deadline", {.lateByMilliseconds = 1500, .lateEvent = 0}, false, Wait},
        {"a byte late, in time", {.lateByMilliseconds = 1499, .lateEvent = 1}, true},
        {"a byte at the deadline", {.lateByMilliseconds = 1500, .lateEvent = 1}, false, Wait + 1},
        {"the last byte late, in time", {.lateByMilliseconds = 1499, .lateEvent = 11}, true},
        {"the last byte at the deadline",
         {.lateByMilliseconds = 1500, .lateEvent = 11},
         false,
         Wait + 11},
        {"a note in front", {.noteBeforeReply = true}, false, EventsOfSystem + 1},
        {"active sensing in front", {.activeSensingBeforeReply = true}, false, EventsOfSystem + 1},
        {"a note inside", {.noteInReply = true}, false, EventsOfSystem + 1},
        {"active sensing inside", {.activeSensingInReply = true}, false, EventsOfSystem + 1},
        {"a note behind eight bytes", {.noteInReply = true, .strayPlace = 2}, true},
        {"byte 5", {.byteFiveNonzero = true}, false, EventsOfSystem},
        {"cut", {.cutMessages = true}, false, EventsOfSystem - 1 + Wait},
        {"wrong checksum", {.corruptChecksum = true}, true},
        {"operators in another order", {.blockOrder = {4, 3, 2, 1, 0}}, true},
        {"operator number", {.operatorNumberAboveThree = true}, true},
        {"a twin", {.twin = true}, true},
    };
    return cases;
}

TEST(RefaceFaults, SettingsAreReadOrRefusedAsAWhole) {
    for (SystemCase row : SystemCases()) {
        SCOPED_TRACE(row.name);
        row.faults.faultyMessages = 1;
        Session session(row.faults);
        Bytes settings;
        EXPECT_EQ(session.Read(settings), row.accepted ? 1 : 0);
        if (!row.accepted) {
            EXPECT_EQ(settings, Bytes(32, 0xEE));
        } else if (row.faults.strayPlace == 1) {
            EXPECT_EQ(settings, UserSettings);
        }
        if (row.milliseconds >= 0) {
            EXPECT_EQ(session.Milliseconds(), row.milliseconds);
        }
        session.ExpectNothingTouched();
    }
}

TEST(RefaceFaults, WithoutTheSettingsNothingIsDone) {
    for (const Operation &operation : Operations) {
        for (SystemCase row : SystemCases()) {
            if (row.accepted) {
                continue;
            }
            SCOPED_TRACE(std::string(operation.name) + ", " + row.name);
            row.faults.faultyMessages = 1;
            Session session(row.faults);
            session.desktop.ExpectMessage(InvalidSystem);
            EXPECT_EQ((session.*operation.run)(), 0);
            session.ExpectNothingTouched();
            EXPECT_EQ(session.Milliseconds(), row.milliseconds);
        }
    }
}

TEST(RefaceFaults, WithTheSettingsEverythingIsDoneAndTheyAreThereAgain) {
    for (const Operation &operation : Operations) {
        for (SystemCase row : SystemCases()) {
            if (!row.accepted || row.faults.strayPlace != 1) {
                continue;
            }
            SCOPED_TRACE(std::string(operation.name) + ", " + row.name);
            row.faults.faultyMessages = 1;
            ExpectDoneUnder(row.faults, operation);
        }
    }
}

TEST(RefaceFaults, NoWaitForTheSettingsIsNoTimeAtAll) {
    for (const Operation &operation : Operations) {
        for (const std::uint32_t wait : {0u, 0xFFFFFFFFu}) {
            SCOPED_TRACE(operation.name);
            Session session;
            SysexWait = wait;
            session.desktop.ExpectMessage(InvalidSystem);
            EXPECT_EQ((session.*operation.run)(), 0);
            session.ExpectNothingTouched();
            EXPECT_EQ(session.Milliseconds(), 0);
        }
    }
}

// What comes inside the data is taken for data: the settings that are put back are then those of
// the answer as it came, shifted by four.
TEST(RefaceFaults, WhatStandsAmongTheDataOfTheSettingsIsPutBackWithThem) {
    Bytes expected = {0x04, 0xFE, 0x00, 0x00, 0x00}; // behind twelve bytes: one setting
    expected.insert(expected.end(), UserSettings.begin() + 1, UserSettings.begin() + 28);
    {
        Session session({.activeSensingInReply = true, .strayPlace = 3});
        Bytes settings;
        EXPECT_EQ(session.Read(settings), 1);
        EXPECT_EQ(settings, expected);
    }
    {
        Session session({.noteInReply = true, .strayPlace = 3});
        Bytes settings;
        EXPECT_EQ(session.Read(settings), 1);
        std::ranges::copy(Bytes{0x90, 0x3C, 0x40}, expected.begin() + 1);
        EXPECT_EQ(settings, expected);
        EXPECT_EQ(SystemSettingsOf(Reface), UserSettings) << "which only reading does not change";
    }
    Session session({.activeSensingInReply = true, .strayPlace = 3});
    EXPECT_EQ(session.UploadBank(), 1);
    Bytes left = UserSettings;
    left[1] = 0x00; // the message that puts FE back has lost it on the way: channel of the transfer
    std::ranges::copy(Bytes{0x00, 0x00, 0x00, 0x03, 0x00}, left.begin() + 2);
    // The instrument refuses 03 for its transpose, 0F 05 for its tempo and 45 for its pedal, which
    // stay as they were, and 10 for its speaker and 2A for its MIDI control, which stay as the
    // transfer had them.
    left[10] = 0x00;
    left[12] = 0x01;
    left[13] = 0x00;
    left[14] = 0x01;
    EXPECT_EQ(SystemSettingsOf(Reface), left);
    EXPECT_EQ(OpenBuiltinStreams(), 0);
}

// ---- the answers to the requests for voices

// The faults of all answers behind the settings, or of `messages` from answer `first` on: voice v
// has the answers 7v to 7v + 6.
InstrumentFaults OfVoices(InstrumentFaults faults, int first = 0, int messages = -1) {
    faults.goodMessages = 1 + first;
    faults.faultyMessages = messages;
    return faults;
}

struct VoiceCase {
    const char *name;
    InstrumentFaults faults;
    std::vector<Sources> voices;
    int timeouts; // voices that are waited for in vain
};

// 32 voices as they should be, but for one.
std::vector<Sources> AllBut(int number, const Sources &sources) {
    auto voices = AllVoices();
    voices[static_cast<std::size_t>(number)] = sources;
    return voices;
}
std::vector<Sources> EachAs(Sources (*sourcesOf)(int number)) {
    std::vector<Sources> voices;
    for (int number = 0; number < Voices; ++number) {
        voices.push_back(sourcesOf(number));
    }
    return voices;
}

const std::vector<VoiceCase> &VoiceCases() {
    constexpr Sources nothing = {None, None, None, None, None};
    const auto empty = [](int) { return Sources{None, None, None, None, None}; };
    const auto whole = [](int number) { return All(number); };
    static const std::vector<VoiceCase> cases = {
        {"silence behind the settings", {.silentAfterMessages = 1}, EachAs(empty), 32},
        {"silence of one voice", OfVoices({.silent = true}, 7 * 4, 7), AllBut(4, nothing), 1},
        {"silence within a voice, and for good",
         {.silentAfterMessages = 1 + 7 * 31 + 3},
         AllBut(31, {31, 31, None, None, None}),
         1},
        {"one operator does not come", OfVoices({.silent = true}, 7 * 9 + 4, 1),
         AllBut(9, {9, 9, 9, None, 9}), 1},
        {"header and footer do not come", OfVoices({.silent = true}, 7 * 9 + 6, 2), EachAs(whole),
         0},
        {"every byte late, in time", OfVoices({.lateByMilliseconds = 1499, .lateEvent = 1}),
         EachAs(whole), 0},
        {"a note in front of every message", OfVoices({.noteBeforeReply = true}), EachAs(empty),
         32},
        {"a note in front of a common block", OfVoices({.noteBeforeReply = true}, 7 * 3 + 1, 1),
         AllBut(3, {None, 3, 3, 3, 3}), 1},
        {"a note in front of the last operator", OfVoices({.noteBeforeReply = true}, 7 * 3 + 5, 1),
         AllBut(3, {3, 3, 3, 3, None}), 1},
        {"a note in front of a header", OfVoices({.noteBeforeReply = true}, 7 * 3, 1),
         EachAs(whole), 0},
        {"active sensing in front of every message", OfVoices({.activeSensingBeforeReply = true}),
         EachAs(empty), 32},
        {"active sensing in front of an operator",
         OfVoices({.activeSensingBeforeReply = true}, 7 * 12 + 2, 1),
         AllBut(12, {12, None, 12, 12, 12}), 1},
        {"a note inside every message", OfVoices({.noteInReply = true}), EachAs(empty), 32},
        {"a note inside two operators", OfVoices({.noteInReply = true}, 7 * 20 + 3, 2),
         AllBut(20, {20, 20, None, None, 20}), 1},
        {"active sensing inside every message", OfVoices({.activeSensingInReply = true}),
         EachAs(empty), 32},
        {"active sensing inside a common block", OfVoices({.activeSensingInReply = true}, 1, 1),
         AllBut(0, {None, 0, 0, 0, 0}), 1},
        {"blocks twice", {.blockOrder = {0, 0, 1, 1, 2, 3, 3, 3, 4}}, EachAs(whole), 0},
        {"an operator that never comes",
         {.blockOrder = {4, 2, 1, 0}},
         EachAs([](int number) {
             return Sources{number, number, number, None, number};
         }),
         32},
        {"only operators",
         {.blockOrder = {1, 2, 3, 4}},
         EachAs([](int number) {
             return Sources{None, number, number, number, number};
         }),
         32},
        {"no blocks at all", {.blockOrder = {9}}, EachAs(empty), 32},
        {"an operator number above three counts as three",
         {.operatorNumberAboveThree = true},
         EachAs(whole),
         0},
        {"byte 5 of every message", OfVoices({.byteFiveNonzero = true}), EachAs(empty), 32},
        {"byte 5 of one operator", OfVoices({.byteFiveNonzero = true}, 7 * 17 + 2, 1),
         AllBut(17, {17, None, 17, 17, 17}), 1},
        {"every message cut", OfVoices({.cutMessages = true}), EachAs(empty), 32},
        {"a header cut, which takes the common block along",
         OfVoices({.cutMessages = true}, 7 * 6, 1), AllBut(6, {None, 6, 6, 6, 6}), 1},
        {"a footer cut, which takes the next header along",
         OfVoices({.cutMessages = true}, 7 * 6 + 6, 1), EachAs(whole), 0},
        {"wrong checksums", {.corruptChecksum = true}, EachAs(whole), 0},
    };
    return cases;
}

TEST(RefaceFaults, AVoiceStaysAsFarAsItCameAndTheDownloadGoesOn) {
    for (const VoiceCase &row : VoiceCases()) {
        SCOPED_TRACE(row.name);
        Session session(row.faults);
        EXPECT_EQ(session.Download(), 1);
        session.ExpectDownloadEnded();
        session.ExpectList(row.voices);
        EXPECT_EQ(EditBufferOf(Reface), VoiceOf(All(0)));
        EXPECT_EQ(SelectedProgramOf(Reface), 0);
        EXPECT_EQ(SystemSettingsOf(Reface), UserSettings);
        // One progress for each common block that was taken, one at either end.
        const auto named = std::ranges::count_if(
            row.voices, [](const Sources &sources) { return sources[0] != None; });
        EXPECT_GE(std::ssize(session.desktop.progress), 2 + named);
        EXPECT_EQ(session.desktop.progress.size(), session.desktop.statusTexts.size());
        if (row.faults.lateByMilliseconds == 0) {
            EXPECT_GE(session.Milliseconds(), row.timeouts * Wait);
            EXPECT_LT(session.Milliseconds(), row.timeouts * Wait + Voices * 2 * EventsOfVoice);
        }
    }
}

TEST(RefaceFaults, FaultsOfVoicesDoNotReachTheUploads) {
    for (const VoiceCase &row : VoiceCases()) {
        for (const Operation &operation : Operations) {
            if (operation.run == &Session::Download) {
                continue;
            }
            SCOPED_TRACE(std::string(operation.name) + ", " + row.name);
            ExpectDoneUnder(row.faults, operation);
        }
    }
}

TEST(RefaceFaults, AnInstrumentThatFallsSilentBehindItsSettingsTakes32WaitsAndEndsWithOne) {
    Session session({.silentAfterMessages = 1});
    const std::clock_t before = std::clock();
    EXPECT_EQ(session.Download(), 1);
    const double seconds = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
    EXPECT_EQ(session.Milliseconds(), EventsOfSystem + 32 * Wait);
    EXPECT_LT(seconds, 1.0) << "of work; the waiting itself is simulated";
    session.ExpectDownloadEnded();
    EXPECT_EQ(session.desktop.statusTexts,
              (std::vector<std::string>{"", "Yamaha reface DX version 01.20"}));
    EXPECT_EQ(session.desktop.progress, (std::vector<std::pair<int, int>>{{0, 1}, {0, 1}}));
}

TEST(RefaceFaults, BlocksFillTheVoiceInEveryOrder) {
    std::vector<int> order = {0, 1, 2, 3, 4};
    int orders = 0;
    do {
        Session session({.blockOrder = order});
        EXPECT_EQ(session.Download(), 1);
        session.ExpectDownloadEnded();
        session.ExpectList(AllVoices());
        EXPECT_LE(session.Milliseconds(), EventsOfSystem + Voices * EventsOfVoice);
        ++orders;
    } while (std::ranges::next_permutation(order).found && !testing::Test::HasFailure());
    EXPECT_EQ(orders, 120);
}

// A message is late for its own voice, and then the first of the next one, which is complete before
// its own last message comes. Nothing tells them apart.
TEST(RefaceFaults, AMessageThatComesTooLateIsTakenForTheNextVoice) {
    {
        Session session(OfVoices({.lateByMilliseconds = Wait, .lateEvent = 0}, 7 * 7, 1));
        EXPECT_EQ(session.Download(), 1);
        session.ExpectDownloadEnded();
        auto voices = AllVoices();
        voices[7] = {None, None, None, None, None};
        for (int number = 8; number < Voices; ++number) {
            voices[static_cast<std::size_t>(number)] = All(number - 1);
        }
        session.ExpectList(voices);
        ASSERT_GT(session.desktop.statusTexts.size(), 7u);
        EXPECT_EQ(session.desktop.statusTexts[7], "Downloading voice 9 of 32 (REFACE 08)");
    }
    // Of a common block that is late in its middle the rest is no message that anyone knows.
    Session session(OfVoices({.lateByMilliseconds = Wait, .lateEvent = 3}, 7 * 7 + 1, 1));
    EXPECT_EQ(session.Download(), 1);
    session.ExpectDownloadEnded();
    auto voices = AllVoices();
    voices[7] = {None, None, None, None, None};
    for (int number = 8; number < Voices; ++number) {
        voices[static_cast<std::size_t>(number)] = {number, number - 1, number - 1, number - 1,
                                                    number - 1};
    }
    session.ExpectList(voices);
}

TEST(RefaceFaults, AMessageOfEachVoiceThatIsJustInTimeIsTaken) {
    for (const int event : {0, 3, 10}) {
        Session session(OfVoices({.lateByMilliseconds = Wait - 1, .lateEvent = event}));
        EXPECT_EQ(session.Download(), 1);
        session.ExpectDownloadEnded();
        session.ExpectList(AllVoices());
    }
}

TEST(RefaceFaults, ABlockOnceMoreAtTheEndIsTakenForTheNextVoice) {
    Session session({.blockOrder = {0, 1, 2, 3, 4, 4}});
    EXPECT_EQ(session.Download(), 1);
    session.ExpectDownloadEnded();
    session.ExpectList(EachAs([](int number) {
        return Sources{number, number, number, number, std::max(number - 1, 0)};
    }));
}

// Data of a cut block are filled up by what comes next: zeros to the end of its event, then the
// message behind it, which is lost itself.
TEST(RefaceFaults, ABlockThatIsCutTakesTheBeginningOfTheNextOneForItsEnd) {
    {
        Session session(OfVoices({.cutMessages = true}, 7 * 6 + 1, 1));
        EXPECT_EQ(session.Download(), 1);
        session.ExpectDownloadEnded();
        Bytes voice = VoiceOf({6, None, 6, 6, 6});
        voice[36] = 0x00;
        voice[37] = 0xF0;
        EXPECT_EQ(session.list.items.at(6), ObjectOf(voice));
        EXPECT_EQ(session.list.items.at(7), ObjectOf(VoiceOf(All(7))));
    }
    Session session(OfVoices({.cutMessages = true}, 7 * 6 + 3, 1));
    EXPECT_EQ(session.Download(), 1);
    session.ExpectDownloadEnded();
    Bytes voice = VoiceOf({6, 6, 6, None, 6});
    std::fill_n(voice.begin() + 38 + 28 + 26, 2, std::uint8_t{0});
    EXPECT_EQ(session.list.items.at(6), ObjectOf(voice));
}

TEST(RefaceFaults, WhatStandsAmongTheDataOfAVoiceIsTakenForData) {
    Session session(OfVoices({.noteInReply = true, .strayPlace = 3}, 7 * 5 + 1, 2));
    EXPECT_EQ(session.Download(), 1);
    session.ExpectDownloadEnded();
    // Behind twelve bytes of the message: one of the block.
    const auto withNote = [](const Bytes &block) {
        Bytes result = {block[0], 0x90, 0x3C, 0x40, 0x00};
        result.insert(result.end(), block.begin() + 1, block.end() - 4);
        return result;
    };
    Bytes voice = VoiceOf(All(5));
    std::ranges::copy(withNote(CommonOf(5)), voice.begin());
    std::ranges::copy(withNote(OperatorOf(5, 0)), voice.begin() + 38);
    EXPECT_EQ(session.list.items.at(5), ObjectOf(voice));
    EXPECT_EQ(session.list.items.at(6), ObjectOf(VoiceOf(All(6))));
}

// ---- writes that fail

// A setting that could not be put back stays as the transfer needed it. `first` is the number of
// the first of those writes.
Bytes SettingsAfter(int failing, int first, bool withTransmitChannel) {
    Bytes settings = UserSettings;
    const auto fails = [&](int message) { return failing == first + message; };
    if (fails(0) && withTransmitChannel) {
        settings[0x00] = 0;
    }
    if (fails(1)) {
        settings[0x01] = 0;
    }
    if (fails(8)) {
        settings[0x0C] = 0;
    }
    if (fails(9)) {
        settings[0x0D] = 0;
    }
    if (fails(10)) {
        settings[0x0E] = 1;
    }
    return settings;
}

TEST(RefaceFaults, DownloadWithEachOfItsWritesFailing) {
    // The request for the settings, Omni off, four settings, two messages a voice, the first
    // program, eleven settings.
    constexpr int receiveChannel = 2, midiControl = 5, voices = 6, firstProgram = 70, putBack = 71;
    constexpr int writes = putBack + 11;
    for (int failing = 1; failing <= writes; ++failing) {
        SCOPED_TRACE(failing);
        Session session({.failWrite = failing});
        EXPECT_EQ(session.Download(), 1);
        session.ExpectDownloadEnded();
        auto expected = AllVoices();
        int program = 0;
        const int voice = (failing - voices) / 2;
        if (failing == receiveChannel || failing == midiControl) {
            // No program change is heard.
            std::ranges::fill(expected, All(EditedVoice));
            program = None;
        } else if (failing >= voices && failing < firstProgram && (failing - voices) % 2 == 0) {
            expected[static_cast<std::size_t>(voice)] = All(voice == 0 ? EditedVoice : voice - 1);
        } else if (failing >= voices && failing < firstProgram) {
            expected[static_cast<std::size_t>(voice)] = {None, None, None, None, None};
        } else if (failing == firstProgram) {
            program = 31;
        }
        session.ExpectList(expected);
        EXPECT_LE(session.Milliseconds(), EventsOfSystem + Voices * EventsOfVoice)
            << "nobody waits for what was not asked for";
        EXPECT_EQ(EditBufferOf(Reface), VoiceOf(All(program == None ? EditedVoice : program)));
        EXPECT_EQ(SelectedProgramOf(Reface), std::max(program, 0));
        EXPECT_EQ(SystemSettingsOf(Reface), SettingsAfter(failing, putBack, false));
    }
}

// What the edit buffer holds when write `failing` failed; the header is write `header`.
Bytes SentVoice(int failing, int header) {
    Sources sources = All(GivenVoice);
    if (failing == header || failing == header + 6) {
        sources = All(EditedVoice); // without header or footer nothing is taken
    } else if (failing > header && failing < header + 6) {
        sources[static_cast<std::size_t>(failing - header - 1)] = EditedVoice;
    }
    return VoiceOf(sources);
}

TEST(RefaceFaults, UploadOfAVoiceWithEachOfItsWritesFailing) {
    // The request for the settings, Omni off, five settings, header, five blocks, footer, eleven
    // settings, Omni on.
    constexpr int header = 7, putBack = 14, writes = putBack + 12;
    for (int failing = 1; failing <= writes; ++failing) {
        SCOPED_TRACE(failing);
        Session session({.failWrite = failing});
        session.desktop.ExpectMessage(Stored);
        EXPECT_EQ(session.UploadVoice(), 1);
        session.ExpectClosed();
        session.ExpectListUntouched();
        EXPECT_EQ(session.desktop.busyBoxesShown, 1);
        EXPECT_EQ(EditBufferOf(Reface), SentVoice(failing, header));
        EXPECT_EQ(SystemSettingsOf(Reface), SettingsAfter(failing, putBack, true));
    }
}

TEST(RefaceFaults, UploadOfTheBankWithEachOfItsWritesFailing) {
    // As above without Omni.
    constexpr int header = 6, putBack = 13, writes = putBack + 11;
    for (int failing = 1; failing <= writes; ++failing) {
        SCOPED_TRACE(failing);
        Session session({.failWrite = failing});
        EXPECT_EQ(session.UploadBank(), 1);
        session.ExpectClosed();
        session.ExpectListUntouched(false);
        EXPECT_EQ(EditBufferOf(Reface), SentVoice(failing, header));
        EXPECT_EQ(SystemSettingsOf(Reface), SettingsAfter(failing, putBack, true));
    }
}

TEST(RefaceFaults, ARequestForTheSettingsThatIsNotSentIsWaitedForInVain) {
    for (const Operation &operation : Operations) {
        SCOPED_TRACE(operation.name);
        Session session({.failWrite = 0});
        session.desktop.ExpectMessage(InvalidSystem);
        EXPECT_EQ((session.*operation.run)(), 0);
        session.ExpectNothingTouched();
        EXPECT_EQ(session.Milliseconds(), Wait);
    }
    Session session({.failWrite = 0});
    Bytes settings;
    EXPECT_EQ(session.Read(settings), 0);
    EXPECT_EQ(settings, Bytes(32, 0xEE));
    session.ExpectNothingTouched();
}

// ---- discovery

struct FindCase {
    const char *name;
    InstrumentFaults faults;
    bool found;
    int milliseconds; // of waiting, less the four events of the answer
    std::uint32_t firmware = 0;
    int in = In, out = Out;
};

const std::vector<FindCase> &FindCases() {
    constexpr std::uint32_t former = 0x77, built = 0x10200;
    static const std::vector<FindCase> cases = {
        {"nothing wrong", {}, true, 0, built},
        {"silence", {.silent = true}, false, Wait, former},
        {"silence from the start", {.silentAfterMessages = 0}, false, Wait, former},
        {"silence behind the answer", {.silentAfterMessages = 1}, true, 0, built},
        {"first byte late, in time", {.lateByMilliseconds = 1499}, true, 1499, built},
        {"first byte at the deadline", {.lateByMilliseconds = 1500}, false, Wait, former},
        {"last bytes late, in time",
         {.lateByMilliseconds = 1499, .lateEvent = 3},
         true,
         1499,
         built},
        {"last bytes at the deadline",
         {.lateByMilliseconds = 1500, .lateEvent = 3},
         false,
         Wait,
         former},
        {"a note in front", {.noteBeforeReply = true}, false, 0, former},
        {"active sensing in front", {.activeSensingBeforeReply = true}, false, 0, former},
        {"a note inside", {.noteInReply = true}, false, 0, former},
        {"active sensing inside", {.activeSensingInReply = true}, false, 0, former},
        // Maker and family are there, and what came in their place is taken for the rest.
        {"a note behind eight bytes",
         {.noteInReply = true, .strayPlace = 2},
         false,
         0,
         0x10000 + 0x4000},
        {"active sensing behind eight bytes",
         {.activeSensingInReply = true, .strayPlace = 2},
         false,
         0,
         0x10000},
        {"a note behind twelve bytes", {.noteInReply = true, .strayPlace = 3}, true, 0, built},
        {"cut", {.cutMessages = true}, false, Wait, former},
        {"wrong checksum, of which it has none", {.corruptChecksum = true}, true, 0, built},
        {"blocks in another order", {.blockOrder = {4, 4}}, true, 0, built},
        {"operator number", {.operatorNumberAboveThree = true}, true, 0, built},
        {"byte 5 of dumps", {.byteFiveNonzero = true}, true, 0, built},
        {"input does not open", {.inputDoesNotOpen = true}, false, 0, former},
        {"output does not open", {.outputDoesNotOpen = true}, false, 0, former},
        {"the request fails", {.failWrite = 0}, false, 0, former},
        {"a later write fails", {.failWrite = 1}, true, 0, built},
        {"a twin", {.twin = true}, true, 0, built, 6, 7},
        {"a silent twin", {.silent = true, .twin = true}, false, Wait, former, 6, 7},
    };
    return cases;
}

TEST(RefaceFaults, DetectionAgainstEachFault) {
    for (const FindCase &row : FindCases()) {
        SCOPED_TRACE(row.name);
        Session session(row.faults);
        FoundSynth found{.driver = NoDriverId, .ports = {}, .firmware = 0x77};
        EXPECT_EQ(RefaceFindSynth(nullptr, found, {}, true), 0);
        EXPECT_EQ(found.driver, row.found ? RefaceDriverId : NoDriverId);
        EXPECT_EQ(found.ports.in, row.in);
        EXPECT_EQ(found.ports.out, row.out);
        EXPECT_EQ(found.firmware, row.firmware);
        EXPECT_GE(session.Milliseconds(), row.milliseconds);
        EXPECT_LE(session.Milliseconds(), row.milliseconds + 5);
        session.ExpectNothingTouched();
    }
}

TEST(RefaceFaults, FindingTheCurrentInstrumentAgainstEachFault) {
    for (const FindCase &row : FindCases()) {
        for (const std::uint32_t autodetect : {1u, 0u}) {
            SCOPED_TRACE(std::string(row.name) + (autodetect ? "" : ", by its name"));
            Session session(row.faults);
            SynthFirmware = 0x77;
            MidiInPort = MidiOutPort = 70;
            SelectKeyboardAutodetect = autodetect;
            SelectKeyboardMidiIn = SelectKeyboardMidiOut = "reface";
            const int result = FindCurrentSynth(nullptr);
            // Found by its name an instrument is not asked, so that no fault shows.
            const bool found = row.found || !autodetect;
            EXPECT_EQ(result, autodetect ? 0 : 1);
            EXPECT_EQ(CurrentDriverId, found ? RefaceDriverId : NoDriverId);
            EXPECT_EQ(MidiInPort, row.in);
            EXPECT_EQ(MidiOutPort, row.out);
            EXPECT_EQ(SynthFirmware, autodetect ? row.firmware : 0x77u);
            session.ExpectNothingTouched();
        }
    }
}

} // namespace
} // namespace tonewright
