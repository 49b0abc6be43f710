// Voices travel untouched: bytes of no parameter, values out of every range and odd names come
// back as they were from files, moves, the clipboard, the undo store and the instruments.
#include "common/settings.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/voice_codec.h"
#include "midi/instruments/builtin_instruments.h"
#include "shell/clipboard.h"
#include "shell/list_state.h"
#include "shell/reorder.h"
#include "shell/shell_window.h"
#include "shell/undo.h"
#include "shell/voice_commands.h"
#include "support/bank_bytes.h"
#include "support/builtin_midi.h"
#include "support/scripted_desktop.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Voices = std::vector<VoiceObject>;

// Names as no editor makes them.
const std::array<Bytes, 8> OddNames = {{
    {0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
    {' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' '},
    {'A', 'B', 0, 'C', 'D', 0, ' ', 'E', ' ', 0},
    {'A', 'B', 'C', 'D', 'E', 'F', 'G', 'H', 'I', 0x7F},
    {0xC9, 't', 0xE9, 0xF7, 0xFF, 0xF0, 0x80, 0x9F, 0xA0, 0xAD},
    {'/', '\\', ':', '*', '?', '"', '<', '>', '|', '.'},
    {'\r', '\n', '\t', 0x1B, 0x01, 0x1F, ' ', 'x', '\n', '\n'},
    {0xF7, 0xF7, 0xF7, 0xF7, 0xF7, 0xF7, 0xF7, 0xF7, 0xF7, 0xF7},
}};

// What the two families differ in.
struct Family {
    DriverId id;
    std::size_t payload, extra; // bytes
    std::size_t name;           // offset in the payload
};
constexpr Family Families[] = {{Dx7DriverId, 156, 0, 145}, {RefaceDriverId, 38, 112, 0}};

// Any bytes; over 32 voices each place takes values below, above and far above its range.
VoiceObject OddVoice(const Family &family, std::size_t number) {
    Bytes bytes(family.payload + family.extra);
    for (std::size_t place = 0; place < bytes.size(); ++place) {
        bytes[place] = static_cast<std::uint8_t>(place * 37 + number * 101 + place / 8);
    }
    if (number < OddNames.size()) {
        std::ranges::copy(OddNames[number],
                          bytes.begin() + static_cast<std::ptrdiff_t>(family.name));
    }
    const auto all = std::span(bytes);
    VoiceObject voice =
        MakeVoiceObject(family.id, all.first(family.payload), all.subspan(family.payload));
    if (number % 2 == 1) {
        std::fill_n(voice.bytes.begin() + 20, 32, 0xA5); // reserved bytes of the block itself
    }
    return voice;
}

class OddVoices : public testing::TestWithParam<Family> {
protected:
    void SetUp() override {
        CurrentDriverId = GetParam().id;
        CreateBackups = 0;
        MaxUndoLevel = 10;
        UndoInit(nullptr);
        for (std::size_t number = 0; number < 32; ++number) {
            voices.push_back(OddVoice(GetParam(), number));
            ListSetVoice(MainList, ListAdd(MainList), voices.back());
        }
        ListSelect(MainList, 0);
    }
    const SynthDriver &Row() const { return *DriverOfId(GetParam().id); }

    TempFolder folder;
    ScriptedDesktop desktop;
    Voices voices;
};

TEST_P(OddVoices, ComeBackFromVoiceFiles) {
    for (int row = 0; row < 32; ++row) {
        const std::string path =
            folder.File(std::to_string(row) + "." + VoiceExtension(CurrentDriverId));
        ASSERT_EQ(Row().ExportVoice(nullptr, MainList, nullptr, path.c_str(), row, 0), 1) << row;
        VoiceObject out;
        ASSERT_EQ(Row().ImportVoice(nullptr, MainList, 0, path.c_str(), &out), 1) << row;
        const std::size_t header = GetParam().id == RefaceDriverId ? 0 : 52; // bytes not kept
        EXPECT_TRUE(std::ranges::equal(std::span(out.bytes).subspan(header),
                                       std::span(voices[row].bytes).subspan(header)))
            << row;
        ASSERT_EQ(Row().ImportVoice(nullptr, MainList, 31 - row, path.c_str(), nullptr), 1);
        EXPECT_EQ(MainList.items[31 - row], out) << row;
        MainList.items[31 - row] = voices[31 - row];
    }
}

TEST(OddRefaceDxVoices, ComeBackFromABankFile) {
    // A bank of a DX7 has no room for them.
    const TempFolder folder;
    CreateBackups = 0;
    CurrentDriverId = RefaceDriverId;
    VoiceList list;
    Voices voices;
    for (std::size_t number = 0; number < 32; ++number) {
        voices.push_back(OddVoice(Families[1], number));
        ListSetVoice(list, ListAdd(list), voices.back());
    }
    const std::string path = folder.File("odd.srx");
    ASSERT_EQ(SaveDocument(nullptr, list, path.c_str()), 1);
    ListReset(list);
    DriverId driver = NoDriverId;
    std::int64_t time = 0;
    ASSERT_EQ(OpenDocument(nullptr, list, path.c_str(), &driver, &time), 1);
    EXPECT_EQ(list.items, voices);
}

TEST_P(OddVoices, AreMovedAsTheyAre) {
    // Up, down, dragged up, dragged down: where each voice then stands.
    MainListState.clickedIndex = 1;
    EXPECT_EQ(RunMoveUp(), 1);
    MainListState.clickedIndex = 2;
    EXPECT_EQ(RunMoveDown(), 1);
    DropVoiceAt(31, 4);
    DropVoiceAt(5, 30);
    const int order[32] = {1,  0,  3,  2,  31, 5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15,
                           16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 4,  29, 30};
    for (int row = 0; row < 32; ++row) {
        EXPECT_EQ(MainList.items[row], voices[order[row]]) << row;
    }
    for (int levels = 0; levels < 4; ++levels) {
        EXPECT_EQ(RunUndo(), 1);
    }
    EXPECT_EQ(MainList.items, voices);
}

TEST_P(OddVoices, AreCopiedAndPastedAsTheyAre) {
    for (int row = 0; row < 31; ++row) {
        MainListState.clickedIndex = row;
        EXPECT_EQ(RunCopy(), 1);
        EXPECT_EQ(desktop.clipboard, voices[row].bytes) << row;
        MainListState.clickedIndex = 31;
        EXPECT_EQ(RunPaste(), 1);
        EXPECT_EQ(MainList.items[31], voices[row]) << row;
        EXPECT_EQ(RunUndo(), 1);
        EXPECT_EQ(MainList.items, voices) << row;
    }
}

INSTANTIATE_TEST_SUITE_P(OfBothFamilies, OddVoices, testing::ValuesIn(Families),
                         [](const testing::TestParamInfo<Family> &info) {
                             return info.param.id == Dx7DriverId ? "Dx7" : "Reface";
                         });

// The instruments. Only bytes of seven bits go over a cable.

constexpr auto Dx7 = BuiltinInstrument::Dx7;
constexpr auto VolcaFm = BuiltinInstrument::VolcaFm;
constexpr auto Reface = BuiltinInstrument::Reface;

int InputOf(BuiltinInstrument instrument) {
    return 2 * static_cast<int>(instrument);
}
int OutputOf(BuiltinInstrument instrument) {
    return InputOf(instrument) + 1;
}

class OverMidi : public testing::Test {
protected:
    void SetUp() override {
        CurrentMidiChannel = 1;
        SysexWait = 1500;
        CreateBackups = 0;
    }
    BuiltinMidi midi;

    // `size` bytes; with 128 numbers, each place takes each of the 128 values once.
    static Bytes SevenBits(std::size_t number, std::size_t size) {
        Bytes bytes(size);
        for (std::size_t place = 0; place < size; ++place) {
            bytes[place] = static_cast<std::uint8_t>((number + place * 5) % 128);
        }
        return bytes;
    }
    static VoiceObject RefaceVoice(const Bytes &bytes) {
        const auto all = std::span(bytes);
        return MakeVoiceObject(RefaceDriverId, all.first(38), all.subspan(38));
    }
    int UploadVoice(BuiltinInstrument instrument, const VoiceObject &voice) {
        const DriverId driver = instrument == Reface ? RefaceDriverId : Dx7DriverId;
        return UploadOneVoice(nullptr, list, &voice, driver,
                              {InputOf(instrument), OutputOf(instrument)}, 0, 0);
    }
    int Download() {
        CurrentDriverId = RefaceDriverId;
        MidiInPort = InputOf(Reface);
        MidiOutPort = OutputOf(Reface);
        return DownloadCurrent(nullptr, list);
    }

    TempFolder folder;
    ScriptedDesktop desktop;
    VoiceList list;
};

TEST_F(OverMidi, AVoiceWithAnySevenBitsIsTheEditBufferOfARefaceDx) {
    for (std::size_t number = 0; number < 128; ++number) {
        const Bytes bytes = SevenBits(number, 150);
        EXPECT_EQ(UploadVoice(Reface, RefaceVoice(bytes)), 1);
        EXPECT_EQ(EditBufferOf(Reface), bytes) << number;
    }
}

TEST_F(OverMidi, VoicesWithAnySevenBitsComeFromARefaceDx) {
    for (std::size_t first = 0; first < 128; first += 32) {
        Bytes memory;
        for (std::size_t number = first; number < first + 32; ++number) {
            const Bytes bytes = SevenBits(number, 150);
            memory.insert(memory.end(), bytes.begin(), bytes.end());
        }
        MemoryOf(Reface) = memory;
        ASSERT_EQ(Download(), 1);
        ASSERT_EQ(ListCount(list), 32);
        for (std::size_t row = 0; row < 32; ++row) {
            EXPECT_EQ(list.items[row], RefaceVoice(SevenBits(first + row, 150))) << first + row;
        }
        EXPECT_EQ(MemoryOf(Reface), memory) << "nothing is stored there";
    }
}

TEST_F(OverMidi, ABankOfARefaceDxComesBackToItThroughItsFile) {
    const Bytes memory = MemoryOf(Reface); // as from the factory
    ASSERT_EQ(Download(), 1);
    const std::string path = folder.File("bank.srx");
    ASSERT_EQ(SaveDocument(nullptr, list, path.c_str()), 1);
    ListReset(list);
    DriverId driver = NoDriverId;
    std::int64_t time = 0;
    ASSERT_EQ(OpenDocument(nullptr, list, path.c_str(), &driver, &time), 1);
    for (std::size_t row = 0; row < 32; ++row) {
        ASSERT_EQ(UploadVoice(Reface, list.items[row]), 1);
        EXPECT_TRUE(
            std::ranges::equal(EditBufferOf(Reface), std::span(memory).subspan(row * 150, 150)))
            << row;
    }
}

TEST_F(OverMidi, SettingsThatAreInTheWayOfATransferAreBackBehindIt) {
    Bytes &settings = SystemSettingsOf(Reface);
    settings[0x00] = 4; // transmits on channel 5
    settings[0x01] = 7; // receives on channel 8
    settings[0x0C] = 1; // switches itself off
    settings[0x0D] = 1; // speaker
    settings[0x0E] = 0; // takes no program changes
    const Bytes before = settings;
    const Bytes memory = MemoryOf(Reface);
    ASSERT_EQ(Download(), 1);
    EXPECT_EQ(SystemSettingsOf(Reface), before);
    for (std::size_t row = 0; row < 32; ++row) {
        EXPECT_TRUE(std::ranges::equal(std::span(list.items[row].bytes).subspan(52),
                                       std::span(memory).subspan(row * 150, 150)))
            << row;
    }
    EXPECT_EQ(SelectedProgramOf(Reface), 0);
    ASSERT_EQ(UploadVoice(Reface, list.items[9]), 1);
    EXPECT_EQ(SystemSettingsOf(Reface), before);
    CurrentDriverId = RefaceDriverId;
    ASSERT_EQ(UploadCurrent(nullptr, list), 1);
    EXPECT_EQ(SystemSettingsOf(Reface), before);
    EXPECT_TRUE(std::ranges::equal(EditBufferOf(Reface), std::span(memory).first(150)))
        << "the first voice of the list";
}

TEST_F(OverMidi, AVoiceWithAnySevenBitsIsTheEditBufferOfADx7AndAVolcaFm) {
    for (const auto instrument : {Dx7, VolcaFm}) {
        for (std::size_t number = 0; number < 128; ++number) {
            Bytes bytes = SevenBits(number, 156);
            EXPECT_EQ(UploadVoice(instrument, MakeVoiceObject(Dx7DriverId, bytes)), 1);
            bytes.pop_back(); // the operators' switches stay behind
            EXPECT_EQ(EditBufferOf(instrument), bytes) << number;
        }
    }
}

TEST_F(OverMidi, ABankFileIsTheMemoryOfADx7AndAVolcaFm) {
    const Bytes file = TestBank();
    DriverId driver = NoDriverId;
    std::int64_t time = 0;
    ASSERT_EQ(OpenDocument(nullptr, list, folder.Write("bank.syx", file).c_str(), &driver, &time),
              1);
    CurrentDriverId = driver;
    for (const auto instrument : {Dx7, VolcaFm}) {
        MidiOutPort = OutputOf(instrument);
        ASSERT_EQ(UploadCurrent(nullptr, list), 1);
        EXPECT_EQ(MemoryOf(instrument), Bytes(file.begin() + 6, file.begin() + 6 + 4096));
        EXPECT_EQ(SelectedProgramOf(instrument), 0);
    }
}

// How many values the packed form has room for, by the place in an unpacked voice.
int ValuesOf(std::size_t place) {
    constexpr int operators[21] = {
        128, 128, 128, 128, 128, 128, 128, 128, // EG rates and levels
        128, 128, 128, 4,   4,                  // break point, depths, curves
        8,   4,   8,   128,                     // rate scaling, sensitivities, output level
        2,   32,  128, 16,                      // mode, coarse, fine, detune
    };
    constexpr int common[29] = {
        128, 128, 128, 128, 128, 128, 128, 128,           // pitch EG
        128, 8,   2,                                      // algorithm, feedback, key sync
        128, 128, 128, 128, 2,   8,   8,   128,           // LFO, pitch sensitivity, transpose
        128, 128, 128, 128, 128, 128, 128, 128, 128, 128, // name
    };
    return place < 126 ? operators[place % 21] : common[place - 126];
}

TEST_F(OverMidi, EveryValueThatABankHasRoomForIsHeardByADx7) {
    CurrentDriverId = Dx7DriverId;
    MidiOutPort = OutputOf(Dx7);
    for (std::size_t first = 0; first < 128; first += 32) {
        std::vector<Bytes> sent;
        ListReset(list);
        for (std::size_t number = first; number < first + 32; ++number) {
            Bytes bytes(156);
            for (std::size_t place = 0; place < 155; ++place) {
                bytes[place] = static_cast<std::uint8_t>((number + place * 5) %
                                                         static_cast<std::size_t>(ValuesOf(place)));
            }
            bytes[155] = 0x3F; // all operators are on
            ListSetVoice(list, ListAdd(list), MakeVoiceObject(Dx7DriverId, bytes));
            bytes.pop_back();
            sent.push_back(bytes);
        }
        ASSERT_EQ(UploadCurrent(nullptr, list), 1);
        MidiStream output = NoMidiStream;
        ASSERT_EQ(TheMidi.Pm_OpenOutput(&output, OutputOf(Dx7), 0, 0), 0);
        for (std::uint32_t program = 0; program < 32; ++program) {
            TheMidi.Pm_WriteShort(output, 0, 0xC0 | program << 8);
            EXPECT_EQ(EditBufferOf(Dx7), sent[program]) << first + program;
        }
        TheMidi.Pm_Close(output);
    }
}

} // namespace
} // namespace tonewright
