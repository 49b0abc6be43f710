// Any sequence of operations on the catalogue window, beside a plain model of it: records that are
// inserted one by one, catalogues as lists of records in a map. What both hold is compared after
// each step, what stands on the disk after each OK and at the end.
//
// The bytes of the input choose the family, the settings and the catalogues to begin with, then the
// operations with what the user types and answers.
#pragma once

#include "common/desktop.h"
#include "common/folders.h"
#include "common/settings.h"
#include "core/dispatch.h"
#include "database/database_undo.h"
#include "database/database_window.h"

#include <algorithm>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace tonewright::window_model {

using Bytes = std::vector<std::uint8_t>;
using Records = std::vector<Bytes>;

// A family's catalogues, by hand.
struct Family {
    const char *id;
    const char *extension;
    const char *backupExtension;
    std::uint32_t sizeA, sizeB;

    std::size_t RecordSize() const { return 290 + sizeA + sizeB; }
};
inline constexpr Family Families[] = {
    {"y7XD", ".syx_db", ".syx_db_backup", 156, 0},
    {"xdFR", ".srx_db", ".srx_db_backup", 38, 112},
};

// ---- a record

inline std::uint32_t Number(const Bytes &bytes, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t i = 4; i-- > 0;) {
        number = number << 8 | bytes[at + i];
    }
    return number;
}
inline void PutNumber(Bytes &bytes, std::size_t at, std::uint32_t number) {
    for (std::size_t i = 0; i < 4; ++i) {
        bytes[at + i] = static_cast<std::uint8_t>(number >> 8 * i);
    }
}
inline std::string Text(const Bytes &bytes, std::size_t at) {
    std::string text;
    while (text.size() < 64 && bytes[at + text.size()] != 0) {
        text += static_cast<char>(bytes[at + text.size()]);
    }
    return text;
}
inline void PutField(Bytes &bytes, std::size_t at, const std::string &text) {
    for (std::size_t i = 0; i < 65; ++i) {
        bytes[at + i] = i < 64 && i < text.size() ? static_cast<std::uint8_t>(text[i]) : 0;
    }
}
constexpr std::size_t NameAt = 28, SourceAt = 93, PositionAt = 158, DateAt = 8;

inline bool HaveSameFields(const Bytes &one, const Bytes &other) {
    return Text(one, NameAt) == Text(other, NameAt) &&
           Text(one, SourceAt) == Text(other, SourceAt) &&
           Number(one, DateAt) == Number(other, DateAt) &&
           Number(one, PositionAt) == Number(other, PositionAt);
}

// -1, 0 or 1 by bytes, the letters A to Z being small ones.
inline int CompareTexts(const std::string &one, const std::string &other) {
    const auto fold = [](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return byte >= 'A' && byte <= 'Z' ? byte + 32 : byte + 0;
    };
    for (std::size_t i = 0;; ++i) {
        const int a = i < one.size() ? fold(one[i]) : -1;
        const int b = i < other.size() ? fold(other[i]) : -1;
        if (a != b) {
            return a < b ? -1 : 1;
        }
        if (a < 0) {
            return 0;
        }
    }
}

inline bool StandsBefore(const Bytes &one, const Bytes &other, std::uint32_t sort) {
    if (sort == 108) {
        const int order = CompareTexts(Text(one, SourceAt), Text(other, SourceAt));
        if (order != 0) {
            return order < 0;
        }
    } else if (sort == 109 && Number(one, DateAt) != Number(other, DateAt)) {
        return Number(one, DateAt) < Number(other, DateAt);
    } else if (sort == 110 && Number(one, PositionAt) != Number(other, PositionAt)) {
        return static_cast<std::int32_t>(Number(one, PositionAt)) <
               static_cast<std::int32_t>(Number(other, PositionAt));
    }
    return CompareTexts(Text(one, NameAt), Text(other, NameAt)) < 0;
}

