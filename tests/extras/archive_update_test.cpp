#include "extras/archive_update.h"

#include "extras/sqlite_database.h"
#include "support/archive_contents.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <random>
#include <thread>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

using Strings = std::vector<std::string>;

struct ArchiveUpdateTest : testing::Test {
    TempFolder folder;
    std::string path = folder.File("Archive.sqlite");
    std::string banks = ArchiveFolderPath(folder.File("banks"));
    ArchiveError error;
    ArchiveStorePointer store;
    Strings told; // "path: reason", with the path from the folder on
    UpdateCalls calls;

    ArchiveUpdateTest() {
        fs::create_directory(folder.path / "banks");
        calls.tell = [this](const std::string &file, const std::string &reason) {
            const std::string base = ArchiveFolderPath(Utf8OfPath(folder.path)) + '/';
            const std::string plain = ArchiveFolderPath(file);
            told.push_back((plain.starts_with(base) ? plain.substr(base.size()) : plain) + ": " +
                           reason);
        };
        store = OpenArchive(path, ArchiveUse::Write, error, 0);
        EXPECT_TRUE(store) << error.text;
    }
    void Put(const std::string &name, const DumpBytes &bytes) {
        fs::create_directories((folder.path / name).parent_path());
        folder.Write(name, bytes);
    }
    UpdateReport Add(const Strings &names) {
        Strings paths;
        for (const std::string &name : names) {
            paths.push_back(folder.File(name));
        }
        told.clear();
        const UpdateReport report = AddToArchive(*store, paths, calls, error);
        EXPECT_FALSE(error) << error.text;
        Check();
        return report;
    }
    UpdateReport Update() {
        told.clear();
        const UpdateReport report = UpdateArchive(*store, calls, error);
        EXPECT_FALSE(error) << error.text;
        Check();
        return report;
    }
    // The archive is whole, and its files are those of the report.
    void Check() {
        EXPECT_EQ(CheckArchive(*store, error), Strings());
        EXPECT_FALSE(error) << error.text;
    }
    void Sql(const char *sql) {
        SqliteFault fault;
        const SqlitePointer database = OpenSqlite(path, SqliteUse::Write, 0, fault);
        EXPECT_TRUE(RunSql(*database, sql)) << TakeFailure(*database).text;
    }
    // Takes away that files are so new that the next update reads them again.
    void LetTimePass() { Sql("UPDATE file SET again = 0"); }
    ArchiveContents Contents() { return RowsOf(*store).contents; }
    std::int64_t IdOf(const std::string &name) {
        return RowsOf(*store).files.at(ArchiveFolderPath(folder.File(name))).id;
    }
    Strings Roots() {
        Strings roots;
        for (const ArchiveFolder &one : ArchiveFolders(*store, error)) {
            if (one.root) {
                roots.push_back(one.path.substr(ArchiveFolderPath(folder.Folder()).size() + 1));
            }
        }
        return roots;
    }
};

TEST_F(ArchiveUpdateTest, ReadsWhatStandsInAFolderAndBelow) {
    Put("banks/one.syx", NumberedBank(1));
    Put("banks/below/two.syx", NumberedBank(2));
    Put("banks/below/three without extension", NumberedBank(3));
    Put("banks/note.txt", TextBytes(std::string(500, '-')));
    const UpdateReport report = Add({"banks"});
    EXPECT_EQ(report.added, 4u);
    EXPECT_EQ(report.files, 4u);
    EXPECT_EQ(report.voices, 96u);
    EXPECT_EQ(report.changed + report.moved + report.gone + report.unchanged + report.skipped +
                  report.failed,
              0u);
    EXPECT_FALSE(report.cancelled);
    EXPECT_EQ(told, Strings());
    EXPECT_EQ(Contents(), ContentsOfFolder(banks));
    EXPECT_EQ(Contents().size(), 3u);
    EXPECT_EQ(Roots(), Strings{"banks"});
}

