// A database file of SQLite, and statements on it.
#include "extras/sqlite_database.h"

#ifdef TONEWRIGHT_SQLITE_FILE
#include "common/loaded_library.h"
#endif

#include <sqlite3.h>
#include <utility>

namespace tonewright {

struct SqliteDatabase {
    sqlite3 *connection = nullptr;
    SqliteFailure failure;
};

namespace {

// ---- the library

// The calls that are used, under their own names.
#define SQLITE_CALLS(CALL)                                                                         \
    CALL(sqlite3_bind_blob64)                                                                      \
    CALL(sqlite3_bind_int64)                                                                       \
    CALL(sqlite3_bind_text64)                                                                      \
    CALL(sqlite3_busy_timeout)                                                                     \
    CALL(sqlite3_close_v2)                                                                         \
    CALL(sqlite3_column_blob)                                                                      \
    CALL(sqlite3_column_bytes)                                                                     \
    CALL(sqlite3_column_int64)                                                                     \
    CALL(sqlite3_db_readonly)                                                                      \
    CALL(sqlite3_errmsg)                                                                           \
    CALL(sqlite3_exec)                                                                             \
    CALL(sqlite3_extended_result_codes)                                                            \
    CALL(sqlite3_finalize)                                                                         \
    CALL(sqlite3_last_insert_rowid)                                                                \
    CALL(sqlite3_open_v2)                                                                          \
    CALL(sqlite3_prepare_v2)                                                                       \
    CALL(sqlite3_reset)                                                                            \
    CALL(sqlite3_step)

struct SqliteLibrary {
#define DECLARE(name) decltype(&::name) name = nullptr;
    SQLITE_CALLS(DECLARE)
#undef DECLARE
    bool isThere = false;
};

// A file of the system is loaded when a database is first opened: few runs of a program open one,
// and each would have to wait for it at its start.
SqliteLibrary LoadSqlite() {
    SqliteLibrary found;
#ifdef TONEWRIGHT_SQLITE_FILE
    void *file = LoadSystemLibrary(TONEWRIGHT_SQLITE_FILE);
    found.isThere = file != nullptr;
#define FIND(name) found.isThere = found.isThere && FindFunction(file, #name, found.name);
    SQLITE_CALLS(FIND)
#undef FIND
#else
#define TAKE(name) found.name = ::name;
    SQLITE_CALLS(TAKE)
#undef TAKE
    found.isThere = true;
#endif
    return found;
}

const SqliteLibrary &Library() {
    static const SqliteLibrary library = LoadSqlite();
    return library;
}

// ---- what its calls give

SqliteFault FaultOfCode(int code) {
    switch (code & 0xFF) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
        return SqliteFault::None;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_PROTOCOL:
        return SqliteFault::Busy;
    case SQLITE_FULL:
        return SqliteFault::Full;
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_AUTH:
        return SqliteFault::Denied;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_FORMAT:
        return SqliteFault::Damaged;
    case SQLITE_IOERR:
        // The room that programs share beside the file, before anything stands in it.
        return code == SQLITE_IOERR_SHMSIZE ? SqliteFault::Full : SqliteFault::Other;
    case SQLITE_CANTOPEN:
        return SqliteFault::Missing;
    default:
        return SqliteFault::Other;
    }
}

// Notes what a call gave. True when it went well.
bool Note(SqliteDatabase &database, int code) {
    const SqliteFault fault = FaultOfCode(code);
    if (fault == SqliteFault::None) {
        return true;
    }
    database.failure = {fault, Library().sqlite3_errmsg(database.connection)};
    return false;
}

// A path as the name of a file that nobody changes.
std::string StillName(const std::string &path) {
    static const char digits[] = "0123456789ABCDEF";
    std::string name = "file:";
    for (const char character : path) {
        const auto byte = static_cast<unsigned char>(character);
        if (character == '?' || character == '#' || character == '%') {
            name += {'%', digits[byte / 16], digits[byte % 16]};
        } else {
            name += character;
        }
    }
    return name + "?immutable=1";
}

} // namespace

void CloseSqlite::operator()(SqliteDatabase *database) const {
    Library().sqlite3_close_v2(database->connection);
    delete database;
}

void FinishSqlite::operator()(sqlite3_stmt *statement) const {
    Library().sqlite3_finalize(statement);
}

SqlitePointer OpenSqlite(const std::string &path, SqliteUse use, int waitMilliseconds,
                         SqliteFault &fault) {
    if (!Library().isThere) {
        fault = SqliteFault::Unavailable;
        return nullptr;
    }
    SqlitePointer database(new SqliteDatabase);
    const bool still = use == SqliteUse::ReadStill;
    // A reader that may write removes what stands beside the file when it is the last to close it.
    const int flags = SQLITE_OPEN_NOMUTEX |
                      (still ? SQLITE_OPEN_READONLY | SQLITE_OPEN_URI : SQLITE_OPEN_READWRITE) |
                      (use == SqliteUse::Write ? SQLITE_OPEN_CREATE : 0);
    const std::string name = still ? StillName(path) : path;
    const int code = Library().sqlite3_open_v2(name.c_str(), &database->connection, flags, nullptr);
    fault = FaultOfCode(code);
    if (fault != SqliteFault::None) {
        return nullptr;
    }
    Library().sqlite3_extended_result_codes(database->connection, 1);
    Library().sqlite3_busy_timeout(database->connection, waitMilliseconds);
    if (use != SqliteUse::Write) {
        Library().sqlite3_exec(database->connection, "PRAGMA query_only = 1", nullptr, nullptr,
                               nullptr);
    }
    return database;
}

