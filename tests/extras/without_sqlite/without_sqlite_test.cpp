// Without the library that keeps the archive there is none, which is said in words.
#include "extras/archive_store.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace tonewright {
namespace {

constexpr const char *NoArchive =
    "This program has no archive, since SQLite, which keeps it, is not there.";

TEST(WithoutSqlite, AnArchiveIsNotMade) {
    const TempFolder folder;
    const std::string path = folder.File("Archive.sqlite");
    ArchiveError error;
    EXPECT_EQ(OpenArchive(path, ArchiveUse::Write, error), nullptr);
    EXPECT_EQ(error.text, NoArchive);
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(WithoutSqlite, AnArchiveThatIsThereStaysAsItIs) {
    const TempFolder folder;
    const std::string path = folder.File("Archive.sqlite");
    WriteTestText(path, "an archive");
    for (const ArchiveUse use : {ArchiveUse::Read, ArchiveUse::Write}) {
        ArchiveError error;
        EXPECT_EQ(OpenArchive(path, use, error), nullptr);
        EXPECT_EQ(error.text, NoArchive);
    }
    EXPECT_EQ(ReadTestText(path), "an archive");
}

} // namespace
} // namespace tonewright