TEST_F(ArchiveUpdateTest, APlaceSaysNameFamilyAndAlgorithm) {
    DumpBytes voices = TestPackedVoices(32);
    std::ranges::copy(TextBytes("MY VOICE 9"), voices.begin() + 5 * 128 + 118);
    voices[5 * 128 + 110] = 21; // algorithm 22
    Put("banks/one.syx", TestBulk(0x09, voices));
    Add({"banks"});
    ArchivePlace sixth;
    EXPECT_TRUE(ReadArchivePlaces(
        *store,
        [&](std::int64_t, std::uint64_t, std::span<const ArchivePlace> places) {
            sixth = places[5];
            return true;
        },
        error));
    EXPECT_EQ(std::string(sixth.name.begin(), sixth.name.end()), "MY VOICE 9");
    EXPECT_EQ(sixth.family, ArchiveFamilyDx7);
    EXPECT_EQ(sixth.algorithm, 22);
    EXPECT_EQ(sixth.identity,
              IdentityOf({VoiceForm::Dx7Packed, std::span(voices).subspan(5 * 128, 128)}));
    EXPECT_TRUE(ReadArchiveFeatures(
        *store,
        [&](std::int64_t, std::uint64_t, std::span<const VoiceFeatures> features) {
            EXPECT_EQ(features[5],
                      FeaturesOf({VoiceForm::Dx7Packed, std::span(voices).subspan(5 * 128, 128)}));
            return true;
        },
        error));
}

TEST_F(ArchiveUpdateTest, WhatHasNotChangedIsNotReadAndNothingIsWritten) {
    Put("banks/one.syx", NumberedBank(1));
    Put("banks/two.syx", NumberedBank(2));
    Put("banks/photo", TextBytes("\x89PNG" + std::string(500, '-')));
    Add({"banks"});
    LetTimePass();
    Sql("UPDATE file SET content = 5"); // as nobody would see who does not read
    Sql("UPDATE file SET content = 0 WHERE voices = 0");
    const std::int64_t version = ArchiveVersion(*store, error);
    const UpdateReport report = Update();
    EXPECT_EQ(report.unchanged, 2u);
    EXPECT_EQ(report.skipped, 1u);
    EXPECT_EQ(report.added + report.changed + report.moved + report.gone, 0u);
    EXPECT_EQ(report.files, 2u);
    EXPECT_EQ(report.voices, 64u);
    EXPECT_EQ(ArchiveVersion(*store, error), version);
    for (const auto &[file, row] : RowsOf(*store).files) {
        EXPECT_EQ(row.content, row.voices > 0 ? 5u : 0u) << file;
    }
}

TEST_F(ArchiveUpdateTest, ReadsWhatHasChanged) {
    Put("banks/one.syx", NumberedBank(1));
    Put("banks/two.syx", NumberedBank(2));
    Add({"banks"});
    LetTimePass();
    const std::int64_t id = IdOf("banks/two.syx");
    std::this_thread::sleep_for(std::chrono::milliseconds(20)); // a clock may be as coarse
    Put("banks/two.syx", NumberedBank(3));                      // as large as before
    UpdateReport report = Update();
    EXPECT_EQ(report.changed, 1u);
    EXPECT_EQ(report.unchanged, 1u);
    EXPECT_EQ(Contents(), ContentsOfFolder(banks));
    EXPECT_EQ(IdOf("banks/two.syx"), id);

    Put("banks/two.syx", Join({NumberedBank(3), NumberedBank(4)}));
    report = Update();
    EXPECT_EQ(report.changed, 1u);
    EXPECT_EQ(report.voices, 96u);
    EXPECT_EQ(Contents(), ContentsOfFolder(banks));

    Put("banks/two.syx", TextBytes(std::string(4000, '-')));
    report = Update();
    EXPECT_EQ(report.changed, 1u);
    EXPECT_EQ(report.voices, 32u);
    EXPECT_EQ(report.files, 2u);
    EXPECT_EQ(Contents(), ContentsOfFolder(banks));
}