// The voice of a record; no bytes when the record is too short for it.
inline Bytes VoiceOf(const Bytes &record) {
    const std::uint64_t from = Number(record, 16), a = Number(record, 20), b = Number(record, 24);
    if (from + a + b > record.size()) {
        return {};
    }
    Bytes voice = {'o', 'W', 'N', 'T'};
    voice.resize(52);
    PutNumber(voice, 4, 52);
    PutNumber(voice, 8, static_cast<std::uint32_t>(a));
    PutNumber(voice, 12, static_cast<std::uint32_t>(b));
    PutNumber(voice, 16, Number(record, 4));
    voice.insert(voice.end(), record.begin() + static_cast<std::ptrdiff_t>(from),
                 record.begin() + static_cast<std::ptrdiff_t>(from + a + b));
    return voice;
}

// ---- the disk

struct File {
    bool isCatalogue = true;
    Records records;

    bool operator==(const File &) const = default;
};
using Files = std::map<std::string, File>; // by the catalogue's name

inline Bytes BytesOf(const Family &family, const File &file) {
    if (!file.isCatalogue) {
        return {'j', 'u', 'n', 'k'};
    }
    Bytes bytes = {'T', 'n', 'w', 'r', 'T', 'W', 'd', 'b'};
    bytes.insert(bytes.end(), family.id, family.id + 4);
    bytes.resize(152);
    PutNumber(bytes, 20, static_cast<std::uint32_t>(file.records.size()));
    for (const Bytes &record : file.records) {
        bytes.insert(bytes.end(), record.begin(), record.end());
    }
    return bytes;
}