bool IsReadOnly(SqliteDatabase &database) {
    return Library().sqlite3_db_readonly(database.connection, "main") == 1;
}

SqliteFailure TakeFailure(SqliteDatabase &database) {
    return std::exchange(database.failure, {});
}

bool RunSql(SqliteDatabase &database, const char *sql) {
    return Note(database,
                Library().sqlite3_exec(database.connection, sql, nullptr, nullptr, nullptr));
}

bool RollBack(SqliteDatabase &database) {
    const SqliteFailure failure = TakeFailure(database);
    RunSql(database, "ROLLBACK");
    database.failure = failure;
    return false;
}

std::optional<std::int64_t> NumberOfSql(SqliteDatabase &database, const char *sql) {
    const SqliteStatement statement = PrepareSql(database, sql);
    if (!NextRow(database, statement)) {
        return std::nullopt;
    }
    return NumberAt(statement, 0);
}

SqliteStatement PrepareSql(SqliteDatabase &database, const char *sql) {
    sqlite3_stmt *statement = nullptr;
    Note(database, Library().sqlite3_prepare_v2(database.connection, sql, -1, &statement, nullptr));
    return SqliteStatement(statement);
}

void Bind(const SqliteStatement &statement, int parameter, std::int64_t number) {
    Library().sqlite3_bind_int64(statement.get(), parameter, number);
}

void Bind(const SqliteStatement &statement, int parameter, std::span<const std::uint8_t> bytes) {
    // Without a place for its bytes a value would be null.
    Library().sqlite3_bind_blob64(statement.get(), parameter,
                                  bytes.empty() ? reinterpret_cast<const std::uint8_t *>("")
                                                : bytes.data(),
                                  bytes.size(), SQLITE_STATIC);
}

void Bind(const SqliteStatement &statement, int parameter, std::string_view text) {
    Library().sqlite3_bind_text64(statement.get(), parameter, text.empty() ? "" : text.data(),
                                  text.size(), SQLITE_STATIC, SQLITE_UTF8);
}

bool NextRow(SqliteDatabase &database, const SqliteStatement &statement) {
    if (!statement) {
        return false;
    }
    const int code = Library().sqlite3_step(statement.get());
    if (code == SQLITE_ROW) {
        return true;
    }
    Note(database, code);
    Library().sqlite3_reset(statement.get());
    return false;
}

bool Run(SqliteDatabase &database, const SqliteStatement &statement) {
    if (!statement) {
        return false;
    }
    const bool done = Note(database, Library().sqlite3_step(statement.get()));
    Library().sqlite3_reset(statement.get());
    return done;
}

std::int64_t LastRowOf(SqliteDatabase &database) {
    return Library().sqlite3_last_insert_rowid(database.connection);
}

std::int64_t NumberAt(const SqliteStatement &statement, int column) {
    return Library().sqlite3_column_int64(statement.get(), column);
}

std::span<const std::uint8_t> BytesAt(const SqliteStatement &statement, int column) {
    const void *bytes = Library().sqlite3_column_blob(statement.get(), column);
    const int size = Library().sqlite3_column_bytes(statement.get(), column);
    return {static_cast<const std::uint8_t *>(bytes), static_cast<std::size_t>(size)};
}

std::string_view TextAt(const SqliteStatement &statement, int column) {
    const std::span<const std::uint8_t> bytes = BytesAt(statement, column);
    return {reinterpret_cast<const char *>(bytes.data()), bytes.size()};
}

std::optional<std::int64_t> SqliteVersion(SqliteDatabase &database) {
    return NumberOfSql(database, "PRAGMA user_version");
}

bool BringSqliteUp(SqliteDatabase &database, std::span<const char *const> steps) {
    const auto wanted = static_cast<std::int64_t>(steps.size());
    if (const auto version = SqliteVersion(database); !version || *version >= wanted) {
        return version == wanted;
    }
    if (!RunSql(database, "BEGIN IMMEDIATE")) {
        return false;
    }
    // Another program may have come first.
    const auto version = SqliteVersion(database);
    bool done = version && *version <= wanted;
    for (std::int64_t step = version.value_or(0); done && step < wanted; ++step) {
        done = RunSql(database, steps[static_cast<std::size_t>(step)]);
    }
    const std::string mark = "PRAGMA user_version = " + std::to_string(wanted);
    if (done && RunSql(database, mark.c_str()) && RunSql(database, "COMMIT")) {
        return true;
    }
    return RollBack(database);
}

} // namespace tonewright
