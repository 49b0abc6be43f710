// The archive's tables.
#include "extras/archive_store.h"

#include "common/folders.h"
#include "common/platform.h"
#include "common/utf8_path.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/voice_codec.h"
#include "extras/sqlite_database.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace tonewright {

struct ArchiveStore {
    std::string path;
    int waitMilliseconds = 0;
    SqlitePointer database;
    SqlitePointer lock; // while the archive is brought up
    bool featuresFit = false;
    SqliteStatement insertFolder, updateFolder, insertFile, updateFile, removeFile, insertPlaces,
        insertFeatures, removePlaces, removeFeatures; // made when they are first used
};

namespace {

// Raised when the reader finds other voices than it did: all files are read anew.
constexpr int ReaderVersion = 1;
constexpr int MadeBy = ReaderVersion * 1000 + VoiceFeatureVersion;

// That a file is an archive: "TnAr".
#define ARCHIVE_APPLICATION "1416511858"

constexpr std::size_t PlaceSize = 20; // bytes
constexpr std::int64_t PiecesOfFile = 1 << 20;

// What makes a schema out of the one before it. Rows are added, never changed: an archive of any
// former version is brought up by those that it lacks.
constexpr const char *Steps[] = {
    "PRAGMA application_id = " ARCHIVE_APPLICATION ";"
    "CREATE TABLE archive (changes INTEGER NOT NULL, made INTEGER NOT NULL);"
    "INSERT INTO archive VALUES (0, 0);"
    "CREATE TABLE folder (id INTEGER PRIMARY KEY, root INTEGER NOT NULL, path BLOB NOT NULL);"
    "CREATE TABLE file (id INTEGER PRIMARY KEY, folder INTEGER NOT NULL, size INTEGER NOT NULL,"
    " changed INTEGER NOT NULL, status INTEGER NOT NULL, content INTEGER NOT NULL,"
    " voices INTEGER NOT NULL, again INTEGER NOT NULL, name BLOB NOT NULL, fault TEXT NOT NULL);"
    "CREATE TABLE places (id INTEGER PRIMARY KEY, voices BLOB NOT NULL);"
    "CREATE TABLE features (id INTEGER PRIMARY KEY, voices BLOB NOT NULL);",
};

// What a new file is, which its first page says and nothing changes later. Pages of this size hold
// the features of several banks with less room left over than smaller ones.
constexpr const char *SetUp = "PRAGMA page_size = 16384;"
                              "PRAGMA auto_vacuum = INCREMENTAL;";
// Of each connection. A commit does not wait for the disk, which keeps their order: after a power
// cut the last ones may be missing, and the next update makes them again.
constexpr const char *Ways = "PRAGMA journal_mode = WAL;"
                             "PRAGMA synchronous = NORMAL;"
                             "PRAGMA temp_store = MEMORY;"
                             "PRAGMA cache_size = -8192;"
                             "PRAGMA wal_autocheckpoint = 1024;"
                             "PRAGMA journal_size_limit = 33554432;";

struct FaultText {
    SqliteFault fault;
    const char *text;
};
constexpr FaultText FaultTexts[] = {
    {SqliteFault::Missing, "The archive cannot be opened."},
    {SqliteFault::Busy, "The archive is in use by another program."},
    {SqliteFault::Full, "The disk is full."},
    {SqliteFault::Denied, "The archive may not be written."},
    {SqliteFault::Damaged,
     "The archive is damaged. It is an index only: delete its file and add your folders anew."},
    {SqliteFault::Unavailable,
     "This program has no archive, since SQLite, which keeps it, is not there."},
    {SqliteFault::Other, "The archive cannot be read or written."},
};

std::string TextOf(const SqliteFailure &failure) {
    const auto row = std::ranges::find(FaultTexts, failure.fault, &FaultText::fault);
    std::string text = row == std::end(FaultTexts) ? "" : row->text;
    if (failure.fault == SqliteFault::Other && !failure.text.empty()) {
        text.back() = ':';
        text += ' ' + failure.text + '.';
    }
    return text;
}

// What calls have met since the last question as an error for the user. True when all went well.
bool Went(ArchiveStore &store, ArchiveError &error) {
    const SqliteFailure failure = TakeFailure(*store.database);
    error.text = TextOf(failure);
    return failure.fault == SqliteFault::None;
}

ArchiveStorePointer Refuse(ArchiveError &error, const std::string &text) {
    error.text = text;
    return nullptr;
}

std::span<const std::uint8_t> BytesOf(const std::string &text) {
    return {reinterpret_cast<const std::uint8_t *>(text.data()), text.size()};
}

// What stands in a file under that path.
enum class Contents { Nothing, Archive, OlderArchive, NewerArchive, Foreign, Unread };

Contents ContentsOf(SqliteDatabase &database) {
    // One state of the file, whoever else is about to make it.
    RunSql(database, "BEGIN");
    const auto application = NumberOfSql(database, "PRAGMA application_id");
    const auto version = SqliteVersion(database);
    const auto tables = NumberOfSql(database, "SELECT count(*) FROM sqlite_master");
    if (!application || !version || !tables) {
        RollBack(database);
        return Contents::Unread;
    }
    RunSql(database, "COMMIT");
    const bool ours = std::to_string(*application) == ARCHIVE_APPLICATION;
    if (!ours || *version <= 0) {
        const bool nothing = *application == 0 && *version == 0 && *tables == 0;
        return nothing ? Contents::Nothing : Contents::Foreign;
    }
    const auto present = static_cast<std::int64_t>(std::size(Steps));
    return *version == present  ? Contents::Archive
           : *version < present ? Contents::OlderArchive
                                : Contents::NewerArchive;
}

bool HasBytes(const std::string &path) {
    std::error_code error;
    const auto size = std::filesystem::file_size(PathOfUtf8(path), error);
    return !error && size > 0;
}

// A connection for reading. Where nothing can be written beside the file it is read as it stands,
// unless a program was killed before it had brought it to its last state.
SqlitePointer OpenForReading(const std::string &path, int wait, Contents &contents,
                             SqliteFailure &failure) {
    SqlitePointer database;
    for (const SqliteUse use : {SqliteUse::Read, SqliteUse::ReadStill}) {
        database = OpenSqlite(path, use, wait, failure.fault);
        if (!database) {
            return nullptr;
        }
        contents = ContentsOf(*database);
        failure = TakeFailure(*database);
        const bool lacksCompany = failure.fault == SqliteFault::Missing ||
                                  failure.fault == SqliteFault::Denied ||
                                  failure.fault == SqliteFault::Full;
        if (!lacksCompany || HasBytes(path + "-wal")) {
            break;
        }
    }
    return database;
}

// Brings a file that was opened for writing to what this version writes.
bool BringUp(ArchiveStore &store) {
    SqliteDatabase &database = *store.database;
    if (!BringSqliteUp(database, Steps)) {
        return false;
    }
    const auto made = NumberOfSql(database, "SELECT made FROM archive");
    if (!made || *made == MadeBy) {
        return made.has_value();
    }
    // In one step with the mark, so that a kill leaves either all to be read again or nothing done.
    const std::string anew = "BEGIN IMMEDIATE; DELETE FROM features; UPDATE file SET again = 2;"
                             "UPDATE archive SET changes = changes + 1, made = " +
                             std::to_string(MadeBy) + "; COMMIT";
    return RunSql(database, anew.c_str()) || RollBack(database);
}

// A statement, made when it is first used.
SqliteStatement &Ready(ArchiveStore &store, SqliteStatement &statement, const char *sql) {
    if (!statement) {
        statement = PrepareSql(*store.database, sql);
    }
    return statement;
}

// Runs a statement of a batch; an error drops the batch.
bool RunOfBatch(ArchiveStore &store, const SqliteStatement &statement, ArchiveError &error) {
    if (Run(*store.database, statement)) {
        return true;
    }
    RollBack(*store.database);
    Went(store, error);
    return false;
}

void Encode(const ArchivePlace &place, std::uint8_t *bytes) {
    for (int byte = 0; byte < 8; ++byte) {
        bytes[byte] = static_cast<std::uint8_t>(place.identity >> 8 * byte);
    }
    std::ranges::copy(place.name, bytes + 8);
    bytes[18] = place.family;
    bytes[19] = place.algorithm;
}

ArchivePlace Decode(const std::uint8_t *bytes) {
    ArchivePlace place;
    for (int byte = 0; byte < 8; ++byte) {
        place.identity |= static_cast<VoiceIdentity>(bytes[byte]) << 8 * byte;
    }
    std::copy_n(bytes + 8, place.name.size(), place.name.begin());
    place.family = bytes[18];
    place.algorithm = bytes[19];
    return place;
}

// Reads pieces of a table: visit(file, first, bytes), which ends it with false.
template <typename Visit>
bool ReadPieces(ArchiveStore &store, const char *sql, ArchiveError &error, Visit visit) {
    const SqliteStatement rows = PrepareSql(*store.database, sql);
    bool goOn = true;
    while (goOn && NextRow(*store.database, rows)) {
        const std::int64_t id = NumberAt(rows, 0);
        const auto first = static_cast<std::uint64_t>(id % PiecesOfFile) * ArchivePieceVoices;
        goOn = visit(id / PiecesOfFile, first, BytesAt(rows, 1));
    }
    return Went(store, error);
}

// What a check finds of the pieces of a table: how many whole voices of each file there are, if
// each piece but a file's last is full.
struct CountedPieces {
    const char *table;
    std::size_t voiceSize; // bytes
    std::vector<std::pair<std::int64_t, std::uint64_t>> files = {};
    bool whole = true;

