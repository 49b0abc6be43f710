// The memory of the built-in instruments on a disk that is full.
#include "midi/instruments/builtin_instruments.h"
#include "support/posix_limits.h"
#include "support/temp_folder.h"

#include <filesystem>
#include <iterator>

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

} // namespace
} // namespace tonewright
