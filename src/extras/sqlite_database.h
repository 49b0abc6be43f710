// A database file of SQLite, and statements on it. The one place that knows the library: whoever
// uses it knows SQL, and failures as texts for the user.
//
// A connection belongs to one thread at a time; several threads have one each.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

struct sqlite3_stmt;

namespace tonewright {

enum class SqliteFault {
    None,
    Missing,     // there is no such file, or it cannot be opened
    Busy,        // another program is at it, for longer than the time to wait
    Full,        // the disk is
    Denied,      // it may be read only
    Damaged,     // or no database at all
    Unavailable, // the library is not there
    Other,
};

struct SqliteDatabase; // a connection
struct CloseSqlite {
    void operator()(SqliteDatabase *database) const;
};
using SqlitePointer = std::unique_ptr<SqliteDatabase, CloseSqlite>;

enum class SqliteUse {
    Read,      // changes nothing of what is stored; what a killed program left is put in order
    ReadStill, // of a file that nobody can change meanwhile: nothing is written beside it
    Write,     // made if there is none
};
// `path`: UTF-8. Another program is waited for up to `waitMilliseconds`, now and later. Null with
// the fault; a file that is no database is noticed when it is first read.
SqlitePointer OpenSqlite(const std::string &path, SqliteUse use, int waitMilliseconds,
                         SqliteFault &fault);
// Whether it was opened for writing, and may only be read.
bool IsReadOnly(SqliteDatabase &database);

// What calls have met since the last question: the fault of the last one that failed, and what the
// library says of it.
struct SqliteFailure {
    SqliteFault fault = SqliteFault::None;
    std::string text;
};
SqliteFailure TakeFailure(SqliteDatabase &database);

// Statements without results, one or several. False when one fails; the rest is not run.
bool RunSql(SqliteDatabase &database, const char *sql);
// Takes back what the present transaction, if there is one, has done. What led to it is what
// TakeFailure tells. Always false.
bool RollBack(SqliteDatabase &database);
// The number that a query gives in its first row; nothing for none or a failure.
std::optional<std::int64_t> NumberOfSql(SqliteDatabase &database, const char *sql);

struct FinishSqlite {
    void operator()(sqlite3_stmt *statement) const;
};
// A statement. A null one, which could not be made, gives no row and fails.
using SqliteStatement = std::unique_ptr<sqlite3_stmt, FinishSqlite>;
SqliteStatement PrepareSql(SqliteDatabase &database, const char *sql);

// Values for the parameters, counted from 1. Bytes and texts stay with the caller until the
// statement has run.
void Bind(const SqliteStatement &statement, int parameter, std::int64_t number);
void Bind(const SqliteStatement &statement, int parameter, std::span<const std::uint8_t> bytes);
void Bind(const SqliteStatement &statement, int parameter, std::string_view text);
// To the next row: false behind the last one, and when it fails, which TakeFailure tells. Behind
// the last one a statement is ready to be run anew.
bool NextRow(SqliteDatabase &database, const SqliteStatement &statement);
// Runs a statement that gives no rows. False when it fails.
bool Run(SqliteDatabase &database, const SqliteStatement &statement);
// The number of the row that was inserted last.
std::int64_t LastRowOf(SqliteDatabase &database);

// Columns of the present row, counted from 0; bytes and texts are valid until the next one.
std::int64_t NumberAt(const SqliteStatement &statement, int column);
std::span<const std::uint8_t> BytesAt(const SqliteStatement &statement, int column);
std::string_view TextAt(const SqliteStatement &statement, int column);

// Brings a database to the schema that the last of `steps` makes: its version, which the file
// knows, is the number of steps that were done. All that are left are done, or none, in one
// transaction. False when that fails, and for a higher version, which is left alone.
bool BringSqliteUp(SqliteDatabase &database, std::span<const char *const> steps);
// Number of steps that were done; nothing when it cannot be read.
std::optional<std::int64_t> SqliteVersion(SqliteDatabase &database);

} // namespace tonewright
