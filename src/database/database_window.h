// The catalogue window: what it holds, and what its buttons, its menu and the mouse do. The window
// itself is database/view/database_box. All texts are UTF-8 unless they are the field of a record.
#pragma once

#include "common/geometry.h"
#include "core/voice_list.h"
#include "core/voice_object.h"
#include "database/record_list.h"
#include "database/record_sort.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

class QWidget;

namespace tonewright {

// Commands, which are the numbers of buttons too. Those that sort are SortByName and so on.
constexpr int CommandDatabaseOk = 1;
constexpr int CommandNewDatabase = 103;
constexpr int CommandDeleteDatabase = 104;
constexpr int CommandAuditionRecord = 105;
constexpr int CommandRemoveRecord = 106;
constexpr int CommandUndoRecords = 113;
constexpr int CommandPrintRecords = 114;

// One open window.
struct DatabaseWindow {
    QWidget *window = nullptr; // owner of messages
    int driverIndex = -1;      // row of the driver table, of whose catalogues one is shown
    RecordList records;
    std::uint32_t changed = 0; // not 0: the list differs from the file, and OK stores it
    VoiceObject chosen;        // by OK; without bytes: none
    // The drop-down list of the catalogues: those that there were at the opening, without what was
    // deleted since; a deletion adds the default one, but a new one is not added. And the one of
    // them that it shows, empty for none. It need not be DatabaseCurrentName, which OK stores:
    // arrow keys move it alone, and a new catalogue becomes current without being shown.
    std::vector<std::string> names;
    std::string shownName;
    std::string loadedName;             // shownName when records were loaded last
    std::function<void()> namesChanged; // names or shownName, by a command; the view's
};

// What the window is seen by, and what it asks of others; filled in by the view and by the main
// window, and by tests. An empty member does nothing.
struct DatabaseViews {
    // Runs the dialog; its result.
    std::function<int(QWidget *owner, DatabaseWindow &state)> ShowBox;
    // Asks for the name of a new catalogue, writing `start` at first; the result is none of
    // `existing`, the names on the disk, in any case of its letters. Nothing when the user cancels.
    std::function<std::optional<std::string>(
        QWidget *owner, const std::vector<std::string> &existing, const std::string &start)>
        AskForNewName;
    std::function<void(QWidget *owner, const VoiceObject &voice)> Audition;
    std::function<int(QWidget *owner, const RecordList &list, const std::string &heading)> Print;
    // The list that a voice was chosen for has changed.
    std::function<void()> RepaintVoices;
};
extern DatabaseViews TheDatabaseViews;

// Lets the user browse and edit the current catalogue of a row of the driver table, and puts the
// voice that was chosen into the row `target` of `list`, unless that is NoRow or lies behind the
// rows of a bank; then the list is repainted and a sound played. The result of the dialog: not 0
// for OK, with a voice or without one.
int RunDatabaseWindow(QWidget *owner, VoiceList &list, int target, int driverIndex);

// ---- beginning and end

// Fills the window: the current catalogue, which is made if there is none, and the names of all.
void OpenDatabaseWindow(DatabaseWindow &state, QWidget *window);
// Drops the levels of undo.
void CloseDatabaseWindow(DatabaseWindow &state);
// OK: chooses the voice of the selected record, unless Shift is held, and stores what was changed.
// The result of the dialog; nothing when the window stays open.
std::optional<int> AcceptDatabaseWindow(DatabaseWindow &state);
// Cancel: whether the window closes.
bool CancelDatabaseWindow(DatabaseWindow &state);

// ---- commands

// Runs a command of the list above, but for OK, or one that sorts.
void RunDatabaseCommand(DatabaseWindow &state, int command);
// The drop-down list of the catalogues was closed with `shownName`: its records are shown, or the
// list goes back to `loadedName` when the user would rather stay.
void ShowChosenDatabase(DatabaseWindow &state);

struct DatabaseMenuRow {
    int command = 0; // 0: a line between two groups
    std::string text = {};
    bool enabled = true;
    bool checked = false;
};
// The menu over a row of the list, whose record it names. Its commands are about the selected one.
std::vector<DatabaseMenuRow> DatabaseMenu(const DatabaseWindow &state, int row);

// ---- rows of the list

enum class RecordField { None, Name, Source, Date, Position };
// The columns of a row, in pixels from its left edge.
struct RecordColumn {
    RecordField field;
    std::uint32_t sort; // the command of its header
    const char *title;
    int left, right; // of the text; the right edge is outside
    int hitRight;    // up to where a held button edits it
    bool atTheRight; // the text stands at the right edge
};
extern const std::span<const RecordColumn> RecordColumns;
constexpr int RecordRowWidth = 545; // pixels, at least, so that no column is cut

// What a row shows, in the order of the columns; empty texts for what is no record.
using RecordTexts = std::array<std::string, 4>;
RecordTexts TextsOfRecord(const DatabaseRecord &record);
// What is said of a row to those who hear the list: its texts; nothing for what is no record.
std::string RecordInWords(const DatabaseRecord &record);
// The four lines of the tip over a row; empty for what is no record.
std::string RecordTip(const DatabaseRecord &record);

// A period of the settings as a timer takes it, in milliseconds: at least 10, at most 2^31 - 1.
int TimerMilliseconds(std::uint32_t setting);

// ---- editing the selected record with a held button, which stays bound to its row

// The field of the selected row below a point of a view of that size.
RecordField FieldUnder(const RecordList &list, PicturePoint point, int width, int height);
// How many positions there are to choose from.
int PositionsToChoose(const DatabaseWindow &state);
// What the user has accepted for a row: a level of undo, then the field is changed. `text`:
// Latin-1.
void AcceptRecordText(DatabaseWindow &state, int row, RecordField field, std::string_view text);
void AcceptRecordDate(DatabaseWindow &state, int row, std::uint32_t seconds);
// `index`: from 0; a negative number, of no entry, changes nothing.
void AcceptRecordPosition(DatabaseWindow &state, int row, int index);
// The end of every such gesture, whether it has changed something or not: the list is sorted and
// counts as changed.
void EndRecordGesture(DatabaseWindow &state);

} // namespace tonewright
