// The catalogue window without its window: what each of its commands does, asks and changes.
#include "database/database_window.h"

#include "common/file_time.h"
#include "database/database_undo.h"
#include "local_time.h"
#include "support/scripted_desktop.h"
#include "support/time_zone.h"
#include "test_catalogue.h"

#include <ctime>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

// The launcher, with a box that chooses a voice at once.
class DatabaseLauncher : public CatalogueTest {
protected:
    ScriptedDesktop desktop;
    VoiceList list;
    int repaints = 0;
    VoiceObject chosen = TestVoiceOf(GetParam(), 7);

    DatabaseLauncher() {
        for (int row = 0; row < 34; ++row) {
            ListAdd(list);
        }
        TheDatabaseViews.RepaintVoices = [this] { ++repaints; };
    }
    int Run(int target, int result) {
        TheDatabaseViews.ShowBox = [this, result](QWidget *, DatabaseWindow &state) {
            EXPECT_EQ(state.driverIndex, RowIndex());
            EXPECT_EQ(state.changed, 0u);
            EXPECT_TRUE(state.chosen.bytes.empty());
            state.chosen = chosen;
            return result;
        };
        return RunDatabaseWindow(nullptr, list, target, RowIndex());
    }
    int RowIndex() const { return DriverIndexOfId(row.id); }
    bool IsPlaced(int row) const {
        return ListVoice(list, row) && *ListVoice(list, row) == TestVoiceOf(GetParam(), 7);
    }
    void ExpectNothingPlaced() {
        for (int row = 0; row < ListCount(list); ++row) {
            EXPECT_EQ(ListVoice(list, row), nullptr) << row;
        }
        EXPECT_EQ(repaints, 0);
        EXPECT_TRUE(desktop.sounds.empty());
    }
};

TEST_P(DatabaseLauncher, PutsTheChosenVoiceIntoTheTargetRow) {
    for (const int row : {0, 31}) {
        EXPECT_EQ(Run(row, 1), 1);
        EXPECT_TRUE(IsPlaced(row));
    }
    EXPECT_EQ(repaints, 2);
    EXPECT_EQ(desktop.sounds.size(), 2u);
}

TEST_P(DatabaseLauncher, PlacesNothingWithoutATargetRowOfABank) {
    EXPECT_EQ(Run(NoRow, 1), 1);
    EXPECT_EQ(Run(32, 1), 1);
    ExpectNothingPlaced();
}

TEST_P(DatabaseLauncher, PlacesNothingAfterCancel) {
    EXPECT_EQ(Run(3, 0), 0);
    ExpectNothingPlaced();
}

TEST_P(DatabaseLauncher, PlacesNothingWhenNoVoiceWasChosen) {
    chosen = {};
    EXPECT_EQ(Run(3, 1), 1);
    ExpectNothingPlaced();
}

TEST_P(DatabaseLauncher, IsCancelledWhereThereIsNoBox) {
    EXPECT_EQ(RunDatabaseWindow(nullptr, list, 3, RowIndex()), 0);
    ExpectNothingPlaced();
}

INSTANTIATE_TEST_SUITE_P(Families, DatabaseLauncher, testing::ValuesIn(TestFamilies), LabelOf);

using Names = std::vector<std::string>;

std::vector<std::string> NamesOf(const RecordList &list) {
    std::vector<std::string> names;
    for (const DatabaseRecord &record : list.items) {
        names.emplace_back(RecordFields(record)->name);
    }
    return names;
}

const char *const StoreFailure = "There has been an error updating the current database.";
const char *const LoseChanges =
    "Do you want to lose the changes you've made to this database?\n\nClick on Yes to abandon your "
    "changes, or click on No to return to the Database window.";

// An open window over catalogues of the family, by default "Voices" with three records and "Brass"
// with two.
class WindowOfDatabases : public CatalogueTest {
protected:
    ScriptedDesktop desktop;
    DatabaseWindow state;
    int namesShown = 0;

    WindowOfDatabases() {
        state.driverIndex = DriverIndexOfId(row.id);
        state.namesChanged = [this] { ++namesShown; };
        Write("Voices",
              {{"charlie", "Moon", 31, 7}, {"Alpha", "zoo", 5, 9}, {"Bravo", "Zoo", 0, 8}});
        Write("Brass", {{"Horn", "b.syx", 1, 2}, {"Tuba", "b.syx", 2, 1}});
    }

    std::string PathOf(const std::string &name) const {
        return folder.File("My Tonewright 17 Documents/" + name + "." + family.extension);
    }
    std::string BackupOf(const std::string &name) const {
        return folder.File("My Tonewright 17 Documents/" + name + family.backupExtension);
    }
    void Write(const std::string &name, const std::vector<TestEntry> &entries) const {
        TestBytes file = TestCatalogueHeader(family, static_cast<std::uint32_t>(entries.size()));
        int number = 0;
        for (const TestEntry &entry : entries) {
            const TestBytes record = TestRecord(family, number++, entry);
            file.insert(file.end(), record.begin(), record.end());
        }
        WriteTestFile(PathOf(name), file);
    }
    // The names of the records in a catalogue's file, which must be whole.
    Names InFile(const std::string &name) const {
        const TestBytes bytes = ReadTestFile(PathOf(name));
        const std::uint32_t count = Test32(bytes, 20);
        EXPECT_EQ(bytes.size(), 152 + count * family.recordSize);
        Names names;
        for (std::size_t at = 152; at < bytes.size(); at += family.recordSize) {
            names.emplace_back(TestTextAt(bytes, at + 28, 64).c_str());
        }
        return names;
    }
    void Open() { OpenDatabaseWindow(state, nullptr); }
    void Select(int index) { ListSelect(state.records, index); }
    // Edits the name of the selected record, with all that a held button does.
    void Rename(const std::string &name) {
        AcceptRecordText(state, state.records.selection, RecordField::Name, name);
        EndRecordGesture(state);
    }
    void Choose(const std::string &name) {
        state.shownName = name;
        ShowChosenDatabase(state);
    }
    void AnswerNewName(std::optional<std::string> name) {
        TheDatabaseViews.AskForNewName = [name](QWidget *, const Names &existing,
                                                const std::string &start) {
            EXPECT_EQ(existing, (Names{"Brass", "Voices"}));
            EXPECT_EQ(start, "Voices");
            return name;
        };
    }
    void ExpectCopyQuestion(const std::string &from, const std::string &to, int answer) {
        desktop.ExpectYesNoCancel("Do you want to copy the contents of your existing database, " +
                                      from + ", to your new database, " + to + "?",
                                  answer);
    }
};

// ---- opening

TEST_P(WindowOfDatabases, OpensTheCurrentDatabaseSortedWithItsFirstRecordSelected) {
    Open();
    EXPECT_EQ(NamesOf(state.records), (Names{"Alpha", "Bravo", "charlie"}));
    EXPECT_EQ(state.records.selection, 0);
    EXPECT_EQ(state.names, (Names{"Brass", "Voices"}));
    EXPECT_EQ(state.shownName, "Voices");
    EXPECT_EQ(state.changed, 0u);
    EXPECT_EQ(namesShown, 1);
    EXPECT_GT(desktop.waitsBegun, 0);
}

