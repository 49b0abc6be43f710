// What stands in the way of an archive: links, names and permissions of all kinds, kills, full
// disks.
#include "extras/archive_update.h"

#include "extras/sqlite_database.h"
#include "support/archive_contents.h"
#include "support/killed_child.h"
#include "support/posix_limits.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <random>
#include <sys/stat.h>
#include <thread>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

using Strings = std::vector<std::string>;

struct ArchiveObstacles : testing::Test {
    TempFolder folder;
    std::string path = folder.File("archive/Archive.sqlite");
    std::string banks = folder.File("banks");
    ArchiveError error;
    Strings told; // "path: reason", with the path from the folder on
    UpdateCalls calls;

    ArchiveObstacles() {
        fs::create_directory(banks);
        calls.tell = [this](const std::string &file, const std::string &reason) {
            told.push_back(file.substr(folder.Folder().size()) + ": " + reason);
        };
    }
    void Put(const std::string &name, const DumpBytes &bytes) {
        fs::create_directories((folder.path / name).parent_path());
        folder.Write(name, bytes);
    }
    void Link(const std::string &name, const std::string &to) {
        fs::create_symlink(to, folder.path / name);
    }
    ArchiveStorePointer Open(ArchiveUse use = ArchiveUse::Write) {
        return OpenArchive(path, use, error, 0);
    }
    UpdateReport Add(const Strings &names) {
        Strings paths;
        for (const std::string &name : names) {
            paths.push_back(folder.File(name));
        }
        told.clear();
        const ArchiveStorePointer store = Open();
        if (!store) {
            return {};
        }
        const UpdateReport report = AddToArchive(*store, paths, calls, error);
        return report;
    }
    UpdateReport Update() {
        told.clear();
        const ArchiveStorePointer store = Open();
        return store ? UpdateArchive(*store, calls, error) : UpdateReport();
    }
    // The paths of files with voices, from the folder on.
    Strings Files() {
        Strings files;
        for (const auto &[file, identities] : Sound()) {
            files.push_back(file.substr(folder.Folder().size()));
        }
        return files;
    }
    // What a sound archive holds.
    ArchiveContents Sound() {
        const ArchiveStorePointer store = Open(ArchiveUse::Read);
        if (!store) {
            EXPECT_EQ(error.text, "");
            return {};
        }
        EXPECT_EQ(CheckArchive(*store, error), Strings());
        EXPECT_EQ(error.text, "");
        return RowsOf(*store).contents;
    }
};

TEST_F(ArchiveObstacles, LinksThatLeadInACircleAreToldAndNotFollowed) {
    Put("banks/one.syx", NumberedBank(1));
    Put("banks/below/two.syx", NumberedBank(2));
    Put("beside/three.syx", NumberedBank(3));
    Link("banks/below/up", "..");
    Link("banks/below/here", ".");
    Link("banks/below/out", "../..");
    Link("banks/itself", "itself");
    Link("banks/root", "/");
    const UpdateReport report = Add({"banks"});
    EXPECT_EQ(report.files, 2u);
    EXPECT_EQ(report.failed, 0u);
    std::ranges::sort(told);
    const std::string circle = ": The link leads back to a folder that it stands in.";
    EXPECT_EQ(told,
              (Strings{"banks/below/here" + circle, "banks/below/out" + circle,
                       "banks/below/up" + circle, "banks/itself" + circle, "banks/root" + circle}));
    EXPECT_EQ(Files(), (Strings{"banks/below/two.syx", "banks/one.syx"}));
}

TEST_F(ArchiveObstacles, EachFolderCountsOnceAndByItsOwnPath) {
    Put("banks/real/one.syx", NumberedBank(1));
    Put("outside/two.syx", NumberedBank(2));
    Put("outside/deep/three.syx", NumberedBank(3));
    Put("outside/later/four.syx", NumberedBank(4));
    Link("banks/a link", "real");
    Link("banks/deep", "../outside/deep");
    Link("banks/outside", "../outside");
    Link("banks/outside again", "../outside/later");
    Link("outside/back", "../banks/real");
    EXPECT_EQ(Add({"banks"}).files, 4u);
    EXPECT_EQ(told, Strings());
    const Strings expected = {"banks/deep/three.syx", "banks/outside/later/four.syx",
                              "banks/outside/two.syx", "banks/real/one.syx"};
    EXPECT_EQ(Files(), expected);
    const UpdateReport report = Update();
    EXPECT_EQ(report.unchanged, 4u);
    EXPECT_EQ(report.moved + report.added + report.gone, 0u);
}