TEST_F(ArchiveUpdateTest, AFileWithANewTimeAndTheSameContentsIsUnchanged) {
    Put("banks/one.syx", NumberedBank(1));
    Add({"banks"});
    fs::last_write_time(folder.path / "banks/one.syx",
                        fs::file_time_type::clock::now() - std::chrono::hours(5));
    const UpdateReport report = Update();
    EXPECT_EQ(report.unchanged, 1u);
    EXPECT_EQ(report.changed, 0u);
    EXPECT_EQ(report.voices, 32u);
}

// A file may be written again in the moment in which it was read, at the same time by its clock.
TEST_F(ArchiveUpdateTest, AFileThatIsNewWhenItIsReadIsReadAgain) {
    Put("banks/one.syx", NumberedBank(1));
    Add({"banks"});
    const std::string file = ArchiveFolderPath(folder.File("banks/one.syx"));
    EXPECT_EQ(RowsOf(*store).files.at(file).again, ReadAgain::Unsure);
    // The archive believes that it has read what stands there, and has read something else.
    Sql("UPDATE file SET content = 7");
    UpdateReport report = Update();
    EXPECT_EQ(report.changed, 1u);
    EXPECT_NE(RowsOf(*store).files.at(file).content, 7u);

    std::this_thread::sleep_for(std::chrono::milliseconds(2200));
    report = Update();
    EXPECT_EQ(report.unchanged, 1u);
    EXPECT_EQ(RowsOf(*store).files.at(file).again, ReadAgain::No);
}

TEST_F(ArchiveUpdateTest, WhatIsGoneGoes) {
    Put("banks/one.syx", NumberedBank(1));
    Put("banks/below/two.syx", NumberedBank(2));
    Put("banks/below/deep/three.syx", NumberedBank(3));
    Add({"banks"});
    fs::remove_all(folder.path / "banks/below");
    const UpdateReport report = Update();
    EXPECT_EQ(report.gone, 2u);
    EXPECT_EQ(report.files, 1u);
    EXPECT_EQ(report.voices, 32u);
    EXPECT_EQ(told, Strings());
    EXPECT_EQ(Contents(), ContentsOfFolder(banks));
    EXPECT_EQ(ArchiveFolders(*store, error).size(), 1u);
}

TEST_F(ArchiveUpdateTest, RenamedFilesAndMovedFoldersKeepTheirRows) {
    Put("banks/one.syx", NumberedBank(1));
    Put("banks/below/two.syx", NumberedBank(2));
    Put("banks/below/three.syx", NumberedBank(3));
    Put("banks/below/copy of three.syx", NumberedBank(3));
    Add({"banks"});
    const std::int64_t one = IdOf("banks/one.syx"), two = IdOf("banks/below/two.syx"),
                       three = IdOf("banks/below/three.syx"),
                       copy = IdOf("banks/below/copy of three.syx");
    fs::rename(folder.path / "banks/one.syx", folder.path / "banks/ONE (new).syx");
    fs::rename(folder.path / "banks/below", folder.path / "banks/beside");
    const UpdateReport report = Update();
    EXPECT_EQ(report.moved, 4u);
    EXPECT_EQ(report.added + report.gone + report.changed + report.unchanged, 0u);
    EXPECT_EQ(report.files, 4u);
    EXPECT_EQ(report.voices, 128u);
    EXPECT_EQ(IdOf("banks/ONE (new).syx"), one);
    EXPECT_EQ(IdOf("banks/beside/two.syx"), two);
    EXPECT_EQ(IdOf("banks/beside/three.syx"), three);
    EXPECT_EQ(IdOf("banks/beside/copy of three.syx"), copy);
    EXPECT_EQ(Contents(), ContentsOfFolder(banks));
    EXPECT_EQ(ArchiveFolders(*store, error).size(), 2u);
}

TEST_F(ArchiveUpdateTest, ACopyIsNoMove) {
    Put("banks/one.syx", NumberedBank(1));
    Add({"banks"});
    Put("banks/copy.syx", NumberedBank(1));
    const UpdateReport report = Update();
    EXPECT_EQ(report.added, 1u);
    EXPECT_EQ(report.moved, 0u);
    EXPECT_EQ(report.voices, 64u);
}