inline void WriteBytes(const std::string &path, const Bytes &bytes) {
    std::ofstream(path, std::ios::binary | std::ios::trunc)
        .write(reinterpret_cast<const char *>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

// Whether the file holds that, but for its times.
inline bool Holds(const std::string &path, const Family &family, const File &file) {
    std::ifstream stream(path, std::ios::binary);
    Bytes bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (file.isCatalogue && bytes.size() >= 152) {
        std::fill(bytes.begin() + 12, bytes.begin() + 20, std::uint8_t{0});
    }
    return bytes == BytesOf(family, file);
}

// ---- both windows

// A level of undo.
struct Level {
    Records records;
    int selection;
    std::uint32_t sort;
    std::uint32_t changed;
};

class Sequence {
public:
    // Says what does not hold; it need not return.
    using Demand = std::function<void(bool holds, const char *what)>;

    // `folder` exists and is empty, or holds what an earlier sequence left in it.
    Sequence(std::span<const std::uint8_t> bytes, std::string documents, Demand sayer)
        : input(bytes), folder(std::move(documents)), demand(std::move(sayer)) {
        FillDesktop();
        Settle();
        WriteFiles();
        Open();
    }
    ~Sequence() {
        CloseDatabaseWindow(state);
        TheDesktop = {};
        TheDatabaseViews = {};
    }
    Sequence(const Sequence &) = delete;
    Sequence &operator=(const Sequence &) = delete;

    // Runs all operations of the input; their number.
    int Run() {
        Compare();
        int steps = 0;
        while (!input.empty()) {
            Step();
            Compare();
            ++steps;
        }
        CompareDisk();
        return steps;
    }

private:
    // ---- what the input says

    std::uint8_t Byte() {
        if (input.empty()) {
            return 0;
        }
        const std::uint8_t byte = input.front();
        input = input.subspan(1);
        return byte;
    }
    template <typename Container> auto AnyOf(const Container &items) {
        return *std::next(std::begin(items), Byte() % std::ssize(items));
    }

    void Settle() {
        const std::uint8_t bits = Byte();
        driver = bits & 1;
        CarefulMode = bits >> 1 & 1;
        CreateBackups = bits >> 2 & 1;
        trashWorks = (bits >> 3 & 1) == 0;
        WarnDatabaseChanged = bits >> 4 & 1;
        static constexpr std::uint32_t capacities[] = {3, 1, 2, 0};
        capacity = MaxUndoLevel = capacities[bits >> 5 & 3];
        hasJunk = bits >> 7;
        static constexpr std::uint32_t sorts[] = {107, 108, 109, 110, 0, 111, 0x80000000};
        sort = DatabaseSortMode = AnyOf(sorts);
        current = DatabaseCurrentName = "Voices";
    }

    std::string AnyText(unsigned number) {
        static const std::string texts[] = {
            "brass",  "Brass",  "BRASS 1", "a_b", "aBc", std::string(70, 'x'),
            "\xC4tz", "\xE4tz", "",        "z",
        };
        return texts[number % std::size(texts)];
    }
    std::uint32_t AnyNumber(unsigned number) {
        static constexpr std::uint32_t numbers[] = {0,          1,          31,        32,
                                                    0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
        return numbers[number % std::size(numbers)];
    }
    // The next of a row of records, which a byte of the input began.
    Bytes NextRecord() {
        const auto next = [this] {
            random = random * 1664525 + 1013904223;
            return random >> 24;
        };
        const Family &family = Families[driver];
        Bytes record = {'R', 'w', 'n', 'T'};
        record.insert(record.end(), family.id, family.id + 4);
        record.resize(family.RecordSize(), static_cast<std::uint8_t>(next()));
        PutNumber(record, DateAt, AnyNumber(next()));
        PutNumber(record, 16, 290);
        PutNumber(record, 20, family.sizeA);
        PutNumber(record, 24, family.sizeB);
        PutField(record, NameAt, AnyText(next()));
        PutField(record, SourceAt, AnyText(next()));
        PutNumber(record, PositionAt, AnyNumber(next()));
        switch (next() % 16) {
        case 0:
            PutNumber(record, 20, family.sizeA + 1); // more than there is
            break;
        case 1:
            PutNumber(record, 20, family.sizeA - 1);
            break;
        }
        return record;
    }

    void WriteFiles() {
        for (const auto &entry : std::filesystem::directory_iterator(folder)) {
            std::filesystem::remove(entry.path());
        }
        const std::uint8_t counts = Byte();
        random = Byte();
        for (const auto &[name, count] :
             {std::pair{"Voices", counts & 15}, std::pair{"brass", counts >> 4}}) {
            File &file = files[name];
            for (int index = 0; index < count; ++index) {
                file.records.push_back(NextRecord());
            }
        }
        if (hasJunk) {
            files["Junk"] = {.isCatalogue = false, .records = {}};
        }
        for (const auto &[name, file] : files) {
            WriteBytes(PathOf(name), BytesOf(Families[driver], file));
        }
    }

    // ---- the desktop and what the window asks

    void FillDesktop() {
        TheDesktop = {};
        TheDesktop.RunMessage = [this](MessageRequest &request) {
            const bool isQuestion = !request.button2.empty();
            request.result = isQuestion ? AnswerTo(asked++, !request.button3.empty()) : ResultYes;
        };
        TheDesktop.MoveToTrash = [this](const std::string &path) {
            return trashWorks && std::filesystem::remove(path);
        };
        TheDesktop.ShiftKeyDown = [this] { return shift; };
        TheDatabaseViews = {};
        TheDatabaseViews.AskForNewName = [this](QWidget *, const std::vector<std::string> &existing,
                                                const std::string &start) {
            demand(existing == NamesOnDisk() && start == "Voices", "the names that there are");
            return newName;
        };
        TheDatabaseViews.Audition = [this](QWidget *, const VoiceObject &voice) {
            ++heard;
            demand(voice.bytes == SelectedVoice(), "the voice of the selected record is heard");
        };
    }
    // What the user answers to the question of that number in this step.
    int AnswerTo(unsigned question, bool canCancel) const {
        static constexpr int choices[] = {ResultYes, ResultNo, ResultCancel};
        const int answer =
            choices[answers >> 2 * (question % 4) & 3 ? (answers >> question) % 3 : 0];
        return answer == ResultCancel && !canCancel ? ResultNo : answer;
    }
    int Ask(bool canCancel) { return AnswerTo(expected++, canCancel); }

    // ---- the model

    std::string PathOf(const std::string &name) const {
        return folder + "/" + name + Families[driver].extension;
    }
    std::string BackupOf(const std::string &name) const {
        return folder + "/" + name + Families[driver].backupExtension;
    }
    std::vector<std::string> NamesOnDisk() const {
        std::vector<std::string> found;
        for (const auto &[name, file] : files) {
            const auto place =
                std::ranges::find_if(found, [&name = name](const std::string &other) {
                    return CompareTexts(name, other) < 0;
                });
            found.insert(place, name);
        }
        return found;
    }
    bool HasSelection() const { return selection >= 0; }
    Bytes &Selected() { return records[static_cast<std::size_t>(selection)]; }
    Bytes SelectedVoice() const {
        return HasSelection() ? VoiceOf(records[static_cast<std::size_t>(selection)]) : Bytes();
    }

    void Insert(const Bytes &record) {
        const auto place = std::ranges::find_if(
            records, [&](const Bytes &other) { return StandsBefore(record, other, sort); });
        records.insert(place, record);
    }
    void InsertAll(const Records &all) {
        records.clear();
        for (const Bytes &record : all) {
            Insert(record);
        }
        selection = -1;
    }
    void Select(int row) { selection = row >= 0 && row < std::ssize(records) ? row : -1; }
    void Sort() {
        const std::optional<Bytes> former =
            HasSelection() ? std::optional(Selected()) : std::nullopt;
        InsertAll(Records(records));
        for (int row = 0; former && selection < 0 && row < std::ssize(records); ++row) {
            if (HaveSameFields(records[static_cast<std::size_t>(row)], *former)) {
                selection = row;
            }
        }
    }
    void Load() {
        const File &file = files[current]; // made if there is none
        InsertAll(file.records);
        Select(0);
    }
    bool Store() {
        const auto there = files.find(current);
        if (CarefulMode != 0 && there != files.end() && !there->second.isCatalogue) {
            return false;
        }
        if (CreateBackups != 0 && there != files.end()) {
            backups[current] = there->second;
        }
        files[current] = {.isCatalogue = true, .records = records};
        return true;
    }
    void Push() {
        if (records.empty() || capacity == 0) {
            return;
        }
        if (levels.size() == capacity) {
            levels.pop_front();
        }
        const Bytes &first = records[0];
        const std::uint64_t size =
            std::uint64_t{Number(first, 16)} + Number(first, 20) + Number(first, 24);
        if (size == first.size()) {
            levels.push_back({.records = records,
                              .selection = selection,
                              .sort = sort == 108 || sort == 110 ? sort : 107,
                              .changed = changed != 0});
        }
    }
    // Whether the records may go before those of `next` are shown.
    bool MayGo(const std::string &next) {
        if (CarefulMode == 0 || changed == 0) {
            return true;
        }
        if (next == current) {
            return false;
        }
        switch (Ask(true)) {
        case ResultYes:
            return Store();
        case ResultNo:
            return true;
        default:
            return false;
        }
    }
    void BeginRecords() {
        if (CarefulMode != 0) {
            changed = 0;
            levels.clear();
        }
    }

    // ---- the operations, on both

    void Open() {
        state = {};
        state.driverIndex = driver;
        OpenDatabaseWindow(state, nullptr);
        if (static_cast<std::int32_t>(sort) < 107) {
            sort = 107;
        }
        changed = 0;
        levels.clear();
        Load();
        names = NamesOnDisk();
        shown = current;
    }
    void Close() { CloseDatabaseWindow(state); }

    void Step() {
        const std::uint8_t kind = Byte();
        answers = kind >> 4; // most often Yes
        asked = expected = 0;
        switch (kind % 16) {
        case 0:
        case 1:
            return SortBy();
        case 2:
        case 3:
            return EditText();
        case 4:
            return EditDate();
        case 5:
            return EditPosition();
        case 6:
            return EndGesture();
        case 7:
            return Remove();
        case 8:
        case 9:
            return Undo();
        case 10:
            return ChangeSelection();
        case 11:
            return Switch();
        case 12:
            return New();
        case 13:
            return Delete();
        case 14:
            return Accept();
        case 15:
            return Byte() % 2 ? Cancel() : Audition();
        }
    }

    void SortBy() {
        sort = 107 + Byte() % 4u;
        RunDatabaseCommand(state, static_cast<int>(sort));
        Sort();
    }
    void EndGesture() {
        EndRecordGesture(state);
        Sort();
        changed = 1;
    }
    void EditText() {
        const std::string text = AnyText(Byte());
        const bool isName = Byte() % 2;
        AcceptRecordText(state, state.records.selection,
                         isName ? RecordField::Name : RecordField::Source, text);
        Push();
        if (HasSelection()) {
            PutField(Selected(), isName ? NameAt : SourceAt, text);
        }
        EndGesture();
    }
    void EditDate() {
        const std::uint32_t date = AnyNumber(Byte());
        AcceptRecordDate(state, state.records.selection, date);
        Push();
        if (HasSelection()) {
            PutNumber(Selected(), DateAt, date);
        }
        EndGesture();
    }
    void EditPosition() {
        const int index = Byte() % 34 - 1;
        AcceptRecordPosition(state, state.records.selection, index);
        if (index >= 0) {
            Push();
            if (HasSelection()) {
                PutNumber(Selected(), PositionAt, static_cast<std::uint32_t>(index));
            }
        }
        EndGesture();
    }
    void Remove() {
        RunDatabaseCommand(state, CommandRemoveRecord);
        if (records.size() < 2 || !HasSelection()) {
            return;
        }
        Push();
        records.erase(records.begin() + selection);
        selection = std::min(selection, static_cast<int>(records.size()) - 1);
        changed = 1;
    }
    void Undo() {
        RunDatabaseCommand(state, CommandUndoRecords);
        if (!levels.empty()) {
            const Level level = std::move(levels.back());
            levels.pop_back();
            sort = level.sort;
            changed = level.changed;
            InsertAll(level.records);
            Select(level.selection);
        }
        Sort();
    }
    void ChangeSelection() {
        const int row = Byte() % 40 - 1;
        ListSelect(state.records, row);
        Select(row);
    }
    void Switch() {
        const std::string name = AnyOf(names);
        state.shownName = name;
        ShowChosenDatabase(state);
        if (!MayGo(name)) {
            return;
        }
        shown = current = name;
        Load();
        BeginRecords();
    }
    void New() {
        const std::string name = "New " + std::to_string(Byte() % 4);
        newName = files.contains(name) || Byte() % 8 == 7 ? std::nullopt : std::optional(name);
        RunDatabaseCommand(state, CommandNewDatabase);
        if (!newName) {
            return;
        }
        switch (Ask(true)) {
        case ResultYes:
            if (const auto former = files.find(current); former != files.end() && name != current) {
                files[name] = former->second;
            }
            break;
        case ResultNo:
            if (!MayGo(name)) {
                return;
            }
            InsertAll({});
            BeginRecords();
            break;
        default:
            return;
        }
        current = name;
        changed = 1;
    }
    void Delete() {
        RunDatabaseCommand(state, CommandDeleteDatabase);
        const std::string name = shown;
        if (name == "Voices" || Ask(false) != ResultYes || (name != current && !MayGo(""))) {
            return;
        }
        std::erase(names, name);
        if (std::ranges::find(names, "Voices") == names.end()) {
            names.push_back("Voices");
            std::ranges::sort(names, [](const std::string &one, const std::string &other) {
                return CompareTexts(one, other) < 0;
            });
        }
        shown = current = "Voices";
        Load();
        BeginRecords();
        if (trashWorks) {
            files.erase(name);
        }
        if (backups.contains(name) && Ask(false) == ResultYes && trashWorks) {
            backups.erase(name);
        }
    }
    void Accept() {
        shift = Byte() % 4 == 3;
        const Bytes voice = shift ? Bytes() : SelectedVoice();
        const std::optional<int> result = AcceptDatabaseWindow(state);
        const bool isStored = changed == 0 || Store();
        if (!isStored && CarefulMode != 0) {
            demand(!result && state.chosen.bytes.empty(), "the window stays open");
            return;
        }
        demand(result == (shift ? 0 : 1), "the result of OK");
        demand(state.chosen.bytes == voice, "the voice of the selected record is chosen");
        CompareCurrent();
        Close();
        Open();
    }
    void Cancel() {
        const bool isClosed = CancelDatabaseWindow(state);
        const bool mayClose = changed == 0 || WarnDatabaseChanged == 0 || Ask(false) == ResultYes;
        demand(isClosed == mayClose, "the changes are asked about");
        if (isClosed) {
            CompareCurrent();
            Close();
            Open();
        }
    }
    void Audition() {
        heard = 0;
        RunDatabaseCommand(state, CommandAuditionRecord);
        demand(heard == (SelectedVoice().empty() ? 0 : 1), "a voice is heard where there is one");
    }

    // ---- what both hold

    void Compare() {
        demand(!RecordListFault(state.records), "the list is sound");
        demand(std::ranges::equal(state.records.items, records, {}, &DatabaseRecord::bytes),
               "the records in their order");
        demand(state.records.selection == selection, "the selection");
        demand(state.changed == changed, "the mark of a change");
        demand(state.names == names && state.shownName == shown, "the drop-down list");
        demand(DatabaseCurrentName == current, "the current catalogue");
        demand(DatabaseSortMode == sort, "the order");
        demand(DatabaseUndoAvailable() == !levels.empty(), "the levels of undo");
        demand(asked == expected, "as many questions as there are");
        const auto menu = DatabaseMenu(state, selection);
        for (const DatabaseMenuRow &row : menu) {
            demand(row.checked == (row.command == static_cast<int>(sort) && row.command != 0) &&
                       row.enabled == (row.command != CommandUndoRecords || !levels.empty()),
                   "the entries of the menu");
        }
    }
    void CompareCurrent() {
        const auto file = files.find(current);
        demand(file == files.end() ? !std::filesystem::exists(PathOf(current))
                                   : Holds(PathOf(current), Families[driver], file->second),
               "the catalogue on the disk");
    }
    void CompareDisk() {
        std::size_t there = 0;
        for (const auto &entry : std::filesystem::directory_iterator(folder)) {
            there += entry.is_regular_file();
        }
        demand(there == files.size() + backups.size(), "no other files");
        for (const auto &[name, file] : files) {
            demand(Holds(PathOf(name), Families[driver], file), "each catalogue");
        }
        for (const auto &[name, file] : backups) {
            demand(Holds(BackupOf(name), Families[driver], file), "each backup");
        }
    }

    std::span<const std::uint8_t> input;
    std::string folder;
    Demand demand;

    DatabaseWindow state;

    // The model.
    int driver = 0;
    Files files, backups;
    std::string current, shown;
    std::vector<std::string> names;
    std::uint32_t sort = 0;
    std::uint32_t capacity = 0; // levels of undo
    Records records;
    int selection = -1;
    std::uint32_t changed = 0;
    std::deque<Level> levels;

    // What the user and the system do.
    bool trashWorks = true, hasJunk = false, shift = false;
    std::uint32_t random = 0;
    std::optional<std::string> newName;
    unsigned answers = 0;
    unsigned asked = 0, expected = 0;
    int heard = 0;
};

} // namespace tonewright::window_model