TEST_F(ArchiveObstacles, EachFileThatLinksLeadToCountsOnce) {
    Put("banks/real.syx", NumberedBank(1));
    Put("outside.syx", NumberedBank(2));
    Link("banks/a.syx", "real.syx");
    Link("banks/b.syx", "../outside.syx");
    Link("banks/c.syx", "../outside.syx");
    Link("banks/nowhere.syx", "nothing");
    fs::create_hard_link(folder.path / "banks/real.syx", folder.path / "banks/second name.syx");
    EXPECT_EQ(Add({"banks"}).files, 3u);
    EXPECT_EQ(told, Strings());
    EXPECT_EQ(Files(), (Strings{"banks/b.syx", "banks/real.syx", "banks/second name.syx"}));
    fs::rename(folder.path / "outside.syx", folder.path / "elsewhere");
    const UpdateReport report = Update();
    EXPECT_EQ(report.files, 3u) << "the disk that they lead to may come back";
    EXPECT_EQ(told, Strings{"banks/b.syx: No such file or directory"});
    EXPECT_EQ(report.failed, 1u);
}

TEST_F(ArchiveObstacles, ALinkToAFolderThatIsNotThereKeepsItsFiles) {
    Put("disk/below/one.syx", NumberedBank(1));
    Put("banks/two.syx", NumberedBank(2));
    Link("banks/disk", "../disk");
    EXPECT_EQ(Add({"banks"}).files, 2u);
    fs::rename(folder.path / "disk", folder.path / "pulled out");
    UpdateReport report = Update();
    EXPECT_EQ(report.gone, 0u);
    EXPECT_EQ(told, Strings{"banks/disk: No such file or directory"});
    fs::create_directory(folder.path / "disk");
    report = Update();
    EXPECT_EQ(report.gone, 0u);
    EXPECT_EQ(told, Strings{"banks/disk: The folder is empty. What the archive knows of it is "
                            "kept."});
    fs::remove(folder.path / "banks/disk");
    EXPECT_EQ(Update().gone, 1u);
}

TEST_F(ArchiveObstacles, FoldersThatAreAddedByLinksAndByTheirOwnPathsCountOnce) {
    Put("data/syx/one.syx", NumberedBank(1));
    Put("data/two.syx", NumberedBank(2));
    Link("link", "data/syx");
    EXPECT_EQ(Add({"link"}).files, 1u);
    EXPECT_EQ(Files(), Strings{"link/one.syx"});
    // A part of what was added, under another name.
    EXPECT_EQ(Add({"data/syx"}).files, 1u);
    EXPECT_EQ(Files(), Strings{"link/one.syx"});
    // The folder around it takes it in.
    UpdateReport report = Add({"data"});
    report = Update();
    EXPECT_EQ(report.files, 2u);
    EXPECT_EQ(Files(), (Strings{"data/syx/one.syx", "data/two.syx"}));
    report = Update();
    EXPECT_EQ(report.unchanged, 2u);
    // The link leads elsewhere from now on.
    EXPECT_EQ(Add({"link"}).files, 2u);
}

TEST_F(ArchiveObstacles, LinksIntoAddedFoldersAreLeftAlone) {
    Put("banks/one.syx", NumberedBank(1));
    Put("banks/below/two.syx", NumberedBank(2));
    Put("other/three.syx", NumberedBank(3));
    Link("other/link", "../banks/below");
    Link("other/link.syx", "../banks/one.syx");
    Link("banks/below/beside.syx", "../one.syx");
    Add({"banks"});
    EXPECT_EQ(Add({"other"}).files, 3u);
    EXPECT_EQ(Add({"banks/below"}).files, 3u);
    const Strings expected = {"banks/below/two.syx", "banks/one.syx", "other/three.syx"};
    EXPECT_EQ(Files(), expected);
    EXPECT_EQ(Update().unchanged, 3u);
    EXPECT_EQ(Files(), expected);
}

