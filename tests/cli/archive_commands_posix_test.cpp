// The archive's commands on a terminal, and when they are asked to end.
#include "run_cli.h"

#include "extras/archive_store.h"
#include "support/environment.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

class CliArchiveOnPosix : public testing::Test {
protected:
    void SetUp() override {
        SetHome(home.path.string());
        fs::copy(ExampleFile(""), banks);
        EXPECT_EQ(Cli({"archive", "add", banks, "--archive", archive}).exitStatus, 0);
    }
    // In a shell that has the program as $cli and the archive as $archive.
    ProgramResult Shell(const std::string &script) const {
        return RunProgram(
            {"/usr/bin/env", "cli=" + CliProgram(), "archive=" + archive, "/bin/sh", "-c", script});
    }

    TempFolder home;
    std::string banks = home.File("banks");
    std::string archive = home.File("archive.sqlite");
};

TEST_F(CliArchiveOnPosix, OnATerminalALineTellsHowFarItIs) {
    const ProgramResult result =
        Shell("script -qec '\"$cli\" archive update --archive \"$archive\"' /dev/null </dev/null");
    EXPECT_EQ(result.exitStatus, 0) << result.output;
    EXPECT_NE(result.output.find(" found  " + banks.substr(0, 20)), std::string::npos)
        << result.output;
    EXPECT_NE(result.output.find("\radded\t0"), std::string::npos) << result.output;
}

TEST_F(CliArchiveOnPosix, OneThatWaitsForAnotherProgramCanBeEnded) {
    ArchiveError error;
    const ArchiveStorePointer store = OpenArchive(archive, ArchiveUse::Write, error);
    ASSERT_TRUE(store && LockArchive(
                             *store, [] { return true; }, error))
        << error.text;
    // Once it takes the signal, which is the bit 4000.
    const ProgramResult result = Shell(
        "\"$cli\" archive update --archive \"$archive\" & p=$!\n"
        "until grep -Eq '^SigCgt:.*[4-7c-f][0-9a-f]{3}$' /proc/$p/status; do sleep 0.01; done\n"
        "kill -TERM $p; wait $p; echo $?");
    UnlockArchive(*store);
    EXPECT_EQ(result.output, "143\n");
    EXPECT_TRUE(result.errors.starts_with(
        "tonewright-cli: interrupted: what was read is in the archive, archive "
        "update reads the rest\n"))
        << result.errors;
    ExpectOutput({"archive", "check", "--archive", archive}, "ok\n");
}

TEST_F(CliArchiveOnPosix, WhatIsFoundIsReadWhileAnotherProgramWrites) {
    ArchiveError error;
    const ArchiveStorePointer store = OpenArchive(archive, ArchiveUse::Write, error);
    ASSERT_TRUE(store && LockArchive(
                             *store, [] { return true; }, error))
        << error.text;
    ASSERT_TRUE(BeginArchiveBatch(*store, error)) << error.text;
    const ProgramResult result = Cli({"archive", "find", "harp", "--archive", archive});
    EXPECT_EQ(result.exitStatus, 0) << result.errors;
    ASSERT_TRUE(EndArchiveBatch(*store, error)) << error.text;
    UnlockArchive(*store);
}

TEST_F(CliArchiveOnPosix, WhatCannotBeReadIsToldAndTheRestIsIn) {
    fs::create_symlink("circle.syx", fs::path(banks) / "circle.syx");
    fs::copy_file(ExampleFile("tower_bell.sy1"), fs::path(banks) / "copy.sy1");
    const ProgramResult result = Cli({"archive", "update", "--archive", archive});
    EXPECT_TRUE(result.errors.starts_with("tonewright-cli: " + banks + "/circle.syx: "))
        << result.errors;
    EXPECT_TRUE(result.output.starts_with("added\t1\n")) << result.output;
}

} // namespace
} // namespace tonewright
