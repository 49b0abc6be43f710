// Lines of a file that a disk gives back in part.
#include "common/line_reader.h"

#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

namespace tonewright {
namespace {

// The memory of the process: a regular file, whose first page nobody can read.
constexpr const char *Unreadable = "/proc/self/mem";

TEST(LineReader, TellsAFileThatCannotBeReadFromOneThatEnds) {
    std::string_view line;
    auto reader = OpenLines(Unreadable);
    ASSERT_TRUE(reader);
    EXPECT_FALSE(NextLine(*reader, line));
    EXPECT_EQ(reader->error, EIO);

    const TempFolder folder;
    reader = OpenLines(folder.WriteText("file", "a\n").c_str());
    ASSERT_TRUE(reader);
    while (NextLine(*reader, line)) {
    }
    EXPECT_EQ(reader->error, 0);
}

} // namespace
} // namespace tonewright
