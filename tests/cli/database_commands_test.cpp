// The commands of catalogues, as their users see them.
#include "database_home.h"

#include "support/bank_bytes.h"
#include "support/reface_bytes.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace tonewright {
namespace {

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
    ExpectFailure({"db", "list", "--database", plain}, plain + ": not a catalogue of the " +
                                                           SynthDrivers[0]->name + ", but of the " +
                                                           SynthDrivers[1]->name);
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
    const std::string longest = home.FileOfSize(260, "a.syx_db");
    WriteTestFile(longest, TestCatalogue(Dx7, 1, 1));
    ExpectOutput({"db", "list", "--database", longest}, LineOf(0));
    ExpectOutput({"db", "add", home.Write("a.syx", TestBank()), "--database", longest},
                 home.File("a.syx") + "\t32\t0\n");
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
    const auto oneWord = Cli({"db list"});
    EXPECT_EQ(oneWord.exitStatus, 2);
    EXPECT_EQ(oneWord.output, "");
    EXPECT_EQ(oneWord.errors, "tonewright-cli: unknown command db list\n" + usage + "\n");
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
    ExpectOutput({"db", "list", "--sort", "Position"}, two + three + one);
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

// ---- names

TEST_F(CliDb, NamesTheCataloguesOfEachFamilyAndSaysOfWhatIsNoneThatItIsNone) {
    ExpectOutput({"db", "names"}, "");
    const std::string dx7(SynthDrivers[0]->name), reface(SynthDrivers[1]->name);
    const std::string voices = Write("Voices.syx_db", TestCatalogue(Dx7, 2, 2));
    const std::string ends = Write("Ends.syx_db", TestCatalogue(Dx7, 2, 9)); // in the file
    const std::string live = Write("Live.srx_db", TestCatalogue(Reface, 1, 1));
    Write("Voices.syx_db_backup", TestCatalogue(Dx7, 2, 2));
    const std::string good = "Ends\t" + dx7 + "\t2\t1044\t" + ends + "\n" + "Voices\t" + dx7 +
                             "\t2\t1044\t" + voices + "\n";
    ExpectOutput({"db", "names"}, good + "Live\t" + reface + "\t1\t592\t" + live + "\n");
    Write("Live.srx_db", TestBytes(7));
    const auto result = Cli({"db", "names"});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, good + "Live\t" + reface + "\t-\t7\t" + live + "\n");
    EXPECT_EQ(result.errors,
              "tonewright-cli: " + live +
                  ": not a catalogue: it has 7 bytes, and the header alone has 152\n");
}

TEST_F(CliDb, NamesACatalogueWhosePathIsTooLong) {
    const std::string name(260 - Documents().string().size() - 1 - 7, 'n'); // "/" and ".syx_db"
    const std::string good = Write(name + ".syx_db", TestCatalogue(Dx7, 2, 2));
    const std::string dx7(SynthDrivers[0]->name);
    const std::string line = name + "\t" + dx7 + "\t2\t1044\t" + good + "\n";
    ExpectOutput({"db", "names"}, line);
    const std::string bad = Write(name + "o.syx_db", TestCatalogue(Dx7, 3, 3));
    const auto result = Cli({"db", "names"});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, line + name + "o\t" + dx7 + "\t-\t1490\t" + bad + "\n");
    EXPECT_EQ(result.errors,
              "tonewright-cli: " + bad + ": not a path: it has more than 260 bytes\n");
}

// ---- add

TEST_F(CliDb, AddsBanksAndVoicesEachToTheCatalogueOfItsFamilyAlsoInAnEmptyHome) {
    fs::remove_all(home.path / "Documents");
    const std::string bank = home.Write("My  Bank.syx", TestBank());
    const std::string voice = home.Write("one.sr1", TestRefaceVoiceFile(0));
    const std::string other = home.Write("two.sy1", TestVoiceFile());
    ExpectOutput({"db", "add", bank, voice, other},
                 bank + "\t32\t0\n" + voice + "\t1\t0\n" + other + "\t1\t0\n");
    const auto dx7 = Cli({"db", "list"});
    EXPECT_EQ(std::ranges::count(dx7.output, '\n'), 33);
    EXPECT_TRUE(Contains(dx7.output, "1\tVoice 01\tMy bank.syx\t"));
    EXPECT_TRUE(Contains(dx7.output, "\n32\tVoice 32\tMy bank.syx\t"));
    EXPECT_TRUE(Contains(dx7.output, "\n33\tE.piano 1x\tTwo.sy1\t"));
    EXPECT_TRUE(
        Contains(Cli({"db", "list", "--synth", "reface"}).output, "1\tReface 01\tOne.sr1\t"));
    ExpectOutput({"db", "add", bank}, bank + "\t0\t32\n"); // they are there
    EXPECT_EQ(Cli({"db", "check"}).exitStatus, 0);
}