TEST_P(WindowOfDatabases, MakesADatabaseThatIsMissing) {
    DatabaseCurrentName = "Strings";
    Open();
    EXPECT_EQ(InFile("Strings"), Names());
    EXPECT_EQ(ListCount(state.records), 0);
    EXPECT_EQ(state.shownName, "Strings");
    EXPECT_EQ(state.names, (Names{"Brass", "Strings", "Voices"}));
}

TEST_P(WindowOfDatabases, ShowsNoNameWhenTheFileCannotBeMade) {
    DatabaseCurrentName = "no such folder/Strings";
    Open();
    EXPECT_EQ(state.shownName, "");
    EXPECT_EQ(state.names, (Names{"Brass", "Voices"}));
    EXPECT_EQ(ListCount(state.records), 0);
}

TEST_P(WindowOfDatabases, IsEmptyOverAForeignFile) {
    WriteTestText(PathOf("Voices"), "This is no catalogue.");
    Open();
    EXPECT_EQ(ListCount(state.records), 0);
    EXPECT_EQ(ReadTestText(PathOf("Voices")), "This is no catalogue.");
}

TEST_P(WindowOfDatabases, TakesALowSortModeForTheName) {
    for (const std::uint32_t mode : {0u, 106u, 0x80000000u, 0xFFFFFFFFu}) {
        DatabaseSortMode = mode;
        Open();
        EXPECT_EQ(DatabaseSortMode, 107u) << mode;
        EXPECT_EQ(NamesOf(state.records), (Names{"Alpha", "Bravo", "charlie"}));
    }
}

TEST_P(WindowOfDatabases, LeavesAHighSortModeAndSortsByName) {
    DatabaseSortMode = 111;
    Open();
    EXPECT_EQ(DatabaseSortMode, 111u);
    EXPECT_EQ(NamesOf(state.records), (Names{"Alpha", "Bravo", "charlie"}));
    for (const DatabaseMenuRow &row : DatabaseMenu(state, 0)) {
        EXPECT_FALSE(row.checked) << row.text;
    }
}

TEST_P(WindowOfDatabases, SaysWhenThereIsNoUndo) {
    MaxUndoLevel = 0;
    desktop.ExpectMessage("There has been an error initializing the Undo function.\n\nUndo will be "
                          "unavailable for this session of the Tonewright database.");
    Open();
    EXPECT_FALSE(DatabaseMenu(state, 0)[9].enabled);
    desktop.ExpectMessage("No undo level could be created.");
    Rename("Zulu");
    EXPECT_EQ(NamesOf(state.records), (Names{"Bravo", "charlie", "Zulu"}));
    EXPECT_FALSE(DatabaseMenu(state, 0)[9].enabled);
}

// ---- sorting

TEST_P(WindowOfDatabases, SortsWithoutCountingItAsAChange) {
    Open();
    Select(2); // charlie
    RunDatabaseCommand(state, 110);
    EXPECT_EQ(DatabaseSortMode, 110u);
    EXPECT_EQ(NamesOf(state.records), (Names{"Bravo", "Alpha", "charlie"}));
    RunDatabaseCommand(state, 109);
    EXPECT_EQ(NamesOf(state.records), (Names{"charlie", "Bravo", "Alpha"}));
    EXPECT_EQ(state.records.selection, 0);
    RunDatabaseCommand(state, 108);
    EXPECT_EQ(NamesOf(state.records), (Names{"charlie", "Alpha", "Bravo"}));
    RunDatabaseCommand(state, 107);
    EXPECT_EQ(NamesOf(state.records), (Names{"Alpha", "Bravo", "charlie"}));
    EXPECT_EQ(state.records.selection, 2);
    EXPECT_EQ(state.changed, 0u);
    EXPECT_TRUE(desktop.sounds.empty());
}

TEST_P(WindowOfDatabases, SortingByPositionShowsPositionZeroAsOneAtTheTop) {
    Open();
    RunDatabaseCommand(state, 110);
    std::vector<std::pair<std::string, std::string>> shown;
    for (const DatabaseRecord &record : state.records.items) {
        shown.emplace_back(TextsOfRecord(record)[0], TextsOfRecord(record)[3]);
    }
    EXPECT_EQ(shown, (std::vector<std::pair<std::string, std::string>>{
                         {"Bravo", "1"}, {"Alpha", "6"}, {"charlie", "32"}}));
    EXPECT_EQ(RecordFields(state.records.items[0])->position, 0u);
}

// ---- the menu

TEST_P(WindowOfDatabases, HasAMenuOfTwelveRows) {
    Open();
    const auto menu = DatabaseMenu(state, 2);
    Names texts;
    std::vector<int> commands;
    for (const DatabaseMenuRow &row : menu) {
        texts.push_back(row.text);
        commands.push_back(row.command);
        EXPECT_EQ(row.checked, row.command == 107);
        EXPECT_EQ(row.enabled, row.command != 113);
    }
    EXPECT_EQ(texts, (Names{"Audition charlie", "Remove charlie from this database",
                            "Select charlie", "", "Sort by name", "Sort by source", "Sort by date",
                            "Sort by position", "", "Undo", "", "Print the Voices database"}));
    EXPECT_EQ(commands, (std::vector<int>{105, 106, 1, 0, 107, 108, 109, 110, 0, 113, 0, 114}));
}

TEST_P(WindowOfDatabases, ChecksTheOrderInTheMenu) {
    Open();
    for (const int command : {108, 109, 110, 107}) {
        RunDatabaseCommand(state, command);
        for (const DatabaseMenuRow &row : DatabaseMenu(state, 0)) {
            EXPECT_EQ(row.checked, row.command == command) << row.text;
        }
    }
}

TEST_P(WindowOfDatabases, NamesAnUnreadableRecordInTheMenu) {
    Open();
    RecordListPut(state.records, 0, {TestBytes(family.recordSize, 1)});
    EXPECT_EQ(DatabaseMenu(state, 0)[0].text, "Audition unknown voice");
    EXPECT_EQ(DatabaseMenu(state, 0)[2].text, "Select unknown voice");
}

TEST_P(WindowOfDatabases, ShowsNamesInTheMenuAsLatin1) {
    Write("Voices", {{"Fl\xFCgel & Co", "", 0, 0}});
    Open();
    EXPECT_EQ(DatabaseMenu(state, 0)[0].text, "Audition Flügel & Co");
}

// ---- commands about a record

TEST_P(WindowOfDatabases, AuditionsTheSelectedRecord) {
    std::vector<VoiceObject> heard;
    TheDatabaseViews.Audition = [&heard](QWidget *, const VoiceObject &voice) {
        heard.push_back(voice);
    };
    Open();
    Select(2); // voice 0
    RunDatabaseCommand(state, 105);
    EXPECT_EQ(heard, (std::vector{TestVoiceOf(family, 0)}));
    Select(NoRow);
    RunDatabaseCommand(state, 105);
    EXPECT_EQ(heard.size(), 1u);
    TestBytes bad = TestRecord(family, 0, {"a", "b"});
    bad[23] = 1; // its first size
    RecordListPut(state.records, 0, {bad});
    Select(0);
    RunDatabaseCommand(state, 105);
    EXPECT_EQ(heard.size(), 1u);
    EXPECT_TRUE(desktop.sounds.empty());
}

