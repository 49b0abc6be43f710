// The uploads to a DX7 and a Volca FM against every fault of the built-in ones: what is told, and
// in which state instrument, ports, list and desktop are left.
#include "common/settings.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "drivers/dx7/files.h"
#include "drivers/dx7/transfer.h"
#include "drivers/dx7/voice_codec.h"
#include "midi/instruments/builtin_instruments.h"
#include "support/bank_bytes.h"
#include "support/builtin_midi.h"
#include "support/family_names.h"
#include "support/scripted_desktop.h"

#include <gtest/gtest.h>

#include <utility>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr BuiltinInstrument Instruments[] = {BuiltinInstrument::Dx7, BuiltinInstrument::VolcaFm};

const std::string BeforePrompt =
    "E.PIANO 1x is about to be uploaded to your synthesizer.\n\nPlease select the voice bank in "
    "which you'd like it to be stored. (Turn the black Program knob on the Korg Volca FM.)";
const std::string AfterPrompt =
    "E.PIANO 1x has been uploaded to your synthesizer.\n\nPress the Save button twice to store it.";

// A bank other than the one that is sent: its voices are those of TestBank in reverse order.
Bytes FormerMemory() {
    Bytes memory;
    for (int number = 31; number >= 0; --number) {
        const Bytes voice = TestPackedVoice(number);
        memory.insert(memory.end(), voice.begin(), voice.end());
    }
    return memory;
}
Bytes SentMemory() {
    const Bytes bank = TestBank();
    return {bank.begin() + 6, bank.end() - 2};
}
Bytes SentVoice() {
    const Bytes voice = TestUnpackedVoice();
    return {voice.begin(), voice.begin() + 155};
}
const Bytes FormerEdit(155, 0x11);

// The name of a voice in an edit buffer.
std::string NameIn(const Bytes &editBuffer) {
    return std::string(editBuffer.begin() + 145, editBuffer.end());
}

// One instrument, a list that holds TestBank and one desktop, for one operation.
struct Session {
    BuiltinInstrument instrument;
    BuiltinMidi midi;
    ScriptedDesktop desktop;
    VoiceList list;
    Bytes voice = TestUnpackedVoice();

    explicit Session(BuiltinInstrument which, const InstrumentFaults &faults = {})
        : instrument(which) {
        MemoryOf(instrument) = FormerMemory();
        EditBufferOf(instrument) = FormerEdit;
        FaultsOf(instrument) = faults;
        CurrentDriverId = Dx7DriverId;
        CurrentMidiChannel = 1;
        SynthFirmware = 0;
        const Bytes bank = TestBank();
        DecodeDx7Bank(list, bank);
        ListSelect(list, 3);
    }

    int Out() const { return 2 * static_cast<int>(instrument) + 1; }
    int UploadBank() { return Dx7UploadBank(nullptr, list, {Out() - 1, Out()}); }
    int UploadVoice(std::uint8_t flags) {
        const VoiceObject object = MakeVoiceObject(Dx7DriverId, voice);
        return Dx7UploadVoice(nullptr, list, &object, {Out() - 1, Out()}, 0, flags);
    }
    void ExpectPrompts() {
        desktop.ExpectMessage(BeforePrompt);
        desktop.ExpectMessage(AfterPrompt);
    }

