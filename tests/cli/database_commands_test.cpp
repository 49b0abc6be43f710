// The commands of catalogues, as their users see them.
#include "run_cli.h"

#include "database/test_catalogue.h"
#include "support/bank_bytes.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

const TestFamily &Dx7 = TestFamilies[0];
const TestFamily &Reface = TestFamilies[1];

bool Contains(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

class CliDb : public testing::Test {
protected:
    void SetUp() override {
        setenv("HOME", home.path.c_str(), 1);
        setenv("XDG_CONFIG_HOME", home.File(".config").c_str(), 1);
        fs::create_directories(Documents());
        fs::create_directories(home.path / ".config/Quillbrook");
    }

    fs::path Documents() const { return home.path / "Documents/My Tonewright 17 Documents"; }
    // The file of a catalogue of that name, with its extension.
    std::string Catalogue(const std::string &name) const { return (Documents() / name).string(); }
    std::string Write(const std::string &name, const TestBytes &bytes) const {
        WriteTestFile(Catalogue(name), bytes);
        return Catalogue(name);
    }
    void WriteSettings(const std::string &text) const {
        WriteTestText(home.File(".config/Quillbrook/Tonewright 17.ini"), text);
    }

    static void ExpectOutput(std::vector<std::string> arguments, const std::string &output,
                             int status = 0) {
        const auto result = Cli(std::move(arguments));
        EXPECT_EQ(result.exitStatus, status);
        EXPECT_EQ(result.output, output);
        EXPECT_EQ(result.errors, "");
    }
    static void ExpectFailure(std::vector<std::string> arguments, const std::string &reason,
                              int status = 1) {
        const auto result = Cli(std::move(arguments));
        EXPECT_EQ(result.exitStatus, status) << reason;
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors, "tonewright-cli: " + reason + "\n");
    }

    TempFolder home;
};

// What `list` prints of TestRecordAt(index).
std::string LineOf(int index) {
    const std::string number = std::to_string(index), next = std::to_string(index + 1);
    return next + "\tName " + number + "\tBank " + number + ".syx\t" +
           std::to_string(index + 5000) + "\t" + next + "\n";
}

TestBytes CatalogueOf(const TestFamily &family, const std::vector<TestEntry> &entries) {
    TestBytes file = TestCatalogueHeader(family, static_cast<std::uint32_t>(entries.size()));
    for (std::size_t index = 0; index < entries.size(); ++index) {
        const TestBytes record = TestRecord(family, static_cast<int>(index), entries[index]);
        file.insert(file.end(), record.begin(), record.end());
    }
    return file;
}

// ---- which catalogue

TEST_F(CliDb, IsThatOfTheSettingsAndOfTheFirstFamilyWithoutAnyOption) {
    Write("Voices.syx_db", TestCatalogue(Dx7, 1, 1));
    Write("Voices.srx_db", TestCatalogue(Reface, 2, 2));
    Write("Live.srx_db", TestCatalogue(Reface, 3, 3));
    ExpectOutput({"db", "list"}, LineOf(0));
    WriteSettings("SelectKeyboardName = Yamaha reface DX\n");
    ExpectOutput({"db", "list"}, LineOf(0) + LineOf(1));
    WriteSettings("SelectKeyboardName = Yamaha reface DX\nDatabaseCurrentName = Live\n");
    ExpectOutput({"db", "list"}, LineOf(0) + LineOf(1) + LineOf(2));
    ExpectFailure({"db", "list", "--synth", "DX7"},
                  Catalogue("Live.syx_db") + ": not readable: No such file or directory");
}

TEST_F(CliDb, IsThatOfANameOrOfAPathWhoseExtensionGoesBeforeTheInstrument) {
    Write("Live.syx_db", TestCatalogue(Dx7, 1, 1));
    Write("Live.srx_db", TestCatalogue(Reface, 2, 2));
    ExpectOutput({"db", "list", "--database", "Live"}, LineOf(0));
    ExpectOutput({"db", "list", "--database=Live", "--synth", "reface"}, LineOf(0) + LineOf(1));
    const std::string path = Catalogue("Live.srx_db");
    ExpectOutput({"db", "list", "--database", path, "--synth", "DX7"}, LineOf(0) + LineOf(1));
    const std::string plain = home.Write("catalogue", TestCatalogue(Reface, 1, 1));
    ExpectOutput({"db", "list", "--database", plain, "--synth", "reface"}, LineOf(0));
    ExpectFailure({"db", "list", "--database", plain},
                  plain + ": not a catalogue of the " + std::string(SynthDrivers[0]->name));
    ExpectFailure({"db", "list", "--database", "none.srx_db"},
                  "none.srx_db: not readable: No such file or directory");
}