    void Count(std::int64_t file, std::uint64_t first, std::size_t bytes) {
        if (files.empty() || files.back().first != file) {
            files.emplace_back(file, 0);
        }
        whole = whole && bytes % voiceSize == 0 && files.back().second == first;
        files.back().second = first + bytes / voiceSize;
    }
    std::uint64_t Of(std::int64_t file) const {
        const auto place = std::ranges::lower_bound(files, file, {},
                                                    &std::pair<std::int64_t, std::uint64_t>::first);
        return place != files.end() && place->first == file ? place->second : 0;
    }
};

} // namespace

std::string ArchivePath() {
    return ProductUserFile("Archive.sqlite");
}

DriverId DriverOfArchiveFamily(std::uint8_t family) {
    return family == ArchiveFamilyReface ? RefaceDriverId : Dx7DriverId;
}

std::uint8_t ArchiveFamilyOfForm(VoiceForm form) {
    return form == VoiceForm::Reface ? ArchiveFamilyReface : ArchiveFamilyDx7;
}

std::string PathInFolder(const std::string &folder, const std::string &name) {
    return folder + '/' + name;
}

bool IsInArchiveFolder(std::string_view path, std::string_view folder) {
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

std::string ArchiveFolderPath(const std::string &path) {
    const std::filesystem::path absolute = PathOfUtf8(AbsolutePath(path));
    std::filesystem::path plain = absolute.lexically_normal();
    if (std::ranges::find(absolute, "..") != absolute.end()) {
        // What it leads up from may be a link.
        std::error_code error;
        const std::filesystem::path real = std::filesystem::canonical(absolute, error);
        plain = error ? plain : real;
    }
    std::string text = Utf8OfPath(plain);
    std::ranges::replace(text, PathSeparator, '/');
    while (!text.empty() && text.back() == '/') {
        text.pop_back();
    }
    return text;
}

void CloseArchive::operator()(ArchiveStore *store) const {
    delete store;
}

ArchiveStorePointer OpenArchive(const std::string &path, ArchiveUse use, ArchiveError &error,
                                int waitMilliseconds) {
    error = {};
    const std::filesystem::path file = PathOfUtf8(path);
    std::error_code ignored;
    if (use == ArchiveUse::Write) {
        std::filesystem::create_directories(file.parent_path(), ignored);
    } else if (!HasBytes(path)) {
        return nullptr;
    }
    ArchiveStorePointer store(
        new ArchiveStore{path, waitMilliseconds, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}});
    Contents contents = Contents::Unread;
    SqliteFailure failure;
    if (use == ArchiveUse::Write) {
        store->database = OpenSqlite(path, SqliteUse::Write, waitMilliseconds, failure.fault);
        if (store->database) {
            contents = ContentsOf(*store->database);
            failure = TakeFailure(*store->database);
        }
    } else {
        store->database = OpenForReading(path, waitMilliseconds, contents, failure);
    }
    switch (contents) {
    case Contents::Unread:
        return Refuse(error, TextOf(failure));
    case Contents::Foreign:
        return Refuse(error, "This file is something else than an archive.");
    case Contents::NewerArchive:
        return Refuse(error, "This archive was made by a newer version of the program.");
    case Contents::OlderArchive:
        if (use == ArchiveUse::Read) {
            if (!OpenArchive(path, ArchiveUse::Write, error, waitMilliseconds)) {
                return nullptr;
            }
        }
        break;
    case Contents::Nothing:
        if (use == ArchiveUse::Read) {
            return nullptr;
        }
        RunSql(*store->database, SetUp);
        break;
    case Contents::Archive:
        break;
    }
    if (use == ArchiveUse::Write) {
        RunSql(*store->database, Ways);
        TakeFailure(*store->database);
        if (IsReadOnly(*store->database)) {
            return Refuse(error, TextOf({SqliteFault::Denied, {}}));
        }
    }
    const bool isUp = use == ArchiveUse::Read || BringUp(*store);
    const auto made =
        isUp ? NumberOfSql(*store->database, "SELECT made FROM archive") : std::nullopt;
    store->featuresFit = made == MadeBy;
    if (!Went(*store, error)) {
        return nullptr;
    }
    return store;
}

