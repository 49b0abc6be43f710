// What is on the disk after the program was killed at some moment of saving.
#include "shell/settings_file.h"
#include "shell_fixture.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <functional>
#include <new>
#include <random>
#include <sys/mman.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Clock = std::chrono::steady_clock;

constexpr int Kills = 100;
constexpr int GreatestRound = 100'000'000; // of a child, in case nobody kills it

// The number of the round that a child process is in, seen by its parent.
struct SharedRound {
    std::atomic<int> *number;

    SharedRound()
        : number(new (mmap(nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE,
                           MAP_SHARED | MAP_ANONYMOUS, -1, 0)) std::atomic<int>(0)) {}
    ~SharedRound() { munmap(number, sizeof *number); }
    SharedRound(const SharedRound &) = delete;
    SharedRound &operator=(const SharedRound &) = delete;
};

class Killed : public ShellTest {
protected:
    // Starts a child that does `round` with ascending numbers, kills it at a random moment some
    // rounds later and returns the number of the round that was cut short. The first two rounds
    // are always whole.
    int KillDuring(const std::function<void(int number)> &round) {
        SharedRound shared;
        const pid_t child = fork();
        if (child == 0) {
            for (int number = 0; number < GreatestRound; ++number) {
                shared.number->store(number);
                round(number);
            }
            _exit(1);
        }
        EXPECT_GT(child, 0);
        const auto deadline = Clock::now() + std::chrono::seconds(20);
        const auto wait = [&](int number) {
            while (*shared.number < number && Clock::now() < deadline) {
                std::this_thread::yield();
            }
            EXPECT_GE(*shared.number, number) << "the child has got stuck";
            return Clock::now();
        };
        // A moment somewhere in the two rounds that follow, by the length of one.
        const auto start = wait(2);
        const auto length = wait(3) - start;
        const auto moment =
            Clock::now() + length * std::uniform_int_distribution<>(0, 2000)(random) / 1000;
        while (Clock::now() < moment) {
        }
        kill(child, SIGKILL);
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
        return *shared.number;
    }

    std::mt19937 random{20260222};
};

// The bank of a round: TestBank() with another first name.
Bytes BankOfRound(const std::string &tag, int number) {
    std::string name = std::to_string(number);
    name = tag + std::string(8 - name.size(), '0') + name;
    Bytes bank = TestBank();
    std::ranges::copy(name, bank.begin() + 6 + 118);
    FixTestChecksum(bank);
    return bank;
}

std::optional<Bytes> FileIfAny(const std::string &path) {
    return std::filesystem::exists(path) ? std::optional(ReadTestFile(path)) : std::nullopt;
}

TEST_F(Killed, TheDocumentOrItsBackupIsAWholeBankWheneverASaveIsKilled) {
    OpenBank();
    CreateBackups = 1;
    const std::string path = home.File("bank.syx");
    int brokenDocuments = 0;
    int brokenBackups = 0;
    for (int count = 0; count < Kills; ++count) {
        const int cut = KillDuring([&](int number) {
            const Bytes whole = BankOfRound("P ", number);
            std::filesystem::rename(home.Write("new", whole), path);
            const Bytes saved = BankOfRound("S ", number);
            SetNameAt(0, std::string(saved.begin() + 124, saved.begin() + 134));
            RunCommand(CommandSave);
        });
        const Bytes put = BankOfRound("P ", cut);
        const auto document = FileIfAny(path);
        const auto backup = FileIfAny(home.File("Backup of bank.syx"));
        const bool documentIsWhole = document == put || document == BankOfRound("S ", cut) ||
                                     document == BankOfRound("S ", cut - 1);
        const bool backupIsWhole = backup == put || backup == BankOfRound("P ", cut - 1);
        brokenDocuments += documentIsWhole ? 0 : 1;
        brokenBackups += backupIsWhole ? 0 : 1;
        // A document that is not whole has just been copied.
        EXPECT_TRUE(documentIsWhole || backup == put)
            << "kill " << count << ": a document of " << (document ? document->size() : 0)
            << " bytes and a backup of " << (backup ? backup->size() : 0);
        EXPECT_TRUE(documentIsWhole || backupIsWhole);
    }
    RecordProperty("brokenDocuments", brokenDocuments);
    RecordProperty("brokenBackups", brokenBackups);
}

// ---- settings

// The number that a whole settings file gives to SysexWait; -1 for a file that is not whole.
int RoundOfSettings(const std::string &path) {
    const auto bytes = FileIfAny(path);
    if (!bytes) {
        return -1;
    }
    const std::string text(bytes->begin(), bytes->end());
    const std::string key = "\nSysexWait = ";
    if (!text.starts_with(";Tonewright configuration file\n") ||
        !text.ends_with("\nShowWelcomeWizard = 1\n") ||
        static_cast<std::size_t>(std::ranges::count(text, '\n')) !=
            6 + ProgramSettings.rows.size()) {
        return -1;
    }
    return std::stoi(text.substr(text.find(key) + key.size()));
}

TEST_F(Killed, TheSettingsOrTheirBackupAreWholeWheneverWritingThemIsKilled) {
    MakeProgramFolders();
    const std::string file = home.File("Quillbrook/Tonewright 17.ini");
    const std::string backup = home.File("Quillbrook/Backup of Tonewright 17.ini");
    const std::string older = home.File("Quillbrook/Backup of Backup of Tonewright 17.ini");
    int brokenFiles = 0;
    int brokenBackups = 0;
    for (int count = 0; count < Kills; ++count) {
        const int cut = KillDuring([](int number) {
            SysexWait = static_cast<std::uint32_t>(number);
            ConfigWrite();
        });
        const int inFile = RoundOfSettings(file);
        const int inBackup = RoundOfSettings(backup);
        const int inOlder = RoundOfSettings(older);
        brokenFiles += inFile == -1 ? 1 : 0;
        brokenBackups += inBackup == -1 ? 1 : 0;
        const std::string found = "kill " + std::to_string(count) + " in round " +
                                  std::to_string(cut) + " left " + std::to_string(inFile) + ", " +
                                  std::to_string(inBackup) + ", " + std::to_string(inOlder);
        // The last settings that were written whole, or the present ones, are in one of the two.
        EXPECT_GE(std::max(inFile, inBackup), cut - 1) << found;
        // And two of the three generations are whole.
        EXPECT_GE((inFile != -1) + (inBackup != -1) + (inOlder != -1), 2) << found;
    }
    RecordProperty("brokenFiles", brokenFiles);
    RecordProperty("brokenBackups", brokenBackups);
}

} // namespace
} // namespace tonewright