    // What holds after every operation, whatever its outcome.
    void ExpectClosed() {
        EXPECT_EQ(OpenBuiltinStreams(), 0);
        EXPECT_FALSE(BuiltinClockRuns());
        EXPECT_EQ(TheMidi.Pt_Time(), 0) << "nothing is ever waited for";
        EXPECT_EQ(desktop.busyBoxesOpen, 0);
        EXPECT_TRUE(list.enabled);
        EXPECT_TRUE(list.redraw);
        EXPECT_EQ(list.selection, 3);
        EXPECT_EQ(ListCount(list), 32);
        desktop.ExpectNothingLeft();
    }
    void ExpectNothingTouched() {
        ExpectClosed();
        EXPECT_EQ(MemoryOf(instrument), FormerMemory());
        EXPECT_EQ(EditBufferOf(instrument), FormerEdit);
        EXPECT_EQ(desktop.busyBoxesShown, 0);
        EXPECT_TRUE(desktop.statusTexts.empty());
        EXPECT_TRUE(desktop.progress.empty());
    }
    void ExpectTitle() {
        ASSERT_FALSE(desktop.statusTexts.empty());
        EXPECT_EQ(desktop.statusTexts.back(), Dx7Name);
    }
    void ExpectBankEnded() {
        ExpectClosed();
        ExpectTitle();
        EXPECT_EQ(desktop.busyTexts, std::vector<std::string>{"Uploading voices"});
        ASSERT_EQ(desktop.progress.size(), 34u);
        EXPECT_EQ(desktop.progress.back(), (std::pair{0, 1}));
    }
};

TEST(Dx7Faults, AnOutputThatDoesNotOpenEndsTheUploadsInSilence) {
    for (const BuiltinInstrument instrument : Instruments) {
        Session session(instrument, {.outputDoesNotOpen = true});
        EXPECT_EQ(session.UploadBank(), 0);
        session.ExpectNothingTouched();
        EXPECT_EQ(session.UploadVoice(1), 0);
        session.ExpectNothingTouched();
    }
}

TEST(Dx7Faults, NoOutputAtAllEndsTheUploadsInSilence) {
    for (const int out : {-1, 0, 2, 99}) { // none, two inputs, none
        Session session(BuiltinInstrument::Dx7);
        EXPECT_EQ(Dx7UploadBank(nullptr, session.list, {0, out}), 0);
        EXPECT_EQ(Dx7UploadVoice(nullptr, session.list, nullptr, {0, out}, 0, 1), 0);
        session.ExpectNothingTouched();
    }
}

// Nothing is awaited, and the input is never opened: an instrument that says nothing, or nonsense,
// takes everything.
TEST(Dx7Faults, FaultsOfAnswersAndOfTheInputDoNotReachTheUploads) {
    const InstrumentFaults faults[] = {
        {},
        {.silent = true},
        {.silentAfterMessages = 0},
        {.lateByMilliseconds = 1500},
        {.noteBeforeReply = true, .noteInReply = true},
        {.activeSensingBeforeReply = true, .activeSensingInReply = true},
        {.blockOrder = {1, 0}},
        {.operatorNumberAboveThree = true, .byteFiveNonzero = true},
        {.cutMessages = true},
        {.corruptChecksum = true},
        {.inputDoesNotOpen = true},
        {.twin = true},
    };
    for (const BuiltinInstrument instrument : Instruments) {
        for (const InstrumentFaults &fault : faults) {
            SCOPED_TRACE(&fault - faults);
            Session session(instrument, fault);
            EXPECT_EQ(session.UploadBank(), 1);
            session.ExpectBankEnded();
            EXPECT_EQ(MemoryOf(instrument), SentMemory());
            EXPECT_EQ(SelectedProgramOf(instrument), 0);
            EXPECT_EQ(NameIn(EditBufferOf(instrument)), "VOICE 01  ");
            EXPECT_FALSE(OmniOf(instrument));
            session.ExpectPrompts();
            EXPECT_EQ(session.UploadVoice(1), 1);
            session.ExpectClosed();
            EXPECT_EQ(EditBufferOf(instrument), SentVoice());
            EXPECT_EQ(MemoryOf(instrument), SentMemory());
        }
    }
}