TEST_F(ArchiveUpdateTest, FilesThatChangeNamesWithEachOtherAreSeen) {
    Put("banks/one.syx", NumberedBank(1));
    Put("banks/two.syx", NumberedBank(2));
    const auto time = fs::file_time_type::clock::now() - std::chrono::hours(5);
    for (const char *name : {"banks/one.syx", "banks/two.syx"}) {
        fs::last_write_time(folder.path / name, time); // as an unpacked archive leaves them
    }
    Add({"banks"});
    fs::rename(folder.path / "banks/one.syx", folder.path / "banks/x");
    fs::rename(folder.path / "banks/two.syx", folder.path / "banks/one.syx");
    fs::rename(folder.path / "banks/x", folder.path / "banks/two.syx");
    EXPECT_EQ(Update().changed, 2u);
    EXPECT_EQ(Contents(), ContentsOfFolder(banks));
}

TEST_F(ArchiveUpdateTest, AFolderThatIsNotThereKeepsItsFiles) {
    Put("banks/below/one.syx", NumberedBank(1));
    Put("other/two.syx", NumberedBank(2));
    Add({"banks", "other"});
    LetTimePass();
    const ArchiveContents former = Contents();
    fs::rename(folder.path / "banks", folder.path / "pulled out");
    UpdateReport report = Update();
    EXPECT_EQ(told, Strings{"banks: The folder is not there. What the archive knows of it is "
                            "kept."});
    EXPECT_EQ(report.failed, 1u);
    EXPECT_EQ(report.gone, 0u);
    EXPECT_EQ(report.files, 2u);
    EXPECT_EQ(report.unchanged, 1u);
    EXPECT_EQ(Contents(), former);

    fs::create_directory(folder.path / "banks"); // where a disk is to stand
    report = Update();
    EXPECT_EQ(told, Strings{"banks: The folder is empty. What the archive knows of it is kept."});
    EXPECT_EQ(report.gone, 0u);
    EXPECT_EQ(Contents(), former);

    folder.WriteText("banks/file", "in place of a folder"); // and not empty
    EXPECT_EQ(Update().gone, 1u);
}

TEST_F(ArchiveUpdateTest, AFileInPlaceOfAFolderKeepsItsFilesToo) {
    Put("banks/one.syx", NumberedBank(1));
    Add({"banks"});
    fs::remove_all(folder.path / "banks");
    folder.WriteText("banks", "a file");
    EXPECT_EQ(Update().gone, 0u);
    EXPECT_EQ(told.size(), 1u);
}

TEST_F(ArchiveUpdateTest, AnEmptyFolderIsNothingToTell) {
    const UpdateReport report = Add({"banks"});
    EXPECT_EQ(report.files + report.failed, 0u);
    EXPECT_EQ(told, Strings());
    EXPECT_EQ(Roots(), Strings{"banks"});
}

TEST_F(ArchiveUpdateTest, AFolderThatIsNoneIsNotAdded) {
    folder.WriteText("file", "x");
    const UpdateReport report = Add({"file", "nowhere"});
    EXPECT_EQ(report.failed, 2u);
    EXPECT_EQ(told,
              (Strings{"file: There is no such folder.", "nowhere: No such file or directory"}));
    EXPECT_EQ(Roots(), Strings());
}

TEST_F(ArchiveUpdateTest, AFolderInAnAddedOneIsAPartOfIt) {
    Put("banks/one.syx", NumberedBank(1));
    Put("banks/below/two.syx", NumberedBank(2));
    Put("banks more/three.syx", NumberedBank(3));
    UpdateReport report = Add({"banks/below"});
    EXPECT_EQ(report.files, 1u);
    EXPECT_EQ(Roots(), Strings{"banks/below"});

    report = Add({"banks", "banks more"});
    EXPECT_EQ(report.added, 2u);
    EXPECT_EQ(report.files, 3u);
    EXPECT_EQ(Roots(), (Strings{"banks", "banks more"}));

    Put("banks/below/four.syx", NumberedBank(4));
    Put("banks/five.syx", NumberedBank(5));
    report = Add({"banks/below"});
    EXPECT_EQ(report.added, 1u);
    EXPECT_EQ(report.files, 4u);
    EXPECT_EQ(Roots(), (Strings{"banks", "banks more"}));
    report = Update();
    EXPECT_EQ(report.added, 1u);
    EXPECT_EQ(report.gone, 0u);
    EXPECT_EQ(Contents().size(), 5u);
}