ArchiveSnapshot::ArchiveSnapshot(ArchiveStore &ofStore) : store(ofStore) {
    RunSql(*store.database, "BEGIN");
}

ArchiveSnapshot::~ArchiveSnapshot() {
    RunSql(*store.database, "ROLLBACK");
    TakeFailure(*store.database);
}

std::vector<ArchiveFolder> ArchiveFolders(ArchiveStore &store, ArchiveError &error) {
    std::vector<ArchiveFolder> folders;
    const SqliteStatement rows =
        PrepareSql(*store.database, "SELECT id, root, path FROM folder ORDER BY id");
    while (NextRow(*store.database, rows)) {
        folders.push_back(
            {NumberAt(rows, 0), std::string(TextAt(rows, 2)), NumberAt(rows, 1) != 0});
    }
    Went(store, error);
    return folders;
}

bool ReadArchiveFiles(ArchiveStore &store, const std::function<bool(ArchiveFile &)> &visit,
                      ArchiveError &error) {
    const SqliteStatement rows =
        PrepareSql(*store.database, "SELECT id, folder, size, changed, status, content, voices,"
                                    " again, name, fault FROM file ORDER BY id");
    ArchiveFile file;
    bool goOn = true;
    while (goOn && NextRow(*store.database, rows)) {
        file.id = NumberAt(rows, 0);
        file.folder = NumberAt(rows, 1);
        file.size = static_cast<std::uint64_t>(NumberAt(rows, 2));
        file.changed = NumberAt(rows, 3);
        file.status = NumberAt(rows, 4);
        file.content = static_cast<std::uint64_t>(NumberAt(rows, 5));
        file.voices = static_cast<std::uint64_t>(NumberAt(rows, 6));
        file.again = static_cast<ReadAgain>(NumberAt(rows, 7));
        file.name = TextAt(rows, 8);
        file.fault = TextAt(rows, 9);
        goOn = visit(file);
    }
    return Went(store, error);
}

