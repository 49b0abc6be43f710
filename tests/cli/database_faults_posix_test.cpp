// Catalogues that the command line adds to where there is no room, or nothing may be written, and
// while the program is killed.
#include "database_home.h"
#include "unprivileged_cli.h"

#include "support/bank_bytes.h"
#include "support/posix_limits.h"
#include "support/reface_bytes.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <random>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace tonewright {
namespace {

class CliDbFaults : public CliDb {
protected:
    std::string Bank() const { return home.Write("a.syx", TestBank()); }
    ProgramResult AddWithin(rlim_t size, std::vector<std::string> options = {}) const {
        options.insert(options.begin(), {"db", "add", Bank()});
        const FileSizeLimit limit(size, SIG_DFL); // as from a shell
        return Cli(options);
    }
};

TEST_F(CliDbFaults, AFullDiskCostsTheCatalogueAndTheBackupIsNamed) {
    const TestBytes former = TestCatalogue(Dx7, 2, 2);
    const std::string path = Write("Voices.syx_db", former);
    const auto result = AddWithin(152 + 10 * 446 + 100); // eight more, and a part of a ninth
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, home.File("a.syx") + "\t8\t0\n");
    EXPECT_EQ(result.errors, "tonewright-cli: " + path + ": place 9 of " + home.File("a.syx") +
                                 " could not be added: File too large; the catalogue has been "
                                 "deleted, its backup is " +
                                 path + "_backup\n");
    EXPECT_FALSE(fs::exists(path));
    EXPECT_EQ(ReadTestFile(path + "_backup"), former);
}

TEST_F(CliDbFaults, AFullDiskLeavesTheCatalogueInCarefulMode) {
    const std::string path = Write("Voices.syx_db", TestCatalogue(Dx7, 2, 2));
    const auto result = AddWithin(152 + 10 * 446 + 100, {"--careful"});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, home.File("a.syx") + "\t8\t0\n");
    EXPECT_EQ(result.errors, "tonewright-cli: " + path + ": place 9 of " + home.File("a.syx") +
                                 " could not be added: File too large\n");
    EXPECT_EQ(fs::file_size(path), 152u + 10 * 446); // what had been added
    ExpectOutput({"db", "check"}, "header\tok\ncount\t10\ngood\t10\n");
}

TEST_F(CliDbFaults, NoRoomForANewOneLeavesNone) {
    for (const rlim_t size : {76, 151, 152 + 445}) {
        const auto result = AddWithin(size);
        EXPECT_EQ(result.exitStatus, 1);
        if (size > 152) { // else the words have no room either: what is told comes by a file
            EXPECT_EQ(result.output, home.File("a.syx") + "\t0\t0\n");
            EXPECT_TRUE(result.errors.ends_with(" could not be added: File too large\n"))
                << result.errors;
        }
        EXPECT_FALSE(fs::exists(Catalogue("Voices.syx_db"))) << size;
    }
    EXPECT_EQ(AddWithin(152 + 32 * 446).output, home.File("a.syx") + "\t32\t0\n");
}

TEST_F(CliDbFaults, WhatMayNotBeWrittenStays) {
    const TestBytes former = TestCatalogue(Dx7, 2, 2);
    const std::string path = Write("Voices.syx_db", former), bank = Bank();
    for (const mode_t mode : {0400, 0}) {
        RunCliUnprivileged({{path, mode}}, {"db", "add", bank}, [&](const ProgramResult &result) {
            EXPECT_EQ(result.exitStatus, 1);
            EXPECT_EQ(result.output, mode == 0 ? "" : bank + "\t0\t0\n");
            EXPECT_TRUE(Contains(result.errors, ": Permission denied\n")) << result.errors;
            EXPECT_FALSE(Contains(result.errors, "deleted"));
        });
        EXPECT_EQ(ReadTestFile(path), former);
    }
    fs::remove(path);
    RunCliUnprivileged(
        {{Documents(), 0500}}, {"db", "add", bank}, [&](const ProgramResult &result) {
            EXPECT_EQ(result.exitStatus, 1);
            EXPECT_EQ(result.errors, "tonewright-cli: " + path + ": place 1 of " + bank +
                                         " could not be added: Permission denied\n");
        });
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(CliDbFaults, WhatNeverWasThereIsNotSaidToBeDeleted) {
    const std::string bank = Bank(), path = home.File("none/Voices.syx_db");
    home.Write("Voices.syx_db_backup", TestBytes(3)); // of another day
    const auto expect = [&](const std::string &database) {
        const auto result = Cli({"db", "add", bank, "--database", database});
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.output, bank + "\t0\t0\n");
        EXPECT_EQ(result.errors, "tonewright-cli: " + database + ": place 1 of " + bank +
                                     " could not be added: No such file or directory\n");
    };
    expect(path);
    fs::create_symlink(path, home.path / "Voices.syx_db");
    expect(home.File("Voices.syx_db"));
}

TEST_F(CliDbFaults, ABackupIsNamedOnlyWhenItIsOneOfThisRun) {
    const std::string path = Write("Voices.syx_db", TestCatalogue(Dx7, 2, 2));
    Write("Voices.syx_db_backup", TestCatalogue(Dx7, 1, 1)); // of another day
    WriteSettings("CreateBackups = 0\n");
    const auto result = AddWithin(152 + 10 * 446 + 100);
    EXPECT_TRUE(result.errors.ends_with(
        " could not be added: File too large; the catalogue has been deleted\n"))
        << result.errors;
}

