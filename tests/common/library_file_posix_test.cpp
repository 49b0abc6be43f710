// Libraries that are whole, cut, of other machines, and files that are none.
#include "common/library_file.h"
#include "support/paths.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <sstream>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;

bool IsWhole(const Bytes &bytes) {
    std::istringstream stream(std::string(bytes.begin(), bytes.end()));
    return LibraryIsWhole(stream);
}

// The head of a library of 64 bits, little-endian, with one segment behind it, of which the file
// holds `held` of its 32 bytes.
Bytes SmallLibrary(std::size_t held = 32) {
    Bytes bytes(64 + 56 + held);
    const std::uint8_t ident[] = {0x7F, 'E', 'L', 'F', 2, 1, 1};
    std::memcpy(bytes.data(), ident, sizeof ident);
    bytes[32] = 64;      // where the table of segments stands
    bytes[54] = 56;      // bytes of an entry
    bytes[56] = 1;       // how many
    bytes[64] = 1;       // to be loaded
    bytes[64 + 8] = 120; // from here
    bytes[64 + 32] = 32; // so many bytes
    return bytes;
}

TEST(LibraryFile, ALibraryIsWholeWhenAllOfItsSegmentsAreThere) {
    EXPECT_TRUE(LibraryFileIsWhole(TestTheme("whole")));
    EXPECT_TRUE(IsWhole(SmallLibrary()));
    for (std::size_t held = 0; held < 32; ++held) {
        EXPECT_FALSE(IsWhole(SmallLibrary(held))) << held;
    }
}

TEST(LibraryFile, ALibraryWithoutItsTableOfSegmentsIsCut) {
    for (std::size_t size = 64; size < 120; ++size) {
        Bytes bytes = SmallLibrary();
        bytes.resize(size);
        EXPECT_FALSE(IsWhole(bytes)) << size;
    }
    Bytes far = SmallLibrary();
    std::memset(far.data() + 32, 0xFF, 8); // the table's place
    EXPECT_FALSE(IsWhole(far));
    far = SmallLibrary();
    far[56] = far[57] = 0xFF; // 65,535 segments
    EXPECT_FALSE(IsWhole(far));
}

TEST(LibraryFile, ASegmentOfAnySizeAnywhereIsCut) {
    for (const int field : {8, 32}) { // its place, its size
        Bytes bytes = SmallLibrary();
        std::memset(bytes.data() + 64 + field, 0xFF, 8);
        EXPECT_FALSE(IsWhole(bytes)) << field;
    }
}

// The system says of them what they are.
TEST(LibraryFile, ALibraryOfAnotherByteOrderOrOfFewerBitsIsNotCut) {
    Bytes other = SmallLibrary(0);
    other[5] = 2; // the highest byte first
    EXPECT_TRUE(IsWhole(other));
    other = SmallLibrary(0);
    other[4] = 1; // 32 bits
    EXPECT_TRUE(IsWhole(other));
}

TEST(LibraryFile, AFileThatIsNoLibraryIsNotCut) {
    TempFolder folder;
    EXPECT_TRUE(LibraryFileIsWhole(folder.WriteText("empty", "")));
    EXPECT_TRUE(LibraryFileIsWhole(folder.WriteText("text", std::string(200, 'x'))));
    EXPECT_TRUE(LibraryFileIsWhole(folder.File("nothing")));
    for (std::size_t size = 0; size < 64; ++size) {
        Bytes bytes = SmallLibrary();
        bytes.resize(size);
        EXPECT_TRUE(IsWhole(bytes)) << size;
    }
}

} // namespace
} // namespace tonewright