TEST_F(CliDb, AddsVoicesWithTheTimeOfTheirFileAndTheirPlaceInIt) {
    const std::string bank = home.Write("a.syx", TestBank());
    const std::string voice = home.Write("b.sy1", TestVoiceFile());
    const auto now = fs::file_time_type::clock::now();
    const auto nowInSeconds = std::time(nullptr);
    fs::last_write_time(bank, now - std::chrono::hours(1000));
    fs::last_write_time(voice, now - std::chrono::hours(2000));
    EXPECT_EQ(Cli({"db", "add", bank, voice}).exitStatus, 0);
    const TestBytes file = ReadTestFile(Catalogue("Voices.syx_db"));
    const auto expectRecord = [&](std::size_t index, std::int64_t time, std::uint32_t position) {
        const std::size_t record = 152 + index * 446;
        EXPECT_NEAR(static_cast<double>(Test32(file, record + 8)), static_cast<double>(time), 2);
        EXPECT_EQ(Test32(file, record + 12), Test32(file, record + 8));
        EXPECT_EQ(Test32(file, record + 158), position);
    };
    expectRecord(0, nowInSeconds - 1000 * 3600, 0);
    expectRecord(31, nowInSeconds - 1000 * 3600, 31);
    expectRecord(32, nowInSeconds - 2000 * 3600, 0);
    const TestBytes payload(file.begin() + 152 + 3 * 446 + 290, file.begin() + 152 + 4 * 446);
    EXPECT_EQ(TestTextAt(payload, 145, 8), "VOICE 04");
}

TEST_F(CliDb, AddsByTheSettingsWhichItDoesNotWrite) {
    const std::string settings = "CreateBackups = 0\nDatabaseCurrentName = Live\n"
                                 "DatabaseMakePrettyNames = 0\nDatabaseNoDuplicates = 0\n";
    WriteSettings(settings);
    const std::string bank = home.Write("B  \xE2\x82\xAC\xC3\x89.syx", TestBank());
    ExpectOutput({"db", "add", bank, bank}, bank + "\t32\t0\n" + bank + "\t32\t0\n");
    EXPECT_EQ(ReadTestText(home.File(".config/Quillbrook/Tonewright 17.ini")), settings);
    EXPECT_TRUE(Contains(Cli({"db", "list"}).output, "1\tVOICE 01\tB  ?\xC3\x89.syx\t"));
    ExpectOutput({"db", "add", bank}, bank + "\t32\t0\n");
    EXPECT_FALSE(fs::exists(Catalogue("Live.syx_db_backup")));
    EXPECT_FALSE(fs::exists(Catalogue("Voices.syx_db")));
}

TEST_F(CliDb, AddsToANamedCatalogueOrToAFile) {
    const std::string bank = home.Write("a.syx", TestBank());
    const std::string reface = home.Write("a.srx", TestRefaceBank());
    ExpectOutput({"db", "add", bank, reface, "--database", "Live"},
                 bank + "\t32\t0\n" + reface + "\t32\t0\n");
    EXPECT_EQ(fs::file_size(Catalogue("Live.syx_db")), 152u + 32 * 446);
    EXPECT_EQ(fs::file_size(Catalogue("Live.srx_db")), 152u + 32 * 440);
    const std::string path = home.File("shelf.srx_db");
    auto result = Cli({"db", "add", bank, reface, "--database", path});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, reface + "\t32\t0\n");
    EXPECT_EQ(result.errors, "tonewright-cli: " + bank + ": not added: it is for the " +
                                 SynthDrivers[0]->name + ", and " + path +
                                 " is a catalogue of the " + SynthDrivers[1]->name + "\n");
    EXPECT_EQ(fs::file_size(path), 152u + 32 * 440);
    ExpectFailure({"db", "add", bank, "--database", ""},
                  "--database: needs the name of a catalogue", 2);
}

TEST_F(CliDb, AddsAfterOneBackup) {
    const TestBytes former = TestCatalogue(Dx7, 2, 2);
    const std::string path = Write("Voices.syx_db", former);
    const std::string backup = Write("Voices.syx_db_backup", TestBytes(3));
    const std::string bank = home.Write("a.syx", TestBank());
    const std::string other = home.Write("b.syx", TestBank());
    ExpectOutput({"db", "add", bank, other}, bank + "\t32\t0\n" + other + "\t32\t0\n");
    EXPECT_EQ(ReadTestFile(backup), former);
    EXPECT_EQ(fs::file_size(path), 152u + 66 * 446);

    fs::remove(backup);
    fs::create_directory(backup); // of which none can be made
    const auto result = Cli({"db", "add", home.Write("c.syx", TestBank())});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_TRUE(Contains(result.errors, "error creating a backup"));
    EXPECT_TRUE(
        Contains(result.errors, home.File("c.syx") + ": not added to " + path + ", as answered\n"));
    EXPECT_EQ(fs::file_size(path), 152u + 66 * 446);
    EXPECT_EQ(Cli({"db", "add", home.File("c.syx"), "--yes"}).exitStatus, 0);
    EXPECT_EQ(fs::file_size(path), 152u + 98 * 446);
}

