// Which catalogues there are, where they lie, and what a new one may be called.
#include "database/database_names.h"

#include "common/folders.h"
#include "common/platform.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

class DatabaseNamesIn : public testing::Test {
protected:
    DatabaseNamesIn() {
        PlatformFolders.documents = folder.Folder();
        fs::create_directory(Documents());
    }
    fs::path Documents() const { return folder.path / "My Tonewright 17 Documents"; }
    void Write(const std::string &name) const { WriteTestText((Documents() / name).string(), "x"); }

    TempFolder folder;
};

TEST_F(DatabaseNamesIn, AreThoseOfTheFilesWithTheExtension) {
    for (const char *name : {"Voices.syx_db", "Live set.syx_db", "v1.2.syx_db", "Voices.srx_db",
                             "Voices.syx_db_backup", "Xsyx_db", "bank.syx"}) {
        Write(name);
    }
    EXPECT_EQ(DatabaseNames("syx_db"), (Names{"Live set", "v1.2", "Voices"}));
    EXPECT_EQ(DatabaseNames("srx_db"), Names{"Voices"});
    EXPECT_EQ(DatabaseNames("db"), Names{});
}

TEST_F(DatabaseNamesIn, PassOverHiddenOnesAndFolders) {
    for (const char *name : {".hidden.syx_db", ".syx_db", "..x.syx_db", "_.syx_db"}) {
        Write(name);
    }
    fs::create_directory(Documents() / "Folder.syx_db");
    fs::create_symlink(Documents() / "Folder.syx_db", Documents() / "To a folder.syx_db");
    fs::create_symlink(Documents() / "nowhere", Documents() / "To nothing.syx_db");
    fs::create_symlink(Documents() / "_.syx_db", Documents() / "To a file.syx_db");
    EXPECT_EQ(DatabaseNames("syx_db"), (Names{"_", "To a file"}));
}

TEST_F(DatabaseNamesIn, AreSortedWithoutRegardToCase) {
    const Names sorted = {"!", "_under", "a", "A b",   "ab",           "ABC",          "B",
                          "b", "C",      "c", "Zebra", "\xC3\x84rger", "\xC3\xA4ndern"};
    for (const std::string &name : sorted) {
        Write(name + ".syx_db");
    }
    EXPECT_EQ(DatabaseNames("syx_db"), sorted);
}

TEST_F(DatabaseNamesIn, AreNoneWithoutTheFolder) {
    fs::remove(Documents());
    EXPECT_EQ(DatabaseNames("syx_db"), Names{});
}

TEST_F(DatabaseNamesIn, PathsAreThoseInTheDocuments) {
    const std::string documents = Documents().string() + PathSeparator;
    EXPECT_EQ(DatabasePathNamed("Live set", "syx_db"), documents + "Live set.syx_db");
    EXPECT_EQ(DatabasePathNamed("v1.2", "srx_db"), documents + "v1.2.srx_db");
    EXPECT_EQ(DatabasePathNamed(std::string(300, 'n'), "syx_db"),
              documents + std::string(260 - documents.size(), 'n'));
    // A character that does not fit whole is left out, and nothing stands behind the cut.
    const std::string fits(258 - documents.size(), 'n');
    EXPECT_EQ(DatabasePathNamed(fits + "\xE2\x99\xAF", "syx_db"), documents + fits);
    EXPECT_EQ(DatabasePathNamed(fits, "syx_db"), documents + fits + ".s");
    EXPECT_EQ(DatabaseBackupPathOf(documents + "v1.2.srx_db", ".srx_db_backup"),
              documents + "v1.2.srx_db_backup");
}

TEST(DatabaseName, HoldsLettersDigitsAndTheseSigns) {
    const std::u32string signs = U"$%'-_@~`!(){}^#&, ";
    for (char32_t character = 0; character < 0x200; ++character) {
        EXPECT_EQ(MayStandInDatabaseName(character, false),
                  signs.find(character) != std::u32string::npos)
            << static_cast<unsigned>(character);
        EXPECT_TRUE(MayStandInDatabaseName(character, true));
    }
}

TEST(DatabaseName, IsNewWhenNoneHasIt) {
    const Names existing = {"Live set", "Bells"};
    EXPECT_TRUE(IsNewDatabaseName("Pads", existing));
    EXPECT_TRUE(IsNewDatabaseName("Voices 2", existing));
    EXPECT_TRUE(IsNewDatabaseName("Bell", existing));
    EXPECT_TRUE(IsNewDatabaseName("Bells ", existing));
    for (const char *name : {"Voices", "voices", "VOICES", "Bells", "bELLS", "live SET"}) {
        EXPECT_FALSE(IsNewDatabaseName(name, existing)) << name;
    }
    EXPECT_FALSE(IsNewDatabaseName("Voices", {}));
}

TEST(DatabaseName, IsNeitherEmptyNorHidden) {
    for (const char *name : {"", " ", " Pads", ".", ".Pads"}) {
        EXPECT_FALSE(IsNewDatabaseName(name, {})) << name;
    }
    EXPECT_TRUE(IsNewDatabaseName("Pads .", {}));
}

} // namespace
} // namespace tonewright
