// The command-line program on a POSIX system: answers typed on a terminal, memory with thousands of
// files, output that cannot be written, files without permission.
#include "unprivileged_cli.h"

#include "support/bank_bytes.h"
#include "support/paths.h"
#include "support/posix_limits.h"
#include "support/run_program.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes DamagedBank() {
    Bytes bank = TestBank();
    bank[4102] ^= 0x01;
    return bank;
}

bool Contains(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

// The program's child process with `input` as its standard input and `output` as standard output
// and standard error.
pid_t StartCli(std::vector<std::string> arguments, int input, int output) {
    arguments.insert(arguments.begin(), CliProgram());
    std::vector<char *> pointers;
    for (std::string &argument : arguments) {
        pointers.push_back(argument.data());
    }
    pointers.push_back(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        dup2(input, 0);
        dup2(output, 1);
        dup2(output, 2);
        execv(pointers[0], pointers.data());
        _exit(127);
    }
    return child;
}

struct TerminalResult {
    int exitStatus = -1;
    std::string shown; // all that the terminal showed, echo of the typed text included
};

// Runs the program on a terminal of its own on which `typed` is typed.
TerminalResult CliOnTerminal(const std::vector<std::string> &arguments, const std::string &typed) {
    TerminalResult result;
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
    EXPECT_EQ(grantpt(terminal), 0);
    EXPECT_EQ(unlockpt(terminal), 0);
    const int line = open(ptsname(terminal), O_RDWR | O_NOCTTY);
    EXPECT_GE(line, 0);
    EXPECT_EQ(write(terminal, typed.data(), typed.size()), static_cast<ssize_t>(typed.size()));
    const pid_t child = StartCli(arguments, line, line);
    close(line);
    char piece[1024];
    for (ssize_t count; (count = read(terminal, piece, sizeof piece)) > 0;) {
        result.shown.append(piece, static_cast<std::size_t>(count));
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    close(terminal);
    if (WIFEXITED(status)) {
        result.exitStatus = WEXITSTATUS(status);
    }
    return result;
}

TEST(CliOnATerminal, OpensADamagedBankWhenTheAnswerIsYes) {
    const TempFolder folder;
    const std::string out = folder.File("out.syx");
    const auto result = CliOnTerminal({"save", folder.Write("in.syx", DamagedBank()), out}, "y\n");
    EXPECT_EQ(result.exitStatus, 0) << result.shown;
    EXPECT_TRUE(Contains(result.shown, "Do you wish to open it anyway? [y/n] "));
    EXPECT_EQ(ReadTestFile(out), TestBank());
}

TEST(CliOnATerminal, RescuesVoicesWithBytesAbove7FWhenTheAnswerIsYes) {
    const TempFolder folder;
    Bytes bank = TestBank();
    bank[6] = 0x80;
    FixTestChecksum(bank);
    const std::string in = folder.Write("in.syx", bank), into = folder.File("saved");
    const auto refused = CliOnTerminal({"rescue", in, "--into", into}, "n\n");
    EXPECT_EQ(refused.exitStatus, 1) << refused.shown;
    EXPECT_TRUE(Contains(refused.shown, "Do you wish to write them all the same? [y/n] "));
    EXPECT_TRUE(std::filesystem::is_empty(into));
    EXPECT_EQ(CliOnTerminal({"rescue", in, "--into", into}, "y\n").exitStatus, 0);
    EXPECT_EQ(ReadTestFile(into + "/in.syx"), bank);
}

TEST(CliOnATerminal, RefusesADamagedBankWhenTheAnswerIsNo) {
    const TempFolder folder;
    const auto result = CliOnTerminal(
        {"save", folder.Write("in.syx", DamagedBank()), folder.File("out.syx")}, "no\n");
    EXPECT_EQ(result.exitStatus, 1) << result.shown;
    EXPECT_FALSE(folder.Holds("out.syx"));
}

TEST(CliOnATerminal, AsksAgainUntilTheAnswerIsOne) {
    const TempFolder folder;
    const auto result = CliOnTerminal(
        {"save", folder.Write("in.syx", DamagedBank()), folder.File("out.syx")}, "maybe\n\nyes\n");
    EXPECT_EQ(result.exitStatus, 0) << result.shown;
    EXPECT_TRUE(Contains(result.shown, "Please answer y or n."));
}

TEST(CliOnATerminal, TakesTheEndOfTheInputForNo) {
    const TempFolder folder;
    const auto result = CliOnTerminal(
        {"save", folder.Write("in.syx", DamagedBank()), folder.File("out.syx")}, "\x04");
    EXPECT_EQ(result.exitStatus, 1) << result.shown;
    EXPECT_FALSE(folder.Holds("out.syx"));
}

TEST(CliOnATerminal, LetsAnOptionAnswerInsteadOfTheTerminal) {
    const TempFolder folder;
    const auto result = CliOnTerminal(
        {"save", folder.Write("in.syx", DamagedBank()), folder.File("out.syx"), "--no"}, "y\n");
    EXPECT_EQ(result.exitStatus, 1) << result.shown;
    EXPECT_FALSE(folder.Holds("out.syx"));
}

// `check` on `paths`, all of them `times` times.
std::vector<std::string> CheckOf(const std::vector<std::string> &paths, int times) {
    std::vector<std::string> arguments = {"check"};
    for (int time = 0; time < times; ++time) {
        arguments.insert(arguments.end(), paths.begin(), paths.end());
    }
    return arguments;
}

// Peak memory of the program in KiB. The system counts the child's memory from its birth, as a copy
// of this process.
long PeakMemoryOf(const std::vector<std::string> &arguments) {
    const int output = open("/dev/null", O_RDWR);
    const pid_t child = StartCli(arguments, output, output);
    close(output);
    int status = 0;
    rusage usage{};
    EXPECT_EQ(wait4(child, &status, 0, &usage), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    return usage.ru_maxrss;
}

TEST(CliCheckOfManyFiles, NeedsNoMoreMemoryForTenThousandThanForAHundred) {
    // A checking build must not hold freed memory back, nor note where each block came from, or
    // that would count as used.
    const char *options = std::getenv("ASAN_OPTIONS");
    setenv("ASAN_OPTIONS",
           (std::string(options ? options : "") +
            ":quarantine_size_mb=0:thread_local_quarantine_size_kb=0:malloc_context_size=0")
               .c_str(),
           1);
    const TempFolder folder;
    const Bytes bank = TestBank();
    std::vector<std::string> paths;
    for (int number = 100; number < 200; ++number) {
        paths.push_back(folder.Write(std::to_string(number) + ".syx", bank));
    }
    const auto manyPaths = CheckOf(paths, 100);
    const auto fewPaths = CheckOf(paths, 1);
    ASSERT_EQ(manyPaths.size(), 1u + 10'000u);
    const long many = PeakMemoryOf(manyPaths);
    const long few = PeakMemoryOf(fewPaths);
    // The paths themselves lie in the child's memory before it begins: text and one pointer each.
    const long argumentsInKib =
        static_cast<long>(10'000 * (paths[0].size() + 1 + sizeof(char *)) / 1024);
    EXPECT_LT(many, few + argumentsInKib + 1024);
}

TEST(CliPictureOnPosix, TakesNamesThatBeginLikeOptionsBehindTwoDashes) {
    const TempFolder folder;
    folder.Write("--yes.syx", DamagedBank());
    const std::string call = "cd '" + folder.path.string() + "' && '" + CliProgram() +
                             "' picture --yes -- --yes.syx '--a b.png'";
    const auto result = RunProgram({"/bin/sh", "-c", call});
    EXPECT_EQ(result.exitStatus, 0) << result.errors;
    EXPECT_TRUE(folder.Holds("--a b.png"));
}

TEST(CliPictureOnPosix, SaysWhichProgramIsMissingBesideIt) {
    const TempFolder folder;
    const std::string alone = folder.File("tonewright-cli");
    std::filesystem::copy_file(CliProgram(), alone);
    const auto result = RunProgram({alone, "picture", "in.syx", folder.File("a.png")});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors, "tonewright-cli: " + folder.File("tonewright-picture") +
                                 ": could not be started: No such file or directory\n");
}

TEST(CliOutput, FailsWhenItCannotBeWritten) {
    const TempFolder folder;
    const std::string bank = folder.Write("a.syx", TestBank());
    const auto result =
        RunProgram({"/bin/sh", "-c", "'" + CliProgram() + "' list '" + bank + "' >/dev/full"});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors, "tonewright-cli: standard output: No space left on device\n");
}

TEST(CliSaveOnPosix, DeletesWhatItCouldNotWriteWholeAndSaysWhy) {
    const TempFolder folder;
    const std::string in = folder.Write("in.syx", TestBank()), out = folder.File("out.syx");
    ProgramResult result;
    {
        const FileSizeLimit limit(2000);
        result = RunProgram({CliProgram(), "save", in, out});
    }
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.errors, "tonewright-cli: " + out + ": could not be written: File too large\n");
    EXPECT_FALSE(folder.Holds("out.syx"));
}

TEST(CliOnAPipe, CheckRefusesItAndGoesOn) {
    const TempFolder folder;
    const std::string pipe = MakePipe(folder.File("a.syx"));
    const std::string bank = folder.Write("b.syx", TestBank());
    const auto result = RunProgram({CliProgram(), "check", pipe, bank});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output,
              pipe + "\trefused\tnot readable: Operation not supported\n" + bank + "\tok\t32\n");
}

TEST(CliWithoutPermission, SaysThatAFileIsNotReadable) {
    const TempFolder folder;
    const std::string bank = folder.Write("a.syx", TestBank());
    RunCliUnprivileged({{bank, 0}}, {"check", bank}, [&](const ProgramResult &result) {
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.output, bank + "\trefused\tnot readable: Permission denied\n");
    });
}

TEST(CliWithoutPermission, SaysThatAFolderIsReadOnly) {
    const TempFolder folder;
    const std::string in = folder.Write("in.syx", TestBank()), out = folder.File("out.syx");
    RunCliUnprivileged({{folder.path, 0500}}, {"save", in, out}, [&](const ProgramResult &result) {
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.errors,
                  "tonewright-cli: " + out + ": could not be written: Permission denied\n");
    });
    EXPECT_FALSE(folder.Holds("out.syx"));
}

} // namespace
} // namespace tonewright