TEST_F(CliDb, AsksBeforeAnAddDeletesWhatIsNoCatalogue) {
    const std::string bank = home.Write("a.syx", TestBank());
    const std::string backup = Write("Voices.syx_db_backup", TestCatalogue(Dx7, 9, 9));
    const std::string next = home.Write("b.syx", TestBank());
    for (const TestBytes &file : {TestBytes(7), TestBytes()}) {
        const std::string path = Write("Voices.syx_db", file);
        auto result = Cli({"db", "add", bank, next});
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.errors,
                  "The file Voices.syx_db is no catalogue of the " +
                      std::string(SynthDrivers[0]->name) +
                      ", and adding a voice deletes it.\n\nDo you wish to add to a new one in its "
                      "place? [y/n] no\ntonewright-cli: " +
                      bank + ": not added to " + path + ", as answered\ntonewright-cli: " + next +
                      ": not added to " + path + " either\n");
        EXPECT_EQ(ReadTestFile(path), file);
        result = Cli({"db", "add", "--yes", bank});
        EXPECT_EQ(result.exitStatus, 0);
        EXPECT_EQ(result.output, bank + "\t32\t0\n");
        EXPECT_EQ(fs::file_size(path), 152u + 32 * 446);
        EXPECT_EQ(ReadTestFile(backup), TestCatalogue(Dx7, 9, 9)); // it may be all that is left
        EXPECT_EQ(Entries(Documents()),
                  (std::vector<std::string>{"Voices.syx_db", "Voices.syx_db_backup"}));
    }
}

TEST_F(CliDb, SaysOfACatalogueOfAnotherFamilyWhoseItIsAndKeepsItAsABackup) {
    const std::string dx7(SynthDrivers[0]->name), reface(SynthDrivers[1]->name);
    const std::string bank = home.Write("a.syx", TestBank());
    const TestBytes former = TestCatalogue(Reface, 2, 2);
    const std::string backup = Write("Voices.syx_db_backup", TestCatalogue(Dx7, 9, 9));
    const std::string path = Write("Voices.syx_db", former);
    const std::string question = "The file Voices.syx_db is a catalogue of the " + reface +
                                 ", and adding a voice of the " + dx7 + " deletes it.",
                      copied = " It is copied to Voices.syx_db_srx_db_backup first.",
                      end = "\n\nDo you wish to add to a new one in its place? [y/n] ";
    auto result = Cli({"db", "add", bank});
    EXPECT_EQ(result.errors, question + copied + end + "no\ntonewright-cli: " + bank +
                                 ": not added to " + path + ", as answered\n");
    EXPECT_EQ(ReadTestFile(path), former);
    EXPECT_FALSE(fs::exists(path + "_srx_db_backup"));
    result = Cli({"db", "add", bank, "--yes"});
    EXPECT_EQ(result.output, bank + "\t32\t0\n");
    EXPECT_EQ(ReadTestFile(path + "_srx_db_backup"), former);
    EXPECT_EQ(ReadTestFile(backup), TestCatalogue(Dx7, 9, 9));

    fs::remove(path + "_srx_db_backup");
    Write("Voices.syx_db", former);
    WriteSettings("CreateBackups = 0\n");
    result = Cli({"db", "add", bank, "--yes"});
    EXPECT_EQ(result.errors, question + end + "yes\n");
    EXPECT_FALSE(fs::exists(path + "_srx_db_backup"));

    TestBytes unknown = former;
    unknown[8] = '?';
    Write("Voices.syx_db", unknown);
    WriteSettings("");
    EXPECT_TRUE(Cli({"db", "add", bank, "--yes"})
                    .errors.starts_with("The file Voices.syx_db is a catalogue of an instrument "
                                        "that is not known, and adding a voice of the "));
    EXPECT_EQ(ReadTestFile(path + "_syx_db_backup"), unknown);
}