TEST_F(ArchiveUpdateTest, AnAddedFolderLeavesTheOthersAlone) {
    Put("banks/one.syx", NumberedBank(1));
    Put("other/two.syx", NumberedBank(2));
    Add({"banks"});
    fs::remove(folder.path / "banks/one.syx");
    const UpdateReport report = Add({"other"});
    EXPECT_EQ(report.gone, 0u);
    EXPECT_EQ(report.files, 2u);
}

TEST_F(ArchiveUpdateTest, AForgottenFolderIsNotLookedThrough) {
    Put("banks/one.syx", NumberedBank(1));
    Put("other/two.syx", NumberedBank(2));
    Add({"banks", "other"});
    EXPECT_TRUE(ForgetFolder(*store, folder.File("banks"), error));
    Put("banks/three.syx", NumberedBank(3));
    const UpdateReport report = Update();
    EXPECT_EQ(report.files, 1u);
    EXPECT_EQ(Contents(), ContentsOfFolder(folder.File("other")));
}

TEST_F(ArchiveUpdateTest, HiddenFilesAndFoldersAreLeftOut) {
    Put("banks/.cache/one.syx", NumberedBank(1));
    for (int bank = 0; bank < 8; ++bank) { // in whatever order the system lists them
        Put("banks/._" + std::to_string(bank) + ".syx", NumberedBank(2));
        Put("banks/" + std::to_string(bank) + ".syx", NumberedBank(3));
    }
    EXPECT_EQ(Add({"banks"}).files, 8u);
    Put(".hidden/four.syx", NumberedBank(4));
    EXPECT_EQ(Add({".hidden"}).files, 9u) << "unless the user names it";
}

TEST_F(ArchiveUpdateTest, AHiddenFolderThatWasAddedStaysOneOfItsOwn) {
    Put("banks/one.syx", NumberedBank(1));
    Put("banks/.hidden/below/two.syx", NumberedBank(2));
    const Strings both = {"banks", "banks/.hidden"};
    for (const bool hiddenFirst : {false, true}) {
        Add({hiddenFirst ? "banks/.hidden" : "banks"});
        EXPECT_EQ(Add({hiddenFirst ? "banks" : "banks/.hidden"}).files, 2u);
        Strings roots = Roots();
        std::ranges::sort(roots);
        EXPECT_EQ(roots, both);
        EXPECT_EQ(Update().gone, 0u);
        EXPECT_EQ(Add({"banks"}).gone, 0u) << "what was added by itself is not looked for";
        EXPECT_EQ(Contents().size(), 2u);
        EXPECT_EQ(Add({"banks/.hidden/below"}).files, 2u);
        EXPECT_EQ(Roots().size(), 2u);

        // Each is forgotten by itself.
        EXPECT_TRUE(ForgetFolder(*store, folder.File("banks"), error));
        EXPECT_EQ(Roots(), Strings{"banks/.hidden"});
        EXPECT_EQ(Contents().size(), 1u);
        EXPECT_TRUE(ForgetFolder(*store, folder.File("banks/.hidden"), error));
    }
}