bool ReadArchivePlaces(ArchiveStore &store, const PlacesVisitor &visit, ArchiveError &error) {
    std::vector<ArchivePlace> places;
    return ReadPieces(
        store, "SELECT id, voices FROM places ORDER BY id", error,
        [&](std::int64_t file, std::uint64_t first, std::span<const std::uint8_t> bytes) {
            places.clear();
            for (; bytes.size() >= PlaceSize; bytes = bytes.subspan(PlaceSize)) {
                places.push_back(Decode(bytes.data()));
            }
            return visit(file, first, places);
        });
}

bool ReadArchiveFeatures(ArchiveStore &store, const FeaturesVisitor &visit, ArchiveError &error) {
    error = {};
    if (!store.featuresFit) {
        return true;
    }
    static_assert(sizeof(VoiceFeatures) == VoiceFeatureSize && alignof(VoiceFeatures) == 1);
    return ReadPieces(
        store, "SELECT id, voices FROM features ORDER BY id", error,
        [&](std::int64_t file, std::uint64_t first, std::span<const std::uint8_t> bytes) {
            const auto *features = reinterpret_cast<const VoiceFeatures *>(bytes.data());
            return visit(file, first, std::span(features, bytes.size() / VoiceFeatureSize));
        });
}

bool LacksArchiveFeatures(ArchiveStore &store, ArchiveError &error) {
    const auto lacking = NumberOfSql(
        *store.database, "SELECT EXISTS (SELECT 1 FROM file WHERE again = 2 AND voices > 0)");
    return Went(store, error) && (!store.featuresFit || lacking == 1);
}

