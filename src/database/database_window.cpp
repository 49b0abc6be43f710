// What the catalogue window does.
#include "database/database_window.h"

#include "common/desktop.h"
#include "common/file_bytes.h"
#include "common/file_time.h"
#include "common/settings.h"
#include "common/text.h"
#include "core/dispatch.h"
#include "database/careful_records.h"
#include "database/database_names.h"
#include "database/database_undo.h"
#include "database/page_layout.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <utility>

namespace tonewright {
namespace {

constexpr int ShortestTimer = 10; // milliseconds

// ---- the family, its names and files

const SynthDriver *RowOf(const DatabaseWindow &state) {
    return DriverOfId(DriverIdAt(state.driverIndex));
}

DatabaseInfoResult InfoOf(const DatabaseWindow &state, int selector) {
    const SynthDriver *row = RowOf(state);
    return row && row->DatabaseInfo ? row->DatabaseInfo(selector) : DatabaseInfoResult{};
}

std::vector<std::string> NamesOfFamily(const DatabaseWindow &state) {
    const char *extension = InfoOf(state, DatabaseInfoExtension).text;
    return extension ? DatabaseNames(extension) : std::vector<std::string>();
}

// Both are empty for a family without catalogues.
std::string PathOfName(const DatabaseWindow &state, const std::string &name) {
    const char *extension = InfoOf(state, DatabaseInfoExtension).text;
    return extension ? DatabasePathNamed(name, extension) : std::string();
}

std::string BackupOfName(const DatabaseWindow &state, const std::string &name) {
    const char *extension = InfoOf(state, DatabaseInfoBackupExtension).text;
    return extension ? DatabaseBackupPathOf(PathOfName(state, name), extension) : std::string();
}

void ShowNames(const DatabaseWindow &state) {
    if (state.namesChanged) {
        state.namesChanged();
    }
}

void MoveToTrash(const std::string &path) {
    if (TheDesktop.MoveToTrash && !path.empty()) {
        TheDesktop.MoveToTrash(path); // without a word: what stays is there at the next opening
    }
}

// ---- the records

// The catalogue that the settings name now, instead of the records that are there.
void Load(DatabaseWindow &state) {
    state.loadedName = state.shownName;
    const WaitCursor wait;
    RecordListFill(state.records, {});
    DatabaseLoadList(state.driverIndex, state.records);
}

bool Store(DatabaseWindow &state) {
    const bool isStored = [&state] {
        const WaitCursor wait;
        return DatabaseStoreList(state.window, state.records, state.driverIndex) != 0;
    }();
    if (!isStored) {
        const int reason = errno;
        const SynthDriver *row = RowOf(state);
        ShowMessage(state.window,
                    CarefulStoreFailure("There has been an error updating the current database.",
                                        PathOfName(state, DatabaseCurrentName),
                                        row ? row->name : "", reason));
    }
    return isStored;
}

// Before the records of `next` are shown instead: whether those that are shown may go.
bool RecordsMayGo(DatabaseWindow &state, const std::string &next) {
    switch (CarefulEditsWay(state.window, state.changed, DatabaseCurrentName, next)) {
    case EditsWay::Drop:
        return true;
    case EditsWay::Store:
        return Store(state);
    case EditsWay::Stay:
        break;
    }
    return false;
}

std::string NameOfRecord(const DatabaseRecord *record) {
    const auto fields = record ? RecordFields(*record) : std::nullopt;
    return fields ? Latin1ToUtf8(fields->name) : "unknown voice";
}

// As it is shown: counted from 1, with the sign that the bits then have.
std::string PositionText(std::uint32_t position) {
    return std::to_string(static_cast<std::int32_t>(position + 1));
}

// Changes the record of a row behind a level of undo; it goes on even if there is none.
void ChangeRecord(DatabaseWindow &state, int row,
                  const std::function<void(DatabaseRecord &)> &change) {
    DatabaseUndoPush(state.window, state.records, state.changed != 0);
    if (const DatabaseRecord *record = ListRecord(state.records, row)) {
        DatabaseRecord changed = *record;
        change(changed);
        RecordListPut(state.records, row, std::move(changed));
    }
}

// ---- commands

void NewDatabase(DatabaseWindow &state) {
    const auto name = TheDatabaseViews.AskForNewName
                          ? TheDatabaseViews.AskForNewName(state.window, NamesOfFamily(state),
                                                           DefaultDatabaseName)
                          : std::nullopt;
    if (!name) {
        return;
    }
    switch (AskYesNoCancel(state.window,
                           "Do you want to copy the contents of your existing database, " +
                               DatabaseCurrentName + ", to your new database, " + *name + "?")) {
    case ResultYes: {
        const WaitCursor wait;
        CopyFileTo(PathOfName(state, DatabaseCurrentName).c_str(),
                   PathOfName(state, *name).c_str());
        break;
    }
    case ResultNo:
        if (!RecordsMayGo(state, *name)) {
            return;
        }
        RecordListFill(state.records, {});
        CarefulBeginRecords(state.changed);
        break;
    default:
        return;
    }
    DatabaseCurrentName = *name;
    state.changed = 1;
    PlayEventSound(DefaultEventSound);
}

void DeleteDatabase(DatabaseWindow &state) {
    const std::string name = state.shownName;
    if (name.empty()) {
        return;
    }
    if (EqualNoCase(name, DefaultDatabaseName)) {
        ShowMessage(state.window, "The default database can't be removed.");
        return;
    }
    const bool isCurrent = name == DatabaseCurrentName;
    const std::string question = "Do you really want to delete the " + name + " database?";
    if (AskYesNo(state.window, isCurrent ? CarefulDeleteQuestion(question, state.changed)
                                         : question) != ResultYes) {
        return;
    }
    if (!isCurrent && !RecordsMayGo(state, {})) {
        return;
    }
    DatabaseCurrentName = DefaultDatabaseName;
    std::erase(state.names, name);
    state.shownName = DefaultDatabaseName;
    if (std::ranges::find(state.names, DefaultDatabaseName) == state.names.end()) {
        const auto isBefore = [](const std::string &one, const std::string &other) {
            return CompareText(one, other) < 0;
        };
        state.names.insert(
            std::ranges::upper_bound(state.names, std::string(DefaultDatabaseName), isBefore),
            DefaultDatabaseName);
    }
    ShowNames(state);
    Load(state);
    CarefulBeginRecords(state.changed);
    MoveToTrash(PathOfName(state, name));
    const std::string backup = BackupOfName(state, name);
    if (FileExists(backup.c_str()) &&
        AskYesNo(state.window, "Do you want to delete the backup for the " + name +
                                   " database as well?") == ResultYes) {
        MoveToTrash(backup);
    }
    PlayEventSound(DefaultEventSound);
}

void AuditionRecord(DatabaseWindow &state) {
    const DatabaseRecord *record = ListRecord(state.records, state.records.selection);
    const VoiceObject voice = record ? RecordToVoice(*record) : VoiceObject{};
    if (!voice.bytes.empty() && TheDatabaseViews.Audition) {
        TheDatabaseViews.Audition(state.window, voice);
    }
}

void RemoveRecord(DatabaseWindow &state) {
    const int row = state.records.selection;
    if (ListCount(state.records) < 2 || row == NoRow) {
        return;
    }
    DatabaseUndoPush(state.window, state.records, state.changed != 0);
    RecordListDelete(state.records, row);
    ListSelect(state.records, std::min(row, ListCount(state.records) - 1));
    state.changed = 1;
    PlayEventSound(DefaultEventSound);
}

void UndoRecords(DatabaseWindow &state) {
    DatabaseUndoPop(state.window, state.records, state.changed);
    PlayEventSound(DefaultEventSound);
    RecordListSort(state.records);
}

void PrintRecords(DatabaseWindow &state) {
    const SynthDriver *row = RowOf(state);
    if (row && TheDatabaseViews.Print) {
        TheDatabaseViews.Print(state.window, state.records,
                               DatabaseHeading(state.shownName, row->name));
    }
}

struct CommandRow {
    int command;
    void (*run)(DatabaseWindow &state);
};
constexpr CommandRow Commands[] = {
    {CommandNewDatabase, NewDatabase},       {CommandDeleteDatabase, DeleteDatabase},
    {CommandAuditionRecord, AuditionRecord}, {CommandRemoveRecord, RemoveRecord},
    {CommandUndoRecords, UndoRecords},       {CommandPrintRecords, PrintRecords},
};

constexpr RecordColumn Columns[] = {
    {RecordField::Name, SortByName, "Name", 6, 166, 166, false},
    {RecordField::Source, SortBySource, "Source", 172, 332, 332, false},
    {RecordField::Date, SortByDate, "Time and Date", 338, 488, 488, false},
    {RecordField::Position, SortByPosition, "Position", 494, 530, 542, true},
};

} // namespace

DatabaseViews TheDatabaseViews;
const std::span<const RecordColumn> RecordColumns = Columns;

int RunDatabaseWindow(QWidget *owner, VoiceList &list, int target, int driverIndex) {
    if (!TheDatabaseViews.ShowBox) {
        return 0;
    }
    DatabaseWindow state;
    state.driverIndex = driverIndex;
    const int result = TheDatabaseViews.ShowBox(owner, state);
    const bool isPlaced = result && !state.chosen.bytes.empty() &&
                          target < InfoOf(state, DatabaseInfoVoicesPerBank).number &&
                          ListSetVoice(list, target, std::move(state.chosen));
    if (isPlaced) {
        if (TheDatabaseViews.RepaintVoices) {
            TheDatabaseViews.RepaintVoices();
        }
        PlayEventSound(DefaultEventSound);
    }
    return result;
}

void OpenDatabaseWindow(DatabaseWindow &state, QWidget *window) {
    state.window = window;
    // Ahead of the load, which then brings the records in their order.
    if (static_cast<std::int32_t>(DatabaseSortMode) < static_cast<std::int32_t>(SortByName)) {
        DatabaseSortMode = SortByName;
    }
    Load(state); // which makes the catalogue that is to be listed
    state.names = NamesOfFamily(state);
    const bool isThere = std::ranges::find(state.names, DatabaseCurrentName) != state.names.end();
    state.shownName = state.loadedName = isThere ? DatabaseCurrentName : "";
    ShowNames(state);
    DatabaseUndoInit(window);
}

void CloseDatabaseWindow(DatabaseWindow &state) {
    DatabaseUndoEnd();
    state.window = nullptr;
}

std::optional<int> AcceptDatabaseWindow(DatabaseWindow &state) {
    const bool isChosen = !ShiftKeyDown();
    const DatabaseRecord *record = ListRecord(state.records, state.records.selection);
    if (isChosen && record) {
        state.chosen = RecordToVoice(*record);
        if (state.chosen.bytes.empty()) {
            ShowMessage(state.window, "There has been an error constructing a voice object for "
                                      "your seelction.");
        }
    }
    if (state.changed && !Store(state) && CarefulStaysAfterFailure()) {
        state.chosen = {};
        return std::nullopt;
    }
    return isChosen;
}

bool CancelDatabaseWindow(DatabaseWindow &state) {
    return !state.changed || !WarnDatabaseChanged ||
           AskOnce(state.window,
                   "Do you want to lose the changes you've made to this database?\n\nClick on Yes "
                   "to abandon your changes, or click on No to return to the Database window.",
                   WarnDatabaseChanged) == ResultYes;
}

void RunDatabaseCommand(DatabaseWindow &state, int command) {
    const auto row = std::ranges::find(Commands, command, &CommandRow::command);
    if (row != std::end(Commands)) {
        row->run(state);
        return;
    }
    const auto column =
        std::ranges::find(Columns, static_cast<std::uint32_t>(command), &RecordColumn::sort);
    if (column != std::end(Columns)) {
        DatabaseSortMode = column->sort;
        RecordListSort(state.records);
    }
}

void ShowChosenDatabase(DatabaseWindow &state) {
    if (state.shownName.empty()) {
        return;
    }
    if (!RecordsMayGo(state, state.shownName)) {
        state.shownName = state.loadedName;
        ShowNames(state);
        return;
    }
    DatabaseCurrentName = state.shownName;
    Load(state);
    CarefulBeginRecords(state.changed);
    PlayEventSound(DefaultEventSound);
}

std::vector<DatabaseMenuRow> DatabaseMenu(const DatabaseWindow &state, int row) {
    const std::string name = NameOfRecord(ListRecord(state.records, row));
    const DatabaseMenuRow line;
    const auto sort = [](const char *text, std::uint32_t command) {
        return DatabaseMenuRow{.command = static_cast<int>(command),
                               .text = text,
                               .checked = DatabaseSortMode == command};
    };
    return {
        {.command = CommandAuditionRecord, .text = "Audition " + name},
        {.command = CommandRemoveRecord, .text = "Remove " + name + " from this database"},
        {.command = CommandDatabaseOk, .text = "Select " + name},
        line,
        sort("Sort by name", SortByName),
        sort("Sort by source", SortBySource),
        sort("Sort by date", SortByDate),
        sort("Sort by position", SortByPosition),
        line,
        {.command = CommandUndoRecords, .text = "Undo", .enabled = DatabaseUndoAvailable()},
        line,
        {.command = CommandPrintRecords, .text = "Print the " + state.shownName + " database"},
    };
}

RecordTexts TextsOfRecord(const DatabaseRecord &record) {
    const auto fields = RecordFields(record);
    return fields ? RecordTexts{Latin1ToUtf8(fields->name), Latin1ToUtf8(fields->source),
                                FormatTime(fields->date, 0), PositionText(fields->position)}
                  : RecordTexts{};
}

std::string RecordInWords(const DatabaseRecord &record) {
    if (!RecordFields(record)) {
        return {};
    }
    const auto [name, source, date, position] = TextsOfRecord(record);
    return name + ", " + source + ", " + date + ", position " + position;
}

std::string RecordTip(const DatabaseRecord &record) {
    if (!RecordFields(record)) {
        return {};
    }
    const auto [name, source, date, position] = TextsOfRecord(record);
    return "NAME: " + name + "\r\nSOURCE: " + source + "\r\nFILE DATE: " + date +
           "\r\nPOSITION: " + position;
}

int TimerMilliseconds(std::uint32_t setting) {
    constexpr std::uint32_t longest = std::numeric_limits<std::int32_t>::max();
    return std::max(ShortestTimer, static_cast<int>(std::min(setting, longest)));
}

RecordField FieldUnder(const RecordList &list, PicturePoint point, int width, int height) {
    const int row = ListRowAt(list, point, width, height);
    if (row == NoRow || row != list.selection) {
        return RecordField::None;
    }
    const auto column = std::ranges::find_if(Columns, [point](const RecordColumn &candidate) {
        return point.x >= candidate.left && point.x < candidate.hitRight;
    });
    return column != std::end(Columns) ? column->field : RecordField::None;
}

int PositionsToChoose(const DatabaseWindow &state) {
    return std::max(0, InfoOf(state, DatabaseInfoVoicesPerBank).number);
}

void AcceptRecordText(DatabaseWindow &state, int row, RecordField field, std::string_view text) {
    ChangeRecord(state, row, [field, text](DatabaseRecord &record) {
        if (field == RecordField::Name) {
            SetRecordName(record, text);
        } else if (field == RecordField::Source) {
            SetRecordSource(record, text);
        }
    });
}

void AcceptRecordDate(DatabaseWindow &state, int row, std::uint32_t seconds) {
    ChangeRecord(state, row, [seconds](DatabaseRecord &record) { SetRecordDate(record, seconds); });
}

void AcceptRecordPosition(DatabaseWindow &state, int row, int index) {
    if (index >= 0) {
        ChangeRecord(state, row, [index](DatabaseRecord &record) {
            SetRecordPosition(record, static_cast<std::uint32_t>(index));
        });
    }
}

void EndRecordGesture(DatabaseWindow &state) {
    RecordListSort(state.records);
    state.changed = 1;
    PlayEventSound(DefaultEventSound);
}

} // namespace tonewright
