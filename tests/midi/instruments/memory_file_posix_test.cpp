// The memory of the built-in instruments on a disk that is full, and after a kill.
#include "midi/instruments/builtin_instruments.h"
#include "support/killed_child.h"
#include "support/posix_limits.h"
#include "support/temp_folder.h"

#include <filesystem>
#include <iterator>
#include <random>

namespace tonewright {
namespace {

constexpr auto Dx7 = BuiltinInstrument::Dx7;

TEST(InstrumentMemoryFile, OnAFullDiskTheFormerOneStays) {
    const TempFolder folder;
    const std::string path = folder.File("studio");
    MemoryOf(Dx7).assign(4096, 1);
    EXPECT_TRUE(SaveInstrumentMemory(path.c_str()));
    const auto former = ReadTestFile(path);
    MemoryOf(Dx7).assign(4096, 2);
    bool saved = true;
    {
        const FileSizeLimit limit(2000);
        saved = SaveInstrumentMemory(path.c_str());
    }
    EXPECT_FALSE(saved);
    EXPECT_EQ(ReadTestFile(path), former);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path), {}), 1);
}

TEST(InstrumentMemoryFile, BehindALinkTheFileIsReplacedAndTheLinkStays) {
    const TempFolder folder;
    const std::string path = folder.File("studio"), link = folder.File("link");
    EXPECT_TRUE(SaveInstrumentMemory(path.c_str()));
    std::filesystem::create_symlink(path, link);
    MemoryOf(Dx7).assign(4096, 2);
    EXPECT_TRUE(SaveInstrumentMemory(link.c_str()));
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    ResetBuiltinInstruments();
    EXPECT_TRUE(LoadInstrumentMemory(path.c_str()));
    EXPECT_EQ(MemoryOf(Dx7)[0], 2);
}

TEST(InstrumentMemoryFile, IsWholeWheneverWritingItIsKilled) {
    const TempFolder folder;
    const std::string path = folder.File("studio");
    const auto markOf = [](int round) { return static_cast<std::uint8_t>(round % 100); };
    std::mt19937 random(20260222);
    int cutShort = 0;
    for (int count = 0; count < 100; ++count) {
        const int cut = KillDuring(random, [&](int round) {
            MemoryOf(Dx7).assign(4096, markOf(round));
            MemoryOf(BuiltinInstrument::Reface).assign(4800, markOf(round));
            SaveInstrumentMemory(path.c_str());
        });
        ASSERT_TRUE(LoadInstrumentMemory(path.c_str())) << "kill " << count;
        const std::uint8_t found = MemoryOf(Dx7)[0];
        EXPECT_TRUE(found == markOf(cut) || found == markOf(cut - 1)) << "kill " << count;
        EXPECT_EQ(MemoryOf(Dx7), std::vector<std::uint8_t>(4096, found)) << "kill " << count;
        EXPECT_EQ(MemoryOf(BuiltinInstrument::Reface), std::vector<std::uint8_t>(4800, found));
        cutShort += found == markOf(cut - 1) ? 1 : 0;
    }
    EXPECT_GT(cutShort, 0) << "no kill came before the end of its round";
}

} // namespace
} // namespace tonewright