std::int64_t ArchiveVersion(ArchiveStore &store, ArchiveError &error) {
    const auto changes = NumberOfSql(*store.database, "SELECT changes FROM archive");
    Went(store, error);
    return changes.value_or(0);
}

std::vector<std::string> CheckArchive(ArchiveStore &store, ArchiveError &error) {
    std::vector<std::string> lines;
    const ArchiveSnapshot snapshot(store);
    const SqliteStatement rows = PrepareSql(*store.database, "PRAGMA integrity_check");
    while (NextRow(*store.database, rows)) {
        if (TextAt(rows, 0) != "ok") {
            lines.emplace_back(TextAt(rows, 0));
        }
    }
    if (!Went(store, error) || !lines.empty()) {
        return lines;
    }
    CountedPieces places{"places", PlaceSize}, features{"features", VoiceFeatureSize};
    for (CountedPieces *pieces : {&places, &features}) {
        const std::string sql =
            std::string("SELECT id, voices FROM ") + pieces->table + " ORDER BY id";
        const auto count = [pieces](std::int64_t file, std::uint64_t first,
                                    std::span<const std::uint8_t> bytes) {
            pieces->Count(file, first, bytes.size());
            return true;
        };
        if (!ReadPieces(store, sql.c_str(), error, count)) {
            return lines;
        }
        if (!pieces->whole) {
            lines.push_back(std::string("A piece of the table \"") + pieces->table +
                            "\" is not whole.");
        }
    }
    std::vector<ArchiveFolder> folders = ArchiveFolders(store, error);
    std::size_t withPlaces = 0, withFeatures = 0;
    const auto check = [&](ArchiveFile &file) {
        const auto folder = std::ranges::lower_bound(folders, file.folder, {}, &ArchiveFolder::id);
        const bool known = folder != folders.end() && folder->id == file.folder;
        const std::string path = PathInFolder(known ? folder->path : "?", file.name);
        if (!known) {
            lines.push_back(path + ": its folder is missing.");
        }
        const std::uint64_t counted = places.Of(file.id), described = features.Of(file.id);
        if (counted != file.voices) {
            lines.push_back(path + ": " + std::to_string(counted) + " places for " +
                            std::to_string(file.voices) + " voices.");
        }
        if (described != file.voices && file.again != ReadAgain::Anew) {
            lines.push_back(path + ": features of " + std::to_string(described) + " voices of " +
                            std::to_string(file.voices) + ".");
        }
        withPlaces += counted > 0;
        withFeatures += described > 0;
        return true;
    };
    if (!error && ReadArchiveFiles(store, check, error) &&
        (withPlaces != places.files.size() || withFeatures != features.files.size())) {
        lines.push_back("There are voices of files that the archive does not have.");
    }
    return lines;
}