TEST_F(ArchiveUpdateTest, AnAddedFolderThatIsNotThereStaysWhenTheOneAroundItIsAdded) {
    Put("media/disk/one.syx", NumberedBank(1));
    Put("media/two.syx", NumberedBank(2));
    Add({"media/disk"});
    LetTimePass();
    const std::string away = "media/disk: The folder is not there. What the archive knows of it is "
                             "kept.";
    fs::rename(folder.path / "media/disk", folder.path / "pulled out");
    EXPECT_EQ(Add({"media"}).gone, 0u);
    EXPECT_EQ(Roots().size(), 2u);
    UpdateReport report = Update();
    EXPECT_EQ(report.gone, 0u);
    EXPECT_EQ(told, Strings{away});
    EXPECT_EQ(Contents().size(), 2u);
    fs::create_directory(folder.path / "media/disk"); // where it is to stand
    EXPECT_EQ(Add({"media"}).gone, 0u);
    EXPECT_EQ(Roots().size(), 2u);
    fs::remove(folder.path / "media/disk");
    fs::rename(folder.path / "pulled out", folder.path / "media/disk");
    report = Update();
    EXPECT_EQ(told, Strings());
    EXPECT_EQ(report.files, 2u);
    EXPECT_EQ(report.added + report.gone + report.moved, 0u);
}

TEST_F(ArchiveUpdateTest, AnEmptyFolderFromWhichNothingWasTakenKeepsItsFiles) {
    Put("banks/disk/below/one.syx", NumberedBank(1));
    Put("banks/two.syx", NumberedBank(2));
    Add({"banks"});
    // A disk is not plugged in where it stands.
    fs::rename(folder.path / "banks/disk", folder.path / "pulled out");
    fs::create_directory(folder.path / "banks/disk");
    fs::last_write_time(folder.path / "banks/disk",
                        fs::file_time_type::clock::now() - std::chrono::hours(1));
    UpdateReport report = Update();
    EXPECT_EQ(report.gone, 0u);
    EXPECT_EQ(report.failed, 1u);
    EXPECT_EQ(told,
              Strings{"banks/disk: The folder is empty. What the archive knows of it is kept."});
    EXPECT_EQ(Contents().size(), 2u);
    fs::remove(folder.path / "banks/disk");
    fs::rename(folder.path / "pulled out", folder.path / "banks/disk");
    EXPECT_EQ(Update().failed, 0u);
    // The files are taken out of it.
    fs::remove_all(folder.path / "banks/disk/below");
    report = Update();
    EXPECT_EQ(report.gone, 1u);
    EXPECT_EQ(told, Strings());
}

TEST_F(ArchiveUpdateTest, FilesOfOtherKindsAreNotRead) {
    DumpBytes bank = NumberedBank(1);
    DumpBytes sound = TextBytes("RIFF....WAVE");
    sound += bank;
    Put("banks/sound", sound);
    Put("banks/archive.zip", Join({TextBytes("PK\3\4"), bank}));
    Put("banks/tiny", DumpBytes(99, 0xF0));
    Put("banks/large", Join({DumpBytes((1 << 20) - 4104 + 1, '-'), bank}));
    Put("banks/no larger", Join({DumpBytes((1 << 20) - 4104, '-'), bank}));
    Put("banks/large.syx", Join({DumpBytes(1 << 20, '-'), bank}));
    Put("banks/large too", Join({bank, DumpBytes(1 << 20, '-')}));
    UpdateReport report = Add({"banks"});
    EXPECT_EQ(report.added, 3u);
    EXPECT_EQ(report.skipped, 4u);
    EXPECT_EQ(report.files, 3u);
    EXPECT_EQ(told, Strings());
    Strings names;
    for (const auto &[file, identities] : Contents()) {
        names.push_back(file.substr(banks.size() + 1));
        EXPECT_EQ(identities.size(), 32u);
    }
    EXPECT_EQ(names, (Strings{"large too", "large.syx", "no larger"}));
    LetTimePass();
    report = Update();
    EXPECT_EQ(report.skipped, 4u);
    EXPECT_EQ(report.unchanged, 3u);

    // One of another kind becomes a bank, and a bank one of another kind.
    Put("banks/sound", NumberedBank(2));
    Put("banks/no larger", sound);
    report = Update();
    EXPECT_EQ(report.changed, 1u);
    EXPECT_EQ(report.skipped, 4u);
    EXPECT_EQ(report.files, 3u);
    EXPECT_EQ(report.voices, 96u);
    fs::remove(folder.path / "banks/archive.zip");
    EXPECT_EQ(Update().gone, 0u) << "was never in the archive";
}

