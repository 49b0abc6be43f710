// What is on the disk after the program was killed at some moment of saving.
#include "shell/history.h"
#include "shell/settings_file.h"
#include "shell/single_setting.h"
#include "shell_fixture.h"
#include "support/killed_child.h"

#include <algorithm>
#include <random>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr int Kills = 100;
class Killed : public ShellTest {
protected:
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
        const int cut = KillDuring(random, [&](int number) {
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
        const int cut = KillDuring(random, [](int number) {
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

// The number of the round in which a file was written, of which `textOf` gives the text; -1 when it
// is neither of the two that a kill in round `cut` may leave.
int RoundOf(const std::string &path, int cut, const std::function<std::string(int)> &textOf) {
    const std::string text = ReadTestText(path);
    for (const int round : {cut - 1, cut}) {
        if (text == textOf(round)) {
            return round;
        }
    }
    return -1;
}

TEST_F(Killed, ASingleSettingLeavesAWholeFileWheneverWritingItIsKilled) {
    const auto textOf = [](int number) {
        return "[Other]\nSysexWait = 1\n[Tonewright]\nSysexWait = " + std::to_string(number) +
               "\nOpenPath = " + std::string(300, 'x') + "\n";
    };
    const std::string path = home.WriteText("single.ini", textOf(0));
    int cutShort = 0;
    for (int count = 0; count < Kills; ++count) {
        const int cut = KillDuring(random, [&path](int number) {
            WriteSingleText(path.c_str(), "Tonewright", "SysexWait", std::to_string(number));
        });
        const int found = RoundOf(path, cut, textOf);
        EXPECT_NE(found, -1) << "kill " << count << " in round " << cut;
        cutShort += found == cut - 1 ? 1 : 0;
    }
    EXPECT_GT(cutShort, 0) << "no kill came before the end of its round";
}

// Of the first entry that a round leaves.
int TimeOf(int round) {
    return 1000 + round;
}

TEST_F(Killed, TheHistoryIsWholeWheneverWritingItIsKilled) {
    MakeProgramFolders();
    RememberFileHistoryCount = 20;
    std::vector<std::string> documents;
    for (const char last : std::string("abcdefghijklmnopqrst")) {
        documents.push_back(home.Write(std::string(100, 'n') + last, {}));
    }
    const auto textOf = [&documents](int number) {
        std::string text;
        int time = TimeOf(number);
        for (const std::string &document : documents) { // the latest first
            text += document + "," + std::to_string(time--) + "\n";
        }
        return text;
    };
    int cutShort = 0;
    for (int count = 0; count < Kills; ++count) {
        const int cut = KillDuring(random, [&](int number) {
            HistoryInit();
            int time = TimeOf(number);
            for (const std::string &document : documents) {
                HistoryAdd(nullptr, document, time--);
            }
            HistorySave();
        });
        const int found = RoundOf(HistoryFilePath(), cut, textOf);
        EXPECT_NE(found, -1) << "kill " << count << " in round " << cut;
        cutShort += found == cut - 1 ? 1 : 0;
    }
    EXPECT_GT(cutShort, 0) << "no kill came before the end of its round";
}

} // namespace
} // namespace tonewright