TEST_F(ArchiveObstacles, WhatLinksHaveLedToGoesOverToTheFolderThatIsAdded) {
    Put("banks/one.syx", NumberedBank(1));
    Put("banks/below/two.syx", NumberedBank(2));
    Put("other/three.syx", NumberedBank(3));
    Link("other/link", "../banks/below");
    Link("other/link.syx", "../banks/one.syx");
    EXPECT_EQ(Add({"other"}).files, 3u);
    const UpdateReport report = Add({"banks"});
    EXPECT_EQ(report.files, 3u);
    EXPECT_EQ(report.moved, 2u);
    const Strings expected = {"banks/below/two.syx", "banks/one.syx", "other/three.syx"};
    EXPECT_EQ(Files(), expected);
    EXPECT_EQ(Update().unchanged, 3u);
    EXPECT_EQ(Files(), expected);
}

TEST_F(ArchiveObstacles, LinksIntoWhatIsHiddenInAnAddedFolderAreFollowed) {
    Put("banks/.hidden/one.syx", NumberedBank(1));
    Put("other/two.syx", NumberedBank(2));
    Link("other/link", "../banks/.hidden");
    Add({"banks"});
    EXPECT_EQ(Add({"other"}).files, 2u);
    EXPECT_EQ(Files(), (Strings{"other/link/one.syx", "other/two.syx"}));
    EXPECT_EQ(Update().gone, 0u);
}

TEST_F(ArchiveObstacles, NamesNeedNotBeText) {
    const std::string name = "\xFF\xFE\x80 bank\n.syx";
    Put("banks/\xC3/" + name, NumberedBank(1));
    UpdateReport report = Add({"banks"});
    EXPECT_EQ(report.added, 1u);
    EXPECT_EQ(Files(), Strings{"banks/\xC3/" + name});
    EXPECT_EQ(Sound(), ContentsOfFolder(banks));
    report = Update();
    EXPECT_EQ(report.unchanged, 1u);
    fs::rename(folder.path / ("banks/\xC3/" + name), folder.path / "banks/\xC3/\xE4.syx");
    EXPECT_EQ(Update().moved, 1u);
    EXPECT_EQ(Files(), Strings{"banks/\xC3/\xE4.syx"});
}

TEST_F(ArchiveObstacles, AFileThatChangesWhileItIsReadIsReadAgain) {
    DumpBytes many;
    for (int bank = 0; bank < 500; ++bank) {
        many += NumberedBank(bank);
    }
    Put("banks/many.syx", many);
    std::atomic<bool> ends = false;
    std::thread writer([&] {
        std::fstream file(folder.path / "banks/many.syx",
                          std::ios::binary | std::ios::in | std::ios::out);
        for (int change = 0; !ends; ++change) {
            // A value of the first voice of the bank after next.
            const char value = static_cast<char>(change % 50);
            file.seekp(change * 2 % 500 * 4104 + 6 + 3);
            file.write(&value, 1);
            if (change % 1000 == 999) {
                file.seekp(0, std::ios::end);
                const DumpBytes bank = NumberedBank(change);
                file.write(reinterpret_cast<const char *>(bank.data()), 4104);
            }
            file.flush();
        }
    });
    Add({"banks"});
    for (int round = 0; round < 5; ++round) {
        Update();
        EXPECT_EQ(error.text, "");
        Sound();
    }
    ends = true;
    writer.join();
    const UpdateReport report = Update();
    EXPECT_EQ(Sound(), ContentsOfFolder(banks));
    EXPECT_EQ(report.voices, Sound().begin()->second.size());
}

TEST_F(ArchiveObstacles, WhatIsNeitherFileNorFolderIsLeftAlone) {
    Put("banks/one.syx", NumberedBank(1));
    MakePipe(folder.File("banks/pipe.syx"));
    Link("banks/pipe link.syx", "pipe.syx");
    EXPECT_EQ(Add({"banks"}).files, 1u);
    EXPECT_EQ(told, Strings());
    fs::remove(folder.path / "banks/one.syx");
    MakePipe(folder.File("banks/one.syx"));
    EXPECT_EQ(Update().gone, 1u);
}