TEST_P(WindowOfDatabases, RemovesTheSelectedRecordAndSelectsTheNext) {
    Open();
    Select(1);
    RunDatabaseCommand(state, 106);
    EXPECT_EQ(NamesOf(state.records), (Names{"Alpha", "charlie"}));
    EXPECT_EQ(state.records.selection, 1);
    EXPECT_EQ(state.changed, 1u);
    EXPECT_EQ(desktop.sounds.size(), 1u);
    RunDatabaseCommand(state, 106);
    EXPECT_EQ(NamesOf(state.records), (Names{"Alpha"}));
    EXPECT_EQ(state.records.selection, 0);
    // The last one stays, without a word, and without a level of undo.
    RunDatabaseCommand(state, 106);
    EXPECT_EQ(NamesOf(state.records), (Names{"Alpha"}));
    EXPECT_EQ(desktop.sounds.size(), 2u);
    RunDatabaseCommand(state, 113);
    RunDatabaseCommand(state, 113);
    EXPECT_EQ(NamesOf(state.records), (Names{"Alpha", "Bravo", "charlie"}));
    EXPECT_FALSE(DatabaseUndoAvailable());
}

TEST_P(WindowOfDatabases, AListWithOneRecordDeleteDoesNothingAndSaysNothing) {
    Write("Voices", {{"Alpha", "zoo", 5, 9}});
    Open();
    EXPECT_EQ(state.records.selection, 0);
    RunDatabaseCommand(state, 106);
    EXPECT_EQ(NamesOf(state.records), Names{"Alpha"});
    EXPECT_EQ(state.records.selection, 0);
    EXPECT_EQ(state.changed, 0u);
    EXPECT_FALSE(DatabaseUndoAvailable());
    EXPECT_TRUE(desktop.messages.empty());
    EXPECT_TRUE(desktop.sounds.empty());
    EXPECT_EQ(desktop.beeps, 0);
}

TEST_P(WindowOfDatabases, RemovesNothingWithoutASelection) {
    Open();
    Select(NoRow);
    RunDatabaseCommand(state, 106);
    EXPECT_EQ(ListCount(state.records), 3);
    EXPECT_EQ(state.changed, 0u);
    EXPECT_FALSE(DatabaseUndoAvailable());
    EXPECT_TRUE(desktop.sounds.empty());
}

TEST_P(WindowOfDatabases, UndoesWithASoundAndGivesBackWhetherItWasChanged) {
    Open();
    Select(1);
    Rename("Zulu");
    EXPECT_EQ(NamesOf(state.records), (Names{"Alpha", "charlie", "Zulu"}));
    EXPECT_EQ(state.records.selection, 2);
    EXPECT_EQ(state.changed, 1u);
    EXPECT_TRUE(DatabaseMenu(state, 0)[9].enabled);
    RunDatabaseCommand(state, 113);
    EXPECT_EQ(NamesOf(state.records), (Names{"Alpha", "Bravo", "charlie"}));
    EXPECT_EQ(state.records.selection, 1);
    EXPECT_EQ(state.changed, 0u);
    EXPECT_EQ(desktop.sounds.size(), 2u);
    EXPECT_TRUE(CancelDatabaseWindow(state)); // without a question
    EXPECT_FALSE(DatabaseMenu(state, 0)[9].enabled);
}

TEST_P(WindowOfDatabases, HoldsAsManyLevelsAsTheSettingsSayAtTheOpening) {
    MaxUndoLevel = 3;
    Open();
    for (const char *name : {"a1", "a2", "a3", "a4"}) {
        Select(0);
        Rename(name);
    }
    for (const char *name : {"a3", "a2", "a1"}) {
        EXPECT_TRUE(DatabaseMenu(state, 0)[9].enabled);
        RunDatabaseCommand(state, 113);
        EXPECT_EQ(NamesOf(state.records)[0], name);
    }
    EXPECT_EQ(DatabaseMenu(state, 0)[9].text, "Undo");
    EXPECT_FALSE(DatabaseMenu(state, 0)[9].enabled);
    desktop.ExpectMessage("No undo level is available.");
    RunDatabaseCommand(state, 113);
    EXPECT_EQ(NamesOf(state.records)[0], "a1");
}