TEST_F(ArchiveUpdateTest, AFileWithVeryManyVoicesIsKeptInPieces) {
    // More than stand in memory: 128,000 voices.
    DumpBytes many;
    for (int bank = 0; bank < 4000; ++bank) {
        many += NumberedBank(bank);
    }
    Put("banks/many.syx", many);
    Put("banks/one.syx", NumberedBank(1));
    UpdateReport report = Add({"banks"});
    EXPECT_EQ(report.voices, 128'032u);
    EXPECT_EQ(Contents(), ContentsOfFolder(banks));

    many += NumberedBank(5);
    Put("banks/many.syx", many);
    report = Update();
    EXPECT_EQ(report.changed, 1u);
    EXPECT_EQ(report.voices, 128'064u);
    EXPECT_EQ(Contents(), ContentsOfFolder(banks));

    // Cancelled near its end, it stays as it is known, and is read the next time.
    many += NumberedBank(6);
    const ArchiveContents former = Contents();
    Put("banks/many.syx", many);
    int asked = 0;
    calls.progress = [&](const UpdateProgress &) {
        std::this_thread::sleep_for(std::chrono::milliseconds(51)); // so as to be asked each time
        return ++asked < 16;
    };
    report = Update();
    EXPECT_TRUE(report.cancelled);
    EXPECT_EQ(report.voices, 128'064u);
    EXPECT_EQ(Contents(), former);
    calls.progress = {};
    report = Update();
    EXPECT_EQ(report.voices, 128'096u);
    EXPECT_EQ(Contents(), ContentsOfFolder(banks));
}

TEST_F(ArchiveUpdateTest, WhatAnotherVersionHasReadIsReadAnew) {
    Put("banks/one.syx", NumberedBank(1));
    Add({"banks"});
    Sql("UPDATE archive SET made = 999");
    store = OpenArchive(path, ArchiveUse::Write, error, 0);
    const UpdateReport report = Update();
    EXPECT_EQ(report.unchanged, 1u);
    int features = 0;
    EXPECT_TRUE(ReadArchiveFeatures(
        *store,
        [&](std::int64_t, std::uint64_t, std::span<const VoiceFeatures> span) {
            features += static_cast<int>(span.size());
            return true;
        },
        error));
    EXPECT_EQ(features, 32);
}

TEST_F(ArchiveUpdateTest, ProgressGoesUpToAllFiles) {
    for (int bank = 0; bank < 8; ++bank) {
        Put("banks/" + std::to_string(bank) + ".syx", NumberedBank(bank));
    }
    UpdateProgress last;
    int asked = 0;
    calls.progress = [&](const UpdateProgress &progress) {
        std::this_thread::sleep_for(std::chrono::milliseconds(55)); // so that each step is shown
        EXPECT_GE(progress.found, last.found);
        EXPECT_GE(progress.looked, last.looked);
        EXPECT_LE(progress.looked, progress.found);
        EXPECT_TRUE(last.looked == 0 || progress.found == 8);
        EXPECT_EQ(progress.folder, banks);
        last = progress;
        ++asked;
        return true;
    };
    Add({"banks"});
    EXPECT_EQ(last.found, 8u);
    EXPECT_EQ(last.looked, 7u); // at the last file
    EXPECT_GE(asked, 8);
}

TEST_F(ArchiveUpdateTest, WhatWasDoneBeforeACancelStands) {
    for (int bank = 0; bank < 10; ++bank) {
        Put("banks/" + std::to_string(bank) + ".syx", NumberedBank(bank));
    }
    calls.progress = [](const UpdateProgress &progress) {
        std::this_thread::sleep_for(std::chrono::milliseconds(55));
        return progress.looked < 4;
    };
    UpdateReport report = Add({"banks"});
    EXPECT_TRUE(report.cancelled);
    EXPECT_GE(report.added, 3u);
    EXPECT_LE(report.added, 5u);
    EXPECT_EQ(report.files, report.added);
    EXPECT_EQ(Contents().size(), report.added);
    const std::uint64_t first = report.added;
    calls.progress = {};
    LetTimePass();
    report = Update();
    EXPECT_FALSE(report.cancelled);
    EXPECT_EQ(report.unchanged, first);
    EXPECT_EQ(report.added, 10 - first);
    EXPECT_EQ(Contents(), ContentsOfFolder(banks));
}

TEST_F(ArchiveUpdateTest, CancelledWhileFoldersAreWalkedNothingGoes) {
    Put("banks/one.syx", NumberedBank(1));
    Put("banks/two.syx", NumberedBank(2));
    Add({"banks"});
    fs::remove(folder.path / "banks/one.syx");
    calls.progress = [](const UpdateProgress &) { return false; };
    const UpdateReport report = Update();
    EXPECT_TRUE(report.cancelled);
    EXPECT_EQ(report.gone, 0u);
    EXPECT_EQ(report.files, 2u);
    EXPECT_EQ(Contents().size(), 2u);
}

TEST_F(ArchiveUpdateTest, OneUpdateAtATime) {
    Put("banks/one.syx", NumberedBank(1));
    const ArchiveStorePointer other = OpenArchive(path, ArchiveUse::Write, error, 0);
    ASSERT_TRUE(other);
    int asked = 0;
    calls.progress = [&](const UpdateProgress &) {
        ArchiveError refused;
        UpdateArchive(*other, {}, refused);
        EXPECT_EQ(refused.text, "The archive is in use by another program.");
        return ++asked > 0;
    };
    Add({"banks"});
    EXPECT_GE(asked, 1);
    calls.progress = {};
    const UpdateReport report = UpdateArchive(*other, {}, error);
    EXPECT_FALSE(error);
    EXPECT_EQ(report.files, 1u);
}

TEST_F(ArchiveUpdateTest, ManyFilesInOneFolder) {
    constexpr int count = 3000;
    for (int bank = 0; bank < count; ++bank) {
        Put("banks/" + std::to_string(bank), TestVoiceMessage());
    }
    UpdateReport report = Add({"banks"});
    EXPECT_EQ(report.added, 3000u);
    EXPECT_EQ(report.voices, 3000u);
    LetTimePass();
    report = Update();
    EXPECT_EQ(report.unchanged, 3000u);
    fs::rename(folder.path / "banks", folder.path / "moved");
    fs::create_directory(folder.path / "banks");
    fs::rename(folder.path / "moved", folder.path / "banks/moved");
    report = Update();
    EXPECT_EQ(report.moved, 3000u);
    EXPECT_EQ(report.files, 3000u);
}

// Files and folders come, change, go and change their names while updates look through them.
TEST_F(ArchiveUpdateTest, NothingIsLostWhileEverythingChanges) {
    std::atomic<bool> ends = false;
    Put("banks/stays.syx", NumberedBank(0));
    std::thread changer([&] {
        std::mt19937 random(17);
        const auto below = [&](int limit) {
            return std::uniform_int_distribution<>(0, limit - 1)(random);
        };
        const auto name = [&] {
            return folder.path / "banks" / std::to_string(below(3)) / std::to_string(below(3)) /
                   (std::to_string(below(8)) + ".syx");
        };
        std::error_code ignored;
        while (!ends) {
            const fs::path file = name();
            switch (below(6)) {
            case 0:
                fs::remove_all(file.parent_path(), ignored);
                break;
            case 1:
                fs::remove_all(file.parent_path().parent_path(), ignored);
                break;
            case 2:
                fs::rename(file.parent_path(), name().parent_path(), ignored);
                break;
            case 3:
                fs::rename(file, name(), ignored);
                break;
            default:
                fs::create_directories(file.parent_path(), ignored);
                try {
                    WriteTestFile(Utf8OfPath(file), NumberedBank(below(1000)));
                } catch (const std::exception &) {
                }
            }
        }
    });
    Add({"banks"});
    for (int round = 0; round < 150; ++round) {
        EXPECT_EQ(Update().failed, 0u);
    }
    ends = true;
    changer.join();
    Update();
    EXPECT_EQ(told, Strings());
    EXPECT_EQ(Contents(), ContentsOfFolder(banks));
}

} // namespace
} // namespace tonewright