TEST_F(CliDb, CallsForANameThatCanBeOne) {
    ExpectFailure({"db", "list", "--database", ""}, "--database: needs the name of a catalogue", 2);
    const std::string name(260 - Documents().string().size() - 1 - 7, 'n'); // "/" and ".syx_db"
    ExpectFailure({"db", "list", "--database", name},
                  Catalogue(name) + ".syx_db: not readable: No such file or directory");
    ExpectFailure({"db", "list", "--database", name + "n"},
                  name + "n: not a name: the path would have more than 260 bytes", 2);
    const std::string path = home.FileOfSize(261, "a.syx_db");
    ExpectFailure({"db", "list", "--database", path},
                  path + ": not a path: it has more than 260 bytes", 2);
    const auto result = Cli({"db", "list", "--synth", "organ"});
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_TRUE(Contains(result.errors, "organ: no such instrument; there are: "));
}

TEST_F(CliDb, TellsWhatStandsBehindDb) {
    const std::string usage = "usage: tonewright-cli COMMAND [ARGUMENT...]; --help tells more";
    const auto alone = Cli({"db"});
    EXPECT_EQ(alone.exitStatus, 2);
    EXPECT_TRUE(Contains(alone.errors, "tonewright-cli: db lacks a command: "));
    const auto other = Cli({"db", "lists"});
    EXPECT_EQ(other.exitStatus, 2);
    EXPECT_TRUE(Contains(other.errors, "tonewright-cli: db takes "));
    EXPECT_TRUE(Contains(other.errors, ", not lists\n" + usage));
    const auto help = Cli({"db", "--help"});
    EXPECT_EQ(help.exitStatus, 0);
    EXPECT_TRUE(Contains(help.output, "usage: tonewright-cli db COMMAND [ARGUMENT...]\n"));
    EXPECT_TRUE(Contains(help.output, "\n  db list "));
    EXPECT_FALSE(Contains(help.output, "upload"));
    EXPECT_TRUE(Contains(Cli({"db", "list", "--help"}).output, "usage: tonewright-cli db list\n"));
    ExpectFailure({"db", "list", "more"},
                  "db list has too many arguments\nusage: tonewright-cli db list", 2);
}

// ---- list

TEST_F(CliDb, ListsTextAsUtf8InColumnsThatNothingBreaks) {
    Write("Voices.syx_db",
          CatalogueOf(Dx7, {{"Caf\xE9\t\n1", "a\x7F\x85.syx", 0xFFFFFFFF, 4294967295}}));
    ExpectOutput({"db", "list"}, "1\tCaf\xC3\xA9??1\ta??.syx\t4294967295\t0\n");
}

TEST_F(CliDb, ListsInTheOrderOfTheFileOrASortedOneWithTheSamePlaces) {
    Write("Voices.syx_db",
          CatalogueOf(Dx7, {{"b", "x.syx", 2, 30}, {"a", "z.syx", 0, 20}, {"C", "Y.syx", 1, 10}}));
    const std::string one = "1\tb\tx.syx\t30\t3\n", two = "2\ta\tz.syx\t20\t1\n",
                      three = "3\tC\tY.syx\t10\t2\n";
    WriteSettings("DatabaseSortMode = 109\n");
    ExpectOutput({"db", "list"}, one + two + three);
    ExpectOutput({"db", "list", "--sort", "name"}, two + one + three);
    ExpectOutput({"db", "list", "--sort", "source"}, one + three + two);
    ExpectOutput({"db", "list", "--sort", "date"}, three + two + one);
    ExpectOutput({"db", "list", "--sort", "position"}, two + three + one);
    ExpectFailure({"db", "list", "--sort", "size"},
                  "size: not an order: name, source, date and position are", 2);
}

TEST_F(CliDb, ListsWhatALoadTakesAndChangesNoByte) {
    TestBytes file = TestCatalogue(Dx7, 4, 3); // one more than is counted
    file[152 + 446] = 'x';                     // the second one's magic
    Write("Voices.syx_db", file);
    const auto time = fs::last_write_time(Catalogue("Voices.syx_db"));
    ExpectOutput({"db", "list"}, LineOf(0) + LineOf(2));
    ExpectOutput({"db", "list", "--sort", "name"}, LineOf(0) + LineOf(2));
    EXPECT_EQ(ReadTestFile(Catalogue("Voices.syx_db")), file);
    EXPECT_EQ(fs::last_write_time(Catalogue("Voices.syx_db")), time);

    file = TestCatalogue(Dx7, 3, 0xFFFFFFFF);
    file.pop_back(); // of the third one
    Write("Voices.syx_db", file);
    ExpectOutput({"db", "list"}, LineOf(0) + LineOf(1));
    Write("Voices.syx_db", TestCatalogue(Dx7, 0, 0));
    ExpectOutput({"db", "list"}, "");
}

} // namespace
} // namespace tonewright