TEST(Dx7Faults, UploadOfTheBankWithEachOfItsWritesFailing) {
    // Omni on, the dump, the last program, the first program, Omni off.
    constexpr int dump = 1, firstProgram = 3, omniOff = 4, writes = 5;
    for (const BuiltinInstrument instrument : Instruments) {
        for (int failing = 0; failing <= writes; ++failing) {
            SCOPED_TRACE(failing);
            Session session(instrument, {.failWrite = failing});
            EXPECT_EQ(session.UploadBank(), 1) << "whether it was heard is not known";
            session.ExpectBankEnded();
            EXPECT_EQ(MemoryOf(instrument), failing == dump ? FormerMemory() : SentMemory());
            EXPECT_EQ(SelectedProgramOf(instrument), failing == firstProgram ? 31 : 0);
            const bool isReversed = (failing == dump) != (failing == firstProgram);
            EXPECT_EQ(NameIn(EditBufferOf(instrument)), isReversed ? "VOICE 32  " : "VOICE 01  ");
            EXPECT_EQ(OmniOf(instrument), failing == omniOff);
        }
    }
}

TEST(Dx7Faults, UploadOfAVoiceWithEachOfItsWritesFailing) {
    // Omni on, the dump, Omni off.
    constexpr int dump = 1, omniOff = 2, writes = 3;
    for (const BuiltinInstrument instrument : Instruments) {
        for (int failing = 0; failing <= writes; ++failing) {
            for (const std::uint8_t flags : {0, 1}) {
                SCOPED_TRACE(failing);
                Session session(instrument, {.failWrite = failing});
                if (flags) {
                    session.ExpectPrompts();
                }
                EXPECT_EQ(session.UploadVoice(flags), 1) << "whether it was heard is not known";
                session.ExpectClosed();
                session.ExpectTitle();
                EXPECT_EQ(session.desktop.busyBoxesShown, 0);
                EXPECT_EQ(MemoryOf(instrument), FormerMemory());
                EXPECT_EQ(EditBufferOf(instrument), failing == dump ? FormerEdit : SentVoice());
                EXPECT_EQ(SelectedProgramOf(instrument), 0);
                EXPECT_EQ(OmniOf(instrument), failing == omniOff);
            }
        }
    }
}

TEST(Dx7Faults, AnInstrumentOfAnotherChannelTakesNothingOfTheBank) {
    // Omni is switched on its own channel only, and a dump is for the channel that it names.
    for (const BuiltinInstrument instrument : Instruments) {
        Session session(instrument);
        ChannelOf(instrument) = 5;
        EXPECT_EQ(session.UploadBank(), 1);
        session.ExpectBankEnded();
        EXPECT_EQ(MemoryOf(instrument), FormerMemory());
        EXPECT_EQ(EditBufferOf(instrument), FormerEdit);
        EXPECT_EQ(SelectedProgramOf(instrument), 0);
    }
}

TEST(Dx7Faults, PortsAreFoundByNameWhateverTheirFault) {
    const InstrumentFaults faults[] = {{.silent = true},
                                       {.inputDoesNotOpen = true},
                                       {.outputDoesNotOpen = true},
                                       {.failWrite = 0},
                                       {.twin = true}};
    const std::pair<BuiltinInstrument, const char *> names[] = {
        {BuiltinInstrument::Dx7, "in dx7"}, {BuiltinInstrument::VolcaFm, "Volca"}};
    for (const auto &[instrument, name] : names) {
        for (const InstrumentFaults &fault : faults) {
            SCOPED_TRACE(&fault - faults);
            Session session(instrument, fault);
            SynthFirmware = 0x77;
            SelectKeyboardMidiIn = SelectKeyboardMidiOut = name;
            const int result = FindCurrentSynth(nullptr);
            EXPECT_EQ(result, 1);
            EXPECT_EQ(CurrentDriverId, Dx7DriverId);
            // A twin stands behind all others and wins.
            const int input = fault.twin ? 6 : session.Out() - 1;
            EXPECT_EQ(MidiInPort, input);
            EXPECT_EQ(MidiOutPort, input + 1);
            EXPECT_EQ(SynthFirmware, 0x77u);
            session.ExpectNothingTouched();
        }
    }
}

} // namespace
} // namespace tonewright
