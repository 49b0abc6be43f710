// Paths of the file system and their text.
#include "common/utf8_path.h"

#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

TEST(Utf8Path, ATextAndItsPathStandForEachOther) {
    const TempFolder folder;
    const std::string name = "B\xC3\xA4nke \xE2\x99\xAA";
    folder.WriteText(name, "x");
    EXPECT_TRUE(std::filesystem::exists(PathOfUtf8(folder.File(name))));
    EXPECT_EQ(Utf8OfPath(PathOfUtf8(folder.File(name)).filename()), name);
    EXPECT_EQ(Utf8OfPath(PathOfUtf8("")), "");
    EXPECT_EQ(PathOfUtf8(std::string_view("folder/file", 6)), "folder");
}

TEST(Utf8Path, APathIsMadeAbsoluteAgainstTheCurrentFolder) {
    const std::filesystem::path here = std::filesystem::current_path();
    EXPECT_EQ(AbsolutePath("a/b"), Utf8OfPath(here / "a" / "b"));
    EXPECT_EQ(AbsolutePath("/a/b"), Utf8OfPath(here.root_path() / "a" / "b"));
}

} // namespace
} // namespace tonewright
