// The archive window without its window: an archive of real files, brought up to date and loaded by
// the threads of the window.
#include "extras/archive_window.h"

#include "common/folders.h"
#include "extras/sqlite_database.h"
#include "support/archive_contents.h"
#include "support/bank_bytes.h"
#include "support/reface_bytes.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <utility>

namespace tonewright {
namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

class ArchiveWindowTest : public testing::Test {
protected:
    void SetUp() override {
        PlatformFolders = {.applicationData = home.path.string(),
                           .documents = home.path.string(),
                           .pictures = home.path.string(),
                           .programs = home.path.string()};
        MakeProgramFolders();
        fs::create_directory(files.path / "banks");
        WriteTestFile(files.File("banks/first.syx"), TestBank());
    }
    void TearDown() override { window.reset(); }

    std::string Banks() const { return ArchiveFolderPath(files.File("banks")); }

    // A window over the archive, loaded.
    void Open() {
        window = std::make_unique<ArchiveWindow>(ArchiveWindowCalls{
            .deliver =
                [this](std::function<void()> work) {
                    const std::lock_guard lock(mutex);
                    delivered.push_back(std::move(work));
                    arrived.notify_all();
                },
            .rowsChanged = [this] { ++rowChanges; },
            .voiceChanged = [this] { ++voiceChanges; },
            .stateChanged = [this] { states.push_back(ArchiveUpdateText(*window)); }});
        BeginArchive(*window);
        EXPECT_TRUE(window->loading);
        WaitUntil([this] { return !window->loading; });
    }
    void OpenWithBanks() {
        Open();
        AddArchiveFolder(*window, Banks());
        WaitForUpdate();
    }

    // Runs what the threads deliver, as the thread of a window does.
    void WaitUntil(const std::function<bool()> &isOver) {
        const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (!isOver()) {
            std::unique_lock lock(mutex);
            if (!arrived.wait_until(lock, limit, [this] { return !delivered.empty(); })) {
                FAIL() << "nothing came: " << ArchiveUpdateText(*window);
            }
            const auto works = std::exchange(delivered, {});
            lock.unlock();
            for (const auto &work : works) {
                work();
            }
        }
    }
    void WaitForUpdate() {
        WaitUntil([this] { return !window->updating && !window->loading; });
    }
    // As if much time had passed since the archive was loaded.
    void Follow() {
        window->loaded = {};
        FollowArchive(*window);
        WaitUntil([this] { return !window->lookingForChanges && !window->loading; });
    }

    Strings Names() const {
        Strings names;
        for (const ArchiveHit &hit : *window->hits) {
            names.push_back(ArchiveCellText(*window->index, hit, ArchiveColumn::Name));
        }
        return names;
    }
    ArchiveHit Hit(const std::string &text) {
        SetArchiveText(*window, text);
        EXPECT_EQ(window->hits->size(), 1u) << text;
        return window->hits->front();
    }