TEST_P(WindowOfDatabases, ComesBackByNameFromAnUndoSortedByDate) {
    Open();
    RunDatabaseCommand(state, 109);
    Select(0);                                                        // charlie
    AcceptRecordDate(state, state.records.selection, 4'000'000'000u); // now the last one
    EndRecordGesture(state);
    EXPECT_EQ(NamesOf(state.records), (Names{"Bravo", "Alpha", "charlie"}));
    EXPECT_EQ(state.records.selection, 2);
    RunDatabaseCommand(state, 113);
    EXPECT_EQ(DatabaseSortMode, 107u);
    EXPECT_EQ(NamesOf(state.records), (Names{"Alpha", "Bravo", "charlie"}));
    EXPECT_EQ(state.records.selection, 0);
}

TEST_P(WindowOfDatabases, PrintsUnderTheShownNameAndTheFamily) {
    std::string printed;
    int records = 0;
    TheDatabaseViews.Print = [&](QWidget *, const RecordList &list, const std::string &heading) {
        printed = heading;
        records = ListCount(list);
        return 1;
    };
    Open();
    RunDatabaseCommand(state, 114);
    EXPECT_EQ(printed, std::string("Voices for ") + row.name);
    EXPECT_EQ(records, 3);
    state.shownName = "Brass"; // by an arrow key
    RunDatabaseCommand(state, 114);
    EXPECT_EQ(printed, std::string("Brass for ") + row.name);
}

TEST_P(WindowOfDatabases, DoesWithoutWhatNobodyHasFilledIn) {
    Open();
    for (const int command : {103, 105, 114, 0, 112, 115}) {
        RunDatabaseCommand(state, command);
    }
    EXPECT_EQ(state.changed, 0u);
    EXPECT_TRUE(desktop.sounds.empty());
}

TEST_P(WindowOfDatabases, DoesWithoutCatalogues) {
    Open();
    state.driverIndex = -1; // as a family that has none
    TheDatabaseViews.AskForNewName = [](QWidget *, const Names &existing, const std::string &) {
        EXPECT_EQ(existing, Names());
        return std::optional<std::string>("Strings");
    };
    ExpectCopyQuestion("Voices", "Strings", ResultYes);
    RunDatabaseCommand(state, 103);
    desktop.ExpectMessage(StoreFailure);
    EXPECT_EQ(AcceptDatabaseWindow(state), 1);
    state.shownName = "Brass";
    desktop.ExpectYesNo("Do you really want to delete the Brass database?", ResultYes);
    RunDatabaseCommand(state, 104);
    EXPECT_TRUE(desktop.trashed.empty());
}

// ---- rows

TEST_P(WindowOfDatabases, ShowsTheFourTextsOfARecord) {
    // Half past twelve in the afternoon, with the label of the morning.
    std::tm local = {};
    local.tm_year = 2026 - 1900;
    local.tm_mon = 10;
    local.tm_mday = 14;
    local.tm_hour = 12;
    local.tm_min = 30;
    local.tm_isdst = -1;
    const auto date = static_cast<std::uint32_t>(std::mktime(&local));
    const DatabaseRecord record = {TestRecord(family, 0, {"Fl\xFCgel", "b\xE4nk.syx", 0, date})};
    EXPECT_EQ(TextsOfRecord(record),
              (RecordTexts{"Flügel", "bänk.syx", "Sat Nov 14 12:30:00 AM 2026", "1"}));
    EXPECT_EQ(RecordTip(record), "NAME: Flügel\r\nSOURCE: bänk.syx\r\nFILE DATE: Sat Nov 14 "
                                 "12:30:00 AM 2026\r\nPOSITION: 1");
    EXPECT_EQ(RecordInWords(record), "Flügel, bänk.syx, Sat Nov 14 12:30:00 AM 2026, position 1");
}

TEST_P(WindowOfDatabases, ADateOfZeroShowsTheLocalTimeOfTheEpoch) {
    const DatabaseRecord record = {TestRecord(family, 0, {"", "", 0, 0})};
    {
        const TimeZone zone(ZoneOfBerlin);
        EXPECT_EQ(TextsOfRecord(record)[2], "Thu Jan 1 1:00:00 AM 1970");
    }
    const TimeZone zone(ZoneOfNewYork);
    EXPECT_EQ(TextsOfRecord(record)[2], "Wed Dec 31 7:00:00 PM 1969");
}

TEST_P(WindowOfDatabases, HalfPastTwelveInTheAfternoonShows12And30AndAm) {
    const auto shown = [this](int hour) {
        const std::int64_t date = LocalTime(2026, 11, 14, hour, 30, 0);
        return TextsOfRecord(
            {TestRecord(family, 0, {"", "", 0, static_cast<std::uint32_t>(date)})})[2];
    };
    EXPECT_EQ(shown(12), "Sat Nov 14 12:30:00 AM 2026");
    EXPECT_EQ(shown(0), "Sat Nov 14 12:30:00 AM 2026");
    EXPECT_EQ(shown(13), "Sat Nov 14 1:30:00 PM 2026");
}

TEST_P(WindowOfDatabases, ShowsDatesWithoutASignAndPositionsWithOne) {
    const auto texts = [this](std::uint32_t date, std::uint32_t position) {
        return TextsOfRecord({TestRecord(family, 0, {"", "", position, date})});
    };
    EXPECT_EQ(texts(0, 31)[2], FormatTime(0, 0));
    EXPECT_EQ(texts(0xFFFFFFFF, 0)[2], FormatTime(4'294'967'295, 0));
    EXPECT_EQ(texts(0, 31)[3], "32");
    EXPECT_EQ(texts(0, 0xFFFFFFFF)[3], "0");
    EXPECT_EQ(texts(0, 0xFFFFFFFE)[3], "-1");
}

TEST_P(WindowOfDatabases, ShowsNothingOfWhatIsNoRecord) {
    const DatabaseRecord none = {TestBytes(family.recordSize, 1)};
    EXPECT_EQ(TextsOfRecord(none), (RecordTexts{}));
    EXPECT_EQ(RecordTip(none), "");
    EXPECT_EQ(RecordInWords(none), "");
}

TEST(DatabaseTimers, RunAtLeastTenMilliseconds) {
    EXPECT_EQ(TimerMilliseconds(0), 10);
    EXPECT_EQ(TimerMilliseconds(9), 10);
    EXPECT_EQ(TimerMilliseconds(10), 10);
    EXPECT_EQ(TimerMilliseconds(11), 11);
    EXPECT_EQ(TimerMilliseconds(600), 600);
    EXPECT_EQ(TimerMilliseconds(0x7FFFFFFF), 0x7FFFFFFF);
    EXPECT_EQ(TimerMilliseconds(0x80000000), 0x7FFFFFFF);
    EXPECT_EQ(TimerMilliseconds(0xFFFFFFFF), 0x7FFFFFFF);
}

// ---- editing

TEST(DatabaseColumns, StandBesideEachOtherAndAreNotCutByARow) {
    const struct {
        const char *title;
        std::uint32_t sort;
        int left, right;
        bool atTheRight;
    } columns[] = {{"Name", 107, 6, 166, false},
                   {"Source", 108, 172, 332, false},
                   {"Time and Date", 109, 338, 488, false},
                   {"Position", 110, 494, 530, true}};
    ASSERT_EQ(RecordColumns.size(), std::size(columns));
    for (std::size_t i = 0; i < std::size(columns); ++i) {
        EXPECT_STREQ(RecordColumns[i].title, columns[i].title);
        EXPECT_EQ(RecordColumns[i].sort, columns[i].sort);
        EXPECT_EQ(RecordColumns[i].left, columns[i].left);
        EXPECT_EQ(RecordColumns[i].right, columns[i].right);
        EXPECT_EQ(RecordColumns[i].atTheRight, columns[i].atTheRight);
        EXPECT_LE(RecordColumns[i].hitRight, RecordRowWidth);
    }
}

TEST_P(WindowOfDatabases, HitsFourFieldsOfTheSelectedRow) {
    Open();
    state.records.itemHeight = 20;
    Select(1);
    const auto at = [this](int x, int y = 30) {
        return FieldUnder(state.records, {.x = x, .y = y}, 560, 200);
    };
    const struct {
        int left, right;
        RecordField field;
    } boxes[] = {{6, 166, RecordField::Name},
                 {172, 332, RecordField::Source},
                 {338, 488, RecordField::Date},
                 {494, 542, RecordField::Position}};
    for (const auto &box : boxes) {
        EXPECT_EQ(at(box.left - 1), RecordField::None);
        EXPECT_EQ(at(box.left), box.field);
        EXPECT_EQ(at(box.right - 1), box.field);
        EXPECT_EQ(at(box.right), RecordField::None);
    }
    EXPECT_EQ(at(10, 19), RecordField::None); // the row above
    EXPECT_EQ(at(10, 20), RecordField::Name);
    EXPECT_EQ(at(10, 39), RecordField::Name);
    EXPECT_EQ(at(10, 40), RecordField::None);
    EXPECT_EQ(at(10, 100), RecordField::None);
    Select(NoRow);
    EXPECT_EQ(at(10), RecordField::None);
}

TEST_P(WindowOfDatabases, StoresAnEditedTextFilledUpWithZero) {
    Open();
    Select(2); // charlie of Moon
    AcceptRecordText(state, state.records.selection, RecordField::Name, "Fl\xFCgel");
    AcceptRecordText(state, state.records.selection, RecordField::Source, "");
    TestBytes expected = TestRecord(family, 0, {"Fl\xFCgel", "", 31, 7});
    EXPECT_EQ(state.records.items[2].bytes, expected);
    AcceptRecordText(state, state.records.selection, RecordField::Source, std::string(70, 'x'));
    expected = TestRecord(family, 0, {"Fl\xFCgel", std::string(64, 'x'), 31, 7});
    EXPECT_EQ(state.records.items[2].bytes, expected);
    EXPECT_TRUE(DatabaseUndoAvailable());
    EXPECT_TRUE(desktop.sounds.empty());
}

TEST_P(WindowOfDatabases, StoresDateAndPositionAndLeavesTheFirstDate) {
    Open();
    Select(2);
    AcceptRecordDate(state, state.records.selection, 0x80000001);
    AcceptRecordPosition(state, state.records.selection, 30);
    TestBytes expected = TestRecord(family, 0, {"charlie", "Moon", 30, 7});
    expected[8] = 1;
    expected[11] = 0x80;
    EXPECT_EQ(state.records.items[2].bytes, expected);
}

TEST_P(WindowOfDatabases, ChangesNothingWithoutAChosenPosition) {
    Open();
    AcceptRecordPosition(state, state.records.selection, -1);
    EXPECT_FALSE(DatabaseUndoAvailable());
    EXPECT_EQ(state.changed, 0u);
    EndRecordGesture(state);
    EXPECT_EQ(state.changed, 1u);
}

TEST_P(WindowOfDatabases, ChoosesAmongThePositionsOfABank) {
    Open();
    EXPECT_EQ(PositionsToChoose(state), 32);
}

TEST_P(WindowOfDatabases, PushesALevelForAnEditThatChangesNothing) {
    Open();
    Rename("Alpha");
    EXPECT_TRUE(DatabaseUndoAvailable());
    EXPECT_EQ(state.changed, 1u);
}

TEST_P(WindowOfDatabases, EndsAGestureSortedChangedAndWithASound) {
    Open();
    EndRecordGesture(state);
    EXPECT_EQ(state.changed, 1u);
    EXPECT_EQ(desktop.sounds.size(), 1u);
    EXPECT_FALSE(DatabaseUndoAvailable());
    EXPECT_EQ(state.records.selection, 0);
    desktop.Expect({.text = LoseChanges, .buttons = {"Yes", "No"}, .answer = ResultYes});
    EXPECT_TRUE(CancelDatabaseWindow(state));
}

TEST_P(WindowOfDatabases, SelectsTheFirstOfTwoRecordsThatAreEqual) {
    Write("Voices", {{"Same", "s", 1, 1}, {"Same", "s", 1, 1}, {"Same", "S", 1, 1}});
    Open();
    Select(1);
    EndRecordGesture(state);
    EXPECT_EQ(state.records.selection, 0);
    Select(2); // another one: its source has another case
    EndRecordGesture(state);
    EXPECT_EQ(state.records.selection, 2);
}

TEST_P(WindowOfDatabases, GoesOnWithAnEditWithoutALevelOfUndo) {
    Open();
    TestBytes bad = TestRecord(family, 0, {"Alpha", "zoo", 5, 9});
    bad[23] = 1; // its first size
    RecordListPut(state.records, 0, {bad});
    desktop.ExpectMessage("There has been an error building this undo level.");
    Rename("Beta");
    EXPECT_EQ(NamesOf(state.records), (Names{"Beta", "Bravo", "charlie"}));
    EXPECT_EQ(state.changed, 1u);
    EXPECT_FALSE(DatabaseUndoAvailable());
}

TEST_P(WindowOfDatabases, GoesOnWithAnEditOfAnUnreadableRecord) {
    Open();
    const TestBytes bad(family.recordSize, 1);
    RecordListPut(state.records, 1, {bad});
    Select(1);
    AcceptRecordText(state, state.records.selection, RecordField::Name, "x");
    EXPECT_EQ(state.records.items[1].bytes, bad);
}

// ---- the databases

TEST_P(WindowOfDatabases, ShowsAnotherDatabaseAndDropsTheEditsUnasked) {
    Open();
    Rename("Zulu");
    Choose("Brass");
    EXPECT_EQ(DatabaseCurrentName, "Brass");
    EXPECT_EQ(NamesOf(state.records), (Names{"Horn", "Tuba"}));
    EXPECT_EQ(state.records.selection, 0);
    EXPECT_EQ(desktop.sounds.size(), 2u);
    EXPECT_EQ(InFile("Voices"), (Names{"charlie", "Alpha", "Bravo"}));
    // The mark and the levels stay, so that OK writes the other one anew.
    EXPECT_EQ(state.changed, 1u);
    EXPECT_TRUE(DatabaseUndoAvailable());
    RunDatabaseCommand(state, 110);
    EXPECT_EQ(AcceptDatabaseWindow(state), 1);
    EXPECT_EQ(InFile("Brass"), (Names{"Horn", "Tuba"}));
    EXPECT_TRUE(fs::exists(BackupOf("Brass")));
}

TEST_P(WindowOfDatabases, LoadsTheSameDatabaseAnew) {
    Open();
    Rename("Zulu");
    Choose("Voices");
    EXPECT_EQ(NamesOf(state.records), (Names{"Alpha", "Bravo", "charlie"}));
    EXPECT_EQ(state.changed, 1u);
    EXPECT_EQ(desktop.sounds.size(), 2u);
}

TEST_P(WindowOfDatabases, LoadsNothingUnderNoName) {
    Open();
    Rename("Zulu");
    Choose("");
    EXPECT_EQ(DatabaseCurrentName, "Voices");
    EXPECT_EQ(NamesOf(state.records)[2], "Zulu");
    EXPECT_EQ(desktop.sounds.size(), 1u);
}

TEST_P(WindowOfDatabases, BringsTheFormerRecordsBackAfterASwitch) {
    Open();
    RunDatabaseCommand(state, 106);
    Choose("Brass");
    RunDatabaseCommand(state, 113);
    EXPECT_EQ(NamesOf(state.records), (Names{"Alpha", "Bravo", "charlie"}));
    EXPECT_EQ(state.changed, 0u);
    EXPECT_EQ(DatabaseCurrentName, "Brass");
}

TEST_P(WindowOfDatabases, EmptiesTheListForAnEmptyDatabase) {
    Write("Brass", {});
    Open();
    Choose("Brass");
    EXPECT_EQ(ListCount(state.records), 0);
    EXPECT_EQ(AcceptDatabaseWindow(state), 1);
}

TEST_P(WindowOfDatabases, MakesAnEmptyDatabaseThatIsBornAtOk) {
    Open();
    AnswerNewName("Strings");
    ExpectCopyQuestion("Voices", "Strings", ResultNo);
    RunDatabaseCommand(state, 103);
    EXPECT_EQ(DatabaseCurrentName, "Strings");
    EXPECT_EQ(ListCount(state.records), 0);
    EXPECT_EQ(state.changed, 1u);
    EXPECT_EQ(state.shownName, "Voices");
    EXPECT_EQ(state.names, (Names{"Brass", "Voices"}));
    EXPECT_EQ(desktop.sounds.size(), 1u);
    EXPECT_FALSE(fs::exists(PathOf("Strings")));
    EXPECT_EQ(AcceptDatabaseWindow(state), 1);
    EXPECT_EQ(InFile("Strings"), Names());
    EXPECT_EQ(InFile("Voices").size(), 3u);
}

TEST_P(WindowOfDatabases, CopiesTheFileIntoANewDatabaseAndKeepsTheList) {
    Open();
    Rename("Zulu");
    AnswerNewName("Strings");
    ExpectCopyQuestion("Voices", "Strings", ResultYes);
    RunDatabaseCommand(state, 103);
    EXPECT_EQ(DatabaseCurrentName, "Strings");
    EXPECT_EQ(InFile("Strings"), (Names{"charlie", "Alpha", "Bravo"})); // without the edit
    EXPECT_EQ(NamesOf(state.records), (Names{"Bravo", "charlie", "Zulu"}));
    EXPECT_EQ(state.changed, 1u);
    EXPECT_EQ(desktop.sounds.size(), 2u);
    EXPECT_EQ(AcceptDatabaseWindow(state), 1);
    EXPECT_EQ(InFile("Strings"), (Names{"Bravo", "charlie", "Zulu"}));
    EXPECT_EQ(InFile("Voices"), (Names{"charlie", "Alpha", "Bravo"}));
}

TEST_P(WindowOfDatabases, DoesNotReportACopyThatFails) {
    Open();
    fs::remove(PathOf("Voices"));
    TheDatabaseViews.AskForNewName = [](QWidget *, const Names &, const std::string &) {
        return std::optional<std::string>("Strings");
    };
    ExpectCopyQuestion("Voices", "Strings", ResultYes);
    RunDatabaseCommand(state, 103);
    EXPECT_EQ(DatabaseCurrentName, "Strings");
    EXPECT_FALSE(fs::exists(PathOf("Strings")));
    EXPECT_EQ(AcceptDatabaseWindow(state), 1);
    EXPECT_EQ(InFile("Strings").size(), 3u);
}

TEST_P(WindowOfDatabases, MakesNothingNewAfterCancel) {
    Open();
    AnswerNewName(std::nullopt);
    RunDatabaseCommand(state, 103);
    AnswerNewName("Strings");
    ExpectCopyQuestion("Voices", "Strings", ResultCancel);
    RunDatabaseCommand(state, 103);
    EXPECT_EQ(DatabaseCurrentName, "Voices");
    EXPECT_EQ(ListCount(state.records), 3);
    EXPECT_EQ(state.changed, 0u);
    EXPECT_TRUE(desktop.sounds.empty());
}

TEST_P(WindowOfDatabases, DeletesADatabaseAndShowsTheDefaultOne) {
    DatabaseCurrentName = "Brass";
    Open();
    WriteTestText(BackupOf("Brass"), "backup");
    desktop.ExpectYesNo("Do you really want to delete the Brass database?", ResultYes);
    desktop.Expect({.text = "Do you want to delete the backup for the Brass database as well?",
                    .buttons = {"Yes", "No"},
                    .answer = ResultYes,
                    .during = [this](MessageRequest &) {
                        EXPECT_EQ(desktop.trashed, (Names{PathOf("Brass")}));
                        EXPECT_EQ(state.shownName, "Voices");
                        EXPECT_EQ(namesShown, 2);
                        EXPECT_EQ(ListCount(state.records), 3);
                    }});
    RunDatabaseCommand(state, 104);
    EXPECT_EQ(desktop.trashed, (Names{PathOf("Brass"), BackupOf("Brass")}));
    EXPECT_EQ(DatabaseCurrentName, "Voices");
    EXPECT_EQ(state.names, (Names{"Voices"}));
    EXPECT_EQ(NamesOf(state.records), (Names{"Alpha", "Bravo", "charlie"}));
    EXPECT_EQ(state.changed, 0u);
    EXPECT_EQ(desktop.sounds.size(), 1u);
}

TEST_P(WindowOfDatabases, KeepsTheBackupAfterNo) {
    DatabaseCurrentName = "Brass";
    Open();
    WriteTestText(BackupOf("Brass"), "backup");
    desktop.ExpectYesNo("Do you really want to delete the Brass database?", ResultYes);
    desktop.ExpectYesNo("Do you want to delete the backup for the Brass database as well?",
                        ResultNo);
    RunDatabaseCommand(state, 104);
    EXPECT_EQ(desktop.trashed, (Names{PathOf("Brass")}));
}

TEST_P(WindowOfDatabases, DeletesNothingAfterNo) {
    DatabaseCurrentName = "Brass";
    Open();
    desktop.ExpectYesNo("Do you really want to delete the Brass database?", ResultNo);
    RunDatabaseCommand(state, 104);
    EXPECT_TRUE(desktop.trashed.empty());
    EXPECT_EQ(DatabaseCurrentName, "Brass");
    EXPECT_TRUE(desktop.sounds.empty());
}

TEST_P(WindowOfDatabases, KeepsTheDefaultDatabaseInAnyCase) {
    Open();
    for (const char *name : {"Voices", "voices", "VOICES"}) {
        state.shownName = name;
        desktop.ExpectMessage("The default database can't be removed.");
        RunDatabaseCommand(state, 104);
    }
    EXPECT_TRUE(desktop.trashed.empty());
    EXPECT_EQ(ListCount(state.records), 3);
}

TEST_P(WindowOfDatabases, DeletesTheNameThatIsShown) {
    Open();
    Rename("Zulu");
    state.shownName = "Brass"; // by an arrow key: the list still holds the other one
    desktop.ExpectYesNo("Do you really want to delete the Brass database?", ResultYes);
    RunDatabaseCommand(state, 104);
    EXPECT_EQ(desktop.trashed, (Names{PathOf("Brass")}));
    EXPECT_EQ(NamesOf(state.records), (Names{"Alpha", "Bravo", "charlie"}));
    EXPECT_EQ(state.changed, 1u);
    EXPECT_TRUE(DatabaseUndoAvailable());
}

TEST_P(WindowOfDatabases, DeletesNothingUnderNoName) {
    Open();
    state.shownName = "";
    RunDatabaseCommand(state, 104);
    EXPECT_TRUE(desktop.trashed.empty());
}

TEST_P(WindowOfDatabases, AddsTheDefaultDatabaseWhereItIsMissing) {
    fs::remove(PathOf("Voices"));
    Write("Zither", {});
    DatabaseCurrentName = "Zither";
    Open();
    EXPECT_EQ(state.names, (Names{"Brass", "Zither"}));
    state.shownName = "Brass";
    desktop.ExpectYesNo("Do you really want to delete the Brass database?", ResultYes);
    RunDatabaseCommand(state, 104);
    EXPECT_EQ(state.names, (Names{"Voices", "Zither"}));
    EXPECT_EQ(InFile("Voices"), Names());
}

// ---- leaving

TEST_P(WindowOfDatabases, ChoosesTheSelectedRecordAtOk) {
    Open();
    Select(2);
    EXPECT_EQ(AcceptDatabaseWindow(state), 1);
    EXPECT_EQ(state.chosen, TestVoiceOf(family, 0));
    EXPECT_EQ(InFile("Voices"), (Names{"charlie", "Alpha", "Bravo"})); // not stored
}

TEST_P(WindowOfDatabases, ChoosesNothingWithShiftButStores) {
    desktop.shiftDown = true;
    Open();
    Rename("Zulu");
    EXPECT_EQ(AcceptDatabaseWindow(state), 0);
    EXPECT_TRUE(state.chosen.bytes.empty());
    EXPECT_EQ(InFile("Voices"), (Names{"Bravo", "charlie", "Zulu"}));
}

TEST_P(WindowOfDatabases, ChoosesNothingWithoutASelection) {
    Open();
    Select(NoRow);
    EXPECT_EQ(AcceptDatabaseWindow(state), 1);
    EXPECT_TRUE(state.chosen.bytes.empty());
}

TEST_P(WindowOfDatabases, AnEmptyListOkHandsOverNoVoiceAndTheResultIs1) {
    Write("Voices", {});
    Open();
    EXPECT_EQ(ListCount(state.records), 0);
    EXPECT_EQ(AcceptDatabaseWindow(state), 1);
    EXPECT_TRUE(state.chosen.bytes.empty());
    EXPECT_TRUE(desktop.messages.empty());
}

TEST_P(WindowOfDatabases, SaysThatARecordGivesNoVoiceAndGoesOn) {
    TestBytes bad = TestRecord(family, 0, {"a", "b"});
    bad[23] = 1;
    Open();
    RecordListPut(state.records, 0, {bad});
    state.changed = 1;
    desktop.ExpectMessage(
        "There has been an error constructing a voice object for your seelction.");
    EXPECT_EQ(AcceptDatabaseWindow(state), 1);
    EXPECT_TRUE(state.chosen.bytes.empty());
    EXPECT_EQ(InFile("Voices")[0], "a");
}

TEST_P(WindowOfDatabases, StoresInTheOrderOfTheList) {
    Open();
    EndRecordGesture(state);
    RunDatabaseCommand(state, 109);
    EXPECT_EQ(AcceptDatabaseWindow(state), 1);
    EXPECT_EQ(InFile("Voices"), (Names{"charlie", "Bravo", "Alpha"}));
    EXPECT_EQ(DatabaseSortMode, 109u);
}

TEST_P(WindowOfDatabases, ClosesAfterAStoreThatFails) {
    CreateBackups = 0;
    Open();
    EndRecordGesture(state);
    fs::remove(PathOf("Voices"));
    fs::create_directory(PathOf("Voices"));
    desktop.ExpectMessage(StoreFailure);
    EXPECT_EQ(AcceptDatabaseWindow(state), 1);
    EXPECT_EQ(state.chosen, TestVoiceOf(family, 1));
}

TEST_P(WindowOfDatabases, StoresOnlyWithTheBackupOrWithoutItAfterAQuestion) {
    Open();
    EndRecordGesture(state);
    fs::create_directory(BackupOf("Voices"));
    desktop.Expect({.text = "Warning: there has been an error creating a backup for your "
                            "file.\r\n\r\nClick on Yes to proceed, or click on No to abort this "
                            "save.",
                    .buttons = {"Yes", "No"},
                    .answer = ResultNo});
    desktop.ExpectMessage(StoreFailure);
    EXPECT_EQ(AcceptDatabaseWindow(state), 1);
    EXPECT_EQ(InFile("Voices"), (Names{"charlie", "Alpha", "Bravo"}));
}

TEST_P(WindowOfDatabases, AsksBeforeCancelLosesChanges) {
    Open();
    EXPECT_TRUE(CancelDatabaseWindow(state));
    EndRecordGesture(state);
    ExpectedMessage question = {.text = LoseChanges,
                                .buttons = {"Yes", "No"},
                                .answer = ResultNo,
                                .check1 = "Show me this message again next time.",
                                .state1 = 1};
    question.during = [](MessageRequest &request) {
        EXPECT_EQ(request.state1, 1);
        EXPECT_EQ(request.note1, "Note: if you disable this message now, you can re-enable it at "
                                 "any time through the Setup window.");
    };
    desktop.Expect(question);
    EXPECT_FALSE(CancelDatabaseWindow(state));
    question.answer = ResultCancel; // the close box
    desktop.Expect(question);
    EXPECT_FALSE(CancelDatabaseWindow(state));
    question.state1 = 0; // the state is kept with No too
    question.answer = ResultNo;
    desktop.Expect(question);
    EXPECT_FALSE(CancelDatabaseWindow(state));
    EXPECT_EQ(WarnDatabaseChanged, 0u);
    EXPECT_TRUE(CancelDatabaseWindow(state));
    EXPECT_EQ(InFile("Voices"), (Names{"charlie", "Alpha", "Bravo"}));
}

TEST_P(WindowOfDatabases, DropsTheLevelsOfUndoAtTheEnd) {
    Open();
    Rename("Zulu");
    CloseDatabaseWindow(state);
    EXPECT_FALSE(DatabaseUndoAvailable());
}

INSTANTIATE_TEST_SUITE_P(Families, WindowOfDatabases, testing::ValuesIn(TestFamilies), LabelOf);

// ---- careful mode

class CarefulDatabases : public WindowOfDatabases {
protected:
    CarefulDatabases() { CarefulMode = 1; }

    void ExpectEditsQuestion(const std::string &name, int answer) {
        desktop.ExpectYesNoCancel("The changes that you have made to the " + name +
                                      " database have not been saved.\n\nClick on Yes to save "
                                      "them, click on No to lose them, or click on Cancel to "
                                      "return to the Database window.",
                                  answer);
    }
    std::string FailureAt(const std::string &path, const std::string &reason) const {
        return std::string(StoreFailure) + "\n\n" + path + ": " + reason +
               ".\n\nThe Database window stays open, and your changes are still in its list.";
    }
};

TEST_P(CarefulDatabases, SavesTheEditsBeforeASwitch) {
    Open();
    Rename("Zulu");
    ExpectEditsQuestion("Voices", ResultYes);
    Choose("Brass");
    EXPECT_EQ(InFile("Voices"), (Names{"Bravo", "charlie", "Zulu"}));
    EXPECT_EQ(NamesOf(state.records), (Names{"Horn", "Tuba"}));
    // The mark and the levels were of the other records.
    EXPECT_EQ(state.changed, 0u);
    EXPECT_FALSE(DatabaseUndoAvailable());
}

TEST_P(CarefulDatabases, LeavesAFileThatIsNoDatabaseAndSaysSo) {
    Open();
    Rename("Zulu");
    WriteTestText(PathOf("Voices"), "of another program");
    desktop.ExpectMessage(
        FailureAt(PathOf("Voices"), std::string("it is no database for the ") + row.name));
    EXPECT_EQ(AcceptDatabaseWindow(state), std::nullopt);
    EXPECT_EQ(ReadTestText(PathOf("Voices")), "of another program");
}

TEST_P(CarefulDatabases, DropsTheEditsBeforeASwitchAfterNo) {
    Open();
    Rename("Zulu");
    ExpectEditsQuestion("Voices", ResultNo);
    Choose("Brass");
    EXPECT_EQ(InFile("Voices"), (Names{"charlie", "Alpha", "Bravo"}));
    EXPECT_EQ(DatabaseCurrentName, "Brass");
    EXPECT_EQ(state.changed, 0u);
}

TEST_P(CarefulDatabases, KeepsTheEditsAfterCancel) {
    Open();
    Rename("Zulu");
    ExpectEditsQuestion("Voices", ResultCancel);
    Choose("Brass");
    EXPECT_EQ(DatabaseCurrentName, "Voices");
    EXPECT_EQ(state.shownName, "Voices");
    EXPECT_EQ(namesShown, 2);
    EXPECT_EQ(NamesOf(state.records)[2], "Zulu");
    EXPECT_EQ(state.changed, 1u);
    EXPECT_EQ(desktop.sounds.size(), 1u);
}

TEST_P(CarefulDatabases, GoesBackToTheShownNameWhereTheCurrentOneIsNotListed) {
    Open();
    AnswerNewName("Strings");
    ExpectCopyQuestion("Voices", "Strings", ResultNo);
    RunDatabaseCommand(state, 103);
    for (const char *name : {"Voices", "Brass"}) {
        ExpectEditsQuestion("Strings", ResultCancel);
        Choose(name);
        EXPECT_EQ(state.shownName, "Voices");
        EXPECT_EQ(DatabaseCurrentName, "Strings");
    }
    ExpectEditsQuestion("Strings", ResultNo);
    Choose("Brass");
    EXPECT_EQ(DatabaseCurrentName, "Brass");
    Rename("Zither");
    ExpectEditsQuestion("Brass", ResultCancel);
    Choose("Voices");
    EXPECT_EQ(state.shownName, "Brass");
}

TEST_P(CarefulDatabases, StaysWhenTheEditsCannotBeSaved) {
    Open();
    Rename("Zulu");
    fs::create_directory(BackupOf("Voices"));
    ExpectEditsQuestion("Voices", ResultYes);
    desktop.Expect({.text = "Warning: there has been an error creating a backup for your "
                            "file.\r\n\r\nClick on Yes to proceed, or click on No to abort this "
                            "save.",
                    .buttons = {"Yes", "No"},
                    .answer = ResultNo});
    desktop.ExpectMessage(
        FailureAt(PathOf("Voices"), "the answer was not to go on without a backup"));
    Choose("Brass");
    EXPECT_EQ(DatabaseCurrentName, "Voices");
    EXPECT_EQ(NamesOf(state.records)[2], "Zulu");
    EXPECT_EQ(state.changed, 1u);
}

TEST_P(CarefulDatabases, AsksNothingWithoutEdits) {
    Open();
    Choose("Brass");
    EXPECT_EQ(NamesOf(state.records), (Names{"Horn", "Tuba"}));
}

TEST_P(CarefulDatabases, KeepsTheEditsWhenTheListClosesOnTheSameName) {
    Open();
    Rename("Zulu");
    Choose("Voices");
    EXPECT_EQ(NamesOf(state.records)[2], "Zulu");
    EXPECT_EQ(state.changed, 1u);
}

TEST_P(CarefulDatabases, AsksBeforeANewEmptyDatabase) {
    Open();
    Rename("Zulu");
    AnswerNewName("Strings");
    ExpectCopyQuestion("Voices", "Strings", ResultNo);
    ExpectEditsQuestion("Voices", ResultCancel);
    RunDatabaseCommand(state, 103);
    EXPECT_EQ(DatabaseCurrentName, "Voices");
    EXPECT_EQ(ListCount(state.records), 3);
    EXPECT_EQ(desktop.sounds.size(), 1u);

    ExpectCopyQuestion("Voices", "Strings", ResultNo);
    ExpectEditsQuestion("Voices", ResultYes);
    RunDatabaseCommand(state, 103);
    EXPECT_EQ(InFile("Voices"), (Names{"Bravo", "charlie", "Zulu"}));
    EXPECT_EQ(DatabaseCurrentName, "Strings");
    EXPECT_EQ(state.changed, 1u); // so that it is born at OK
    EXPECT_FALSE(DatabaseUndoAvailable());
}

TEST_P(CarefulDatabases, TakesTheEditsAlongIntoACopy) {
    Open();
    Rename("Zulu");
    AnswerNewName("Strings");
    ExpectCopyQuestion("Voices", "Strings", ResultYes);
    RunDatabaseCommand(state, 103);
    EXPECT_EQ(AcceptDatabaseWindow(state), 1);
    EXPECT_EQ(InFile("Strings"), (Names{"Bravo", "charlie", "Zulu"}));
}

TEST_P(CarefulDatabases, SaysThatEditsAreLostWithTheirDatabase) {
    DatabaseCurrentName = "Brass";
    Open();
    Rename("Zither");
    desktop.ExpectYesNo("Do you really want to delete the Brass database?\n\nThe changes that you "
                        "have made to it in this window will be lost as well.",
                        ResultYes);
    RunDatabaseCommand(state, 104);
    EXPECT_EQ(state.changed, 0u);
    EXPECT_FALSE(DatabaseUndoAvailable());
    EXPECT_EQ(NamesOf(state.records), (Names{"Alpha", "Bravo", "charlie"}));
}

TEST_P(CarefulDatabases, SaysNothingMoreOfADeletionThatLosesNoEdits) {
    DatabaseCurrentName = "Brass";
    Open();
    desktop.ExpectYesNo("Do you really want to delete the Brass database?", ResultNo);
    RunDatabaseCommand(state, 104);
    state.changed = 1;
    CarefulMode = 0;
    desktop.ExpectYesNo("Do you really want to delete the Brass database?", ResultNo);
    RunDatabaseCommand(state, 104);
}

TEST_P(CarefulDatabases, KnowsNoFileOfAFamilyWithoutCatalogues) {
    state.driverIndex = -1;
    Open();
    EXPECT_EQ(state.names, Names());
    TheDatabaseViews.AskForNewName = [](QWidget *, const Names &, const std::string &) {
        return std::optional<std::string>("Strings");
    };
    ExpectCopyQuestion("Voices", "Strings", ResultYes);
    RunDatabaseCommand(state, 103);
    desktop.ExpectMessage(std::string(StoreFailure) + "\n\nThe Database window stays open, and "
                                                      "your changes are still in its list.");
    EXPECT_EQ(AcceptDatabaseWindow(state), std::nullopt);
    RunDatabaseCommand(state, 114);
    RunDatabaseCommand(state, 104);
    EXPECT_EQ(PositionsToChoose(state), 0);
}

TEST_P(CarefulDatabases, AsksBeforeTheDeletionOfAnotherDatabaseDropsEdits) {
    Open();
    Rename("Zulu");
    state.shownName = "Brass";
    desktop.ExpectYesNo("Do you really want to delete the Brass database?", ResultYes);
    ExpectEditsQuestion("Voices", ResultCancel);
    RunDatabaseCommand(state, 104);
    EXPECT_TRUE(desktop.trashed.empty());
    EXPECT_EQ(NamesOf(state.records)[2], "Zulu");

    desktop.ExpectYesNo("Do you really want to delete the Brass database?", ResultYes);
    ExpectEditsQuestion("Voices", ResultYes);
    RunDatabaseCommand(state, 104);
    EXPECT_EQ(desktop.trashed, (Names{PathOf("Brass")}));
    EXPECT_EQ(NamesOf(state.records), (Names{"Bravo", "charlie", "Zulu"}));
    EXPECT_EQ(state.changed, 0u);
}

TEST_P(CarefulDatabases, StaysOpenAfterAStoreThatFails) {
    CreateBackups = 0;
    Open();
    Rename("Zulu");
    fs::remove(PathOf("Voices"));
    fs::create_directory(PathOf("Voices"));
    desktop.ExpectMessage(FailureAt(PathOf("Voices"), "Is a directory"));
    EXPECT_EQ(AcceptDatabaseWindow(state), std::nullopt);
    EXPECT_TRUE(state.chosen.bytes.empty());
    EXPECT_EQ(state.changed, 1u);
    fs::remove(PathOf("Voices"));
    EXPECT_EQ(AcceptDatabaseWindow(state), 1);
    EXPECT_EQ(InFile("Voices"), (Names{"Bravo", "charlie", "Zulu"}));
}

INSTANTIATE_TEST_SUITE_P(Families, CarefulDatabases, testing::ValuesIn(TestFamilies), LabelOf);

} // namespace
} // namespace tonewright