TEST_F(CliDbFaults, AFileThatCannotBeReplacedStays) {
    for (const std::string mode : {"--careful", "--no-careful"}) {
        const TestBytes former(1000, 'x');
        const std::string path = Write("Voices.syx_db", former);
        const auto result = AddWithin(152 + 300, {"--yes", mode});
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.output, home.File("a.syx") + "\t0\t0\n");
        EXPECT_TRUE(result.errors.ends_with("tonewright-cli: " + path + ": place 1 of " +
                                            home.File("a.syx") +
                                            " could not be added: File too large; the file that "
                                            "stands there is as it was\n"))
            << result.errors;
        EXPECT_EQ(ReadTestFile(path), former);
        EXPECT_EQ(Entries(Documents()), std::vector<std::string>{"Voices.syx_db"});
    }
}

TEST_F(CliDbFaults, AFileBehindALinkIsReplacedThere) {
    const std::string bank = Bank(), file = home.Write("file", TestBytes(1000));
    home.Write("file.former", TestBytes(5)); // of somebody else
    const std::string path = Catalogue("Voices.syx_db");
    fs::create_symlink(file, path);
    EXPECT_EQ(Cli({"db", "add", bank, "--yes"}).output, bank + "\t32\t0\n");
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_EQ(fs::file_size(file), 152u + 32 * 446);
    EXPECT_EQ(fs::file_size(home.File("file.former")), 5u);
    EXPECT_FALSE(fs::exists(home.File("file.former2")));
}

TEST_F(CliDbFaults, FilesBehindAFailureAreNamedAndThoseOfTheOtherFamilyAdded) {
    const std::string path = Catalogue("Voices.syx_db"), bank = Bank();
    const std::string next = home.Write("b.syx", TestBank());
    const std::string reface = home.Write("c.sr1", TestRefaceVoiceFile(0));
    const auto result = AddWithin(152 + 2 * 446, {next, reface});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, bank + "\t2\t0\n" + reface + "\t1\t0\n");
    EXPECT_EQ(result.errors, "tonewright-cli: " + path + ": place 3 of " + bank +
                                 " could not be added: File too large; the catalogue has been "
                                 "deleted\ntonewright-cli: " +
                                 next + ": not added to " + path + " either\n");
}

TEST_F(CliDbFaults, NamesOfAFolderThatMayNotBeReadAreNone) {
    Write("Voices.syx_db", TestCatalogue(Dx7, 2, 2));
    RunCliUnprivileged({{Documents(), 0300}}, {"db", "names"}, [&](const ProgramResult &result) {
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors, "tonewright-cli: " + Documents().string() +
                                     "/: not readable: Permission denied\n");
    });
}

TEST_F(CliDbFaults, WhatMayOnlyBeReadIsListedAndChecked) {
    const std::string path = Write("Voices.syx_db", TestCatalogue(Dx7, 2, 2));
    RunCliUnprivileged({{path, 0400}}, {"db", "check", "--database", path},
                       [&](const ProgramResult &result) {
                           EXPECT_EQ(result.output, "header\tok\ncount\t2\ngood\t2\n");
                       });
    RunCliUnprivileged({{path, 0400}}, {"db", "list", "--database", path},
                       [&](const ProgramResult &result) { EXPECT_EQ(result.exitStatus, 0); });
}

TEST_F(CliDbFaults, AKillLeavesWhatTheCheckKnowsAndTheNextAddGoesOnWith) {
    const std::string bank = Bank(), path = Catalogue("Voices.syx_db");
    WriteSettings("DatabaseNoDuplicates = 0\n");
    constexpr int banks = 30, wanted = 10;
    std::vector<std::string> words = {"tonewright-cli", "db", "add"};
    words.insert(words.end(), banks, bank);
    std::vector<char *> arguments;
    for (std::string &word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Cli({words.begin() + 1, words.end()}).exitStatus, 0);
    const auto whole = std::chrono::steady_clock::now() - start;
    std::mt19937 random(5);
    int hits = 0; // kills that came between the first add and the last one
    for (int kill = 0; kill < 200 && hits < wanted && !HasFailure(); ++kill) {
        fs::remove(path);
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            if (!std::freopen("/dev/null", "w", stdout)) {
                _exit(9);
            }
            execv(CliProgram().c_str(), arguments.data());
            _exit(9);
        }
        std::this_thread::sleep_for(whole * (random() % 1000) / 1000);
        ::kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        const bool isKilled = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
        ASSERT_TRUE(isKilled || (WIFEXITED(status) && WEXITSTATUS(status) == 0)) << status;
        if (!fs::exists(path) || fs::file_size(path) < 152) {
            continue;
        }
        const std::string check = Cli({"db", "check"}).output;
        const auto count = Test32(ReadTestFile(path), 20);
        // Behind the records that count there may be one that does not yet, or, since a kill may
        // divide a write, a part of it.
        const auto behind = fs::file_size(path) - 152 - count * 446;
        EXPECT_LE(behind, 446u);
        EXPECT_EQ(check, "header\tok\ncount\t" + std::to_string(count) + "\n" +
                             (behind == 446 ? "behind\t1\n"
                              : behind > 0  ? "further\t" + std::to_string(behind) + "\n"
                                            : "") +
                             "good\t" + std::to_string(count) + "\n");
        EXPECT_EQ(Cli({"db", "add", bank}).output, bank + "\t32\t0\n");
        ExpectOutput({"db", "check"}, "header\tok\ncount\t" + std::to_string(count + 32) +
                                          "\ngood\t" + std::to_string(count + 32) + "\n");
        hits += isKilled && count > 0 && count < banks * 32;
    }
    EXPECT_EQ(hits, wanted);
}

} // namespace
} // namespace tonewright