    TempFolder home, files;
    std::mutex mutex;
    std::condition_variable arrived;
    std::vector<std::function<void()>> delivered;
    int rowChanges = 0, voiceChanges = 0;
    Strings states; // what was said, each time that something changed
    std::unique_ptr<ArchiveWindow> window;
};

TEST_F(ArchiveWindowTest, WithoutAFolderItSaysWhatToDoAndWritesNothing) {
    Open();
    EXPECT_TRUE(ArchiveEmptyText(*window).starts_with("No folder yet.\n\nAdd a folder"));
    EXPECT_EQ(ArchiveCountText(*window), "");
    EXPECT_EQ(window->error, "");
    SetArchiveText(*window, "brass");
    EXPECT_TRUE(window->hits->empty());
    Follow();
    EXPECT_FALSE(fs::exists(ArchivePath()));
}

TEST_F(ArchiveWindowTest, WhileItLoadsItSaysSo) {
    window = std::make_unique<ArchiveWindow>(ArchiveWindowCalls{.deliver = [](auto) {}});
    EXPECT_EQ(ArchiveEmptyText(*window), "Loading the archive...");
    EXPECT_EQ(ArchiveCountText(*window), "Loading...");
}

TEST_F(ArchiveWindowTest, AFolderIsReadAndItsVoicesAreShown) {
    Open();
    AddArchiveFolder(*window, Banks());
    EXPECT_TRUE(window->updating);
    EXPECT_EQ(ArchiveEmptyText(*window), "Looking through the folder...");
    EXPECT_EQ(ArchiveUpdateText(*window), "Looking for files: 0 files so far");
    EXPECT_EQ(ArchiveUpdatePerMille(*window), -1);
    WaitForUpdate();
    EXPECT_EQ(ArchiveUpdateText(*window), "1 file with 32 voices: 1 new.");
    EXPECT_EQ(window->failures, Strings());
    ASSERT_EQ(window->hits->size(), 32u);
    EXPECT_EQ(Names().front(), "VOICE 01");
    EXPECT_EQ(ArchiveEmptyText(*window), "");
    EXPECT_EQ(ArchiveCountText(*window), "32 voices, found at 32 places");
    ASSERT_EQ(window->folders.size(), 1u);
    EXPECT_EQ(window->folders[0].path, Banks());
    EXPECT_TRUE(fs::exists(ArchivePath()));
}

TEST_F(ArchiveWindowTest, ProgressIsToldInWordsAndInNumbers) {
    Open();
    window->updating = true;
    window->progress = {.found = 1234, .looked = 0, .folder = "/a"};
    EXPECT_EQ(ArchiveUpdateText(*window), "Looking for files: 1,234 files so far");
    window->progress.looked = 617;
    EXPECT_EQ(ArchiveUpdateText(*window), "617 of 1,234 files, now in /a");
    EXPECT_EQ(ArchiveUpdatePerMille(*window), 500);
    window->progress.looked = 1234;
    EXPECT_EQ(ArchiveUpdatePerMille(*window), 1000);
    window->updating = false;
}

TEST(ArchivePutText, SaysHowManyVoicesTheListHasTaken) {
    EXPECT_EQ(ArchivePutText(1, 1), "1 voice put into the list.");
    EXPECT_EQ(ArchivePutText(3, 3), "3 voices put into the list.");
    EXPECT_EQ(ArchivePutText(2, 5), "2 of 5 voices put into the list: it has no more rows below "
                                    "the selected one.");
}

TEST_F(ArchiveWindowTest, EachCellSaysWhatStandsThere) {
    OpenWithBanks();
    const ArchiveHit hit = Hit("voice 07");
    const auto cell = [&](ArchiveColumn column) {
        return ArchiveCellText(*window->index, hit, column);
    };
    EXPECT_EQ(cell(ArchiveColumn::Name), "VOICE 07");
    EXPECT_EQ(cell(ArchiveColumn::Instrument), "DX7");
    EXPECT_EQ(cell(ArchiveColumn::Algorithm), "7");
    EXPECT_EQ(cell(ArchiveColumn::Times), "1");
    EXPECT_EQ(cell(ArchiveColumn::File), Banks() + "/first.syx");
    EXPECT_EQ(cell(ArchiveColumn::Place), "7");
}

TEST(ArchiveFolderChoices, HaveTheFoldersBelowEachThatWasAdded) {
    const auto shown = [](const std::vector<ArchiveFolder> &folders) {
        Strings lines;
        for (const ArchiveFolderChoice &choice : ArchiveFolderChoices(folders)) {
            lines.push_back(choice.path + "|" + choice.text);
        }
        return lines;
    };
    EXPECT_EQ(shown({}), Strings());
    EXPECT_EQ(shown({{.path = "/a", .root = true},
                     {.path = "/a/b"},
                     {.path = "/a/c/d"},
                     {.path = "/e", .root = true}}),
              (Strings{"/a|/a", "/a/b|    b", "/a/c/d|    c/d", "/e|/e"}));
    // One that was added in another one, which has more behind it.
    EXPECT_EQ(shown({{.path = "/a", .root = true},
                     {.path = "/a/.b", .root = true},
                     {.path = "/a/.b/c"},
                     {.path = "/a/d"}}),
              (Strings{"/a|/a", "/a/.b|/a/.b", "/a/.b/c|    c", "/a/d|    d"}));
    // All that there is.
    EXPECT_EQ(shown({{.path = "", .root = true}, {.path = "/a"}}), (Strings{"|/", "/a|    a"}));
    // Names that begin alike.
    EXPECT_EQ(shown({{.path = "/a", .root = true},
                     {.path = "/a/d"},
                     {.path = "/a-old", .root = true},
                     {.path = "/a-old/e"}}),
              (Strings{"/a|/a", "/a/d|    d", "/a-old|/a-old", "/a-old/e|    e"}));
    // Too many: three steps down would be 1,221, two steps are 111.
    std::vector<ArchiveFolder> folders = {{.path = "/a", .root = true}};
    const auto add = [&](const std::string &path) { folders.push_back({.path = path}); };
    for (const char one : std::string("0123456789")) {
        add(std::string("/a/") + one);
        for (const char two : std::string("0123456789")) {
            add(std::string("/a/") + one + "/" + two);
            for (int three = 10; three < 21; ++three) {
                add(std::string("/a/") + one + "/" + two + "/" + std::to_string(three));
            }
        }
    }
    const Strings lines = shown(folders);
    ASSERT_EQ(lines.size(), 111u);
    EXPECT_EQ(lines[0], "/a|/a");
    EXPECT_EQ(lines[1], "/a/0|    0");
    EXPECT_EQ(lines[2], "/a/0/0|    0/0");
    EXPECT_EQ(lines[110], "/a/9/9|    9/9");
}

TEST_F(ArchiveWindowTest, AFolderStandsInFrontOfThoseBelowIt) {
    for (const char *name : {"banks/a", "banks/a b", "banks/a/c"}) {
        fs::create_directory(files.path / name);
        WriteTestFile(files.File(std::string(name) + "/one.syx"), TestBank());
    }
    OpenWithBanks();
    Strings names;
    for (const ArchiveFolder &folder : window->folders) {
        names.push_back(ArchiveFolderText(*window, folder.path + "/one.syx"));
    }
    EXPECT_EQ(names, (Strings{"banks", "banks/a", "banks/a/c", "banks/a b"}));
}

TEST_F(ArchiveWindowTest, AFolderIsShownFromTheOneOnThatWasAdded) {
    fs::create_directory(files.path / "banks/below");
    OpenWithBanks();
    const auto shown = [&](const std::string &file) {
        return ArchiveFolderText(*window, ArchiveFolderPath(files.File(file)));
    };
    EXPECT_EQ(shown("banks/first.syx"), "banks");
    EXPECT_EQ(shown("banks/below/first.syx"), "banks/below");
    EXPECT_EQ(shown("banks 2/first.syx"), ArchiveFolderPath(files.File("banks 2")));
}

TEST_F(ArchiveWindowTest, TheRowsFollowTextFiltersAndOrder) {
    OpenWithBanks();
    SetArchiveText(*window, "ice 1");
    EXPECT_EQ(Names().size(), 13u); // 01, 10 to 19, 21 and 31
    SetArchiveText(*window, "e 32");
    EXPECT_EQ(Names(), Strings{"VOICE 32"});
    EXPECT_EQ(ArchiveCountText(*window), "1 of 32 voices, found at 32 places");
    SetArchiveText(*window, "\xE2\x99\xAF"); // a sharp, which no name can have
    EXPECT_EQ(Names(), Strings());
    EXPECT_EQ(ArchiveEmptyText(*window), "No voice is called so. Take away letters, or a filter.");
    SetArchiveText(*window, "");
    SortArchive(*window, ArchiveColumn::Place);
    EXPECT_EQ(Names().front(), "VOICE 01");
    SortArchive(*window, ArchiveColumn::Place);
    EXPECT_EQ(Names().front(), "VOICE 32");
    EXPECT_TRUE(window->query.descending);
    SortArchive(*window, ArchiveColumn::Name);
    EXPECT_EQ(Names().front(), "VOICE 01");
    ArchiveQuery query = window->query;
    query.algorithm = 5;
    SetArchiveQuery(*window, query);
    EXPECT_EQ(Names(), Strings{"VOICE 05"});
    query.onlyRepeated = true;
    SetArchiveQuery(*window, query);
    EXPECT_EQ(Names(), Strings());
}

TEST_F(ArchiveWindowTest, AVoiceShowsWhereItStandsAndWhatIsLikeIt) {
    WriteTestFile(files.File("banks/second.syx"), TestBank());
    OpenWithBanks();
    const ArchiveHit hit = Hit("voice 03");
    LookAtArchiveVoice(*window, hit);
    ASSERT_EQ(window->places->size(), 2u);
    EXPECT_EQ(ArchiveCellText(*window->index, (*window->places)[1], ArchiveColumn::File),
              Banks() + "/second.syx");
    EXPECT_EQ(window->similarText, "Looking for similar voices...");
    EXPECT_TRUE(window->similar->empty());
    WaitUntil([this] { return !window->findingSimilar; });
    EXPECT_EQ(window->similarText, "");
    ASSERT_EQ(window->similar->size(), 31u); // all others
    for (const ArchiveHit &other : *window->similar) {
        EXPECT_NE(other.voice, hit.voice);
    }
    LookAtArchiveVoice(*window, std::nullopt);
    EXPECT_TRUE(window->places->empty());
    EXPECT_TRUE(window->similar->empty());
    EXPECT_EQ(window->similarText, "");
}

TEST_F(ArchiveWindowTest, OfSeveralVoicesInQuickSuccessionTheLastOneCounts) {
    OpenWithBanks();
    LookAtArchiveVoice(*window, Hit("voice 01"));
    LookAtArchiveVoice(*window, Hit("voice 02"));
    const ArchiveHit last = Hit("voice 03");
    LookAtArchiveVoice(*window, last);
    const int before = voiceChanges;
    WaitUntil([this] { return !window->findingSimilar && window->similarText.empty(); });
    EXPECT_EQ(voiceChanges, before + 1);
    EXPECT_EQ(window->voice, last);
    // Its neighbours, by an algorithm more or less and the speed of the LFO.
    EXPECT_EQ(window->similar->size(), 31u);
}

TEST_F(ArchiveWindowTest, AnotherPlaceOfTheSameVoiceIsNotSearchedAnew) {
    WriteTestFile(files.File("banks/second.syx"), TestBank());
    OpenWithBanks();
    LookAtArchiveVoice(*window, Hit("voice 03"));
    WaitUntil([this] { return !window->findingSimilar; });
    LookAtArchiveVoice(*window, (*window->places)[1]);
    EXPECT_FALSE(window->findingSimilar);
    EXPECT_EQ(window->similar->size(), 31u);
}

TEST_F(ArchiveWindowTest, OfAVoiceWhoseFileIsGoneItIsSaidWhyNothingIsSimilar) {
    OpenWithBanks();
    fs::remove(files.File("banks/first.syx"));
    LookAtArchiveVoice(*window, Hit("voice 03"));
    WaitUntil([this] { return !window->findingSimilar; });
    EXPECT_TRUE(window->similarText.starts_with("The voice \"VOICE 03\" is not any more where"))
        << window->similarText;
}

TEST_F(ArchiveWindowTest, AnArchiveOfAnotherVersionIsToBeUpdatedBeforeVoicesAreCompared) {
    OpenWithBanks();
    const std::string wanted = "The archive is to be updated first: another version of the program "
                               "has made it.";
    const auto similarText = [&] {
        LookAtArchiveVoice(*window, std::nullopt);
        LookAtArchiveVoice(*window, Hit("voice 03"));
        WaitUntil([this] { return !window->findingSimilar; });
        return window->similarText;
    };
    {
        SqliteFault fault;
        const SqlitePointer database = OpenSqlite(ArchivePath(), SqliteUse::Write, 0, fault);
        ASSERT_TRUE(RunSql(*database, "UPDATE archive SET made = 999"));
    }
    EXPECT_EQ(similarText(), wanted);
    ArchiveError error;
    EXPECT_TRUE(OpenArchive(ArchivePath(), ArchiveUse::Write, error)) << error.text;
    EXPECT_EQ(similarText(), wanted) << "which did not read the files yet";
    UpdateArchiveFolders(*window);
    WaitForUpdate();
    EXPECT_EQ(similarText(), "");
}

TEST_F(ArchiveWindowTest, AnUpdateTellsWhatIsNewChangedMovedAndGone) {
    OpenWithBanks();
    UpdateArchiveFolders(*window);
    WaitForUpdate();
    EXPECT_EQ(ArchiveUpdateText(*window), "1 file with 32 voices.");
    WriteTestFile(files.File("banks/second.syx"), NumberedBank(1));
    fs::rename(files.File("banks/first.syx"), files.File("banks/moved.syx"));
    UpdateArchiveFolders(*window);
    WaitForUpdate();
    EXPECT_EQ(ArchiveUpdateText(*window), "2 files with 64 voices: 1 new, 1 moved.");
    EXPECT_EQ(window->hits->size(), 64u);
    fs::remove(files.File("banks/moved.syx"));
    UpdateArchiveFolders(*window);
    WaitForUpdate();
    EXPECT_EQ(ArchiveUpdateText(*window), "1 file with 32 voices: 1 gone.");
}

TEST_F(ArchiveWindowTest, WhileAnUpdateGoesOnNoOtherOneBegins) {
    Open();
    AddArchiveFolder(*window, Banks());
    UpdateArchiveFolders(*window);
    ForgetArchiveFolder(*window, Banks());
    WaitForUpdate();
    EXPECT_EQ(window->hits->size(), 32u);
}

TEST_F(ArchiveWindowTest, AFolderThatIsNotThereIsToldAndTheArchiveStays) {
    OpenWithBanks();
    AddArchiveFolder(*window, files.File("nowhere"));
    WaitForUpdate();
    EXPECT_EQ(window->hits->size(), 32u);
    EXPECT_EQ(window->failures, std::vector{files.File("nowhere") + ": No such file or directory"});
}

TEST_F(ArchiveWindowTest, AnUpdateThatIsCancelledSaysSo) {
    Open();
    const OtherArchiveUpdate other; // so that it is not at its end already
    AddArchiveFolder(*window, Banks());
    CancelArchiveUpdate(*window);
    WaitForUpdate();
    EXPECT_TRUE(ArchiveUpdateText(*window).starts_with("Cancelled; what was looked at stays. "))
        << ArchiveUpdateText(*window);
}

TEST_F(ArchiveWindowTest, ForgettingThatWaitsIsCancelled) {
    OpenWithBanks();
    const OtherArchiveUpdate other;
    ForgetArchiveFolder(*window, Banks());
    CancelArchiveUpdate(*window);
    WaitForUpdate();
    EXPECT_EQ(ArchiveUpdateText(*window), "Cancelled; the archive still holds the folder.");
    EXPECT_EQ(window->hits->size(), 32u);
}

TEST_F(ArchiveWindowTest, WhatACancelledUpdateHasLeftIsReadByTheNextOne) {
    for (int number = 0; number < 400; ++number) {
        WriteTestFile(files.File("banks/" + std::to_string(number) + ".syx"), NumberedBank(number));
    }
    Open();
    AddArchiveFolder(*window, Banks());
    WaitUntil([this] { return window->progress.looked > 0 || !window->updating; });
    CancelArchiveUpdate(*window);
    WaitForUpdate();
    AddArchiveFolder(*window, Banks());
    WaitForUpdate();
    EXPECT_EQ(PlaceCount(*window->index), 401u * 32);
}

TEST_F(ArchiveWindowTest, AnotherProgramThatUpdatesIsWaitedForAndThenTold) {
    Open();
    const OtherArchiveUpdate other;
    AddArchiveFolder(*window, Banks());
    WaitForUpdate();
    EXPECT_TRUE(ArchiveUpdateText(*window).starts_with("The archive is in use by another program."))
        << ArchiveUpdateText(*window);
    EXPECT_TRUE(window->folders.empty());
}

TEST_F(ArchiveWindowTest, TheWindowMayGoWhileAnUpdateRuns) {
    for (int number = 0; number < 200; ++number) {
        WriteTestFile(files.File("banks/" + std::to_string(number) + ".syx"), NumberedBank(number));
    }
    Open();
    AddArchiveFolder(*window, Banks());
    window.reset();
    delivered.clear();
    ArchiveError error;
    if (const auto store = OpenArchive(ArchivePath(), ArchiveUse::Read, error)) {
        EXPECT_EQ(CheckArchive(*store, error), Strings());
    }
    EXPECT_FALSE(error) << error.text;
}

TEST_F(ArchiveWindowTest, AFolderIsForgottenAndItsFilesStay) {
    OpenWithBanks();
    ForgetArchiveFolder(*window, Banks());
    WaitForUpdate();
    EXPECT_EQ(ArchiveUpdateText(*window),
              "The archive has forgotten " + Banks() + "; its files are where they were.");
    EXPECT_TRUE(window->folders.empty());
    EXPECT_TRUE(ArchiveEmptyText(*window).starts_with("No folder yet."));
    EXPECT_TRUE(fs::exists(files.File("banks/first.syx")));
    ForgetArchiveFolder(*window, Banks());
    WaitForUpdate();
    EXPECT_EQ(ArchiveUpdateText(*window), "The folder is not in the archive any more.");
}

TEST_F(ArchiveWindowTest, FoldersWithoutAVoiceSaySo) {
    fs::remove(files.File("banks/first.syx"));
    OpenWithBanks();
    EXPECT_EQ(ArchiveEmptyText(*window), "No file in the folders holds a voice.");
}

TEST_F(ArchiveWindowTest, WhatAnotherProgramChangesIsShown) {
    OpenWithBanks();
    LookAtArchiveVoice(*window, Hit("voice 05"));
    SetArchiveText(*window, "");
    const int before = rowChanges;
    Follow();
    EXPECT_EQ(rowChanges, before); // nothing has changed
    {
        fs::create_directory(files.path / "other");
        WriteTestFile(files.File("other/one.syx"), NumberedBank(7));
        ArchiveError error;
        const auto store = OpenArchive(ArchivePath(), ArchiveUse::Write, error);
        const std::string other = files.File("other");
        AddToArchive(*store, {&other, 1}, {}, error);
        EXPECT_FALSE(error) << error.text;
    }
    window->loaded = std::chrono::steady_clock::now();
    FollowArchive(*window); // not so soon after the last time
    EXPECT_FALSE(window->lookingForChanges);
    Follow();
    EXPECT_EQ(window->hits->size(), 64u);
    EXPECT_EQ(window->folders.size(), 2u);
    // The same voice is looked at in the new archive.
    ASSERT_TRUE(window->voice);
    EXPECT_EQ(ArchiveCellText(*window->index, *window->voice, ArchiveColumn::Name), "VOICE 05");
    EXPECT_EQ(ArchiveCellText(*window->index, *window->voice, ArchiveColumn::File),
              Banks() + "/first.syx");
}

TEST_F(ArchiveWindowTest, AnArchiveThatIsGoneIsShownAsNone) {
    OpenWithBanks();
    for (const char *end : {"", "-wal", "-shm"}) {
        fs::remove(ArchivePath() + end);
    }
    Follow();
    EXPECT_EQ(window->index, nullptr);
    EXPECT_TRUE(ArchiveEmptyText(*window).starts_with("No folder yet."));
}

TEST_F(ArchiveWindowTest, ADamagedArchiveIsSaidToBeDamagedAndStaysAsItIs) {
    const std::vector<std::uint8_t> senseless(5000, 'x');
    WriteTestFile(ArchivePath(), senseless);
    Open();
    EXPECT_TRUE(ArchiveEmptyText(*window).starts_with("The archive is damaged."))
        << ArchiveEmptyText(*window);
    AddArchiveFolder(*window, Banks());
    WaitForUpdate();
    EXPECT_TRUE(ArchiveUpdateText(*window).starts_with("The archive is damaged."));
    EXPECT_EQ(ReadTestFile(ArchivePath()), senseless);
    Follow(); // says the same, and does not load it again and again
    EXPECT_FALSE(window->loading);
}

TEST_F(ArchiveWindowTest, AnArchiveOfANewerVersionIsSaidToBeNewer) {
    OpenWithBanks();
    window.reset();
    SqliteFault fault;
    const SqlitePointer database = OpenSqlite(ArchivePath(), SqliteUse::Write, 0, fault);
    ASSERT_TRUE(RunSql(*database, "PRAGMA user_version = 99"));
    Open();
    EXPECT_TRUE(ArchiveEmptyText(*window).starts_with(
        "This archive was made by a newer version of the program."))
        << ArchiveEmptyText(*window);
}

// ---- taking voices out

TEST_F(ArchiveWindowTest, VoicesComeAsTheyStandInTheirFiles) {
    OpenWithBanks();
    const std::vector<ArchiveHit> hits = {Hit("voice 09"), Hit("voice 02")};
    const ArchiveVoices read = ReadArchiveVoices(*window->index, hits);
    EXPECT_EQ(read.error, "");
    ASSERT_EQ(read.voices.size(), 2u);
    EXPECT_EQ(read.voices[0].form, VoiceForm::Dx7Packed);
    EXPECT_EQ(read.voices[0].bytes, TestPackedVoice(8));
    EXPECT_EQ(read.voices[1].bytes, TestPackedVoice(1));
    EXPECT_EQ(ArchiveSourceText(*window->index, hits), Banks() + "/first.syx");
}

TEST_F(ArchiveWindowTest, AVoiceIsTakenFromAnotherPlaceWhereItsFileIsGoneOrOther) {
    WriteTestFile(files.File("banks/second.syx"), TestBank());
    OpenWithBanks();
    const ArchiveHit hit = Hit("voice 09");
    ASSERT_EQ(ArchiveCellText(*window->index, hit, ArchiveColumn::File), Banks() + "/first.syx");
    WriteTestFile(files.File("banks/first.syx"), NumberedBank(3));
    ArchiveVoices read = ReadArchiveVoices(*window->index, {&hit, 1});
    ASSERT_EQ(read.voices.size(), 1u) << read.error;
    EXPECT_EQ(read.voices[0].bytes, TestPackedVoice(8));
    fs::remove(files.File("banks/first.syx"));
    read = ReadArchiveVoices(*window->index, {&hit, 1});
    EXPECT_EQ(read.voices.size(), 1u) << read.error;
    fs::remove(files.File("banks/second.syx"));
    read = ReadArchiveVoices(*window->index, {&hit, 1});
    EXPECT_TRUE(read.voices.empty());
    EXPECT_EQ(read.error, "The voice \"VOICE 09\" is not any more where it was found:\n\n" +
                              Banks() + "/first.syx\n\nUpdate the archive, and look for it again.");
}

TEST_F(ArchiveWindowTest, AVoiceIsTakenFromTheLastOfManyPlaces) {
    fs::remove(files.File("banks/first.syx"));
    for (int number = 10; number < 71; ++number) {
        WriteTestFile(files.File("banks/" + std::to_string(number) + ".syx"), TestBank());
    }
    OpenWithBanks();
    const ArchiveHit hit = Hit("voice 09");
    for (int number = 10; number < 70; ++number) {
        fs::remove(files.File("banks/" + std::to_string(number) + ".syx"));
    }
    const ArchiveVoices read = ReadArchiveVoices(*window->index, {&hit, 1});
    ASSERT_EQ(read.voices.size(), 1u) << read.error;
    EXPECT_EQ(read.voices[0].bytes, TestPackedVoice(8));
}

TEST_F(ArchiveWindowTest, APlaceWithTheSameNameGoesBeforeOneWithAnother) {
    std::vector<std::uint8_t> renamed = TestBank();
    std::ranges::copy(std::string("OTHER NAME"), renamed.begin() + 6 + 8 * 128 + 118);
    FixTestChecksum(renamed);
    WriteTestFile(files.File("banks/b.syx"), renamed);
    WriteTestFile(files.File("banks/c.syx"), TestBank());
    fs::rename(files.File("banks/first.syx"), files.File("banks/a.syx"));
    OpenWithBanks();
    const ArchiveHit hit = Hit("voice 09");
    fs::remove(files.File("banks/a.syx"));
    EXPECT_EQ(ReadArchiveVoices(*window->index, {&hit, 1}).voices.at(0).bytes, TestPackedVoice(8));
    fs::remove(files.File("banks/c.syx"));
    const auto other = ReadArchiveVoices(*window->index, {&hit, 1}).voices.at(0);
    EXPECT_EQ(NameOfVoice(other.Voice()), "OTHER NAME");
}

TEST_F(ArchiveWindowTest, MoreThanABankAndVoicesOfTwoInstrumentsAreRefused) {
    WriteTestFile(files.File("banks/more.syx"), NumberedBank(1));
    WriteTestFile(files.File("banks/reface.srx"), TestRefaceBank(1));
    OpenWithBanks();
    EXPECT_EQ(ReadArchiveVoices(*window->index, {}).error, "No voice is selected.");
    std::vector<ArchiveHit> hits;
    for (const ArchiveHit &hit : *window->hits) {
        if (VoiceInfo(*window->index, hit.voice).family == ArchiveFamilyDx7) {
            hits.push_back(hit);
        }
    }
    ASSERT_EQ(hits.size(), 64u);
    hits.resize(33);
    EXPECT_EQ(ReadArchiveVoices(*window->index, hits).error,
              "A bank holds 32 voices, and 33 are selected. Select fewer of them.");
    hits.resize(32);
    EXPECT_EQ(ReadArchiveVoices(*window->index, hits).voices.size(), 32u);
    ArchiveQuery query;
    query.family = ArchiveFamilyReface;
    SetArchiveQuery(*window, query);
    ASSERT_EQ(window->hits->size(), 1u);
    EXPECT_EQ(ArchiveCellText(*window->index, window->hits->front(), ArchiveColumn::Instrument),
              "reface DX");
    hits[31] = window->hits->front();
    const ArchiveVoices read = ReadArchiveVoices(*window->index, hits);
    EXPECT_EQ(read.error, "A bank holds voices of one instrument, and voices of DX7 and reface DX "
                          "are selected.");
    EXPECT_TRUE(read.voices.empty());
    EXPECT_EQ(ArchiveSourceText(*window->index, hits), "Archive");
}

} // namespace
} // namespace tonewright
