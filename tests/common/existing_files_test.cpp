// Asking about many files that are not there, and a few that are.
#include "common/existing_files.h"
#include "common/file_bytes.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

class ExistingFilesTest : public testing::Test {
protected:
    // Asks for so many missing files that their folders get listed.
    void MissMany(const std::string &folder) {
        for (int number = 0; number < 100; ++number) {
            EXPECT_FALSE(
                FileExists(files, home.File(folder + "missing " + std::to_string(number))));
        }
    }
    bool Exists(const std::string &name) { return FileExists(files, home.File(name)); }

    TempFolder home;
    ExistingFiles files;
};

TEST_F(ExistingFilesTest, AFileIsFoundBeforeAndAfterItsFolderWasListed) {
    home.WriteText("here", "");
    EXPECT_TRUE(Exists("here"));
    MissMany("");
    EXPECT_TRUE(Exists("here"));
    EXPECT_FALSE(Exists("elsewhere"));
}

TEST_F(ExistingFilesTest, NamesOfAllKindsAreFound) {
    const std::vector<std::string> names = {"Capitals", "a b",      "\xC3\xA4", "\xE4", "x~1",
                                            ".hidden",  "ends in.", "blank ",   "a:b",  "\x01"};
    for (const std::string &name : names) {
        home.WriteText(name, "");
    }
    MissMany("");
    for (const std::string &name : names) {
        EXPECT_TRUE(Exists(name)) << name;
    }
}

TEST_F(ExistingFilesTest, TheCaseOfLettersCountsAsTheFileSystemSays) {
    home.WriteText("bank", "");
    MissMany("");
    EXPECT_EQ(Exists("BANK"), FileExists(home.File("BANK").c_str()));
}

// Where the file system does not tell them apart: the system is asked then.
TEST_F(ExistingFilesTest, ANameInOtherLettersMayBeTheOneThatIsListed) {
    home.WriteText("Bank [z] \xC3\x84", "");
    MissMany("");
    const auto &names = files.folders.at(home.File("")).names;
    EXPECT_TRUE(names.contains("bANK [Z] \xC3\x84"));
    EXPECT_FALSE(names.contains("Bank {z} \xC3\x84"));
    EXPECT_FALSE(names.contains("Bank [z] \xC3\xA4"));
}

TEST_F(ExistingFilesTest, AFolderIsNoFile) {
    std::filesystem::create_directory(home.path / "folder");
    EXPECT_FALSE(Exists("folder"));
    MissMany("");
    EXPECT_FALSE(Exists("folder"));
    EXPECT_FALSE(Exists("folder/"));
    EXPECT_FALSE(Exists("."));
    EXPECT_FALSE(FileExists(files, ""));
}

TEST_F(ExistingFilesTest, AFileBelowAFolderThatIsGoneIsMissing) {
    MissMany("gone/for good/");
    MissMany("gone/");
    MissMany("");
    EXPECT_FALSE(Exists("gone/for good/bank"));
    home.WriteText("file", "");
    MissMany("file/");
    EXPECT_FALSE(Exists("file/bank"));
    EXPECT_FALSE(Exists("file/"));
}

TEST_F(ExistingFilesTest, AFileIsFoundThroughDotsAndDoubledSeparators) {
    std::filesystem::create_directory(home.path / "folder");
    home.WriteText("folder/bank", "");
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(Exists("folder/bank"));
        EXPECT_TRUE(Exists("folder//bank"));
        EXPECT_TRUE(Exists("folder/../folder/./bank"));
        MissMany("folder/");
        MissMany("folder//");
        MissMany("folder/../folder/./");
        MissMany("");
    }
}

TEST_F(ExistingFilesTest, ALinkIsWhatItLeadsTo) {
    home.WriteText("bank", "");
    std::filesystem::create_symlink(home.path / "bank", home.path / "link");
    std::filesystem::create_symlink(home.path / "gone", home.path / "dangling");
    MissMany("");
    EXPECT_TRUE(Exists("link"));
    EXPECT_FALSE(Exists("dangling"));
}

} // namespace
} // namespace tonewright