TEST_F(CliDb, AddsVoicesOfOneFamilyOnlyToAFileWhoseNameTellsNone) {
    const std::string path = home.File("mix");
    const std::string one = home.Write("a.syx", TestBank()),
                      two = home.Write("b.srx", TestRefaceBank()),
                      three = home.Write("c.syx", TestBank());
    const auto result = Cli({"db", "add", one, two, three, "--database", path, "--yes"});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, one + "\t32\t0\n" + three + "\t32\t0\n");
    EXPECT_EQ(result.errors, "tonewright-cli: " + two + ": not added: it is for the " +
                                 SynthDrivers[1]->name + ", and " + path +
                                 " is a catalogue of the " + SynthDrivers[0]->name + "\n");
    EXPECT_EQ(fs::file_size(path), 152u + 64 * 446);

    // Two names of one file.
    fs::remove(path);
    WriteSettings("DatabaseCurrentName = Both\n");
    fs::create_symlink("Both.syx_db", Catalogue("Both.srx_db"));
    EXPECT_EQ(Cli({"db", "add", one, two, three, "--yes"}).output,
              one + "\t32\t0\n" + three + "\t32\t0\n");
    EXPECT_EQ(fs::file_size(Catalogue("Both.syx_db")), 152u + 64 * 446);
}

TEST_F(CliDb, PrintsNoControlCharacterOfANameInAQuestion) {
    const std::string bank = home.Write("a.syx", TestBank());
    // An escape, a byte that is a control character by itself, and characters that hold such bytes.
    const std::string path = home.Write("a\x1B\x9C"
                                        "b\xC3\x9C\xE2\x82\x9C\xF0\x9F\x8E\xB9\xC2\x9C",
                                        TestBytes(7));
    const std::string shown = "a??b\xC3\x9C\xE2\x82\x9C\xF0\x9F\x8E\xB9?";
    const auto result = Cli({"db", "add", bank, "--database", path});
    EXPECT_TRUE(result.errors.starts_with("The file " + shown + " is no catalogue of the "))
        << result.errors;
    EXPECT_TRUE(result.errors.ends_with(shown + ", as answered\n")) << result.errors;
}

TEST_F(CliDb, AddsOfTheFamilyThatACatalogueOfAnyNameIsOf) {
    const std::string path = home.Write("mix", TestCatalogue(Reface, 1, 1));
    const std::string one = home.Write("a.syx", TestBank()),
                      two = home.Write("b.srx", TestRefaceBank());
    const auto result = Cli({"db", "add", one, two, "--database", path});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, two + "\t32\t0\n");
    EXPECT_EQ(fs::file_size(path), 152u + 33 * 440);
}

TEST_F(CliDb, KeepsTheBackupOfEachCatalogueUnderItsWholeName) {
    const std::string bank = home.Write("a.syx", TestBank());
    const TestBytes other = TestCatalogue(Dx7, 9, 9), former = TestCatalogue(Dx7, 1, 1);
    const std::string backup = home.Write("Voices.syx_db_backup", other);
    for (const std::string name : {"Voices", "Voices.old", "Voices.1", "Voices.syx_db_backup"}) {
        const std::string path = home.Write(name, former);
        ExpectOutput({"db", "add", bank, "--database", path}, bank + "\t32\t0\n");
        EXPECT_EQ(ReadTestFile(path + "_syx_db_backup"), former) << name;
        if (path != backup) {
            EXPECT_EQ(ReadTestFile(backup), other) << name;
        }
    }
    const std::string path = home.Write("v1.2.syx_db", former);
    ExpectOutput({"db", "add", bank, "--database", path}, bank + "\t32\t0\n");
    EXPECT_EQ(ReadTestFile(path + "_backup"), former);
}

TEST_F(CliDb, AsksBeforeAnAddWritesOverRecordsOrLeavesAHole) {
    const std::string bank = home.Write("a.syx", TestBank());
    for (const auto &[records, count] : {std::pair{4, 2}, {2, 3}, {3, 0}}) {
        const TestBytes file = TestCatalogue(Dx7, records, static_cast<std::uint32_t>(count));
        const std::string path = Write("Voices.syx_db", file);
        const auto result = Cli({"db", "add", bank});
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_TRUE(Contains(result.errors, "The catalogue Voices.syx_db counts " +
                                                std::to_string(count) + " records and holds " +
                                                std::to_string(records) +
                                                ". Adding a voice writes behind those that it "
                                                "counts, and the file as it is replaces its "
                                                "backup.\n"));
        EXPECT_EQ(ReadTestFile(path), file);
        EXPECT_FALSE(fs::exists(Catalogue("Voices.syx_db_backup")));
        EXPECT_EQ(Cli({"db", "add", "--yes", bank}).output, bank + "\t32\t0\n");
        EXPECT_EQ(Test32(ReadTestFile(path), 20), static_cast<std::uint32_t>(count) + 32);
        fs::remove(Catalogue("Voices.syx_db_backup"));
    }
    // What an add leaves that was broken off before it was counted.
    Write("Voices.syx_db", TestCatalogue(Dx7, 3, 2));
    ExpectOutput({"db", "add", bank}, bank + "\t32\t0\n");
    EXPECT_EQ(fs::file_size(Catalogue("Voices.syx_db")), 152u + 34 * 446);
    TestBytes file = TestCatalogue(Dx7, 3, 2);
    file.pop_back();
    Write("Voices.syx_db", file);
    ExpectOutput({"db", "add", bank}, bank + "\t32\t0\n");
}

