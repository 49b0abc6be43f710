// Two running copies of the real program share the clipboard of one X server: a voice that is
// copied in one is pasted in the other. Driven by keys, judged by the files that the programs save.
#include "support/bank_bytes.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <functional>
#include <optional>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Strings = std::vector<std::string>;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr unsigned LongestLife = 120; // seconds, of any process of this test

// True as soon as `condition` holds; false when it does not before the time is over.
bool Becomes(const std::function<bool()> &condition, Clock::duration time) {
    const auto deadline = Clock::now() + time;
    while (!condition()) {
        if (Clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(20ms);
    }
    return true;
}

// A process that is ended with its owner.
struct Process {
    pid_t id = -1;
    int status = 0;

    Process() = default;
    // `environment`: "NAME=value" beside what this process has; `output`: where standard output
    // goes, and `errors` standard error; -1: nowhere.
    Process(const Strings &command, const Strings &environment, int output = -1, int errors = 2) {
        id = fork();
        if (id != 0) {
            return;
        }
        for (const std::string &variable : environment) {
            putenv(const_cast<char *>(variable.c_str()));
        }
        alarm(LongestLife); // should the owner not live to end it
        const int nowhere = open("/dev/null", O_RDWR);
        dup2(nowhere, 0);
        dup2(output == -1 ? nowhere : output, 1);
        dup2(errors == -1 ? nowhere : errors, 2);
        std::vector<char *> words;
        for (const std::string &word : command) {
            words.push_back(const_cast<char *>(word.c_str()));
        }
        words.push_back(nullptr);
        execvp(words[0], words.data());
        _exit(127);
    }
    ~Process() { Kill(); }
    Process(const Process &) = delete;
    Process &operator=(const Process &) = delete;

    bool HasEnded() {
        if (id > 0 && waitpid(id, &status, WNOHANG) == id) {
            id = -1;
        }
        return id <= 0;
    }
    bool Ends(Clock::duration time) {
        return Becomes([this] { return HasEnded(); }, time);
    }
    // 0 when it ended by itself and well.
    int ExitStatus() const { return WIFEXITED(status) ? WEXITSTATUS(status) : -1; }
    void Kill() {
        if (!HasEnded()) {
            kill(id, SIGKILL);
            waitpid(id, &status, 0);
            id = -1;
        }
    }
};

// An X server of our own with a window manager.
struct Display {
    TempFolder folder;
    Strings environment;
    std::optional<Process> server, manager;

    bool Start() {
        int ends[2];
        if (pipe(ends) != 0) {
            return false;
        }
        fcntl(ends[0], F_SETFD, FD_CLOEXEC);
        // It writes its number there as soon as it is ready.
        server.emplace(Strings{"Xvfb", "-displayfd", std::to_string(ends[1]), "-screen", "0",
                               "1280x1024x24", "-nolisten", "tcp"},
                       Strings{});
        close(ends[1]);
        std::string number;
        for (char digit; read(ends[0], &digit, 1) == 1 && digit != '\n';) {
            number += digit;
        }
        close(ends[0]);
        if (number.empty()) {
            return false;
        }
        environment = {"DISPLAY=:" + number, "HOME=" + folder.path.string()};
        const std::string settings = folder.WriteText(
            "jwmrc", "<?xml version=\"1.0\"?><JWM><FocusModel>click</FocusModel></JWM>");
        manager.emplace(Strings{"jwm", "-f", settings}, environment);
        return true;
    }

    // What a call of xdotool prints; nothing when it fails or takes too long.
    std::optional<std::string> Tool(Strings words) const {
        words.insert(words.begin(), "xdotool");
        std::FILE *output = std::tmpfile();
        if (!output) {
            return std::nullopt;
        }
        Process tool(words, environment, fileno(output), -1);
        const bool done = tool.Ends(3s) && tool.ExitStatus() == 0;
        std::rewind(output);
        std::string text;
        for (int byte; (byte = std::fgetc(output)) != EOF;) {
            text += static_cast<char>(byte);
        }
        std::fclose(output);
        return done ? std::optional(text) : std::nullopt;
    }
};

// A running program with a home and a bank of its own.
struct RunningProgram {
    const Display &display;
    std::string name; // of the document
    TempFolder home;
    std::string bank; // its path
    std::string window;
    std::optional<Process> process;

    RunningProgram(const Display &display, const std::string &documentName, const Bytes &bytes)
        : display(display), name(documentName), bank(home.Write(documentName, bytes)) {
        std::filesystem::create_directories(home.path / ".config/Quillbrook");
        std::filesystem::create_directory(home.path / "runtime");
        std::filesystem::permissions(home.path / "runtime", std::filesystem::perms::owner_all);
        WriteTestText(home.File(".config/Quillbrook/Tonewright 17.ini"),
                      "[Tonewright]\nShowStartupWindow = 0\nShowTipOfTheDay = 0\n"
                      "ShowWelcomeWizard = 0\nCreateBackups = 0\n");
        Strings environment = display.environment;
        for (const std::string &variable :
             {"HOME=" + home.path.string(), "XDG_CONFIG_HOME=" + home.File(".config"),
              "XDG_RUNTIME_DIR=" + home.File("runtime"), std::string("QT_QPA_PLATFORM=xcb"),
              std::string("LSAN_OPTIONS=print_suppressions=0:suppressions=" SOURCE_DIR
                          "/tests/lsan.supp")}) {
            environment.push_back(variable);
        }
        // The keyboard library of X measures a text that has no end of its own, which the strict
        // checks of a sanitized build take for an error.
        const char *checks = std::getenv("ASAN_OPTIONS");
        environment.push_back(std::string("ASAN_OPTIONS=") + (checks ? checks : "") +
                              ":strict_string_checks=0");
        process.emplace(Strings{TONEWRIGHT_PROGRAM, bank}, environment);
    }

    // True once the window shows the document.
    bool Stands() {
        return Becomes(
            [this] {
                const auto found =
                    display.Tool({"search", "--onlyvisible", "--name", "Tonewright . " + name});
                window = found ? found->substr(0, found->find('\n')) : "";
                return !window.empty();
            },
            15s);
    }
    // Presses keys while this program's window has the focus; false when it does not get it.
    bool Press(const Strings &keys) const {
        if (!display.Tool({"windowactivate", "--sync", window})) {
            return false;
        }
        Strings words = {"key", "--clearmodifiers", "--delay", "5"};
        words.insert(words.end(), keys.begin(), keys.end());
        return display.Tool(words).has_value();
    }
    // The keys that select a row, and then those given.
    bool PressAt(int row, const Strings &keys) const {
        Strings all = {"Home"};
        all.insert(all.end(), static_cast<std::size_t>(row), "Down");
        all.insert(all.end(), keys.begin(), keys.end());
        return Press(all);
    }
    Bytes Saved() const { return ReadTestFile(bank); }
};

// A valid bank of the voices of TestBank() under other names, "OTHER 01" to "OTHER 32".
Bytes OtherBank() {
    Bytes bank = TestBank();
    const std::string word = "OTHER";
    for (int number = 0; number < 32; ++number) {
        std::ranges::copy(word, bank.begin() +
                                    static_cast<std::ptrdiff_t>(TestBankVoiceOffset(number) + 118));
    }
    FixTestChecksum(bank);
    return bank;
}

// `bank` with the voice of one row replaced by a voice of another bank.
Bytes WithVoice(Bytes bank, int row, const Bytes &other, int otherRow) {
    const auto at = [](int number) {
        return static_cast<std::ptrdiff_t>(TestBankVoiceOffset(number));
    };
    std::copy_n(other.begin() + at(otherRow), TestPackedVoiceSize, bank.begin() + at(row));
    FixTestChecksum(bank);
    return bank;
}

// Copies a voice in one program, pastes it in the other and saves there, until the file is as
// expected: a key that is pressed before the other program has heard of the copy does nothing.
bool Carry(const RunningProgram &from, int fromRow, const RunningProgram &to, int toRow,
           const Bytes &expected) {
    return Becomes(
        [&] {
            return from.PressAt(fromRow, {"ctrl+c"}) && to.PressAt(toRow, {"ctrl+v", "ctrl+s"}) &&
                   Becomes([&] { return to.Saved() == expected; }, 1s);
        },
        12s);
}

TEST(TwoPrograms, AVoiceGoesFromEachToTheOtherAndIsGoneWithItsProgram) {
    Display display;
    ASSERT_TRUE(display.Start()) << "no X server";
    RunningProgram first(display, "first.syx", TestBank());
    RunningProgram second(display, "second.syx", OtherBank());
    ASSERT_TRUE(first.Stands());
    ASSERT_TRUE(second.Stands());

    const Bytes secondBank = WithVoice(OtherBank(), 5, TestBank(), 2);
    EXPECT_TRUE(Carry(first, 2, second, 5, secondBank));
    EXPECT_EQ(first.Saved(), TestBank());

    const Bytes firstBank = WithVoice(TestBank(), 1, OtherBank(), 7);
    EXPECT_TRUE(Carry(second, 7, first, 1, firstBank));
    EXPECT_EQ(second.Saved(), secondBank);

    // With the program that copied, its offer goes: Paste is grey, so that nothing is pasted and no
    // message stands in the way of what follows, a voice of its own for yet another row.
    second.process->Kill();
    ASSERT_TRUE(first.PressAt(9, {"ctrl+v", "ctrl+s"}));
    EXPECT_TRUE(Carry(first, 0, first, 3, WithVoice(firstBank, 3, TestBank(), 0)));

    // It ends by its menu and keeps its history.
    EXPECT_TRUE(first.Press({"alt+f"}));
    EXPECT_TRUE(Becomes(
        [&] {
            if (first.process->HasEnded()) {
                return true;
            }
            display.Tool({"key", "x"});
            return first.process->Ends(1s);
        },
        8s));
    EXPECT_EQ(first.process->ExitStatus(), 0);
    EXPECT_EQ(ReadTestText(first.home.File(".config/Quillbrook/Tonewright 17/FileMenuHistory.txt"))
                  .substr(0, first.bank.size() + 1),
              first.bank + ",");
}

} // namespace
} // namespace tonewright