TEST_F(ArchiveObstacles, WhatMayNotBeReadIsToldAndTheRestIsRead) {
    Put("banks/one.syx", NumberedBank(1));
    Put("banks/secret.syx", NumberedBank(2));
    Put("banks/closed/three.syx", NumberedBank(3));
    Put("banks/closed/deep/four.syx", NumberedBank(4));
    Put("banks/list only/five.syx", NumberedBank(5));
    const std::vector<Permissions> permissions = {{folder.File("banks/secret.syx"), 0},
                                                  {folder.File("banks/closed"), 0},
                                                  {folder.File("banks/list only"), 0400}};
    const Strings reasons = {"banks/closed: Permission denied",
                             "banks/list only: Permission denied",
                             "banks/secret.syx: Permission denied"};
    RunUnprivileged(permissions, [&] {
        for (const bool first : {true, false}) {
            const UpdateReport report = first ? Add({"banks"}) : Update();
            EXPECT_EQ(error.text, "");
            EXPECT_EQ(report.added, first ? 1u : 0u);
            EXPECT_EQ(report.failed, 3u);
            std::ranges::sort(told);
            EXPECT_EQ(told, reasons);
            EXPECT_EQ(report.files, 2u) << "the one that could not be read is known";
            EXPECT_EQ(report.voices, 32u);
            EXPECT_EQ(Files(), Strings{"banks/one.syx"});
        }
    });
    UpdateReport report = Update();
    EXPECT_EQ(report.files, 5u);
    EXPECT_EQ(report.voices, 160u);
    EXPECT_EQ(Sound(), ContentsOfFolder(banks));
    // Once they are known, they stay so.
    RunUnprivileged(permissions, [&] {
        report = Update();
        EXPECT_EQ(report.failed, 3u);
        EXPECT_EQ(report.gone, 0u);
        EXPECT_EQ(report.voices, 160u);
        EXPECT_EQ(Files().size(), 5u);
    });
    report = Update();
    EXPECT_EQ(report.failed, 0u);
    EXPECT_EQ(report.unchanged, 5u);
    EXPECT_EQ(Sound(), ContentsOfFolder(banks));
}

TEST_F(ArchiveObstacles, WhatStandsBehindAFileThatCannotBeLookedAtIsSeen) {
    std::vector<Permissions> permissions;
    Strings reasons = {"banks: Permission denied"};
    for (int number = 0; number < 8; ++number) { // in whatever order the system lists them
        const std::string name = "banks/" + std::to_string(number);
        Put(name + ".syx", NumberedBank(number));
        Put(name + "/bank.syx", NumberedBank(number));
        reasons.push_back(name + reasons[0].substr(5));
    }
    permissions.push_back({folder.File("banks"), 0400}); // its names may be read, and no more
    RunUnprivileged(permissions, [&] {
        Add({"banks"});
        std::ranges::sort(told);
        std::ranges::sort(reasons);
        EXPECT_EQ(told, reasons);
    });
}

TEST_F(ArchiveObstacles, AFileOfFourGigabytesIsPassedOver) {
    constexpr off_t size = 4LL << 30;
    for (const char *name : {"banks/large.syx", "banks/large"}) {
        folder.WriteText(name, "");
        ASSERT_EQ(truncate(folder.File(name).c_str(), size), 0);
    }
    Put("banks/one.syx", NumberedBank(1));
    const auto start = std::chrono::steady_clock::now();
    const UpdateReport report = Add({"banks"});
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
    EXPECT_EQ(report.files, 1u);
    EXPECT_EQ(report.skipped, 2u);
    EXPECT_EQ(told, Strings{"banks/large.syx: The file is larger than 1 GB and was not read."});
}

TEST_F(ArchiveObstacles, PathsThatAreTooLongAreTold) {
    Put("banks/one.syx", NumberedBank(1));
    // Folder in folder, beyond what a path may have.
    const fs::path former = fs::current_path();
    fs::current_path(banks);
    const std::string name(200, 'x');
    for (int depth = 0; depth < 25; ++depth) {
        fs::create_directory(name);
        fs::current_path(name);
    }
    fs::current_path(former);
    const UpdateReport report = Add({"banks"});
    EXPECT_EQ(report.files, 1u);
    EXPECT_EQ(report.failed, 1u);
    ASSERT_EQ(told.size(), 1u);
    EXPECT_TRUE(told[0].ends_with("x: File name too long")) << told[0];
}

