// The path family.
#include "common/folders.h"

#include "common/platform.h"
#include "common/text.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <string_view>
#include <thread>

using namespace tonewright;

namespace {

const std::string S(1, PathSeparator);

} // namespace

TEST(Folders, StandAtTheirPlacesUnderThePlatformsFolders) {
    PlatformFolders = {
        .applicationData = "app", .documents = "docs", .pictures = "pics", .programs = "prog"};
    EXPECT_EQ(MakerProgramFolder(), "prog" + S + "Quillbrook" + S);
    EXPECT_EQ(UserFile("Tonewright 17.ini"), "app" + S + "Quillbrook" + S + "Tonewright 17.ini");
    EXPECT_EQ(ProductUserFile("FileMenuHistory.txt"),
              "app" + S + "Quillbrook" + S + "Tonewright 17" + S + "FileMenuHistory.txt");
    EXPECT_EQ(DocumentsFile("AutoConfig.crg"), "docs" + S + "AutoConfig.crg");
    EXPECT_EQ(PicturesFile(), "pics" + S + "Tonewright Background.bmp");
    EXPECT_EQ(MakerUserFolder(), "app" + S + "Quillbrook" + S);
    EXPECT_EQ(DefaultDocumentsFolder(), "docs" + S + "My Tonewright 17 Documents" + S);
}

TEST(Folders, ABaseThatEndsInASeparatorGetsNoSecondOne) {
    PlatformFolders = {.applicationData = "app" + S,
                       .documents = "docs" + S,
                       .pictures = "pics" + S,
                       .programs = "prog" + S};
    EXPECT_EQ(MakerProgramFolder(), "prog" + S + "Quillbrook" + S);
    EXPECT_EQ(UserFile("x"), "app" + S + "Quillbrook" + S + "x");
    EXPECT_EQ(ProductUserFile("x"), "app" + S + "Quillbrook" + S + "Tonewright 17" + S + "x");
    EXPECT_EQ(DocumentsFile("x"), "docs" + S + "x");
    EXPECT_EQ(PicturesFile(), "pics" + S + "Tonewright Background.bmp");
    EXPECT_EQ(MakerUserFolder(), "app" + S + "Quillbrook" + S);
}

TEST(Folders, WithoutAPlatformFolderAreEmptyAndTheNameIsNotAppended) {
    PlatformFolders = {};
    EXPECT_STREQ(MakerProgramFolder(), "");
    EXPECT_STREQ(UserFile("x"), "");
    EXPECT_STREQ(ProductUserFile("x"), "");
    EXPECT_STREQ(DocumentsFile("x"), "");
    EXPECT_STREQ(PicturesFile(), "");
    EXPECT_EQ(MakerUserFolder(), "");
    EXPECT_EQ(DefaultDocumentsFolder(), "");
}

TEST(Folders, ANameThatWouldCarryThePathOver260BytesIsCutThere) {
    PlatformFolders = {.applicationData = std::string(200, 'a'),
                       .documents = std::string(200, 'd'),
                       .pictures = {},
                       .programs = {}};
    const std::string name(100, 'n');
    EXPECT_EQ(UserFile(name.c_str()),
              std::string(200, 'a') + S + "Quillbrook" + S + std::string(48, 'n'));
    EXPECT_EQ(DocumentsFile(name.c_str()), std::string(200, 'd') + S + std::string(59, 'n'));
    EXPECT_EQ(std::string(ProductUserFile(name.c_str())).size(), 260u);
}

TEST(Folders, AnOverlongBaseFolderIsCut) {
    PlatformFolders = {.applicationData = std::string(1000, 'a'),
                       .documents = std::string(259, 'd'),
                       .pictures = std::string(255, 'p'),
                       .programs = {}};
    EXPECT_EQ(UserFile("x"), std::string(260, 'a'));
    EXPECT_EQ(MakerUserFolder(), std::string(260, 'a'));
    EXPECT_EQ(DocumentsFile("x"), std::string(259, 'd') + S);
    EXPECT_EQ(PicturesFile(), std::string(255, 'p') + S + "Tone");
}

TEST(Folders, ACutNeverSplitsACharacter) {
    PlatformFolders = {.applicationData = {},
                       .documents = std::string(258, 'd') + S,
                       .pictures = {},
                       .programs = {}};
    EXPECT_EQ(DocumentsFile("\xC3\xA9"), std::string(258, 'd') + S);
}

TEST(Folders, ALaterCallOfOneFunctionOverwritesItsLastResultOnly) {
    PlatformFolders = {.applicationData = "app", .documents = {}, .pictures = {}, .programs = {}};
    const char *first = UserFile("one");
    const char *product = ProductUserFile("other");
    EXPECT_EQ(UserFile("two"), first);
    EXPECT_EQ(first, "app" + S + "Quillbrook" + S + "two");
    EXPECT_EQ(product, "app" + S + "Quillbrook" + S + "Tonewright 17" + S + "other");
}

TEST(Folders, TheFilesOfTheSystemStandInTheOrderOfItsFolders) {
    EXPECT_TRUE(SystemFiles("x").empty());
    PlatformFolders.systemConfiguration = {"first", "", "second" + S};
    EXPECT_EQ(SystemFiles("x"), (std::vector<std::string>{"first" + S + "Quillbrook" + S + "x",
                                                          "second" + S + "Quillbrook" + S + "x"}));
}

TEST(Folders, AreMadeAtStartAndByNoOtherFunction) {
    const TempFolder temp;
    PlatformFolders = {.applicationData = temp.File("app"),
                       .documents = temp.File("docs"),
                       .pictures = temp.File("pics"),
                       .programs = temp.File("prog")};
    UserFile("x");
    ProductUserFile("x");
    DocumentsFile("x");
    DefaultDocumentsFolder();
    EXPECT_FALSE(temp.Holds("app"));
    EXPECT_FALSE(temp.Holds("docs"));
    MakeProgramFolders();
    EXPECT_TRUE(std::filesystem::is_directory(temp.path / "app/Quillbrook/Tonewright 17"));
    EXPECT_TRUE(std::filesystem::is_directory(temp.path / "docs/My Tonewright 17 Documents"));
    EXPECT_FALSE(temp.Holds("pics"));
    EXPECT_FALSE(temp.Holds("prog"));
    MakeProgramFolders(); // once more changes nothing
}

TEST(Folders, ThatCannotBeMadeAreNoError) {
    const TempFolder temp;
    PlatformFolders = {.applicationData = temp.WriteText("app", "a file in the way"),
                       .documents = {},
                       .pictures = {},
                       .programs = {}};
    MakeProgramFolders();
    EXPECT_TRUE(std::filesystem::is_regular_file(temp.path / "app"));
}

TEST(Folders, AThreadThatAsksForAPathLeavesThatOfAnotherOne) {
    PlatformFolders = {.applicationData = "app"};
    const std::string_view path = ProductUserFile("here");
    std::thread other([] { ProductUserFile("elsewhere"); });
    other.join();
    EXPECT_EQ(path, "app" + S + "Quillbrook" + S + "Tonewright 17" + S + "here");
}