bool ForgetFolder(ArchiveStore &store, const std::string &path, ArchiveError &error,
                  const std::function<bool()> &goOn) {
    if (!LockArchive(store, goOn, error)) {
        return false;
    }
    // The root of all is called by no letter at all.
    const std::string wanted = path.empty() ? path : ArchiveFolderPath(path);
    std::vector<ArchiveFolder> folders = ArchiveFolders(store, error);
    std::vector<std::int64_t> ids, files;
    bool found = false;
    std::vector<std::string> others; // that stay
    for (const ArchiveFolder &folder : folders) {
        if (folder.root && folder.path != wanted && IsInArchiveFolder(folder.path, wanted)) {
            others.push_back(folder.path);
        }
    }
    const auto isOfAnother = [&others](const std::string &below) {
        return std::ranges::any_of(
            others, [&below](const std::string &other) { return IsInArchiveFolder(below, other); });
    };
    for (const ArchiveFolder &folder : folders) {
        if (IsInArchiveFolder(folder.path, wanted) && !isOfAnother(folder.path)) {
            ids.push_back(folder.id);
            found = found || (folder.root && folder.path == wanted);
        }
    }
    const auto collect = [&](ArchiveFile &file) {
        if (std::ranges::binary_search(ids, file.folder)) {
            files.push_back(file.id);
        }
        return true;
    };
    bool done = found && !error && ReadArchiveFiles(store, collect, error) &&
                BeginArchiveBatch(store, error);
    for (std::size_t file = 0; done && file < files.size(); ++file) {
        done = RemoveArchiveFile(store, files[file], error);
    }
    for (std::size_t folder = 0; done && folder < ids.size(); ++folder) {
        const SqliteStatement remove =
            PrepareSql(*store.database, "DELETE FROM folder WHERE id = ?");
        Bind(remove, 1, ids[folder]);
        done = RunOfBatch(store, remove, error);
    }
    done = done && EndArchiveBatch(store, error);
    if (done) {
        // Gives what is free back to the disk; what cannot be given back is used again.
        RunSql(*store.database, "PRAGMA incremental_vacuum");
        TakeFailure(*store.database);
    }
    UnlockArchive(store);
    return done;
}

bool LockArchive(ArchiveStore &store, const std::function<bool()> &goOn, ArchiveError &error) {
    using Clock = std::chrono::steady_clock;
    constexpr int piece = 50; // milliseconds
    const auto end = Clock::now() + std::chrono::milliseconds(store.waitMilliseconds);
    error = {};
    SqliteFailure failure;
    // A file of its own without contents, whose lock the system takes back from a killed program.
    SqlitePointer lock = OpenSqlite(store.path + "-lock", SqliteUse::Write, piece, failure.fault);
    while (lock && !RunSql(*lock, "BEGIN EXCLUSIVE")) {
        failure = TakeFailure(*lock);
        if (failure.fault != SqliteFault::Busy || Clock::now() >= end) {
            lock = nullptr;
        } else if (goOn && !goOn()) {
            return false;
        }
    }
    if (!lock) {
        error.text = TextOf(failure);
        return false;
    }
    store.lock = std::move(lock);
    return true;
}

void UnlockArchive(ArchiveStore &store) {
    store.lock = nullptr;
}

bool BeginArchiveBatch(ArchiveStore &store, ArchiveError &error) {
    RunSql(*store.database, "BEGIN IMMEDIATE");
    return Went(store, error);
}

bool EndArchiveBatch(ArchiveStore &store, ArchiveError &error) {
    const SqliteStatement commit = PrepareSql(*store.database, "COMMIT");
    const SqliteStatement count =
        PrepareSql(*store.database, "UPDATE archive SET changes = changes + 1");
    return RunOfBatch(store, count, error) && RunOfBatch(store, commit, error);
}

bool DropArchiveBatch(ArchiveStore &store, ArchiveError &error) {
    RunSql(*store.database, "ROLLBACK");
    return Went(store, error);
}

bool PutArchiveFolder(ArchiveStore &store, ArchiveFolder &folder, ArchiveError &error) {
    const bool isNew = folder.id == 0;
    const SqliteStatement &put =
        isNew
            ? Ready(store, store.insertFolder, "INSERT INTO folder (root, path) VALUES (?, ?)")
            : Ready(store, store.updateFolder, "UPDATE folder SET root = ?, path = ? WHERE id = ?");
    Bind(put, 1, std::int64_t{folder.root});
    Bind(put, 2, BytesOf(folder.path));
    if (!isNew) {
        Bind(put, 3, folder.id);
    }
    if (!RunOfBatch(store, put, error)) {
        return false;
    }
    folder.id = isNew ? LastRowOf(*store.database) : folder.id;
    return true;
}