TEST_F(CliDb, AsksBeforeAnAddFillsUpARecordThatIsCut) {
    const std::string bank = home.Write("a.syx", TestBank());
    TestBytes file = TestCatalogue(Dx7, 32, 32);
    file.pop_back();
    const std::string path = Write("Voices.syx_db", file);
    const std::string question = "The catalogue Voices.syx_db counts 32 records and holds 31 and a "
                                 "part of one. Adding a voice writes behind those that it counts";
    auto result = Cli({"db", "add", bank});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_TRUE(
        result.errors.starts_with(question + ", and the file as it is replaces its backup."))
        << result.errors;
    EXPECT_EQ(ReadTestFile(path), file);
    WriteSettings("CreateBackups = 0\n"); // there is none then
    result = Cli({"db", "add", bank, "--yes"});
    EXPECT_EQ(result.errors, question + ".\n\nDo you wish to add to it anyway? [y/n] yes\n");
    EXPECT_EQ(result.output, bank + "\t32\t0\n");
}

TEST_F(CliDb, RefusesToAddBehindACountWithoutRoomBehindIt) {
    const std::string bank = home.Write("a.syx", TestBank());
    // 4,814,986 records of 446 bytes begin below 2 GB.
    for (const std::uint32_t count : {0xFFFFFFFFu, 4814986u}) {
        const TestBytes file = TestCatalogue(Dx7, 2, count);
        const std::string path = Write("Voices.syx_db", file);
        ExpectFailure({"db", "add", bank, "--yes"},
                      bank + ": not added to " + path + ": it counts " + std::to_string(count) +
                          " records, and there is no room behind so many");
        EXPECT_EQ(ReadTestFile(path), file);
        EXPECT_FALSE(fs::exists(path + "_backup"));
    }
    const std::string path = Write("Voices.syx_db", TestCatalogue(Dx7, 2, 4814984));
    WriteSettings("CreateBackups = 0\n"); // of 2 GB
    const auto result = Cli({"db", "add", bank, bank, "--yes"});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, bank + "\t2\t0\n");
    EXPECT_TRUE(
        Contains(result.errors, "tonewright-cli: " + path + ": place 3 of " + bank +
                                    " was not added: there is no room behind 4814986 records\n"
                                    "tonewright-cli: " +
                                    bank + ": not added to " + path + " either\n"))
        << result.errors;
    EXPECT_TRUE(Contains(Cli({"db", "names"}).output, "\t4814986\t"));
}

TEST_F(CliDb, GoesOnWithTheNextFileBehindOneThatCannotBeAdded) {
    const std::string good = home.Write("good.syx", TestBank());
    const std::string cut = home.Write("cut.syx", TestBytes(9)),
                      text = home.WriteText("a.txt", "a");
    const std::string none = home.File("none.sy1");
    const auto result = Cli({"db", "add", cut, text, none, good});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, good + "\t32\t0\n");
    for (const std::string &file : {cut, text, none}) {
        EXPECT_TRUE(Contains(result.errors, "tonewright-cli: " + file + ": ")) << file;
    }
    fs::remove(Catalogue("Voices.syx_db"));
    EXPECT_EQ(Cli({"db", "add", cut}).exitStatus, 1);
    EXPECT_FALSE(fs::exists(Catalogue("Voices.syx_db")));
}

TEST_F(CliDb, AddsTheWholeVoicesOfACutBankAndTellsOfTheOthers) {
    TestBytes bank = TestRefaceBank();
    bank[160 + 6 * 202 + 16] = 'y'; // the family of voice 7
    const std::string in = home.Write("in.srx", bank);
    const auto result = Cli({"db", "add", in});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, in + "\t31\t0\n");
    EXPECT_EQ(result.errors,
              "tonewright-cli: " + in + ": not added: place 7 holds no whole voice\n");
    EXPECT_TRUE(
        Contains(Cli({"db", "list", "--synth", "reface"}).output, "\n7\tReface 08\tIn.srx\t"));
}

