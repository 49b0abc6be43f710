// The file in which the built-in instruments keep their memory.
#include "cable.h"

#include "support/bank_bytes.h"
#include "support/temp_folder.h"

#include <zlib.h>

namespace tonewright {
namespace {

constexpr auto Dx7 = BuiltinInstrument::Dx7;
constexpr auto Volca = BuiltinInstrument::VolcaFm;
constexpr auto Reface = BuiltinInstrument::Reface;

// Name, three instruments of state, memory, edit buffer and settings, check.
constexpr std::size_t FileSize = 8 + 2 * (3 + 4096 + 155) + (3 + 4800 + 150 + 32) + 4;

void FixCheck(Bytes &file) {
    const auto check = crc32(crc32(0, nullptr, 0), file.data(), static_cast<uInt>(file.size() - 4));
    for (std::size_t i = 0; i < 4; ++i) {
        file[file.size() - 4 + i] = static_cast<std::uint8_t>(check >> (8 * i));
    }
}

// What must hold after a refusal.
void ExpectFactory() {
    const Bytes memory = MemoryOf(Reface);
    const Bytes dx7 = MemoryOf(Dx7);
    const int program = SelectedProgramOf(Volca);
    ResetBuiltinInstruments();
    EXPECT_EQ(memory, MemoryOf(Reface));
    EXPECT_EQ(dx7, MemoryOf(Dx7));
    EXPECT_EQ(program, 0);
}

TEST(InstrumentMemoryFile, KeepsAllThatTheInstrumentsHold) {
    const TempFolder folder;
    const Bytes bank = TestBank();
    const Bytes voices(bank.begin() + 6, bank.begin() + 4102);
    {
        Cable cable(Dx7);
        cable.Send(bank);
        cable.SendShort(0x007DB0);
    }
    {
        Cable cable(Volca);
        ChannelOf(Volca) = 7;
        cable.SendShort(0x03C6);
    }
    {
        Cable cable(Reface);
        cable.SendShort(0x1EC0);
        cable.Send({0xF0, 0x43, 0x10, 0x7F, 0x1C, 0x05, 0x00, 0x00, 0x02, 1, 2, 3, 4, 0xF7});
    }
    MemoryOf(Reface)[149] = 0x5A;
    const Bytes edited = EditBufferOf(Reface);
    ASSERT_TRUE(SaveInstrumentMemory(folder.File("studio").c_str()));
    EXPECT_EQ(ReadTestFile(folder.File("studio")).size(), FileSize);

    ResetBuiltinInstruments();
    ASSERT_TRUE(LoadInstrumentMemory(folder.File("studio").c_str()));
    EXPECT_EQ(MemoryOf(Dx7), voices);
    EXPECT_TRUE(OmniOf(Dx7));
    EXPECT_EQ(ChannelOf(Volca), 7);
    EXPECT_EQ(SelectedProgramOf(Volca), 3);
    EXPECT_FALSE(OmniOf(Volca));
    EXPECT_EQ(SelectedProgramOf(Reface), 30);
    EXPECT_EQ(EditBufferOf(Reface), edited);
    EXPECT_EQ(MemoryOf(Reface)[149], 0x5A);
    const Bytes &settings = SystemSettingsOf(Reface);
    EXPECT_EQ(Bytes(settings.begin() + 2, settings.begin() + 6), (Bytes{1, 2, 3, 4}));
}

TEST(InstrumentMemoryFile, HasItsPartsInTheirPlaces) {
    const TempFolder folder;
    ASSERT_TRUE(SaveInstrumentMemory(folder.File("studio").c_str()));
    Bytes file = ReadTestFile(folder.File("studio"));
    ASSERT_EQ(file.size(), FileSize);
    EXPECT_EQ(Bytes(file.begin(), file.begin() + 8), Text("TwInst01"));
    EXPECT_EQ(Bytes(file.begin() + 8, file.begin() + 11), (Bytes{0, 1, 0}));
    EXPECT_EQ(Bytes(file.begin() + 11 + 118, file.begin() + 11 + 128), Text("INIT VOICE"));
    const auto reface = file.begin() + 8 + 2 * (3 + 4096 + 155);
    EXPECT_EQ(Bytes(reface + 3, reface + 13), Text("Rose Tine "));
    Bytes checked = file;
    FixCheck(checked);
    EXPECT_EQ(checked, file);
}

TEST(InstrumentMemoryFile, IsRefusedWhenAnythingIsWrong) {
    const TempFolder folder;
    const std::string path = folder.File("studio");
    ASSERT_TRUE(SaveInstrumentMemory(path.c_str()));
    const Bytes good = ReadTestFile(path);
    ASSERT_EQ(good.size(), FileSize);
    const auto refuse = [&](const char *what, auto spoil, bool fixCheck) {
        Bytes file = good;
        spoil(file);
        if (fixCheck) {
            FixCheck(file);
        }
        WriteTestFile(path, file);
        MemoryOf(Reface).assign(4800, 1);
        MemoryOf(Dx7).assign(4096, 1);
        EXPECT_FALSE(LoadInstrumentMemory(path.c_str())) << what;
        ExpectFactory();
    };
    refuse(
        "empty", [](Bytes &file) { file.clear(); }, false);
    refuse(
        "only the name", [](Bytes &file) { file.resize(8); }, false);
    refuse(
        "one byte short", [](Bytes &file) { file.pop_back(); }, true);
    refuse(
        "one byte long", [](Bytes &file) { file.push_back(0); }, true);
    refuse(
        "another name", [](Bytes &file) { file[7] = '2'; }, true);
    refuse(
        "a bit of a voice", [](Bytes &file) { file[5000] ^= 1; }, false);
    refuse(
        "the check", [](Bytes &file) { file.back() ^= 1; }, false);
    refuse(
        "program 32", [](Bytes &file) { file[8] = 32; }, true);
    refuse(
        "channel 0", [](Bytes &file) { file[9] = 0; }, true);
    refuse(
        "channel 17", [](Bytes &file) { file[9] = 17; }, true);
    refuse(
        "Omni 2", [](Bytes &file) { file[10] = 2; }, true);
    refuse(
        "a value above 7F", [](Bytes &file) { file[5000] = 0x80; }, true);
    WriteTestFile(path, good);
    EXPECT_TRUE(LoadInstrumentMemory(path.c_str()));
}

TEST(InstrumentMemoryFile, AMissingFileAndAFolderAreRefused) {
    const TempFolder folder;
    MemoryOf(Dx7).assign(4096, 1);
    EXPECT_FALSE(LoadInstrumentMemory(folder.File("none").c_str()));
    EXPECT_EQ(MemoryOf(Dx7)[0], 99);
    EXPECT_FALSE(LoadInstrumentMemory(folder.path.string().c_str()));
    EXPECT_FALSE(SaveInstrumentMemory(folder.path.string().c_str()));
    EXPECT_FALSE(SaveInstrumentMemory(folder.File("no/such/folder").c_str()));
}

} // namespace
} // namespace tonewright