bool PutArchiveFile(ArchiveStore &store, ArchiveFile &file, ArchiveError &error) {
    const bool isNew = file.id == 0;
    const SqliteStatement &put =
        isNew ? Ready(store, store.insertFile,
                      "INSERT INTO file (folder, size, changed, status, content, voices, again,"
                      " name, fault) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)")
              : Ready(store, store.updateFile,
                      "UPDATE file SET folder = ?, size = ?, changed = ?, status = ?, content = ?,"
                      " voices = ?, again = ?, name = ?, fault = ? WHERE id = ?");
    Bind(put, 1, file.folder);
    Bind(put, 2, static_cast<std::int64_t>(file.size));
    Bind(put, 3, file.changed);
    Bind(put, 4, file.status);
    Bind(put, 5, static_cast<std::int64_t>(file.content));
    Bind(put, 6, static_cast<std::int64_t>(file.voices));
    Bind(put, 7, static_cast<std::int64_t>(file.again));
    Bind(put, 8, BytesOf(file.name));
    Bind(put, 9, std::string_view(file.fault));
    if (!isNew) {
        Bind(put, 10, file.id);
    }
    if (!RunOfBatch(store, put, error)) {
        return false;
    }
    file.id = isNew ? LastRowOf(*store.database) : file.id;
    return true;
}

bool PutArchiveVoices(ArchiveStore &store, std::int64_t file, std::uint64_t first,
                      std::span<const ArchivePlace> places, std::span<const VoiceFeatures> features,
                      ArchiveError &error) {
    const SqliteStatement &putPlaces =
        Ready(store, store.insertPlaces, "INSERT INTO places VALUES (?, ?)");
    const SqliteStatement &putFeatures =
        Ready(store, store.insertFeatures, "INSERT INTO features VALUES (?, ?)");
    std::vector<std::uint8_t> bytes;
    for (std::size_t done = 0; done < places.size(); done += ArchivePieceVoices) {
        const std::size_t count = std::min(places.size() - done, ArchivePieceVoices);
        const std::int64_t id =
            file * PiecesOfFile + static_cast<std::int64_t>((first + done) / ArchivePieceVoices);
        bytes.resize(count * PlaceSize);
        for (std::size_t voice = 0; voice < count; ++voice) {
            Encode(places[done + voice], bytes.data() + voice * PlaceSize);
        }
        Bind(putPlaces, 1, id);
        Bind(putPlaces, 2, std::span<const std::uint8_t>(bytes));
        if (!RunOfBatch(store, putPlaces, error)) {
            return false;
        }
        const VoiceFeatures *from = features.data() + done;
        Bind(putFeatures, 1, id);
        Bind(putFeatures, 2, std::span(from->data(), count * VoiceFeatureSize));
        if (!RunOfBatch(store, putFeatures, error)) {
            return false;
        }
    }
    return true;
}

bool RemoveArchiveVoices(ArchiveStore &store, std::int64_t file, ArchiveError &error) {
    const SqliteStatement *const removes[] = {
        &Ready(store, store.removePlaces, "DELETE FROM places WHERE id BETWEEN ? AND ?"),
        &Ready(store, store.removeFeatures, "DELETE FROM features WHERE id BETWEEN ? AND ?")};
    for (const SqliteStatement *remove : removes) {
        Bind(*remove, 1, file * PiecesOfFile);
        Bind(*remove, 2, file * PiecesOfFile + PiecesOfFile - 1);
        if (!RunOfBatch(store, *remove, error)) {
            return false;
        }
    }
    return true;
}

bool RemoveArchiveFile(ArchiveStore &store, std::int64_t file, ArchiveError &error) {
    const SqliteStatement &remove = Ready(store, store.removeFile, "DELETE FROM file WHERE id = ?");
    Bind(remove, 1, file);
    return RunOfBatch(store, remove, error) && RemoveArchiveVoices(store, file, error);
}

bool RemoveEmptyArchiveFolders(ArchiveStore &store, ArchiveError &error) {
    return RunOfBatch(store,
                      PrepareSql(*store.database, "DELETE FROM folder WHERE root = 0 AND"
                                                  " id NOT IN (SELECT folder FROM file)"),
                      error);
}

} // namespace tonewright