TEST_F(CliDb, AddsNothingWhereAFolderStands) {
    const std::string bank = home.Write("a.syx", TestBank());
    const std::string path = Catalogue("Voices.syx_db");
    fs::create_directory(path);
    const std::string reface = home.Write("b.srx", TestRefaceBank());
    const auto result = Cli({"db", "add", bank, reface, bank, "--yes"});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, reface + "\t32\t0\n");
    EXPECT_EQ(result.errors, "tonewright-cli: " + bank + ": not added to " + path +
                                 ": not readable: Is a directory\ntonewright-cli: " + bank +
                                 ": not added to " + path + " either\n");
    EXPECT_TRUE(fs::is_directory(path));
}

// ---- find

TEST_F(CliDb, FindsTextInNameOrSourceWhateverTheCaseOfItsLetters) {
    Write("Voices.syx_db", CatalogueOf(Dx7, {{"Grand", "a.syx", 0, 1},
                                             {"Bell", "GRANDS.syx", 1, 2},
                                             {"Gran", "d.syx", 2, 3},
                                             {"Caf\xC9 ?", "b.syx", 3, 4}}));
    const std::string one = "1\tGrand\ta.syx\t1\t1\n", two = "2\tBell\tGRANDS.syx\t2\t2\n",
                      three = "3\tGran\td.syx\t3\t3\n", four = "4\tCaf\xC3\x89 ?\tb.syx\t4\t4\n";
    ExpectOutput({"db", "find", "gRaNd"}, one + two);
    ExpectOutput({"db", "find", "gran"}, one + two + three);
    ExpectOutput({"db", "find", "D.SYX"}, three);
    ExpectOutput({"db", "find", "caf\xC3\xA9"}, four);
    ExpectOutput({"db", "find", "?"}, four);
    ExpectOutput({"db", "find", ""}, one + two + three + four);
    for (const std::string text : {"grande", "caf\xC3\xA9 \xE2\x82\xAC", "a.syx1"}) {
        ExpectFailure({"db", "find", text},
                      text + ": found in no name and no source of " + Catalogue("Voices.syx_db"));
    }
}

// ---- export

TEST_F(CliDb, ExportsARecordAsASingleVoiceOfItsFamily) {
    Write("Voices.syx_db", TestCatalogue(Dx7, 3, 3));
    Write("Voices.srx_db", TestCatalogue(Reface, 3, 3));
    const std::string dx7 = home.File("out.sy1"), reface = home.File("out.sr1");
    ExpectOutput({"db", "export", "2", dx7}, "");
    ExpectOutput({"list", dx7},
                 "1\tVOICE 02\t" + std::to_string(TestUnpackedVoice()[134] + 1) + "\n");
    ExpectOutput({"db", "export", "3", reface, "--synth", "reface"}, "");
    EXPECT_TRUE(Contains(Cli({"list", reface}).output, "1\tREFACE 03\t"));
    ExpectFailure({"db", "export", "2", reface},
                  reface + ": the extension of the file to write must be \"sy1\"", 2);
    ExpectFailure({"db", "export", "0", dx7}, "0: not a place: a number from 1 is", 2);
    ExpectFailure({"db", "export", "4", dx7},
                  Catalogue("Voices.syx_db") + ": there is no record 4 among its 3");
}

TEST_F(CliDb, ExportsNoRecordWithoutAWholeVoice) {
    TestBytes file = TestCatalogue(Dx7, 4, 4);
    file[152] = 'x';             // no record
    file[152 + 446 + 20] = 0xFF; // its voice would end behind it
    file[152 + 2 * 446 + 20] = 155;
    file[152 + 3 * 446 + 4] = 'x'; // of another family
    const std::string path = Write("Voices.syx_db", file);
    const std::string out = home.WriteText("out.sy1", "former");
    for (const std::string place : {"1", "2", "3", "4"}) {
        ExpectFailure({"db", "export", place, out}, path + ": record " + place +
                                                        " holds no whole voice of the " +
                                                        SynthDrivers[0]->name);
    }
    EXPECT_EQ(ReadTestText(out), "former");
}

// ---- insert

TEST_F(CliDb, InsertsARecordInThePlaceOfAVoiceOfABank) {
    Write("Voices.syx_db", TestCatalogue(Dx7, 8, 8));
    const std::string bank = home.Write("in.syx", TestBank()), out = home.File("out.syx");
    ExpectOutput({"db", "insert", bank, "3", "8", out}, "");
    const auto before = Cli({"list", bank}), after = Cli({"list", out});
    std::string expected = before.output;
    const auto at = expected.find("3\tVOICE 03\t3\n");
    ASSERT_NE(at, std::string::npos);
    expected.replace(at, std::string("3\tVOICE 03\t3\n").size(),
                     "3\tVOICE 08\t" + std::to_string(TestUnpackedVoice()[134] + 1) + "\n");
    EXPECT_EQ(after.output, expected);
    EXPECT_EQ(ReadTestFile(bank), TestBank());
    EXPECT_EQ(ReadTestFile(Catalogue("Voices.syx_db")), TestCatalogue(Dx7, 8, 8));
}