TEST_F(ArchiveObstacles, AnArchiveThatMayOnlyBeReadIsRead) {
    Put("banks/one.syx", NumberedBank(1));
    Add({"banks"});
    const std::vector<Permissions> permissions = {{path, 0400}, {folder.File("archive"), 0500}};
    RunUnprivileged(permissions, [&] {
        EXPECT_EQ(Files(), Strings{"banks/one.syx"});
        EXPECT_FALSE(Open());
        EXPECT_EQ(error.text, "The archive may not be written.");
    });
    RunUnprivileged({{folder.File("archive"), 0500}},
                    [&] { EXPECT_EQ(Files(), Strings{"banks/one.syx"}); });
    RunUnprivileged({{path, 0}}, [&] {
        EXPECT_FALSE(Open(ArchiveUse::Read));
        EXPECT_EQ(error.text, "The archive cannot be opened.");
    });
}

// Runs `body` in a child process and kills it when it has called `moment`.
void KillAt(const std::function<void(const std::function<void()> &moment)> &body) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        body([] { raise(SIGKILL); });
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status)) << "it has ended by itself";
}

TEST_F(ArchiveObstacles, AProgramThatIsKilledLeavesNoLock) {
    Put("banks/one.syx", NumberedBank(1));
    KillAt([&](const std::function<void()> &moment) {
        calls.progress = [&](const UpdateProgress &) {
            moment();
            return true;
        };
        Add({"banks"});
    });
    EXPECT_EQ(Add({"banks"}).files, 1u);
    EXPECT_EQ(error.text, "");
}

TEST_F(ArchiveObstacles, WhatAKilledProgramHasEndedIsReadWhereNothingCanBeWritten) {
    Put("banks/one.syx", NumberedBank(1));
    Put("banks/two.syx", NumberedBank(2));
    Add({"banks"});
    KillAt([&](const std::function<void()> &moment) {
        const ArchiveStorePointer store = Open();
        ForgetFolder(*store, banks, error);
        moment(); // with what it has written beside the archive
    });
    RunUnprivileged({{path, 0400},
                     {path + "-wal", 0400},
                     {path + "-shm", 0400},
                     {folder.File("archive"), 0500}},
                    [&] {
                        EXPECT_FALSE(Open());
                        const ArchiveStorePointer store = Open(ArchiveUse::Read);
                        if (store) {
                            EXPECT_EQ(RowsOf(*store).files.size(), 0u);
                        } else {
                            EXPECT_EQ(error.text, "The archive cannot be opened.");
                        }
                    });
    EXPECT_EQ(Files(), Strings());
}

TEST_F(ArchiveObstacles, KilledAtAnyMomentItIsSound) {
    Put("banks/first.syx", NumberedBank(0));
    Add({"banks"});
    std::mt19937 random(15);
    // Each round changes the folder and brings the archive up, in several batches.
    const auto round = [&](int number) {
        const std::string name =
            "banks/" + std::to_string(number % 5) + "/" + std::to_string(number % 7) + ".syx";
        std::error_code ignored;
        switch (number % 4) {
        case 0:
            fs::rename(folder.path / "banks" / std::to_string(number % 5),
                       folder.path / "banks" / std::to_string(number % 3), ignored);
            break;
        case 1:
            fs::remove(folder.path / name, ignored);
            break;
        default:
            Put(name, Join({NumberedBank(number), NumberedBank(number + 1)}));
        }
        const ArchiveStorePointer store = Open();
        if (number % 6 == 5) {
            ForgetFolder(*store, banks, error);
            AddToArchive(*store, std::span(&banks, 1), calls, error);
        }
        UpdateArchive(*store, calls, error);
    };
    for (int kill = 0; kill < 40; ++kill) {
        KillDuring(random, round);
        Sound();
        fs::create_directory(banks);
        const ArchiveStorePointer store = Open();
        ASSERT_TRUE(store) << error.text;
        AddToArchive(*store, std::span(&banks, 1), calls, error);
        EXPECT_EQ(error.text, "");
        EXPECT_EQ(Sound(), ContentsOfFolder(banks)) << "kill " << kill;
    }
}