TEST_F(CliDb, InsertsFromTheCatalogueOfTheBanksFamily) {
    Write("Live.srx_db", TestCatalogue(Reface, 2, 2));
    Write("Live.syx_db", TestCatalogue(Dx7, 2, 2));
    WriteSettings("DatabaseCurrentName = Live\n");
    const std::string bank = home.Write("in.srx", TestRefaceBank()), out = home.File("out.srx");
    ExpectOutput({"db", "insert", bank, "32", "1", out}, "");
    EXPECT_TRUE(Contains(Cli({"list", out}).output, "\n32\tREFACE 01\t"));
    fs::remove(out);
    const std::string other = Catalogue("Live.syx_db");
    ExpectFailure({"db", "insert", bank, "1", "1", out, "--database", other},
                  bank + ": a bank of the " + std::string(SynthDrivers[1]->name) + ", and " +
                      other + " is a catalogue of the " + std::string(SynthDrivers[0]->name));
    EXPECT_FALSE(fs::exists(out));
}

TEST_F(CliDb, InsertsNothingWhereThereIsNoPlaceOrNoRecord) {
    const std::string path = Write("Voices.syx_db", TestCatalogue(Dx7, 2, 2));
    const std::string bank = home.Write("in.syx", TestBank());
    const std::string out = home.WriteText("out.syx", "former");
    ExpectFailure({"db", "insert", bank, "33", "1", out},
                  bank + ": there is no place 33 among its 32 voices");
    const std::string reface = home.Write("34.srx", TestRefaceBank(34));
    ExpectFailure({"db", "insert", reface, "33", "1", home.File("out.srx")},
                  reface + ": a bank has places 1 to 32, and no place 33");
    ExpectFailure({"db", "insert", bank, "1", "3", out},
                  path + ": there is no record 3 among its 2");
    ExpectFailure({"db", "insert", bank, "x", "1", out}, "x: not a place: a number from 1 is", 2);
    ExpectFailure({"db", "insert", bank, "1", "y", out}, "y: not a place: a number from 1 is", 2);
    ExpectFailure({"db", "insert", bank, "1", "1", home.File("out.srx")},
                  home.File("out.srx") + ": the extension of the file to write must be \"syx\"", 2);
    fs::remove(path);
    ExpectFailure({"db", "insert", bank, "1", "1", out},
                  path + ": not readable: No such file or directory");
    EXPECT_EQ(ReadTestText(out), "former");
}

// ---- check

TEST_F(CliDb, ChecksASoundCatalogue) {
    Write("Voices.syx_db", TestCatalogue(Dx7, 3, 3));
    ExpectOutput({"db", "check"}, "header\tok\ncount\t3\ngood\t3\n");
    Write("Voices.syx_db", TestCatalogue(Dx7, 0, 0));
    ExpectOutput({"db", "check"}, "header\tok\ncount\t0\ngood\t0\n");
}

TEST_F(CliDb, ChecksEachRecordAndSaysWhatIsBadAboutIt) {
    TestBytes file = TestCatalogue(Dx7, 9, 9);
    const auto record = [&](std::size_t number) { return &file[152 + (number - 1) * 446]; };
    record(2)[0] = 'x';
    record(3)[16] = 0x21; // the voice begins at 289
    record(4)[20] = 157;
    record(5)[24] = 1;
    record(6)[4] = 'x';
    std::fill_n(record(7) + 28, 65, 'n');
    std::fill_n(record(8) + 93, 65, 's');
    record(8)[4] = 'x';
    file.pop_back();
    const std::string path = Write("Voices.syx_db", file);
    const auto result = Cli({"db", "check"});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, "header\tok\n"
                             "2\tnot marked as a record\n"
                             "3\tthe voice has another place or size\n"
                             "4\tthe voice has another place or size\n"
                             "5\tthe voice has another place or size\n"
                             "6\tthe voice is one of another family\n"
                             "7\tname or source has no end\n"
                             "8\tthe voice is one of another family; name or source has no end\n"
                             "9\tcut after 445 of 446 bytes\n"
                             "count\t9\n"
                             "good\t1\n");
    EXPECT_EQ(result.errors, "tonewright-cli: " + path + ": damaged: 8 bad records\n");
    EXPECT_EQ(ReadTestFile(path), file);
}