// A first index of many batches.
TEST_F(ArchiveObstacles, AFirstIndexThatIsKilledGoesOnWhereItWas) {
    DumpBytes many;
    for (int bank = 0; bank < 1000; ++bank) {
        many += NumberedBank(bank);
    }
    for (int file = 0; file < 12; ++file) {
        many[6] = static_cast<std::uint8_t>(file);
        Put("banks/" + std::to_string(file) + ".syx", many);
    }
    std::mt19937 random(16);
    for (int kill = 0; kill < 4; ++kill) {
        const bool afterABatch = kill % 2 == 0;
        fs::remove_all(folder.path / "archive");
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            Add({"banks"});
            _exit(0);
        }
        const auto hasFiles = [&] {
            const ArchiveStorePointer store = Open(ArchiveUse::Read);
            return store && !RowsOf(*store).files.empty();
        };
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (afterABatch && !hasFiles() && std::chrono::steady_clock::now() < deadline) {
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        std::this_thread::sleep_for(
            std::chrono::milliseconds(std::uniform_int_distribution<>(0, 100)(random)));
        ::kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        const std::size_t former = Sound().size();
        EXPECT_TRUE(!afterABatch || former > 0);
        const UpdateReport report = Add({"banks"});
        EXPECT_EQ(error.text, "");
        EXPECT_EQ(report.added + former, 12u);
        EXPECT_EQ(report.voices, 12u * 32'000);
    }
    EXPECT_EQ(Sound(), ContentsOfFolder(banks));
}

TEST_F(ArchiveObstacles, AFullDiskIsToldAndWhatWasDoneStands) {
    DumpBytes many;
    for (int bank = 0; bank < 300; ++bank) {
        many += NumberedBank(bank);
    }
    for (int file = 0; file < 20; ++file) {
        many[6] = static_cast<std::uint8_t>(file);
        Put("banks/" + std::to_string(file) + ".syx", many);
    }
    fs::create_directory(folder.path / "archive");
    RunOnSmallDisk(folder.File("archive"), [&] {
        const auto resize = [&](const char *size) {
            EXPECT_EQ(mount("tmpfs", folder.File("archive").c_str(), "tmpfs", MS_REMOUNT, size), 0);
        };
        EXPECT_EQ(Add({"banks"}).files, 0u);
        EXPECT_EQ(error.text, "The disk is full.");
        for (const char *size : {"size=200k", "size=1m", "size=3m", "size=7m"}) {
            resize(size);
            Add({"banks"});
            EXPECT_EQ(error.text, "The disk is full.") << size;
            Sound();
        }
        resize("size=100m");
        const UpdateReport report = Add({"banks"});
        EXPECT_EQ(error.text, "");
        EXPECT_EQ(report.voices, 20u * 9600);
        EXPECT_EQ(Sound(), ContentsOfFolder(banks));
        FillDisk(folder.File("archive/other"));
        EXPECT_EQ(Sound(), ContentsOfFolder(banks)) << "it can be read all the same";
    });
}

TEST_F(ArchiveObstacles, AWriteThatFailsIsToldAndWhatWasDoneStands) {
    DumpBytes many;
    for (int bank = 0; bank < 1000; ++bank) {
        many += NumberedBank(bank);
    }
    Put("banks/many.syx", many);
    Put("banks/one.syx", NumberedBank(1));
    {
        const FileSizeLimit limit(500'000);
        Add({"banks"});
    }
    EXPECT_EQ(error.text, "The archive cannot be read or written: disk I/O error.");
    Sound();
    EXPECT_EQ(Add({"banks"}).voices, 32'032u);
    EXPECT_EQ(Sound(), ContentsOfFolder(banks));
}

TEST_F(ArchiveObstacles, TwoProgramsAtOnce) {
    for (int bank = 0; bank < 5; ++bank) {
        Put("banks/" + std::to_string(bank) + ".syx", NumberedBank(bank));
    }
    // Twenty programs that all add the folder, and wait for each other.
    std::vector<pid_t> children;
    for (int program = 0; program < 20; ++program) {
        children.push_back(fork());
        if (children.back() == 0) {
            const ArchiveStorePointer store = OpenArchive(path, ArchiveUse::Write, error, 30000);
            if (store) {
                AddToArchive(*store, std::span(&banks, 1), {}, error);
            }
            std::fputs(error.text.c_str(), stderr);
            _exit(error ? 1 : 0);
        }
    }
    for (const pid_t child : children) {
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    EXPECT_EQ(Sound(), ContentsOfFolder(banks));
    const ArchiveStorePointer store = Open();
    EXPECT_EQ(ArchiveFolders(*store, error).size(), 1u);
}

} // namespace
} // namespace tonewright