TEST_F(CliDb, ChecksTheCountAgainstTheFile) {
    std::string path = Write("Voices.syx_db", TestCatalogue(Dx7, 3, 0xFFFFFFFF));
    auto result = Cli({"db", "check"});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, "header\tok\ncount\t4294967295\tthe file has 3\ngood\t3\n");
    EXPECT_EQ(result.errors,
              "tonewright-cli: " + path + ": damaged: 4294967292 counted records missing\n");

    TestBytes file = TestCatalogue(Dx7, 5, 2);
    file[152 + 4 * 446] = 'x';
    path = Write("Voices.syx_db", file);
    result = Cli({"db", "check"});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.output, "header\tok\ncount\t2\nbehind\t2\nfurther\t446\ngood\t2\n");
    EXPECT_EQ(result.errors,
              "tonewright-cli: " + path +
                  ": damaged: 2 whole records behind the count, 446 further bytes\n");

    file = TestCatalogue(Dx7, 2, 1);
    file.resize(152 + 446 + 1);
    path = Write("Voices.syx_db", file);
    result = Cli({"db", "check"});
    EXPECT_EQ(result.output, "header\tok\ncount\t1\nfurther\t1\ngood\t1\n");
    EXPECT_EQ(result.errors, "tonewright-cli: " + path + ": damaged: 1 further byte\n");
}

TEST_F(CliDb, ChecksTheHeader) {
    const auto expect = [&](const TestBytes &file, const std::string &reason) {
        const std::string path = Write("Voices.syx_db", file);
        const auto result = Cli({"db", "check"});
        EXPECT_EQ(result.exitStatus, 1);
        EXPECT_EQ(result.output, "header\t" + reason + "\n");
        EXPECT_EQ(result.errors, "tonewright-cli: " + path + ": " + reason + "\n");
    };
    TestBytes file = TestCatalogueHeader(Dx7, 0);
    file.pop_back();
    expect(file, "not a catalogue: it has 151 bytes, and the header alone has 152");
    file = TestCatalogueHeader(Dx7, 0);
    file[7] = 'x';
    expect(file, "not a catalogue: it begins with other bytes");
    const std::string dx7(SynthDrivers[0]->name);
    expect(TestCatalogueHeader(Reface, 0),
           "not a catalogue of the " + dx7 + ", but of the " + SynthDrivers[1]->name);
    file = TestCatalogueHeader(Dx7, 0);
    file[8] = 'x';
    expect(file, "not a catalogue of the " + dx7 + ", but of an instrument that is not known");
    fs::remove(Catalogue("Voices.syx_db"));
    fs::create_directory(Catalogue("Voices.syx_db"));
    const auto result = Cli({"db", "check"});
    EXPECT_EQ(result.output, "header\tnot readable: Is a directory\n");
}

// ---- all of them, as README shows them

TEST_F(CliDb, WalkFromAnEmptyHomeAsTheReadmeSays) {
    fs::remove_all(home.path / "Documents");
    fs::remove_all(home.path / ".config");
    const std::string readme = ReadTestText(SourceFile("README.md"));
    std::istringstream lines(readme.substr(readme.find("From an empty home")));
    std::string outputs;
    for (std::string line; std::getline(lines, line) && !Contains(line, "takes any number");) {
        if (!line.starts_with("tonewright-cli ")) {
            continue;
        }
        std::istringstream words(line.substr(0, line.find(" #")));
        std::vector<std::string> arguments;
        for (std::string word; words >> word;) {
            const bool isExample = word.starts_with("examples/");
            const bool isFile = word.find('.') != std::string::npos;
            arguments.push_back(isExample ? SourceFile(word) : isFile ? home.File(word) : word);
        }
        arguments.erase(arguments.begin());
        const auto result = Cli(arguments);
        EXPECT_EQ(result.exitStatus, 0) << line;
        EXPECT_EQ(result.errors, "") << line;
        outputs += result.output;
    }
    const std::string example = SourceFile("examples/tonewright.syx");
    EXPECT_TRUE(outputs.starts_with(example + "\t32\t0\nVoices\t")) << outputs;
    EXPECT_TRUE(Contains(outputs, "\n28\tTower bell\tTonewright.syx\t"));
    EXPECT_TRUE(Contains(outputs, "\nheader\tok\ncount\t32\ngood\t32\n"));
    EXPECT_TRUE(outputs.ends_with("\n" + example + "\t0\t32\n"));
    EXPECT_TRUE(Contains(Cli({"list", home.File("bell.sy1")}).output, "1\tTOWER BELL\t"));
    EXPECT_TRUE(Contains(Cli({"list", home.File("out.syx")}).output, "1\tTOWER BELL\t"));
}

} // namespace
} // namespace tonewright
