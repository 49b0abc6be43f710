// In a program that was built without SQLite no database can be opened.
#include "extras/sqlite_database.h"

namespace tonewright {

struct SqliteDatabase {};

void CloseSqlite::operator()(SqliteDatabase *database) const {
    delete database;
}

void FinishSqlite::operator()(sqlite3_stmt *) const {}

SqlitePointer OpenSqlite(const std::string &, SqliteUse, int, SqliteFault &fault) {
    fault = SqliteFault::Unavailable;
    return nullptr;
}

// Nobody has a database to call these with.
bool IsReadOnly(SqliteDatabase &) {
    return true;
}

SqliteFailure TakeFailure(SqliteDatabase &) {
    return {SqliteFault::Unavailable, {}};
}

bool RunSql(SqliteDatabase &, const char *) {
    return false;
}

bool RollBack(SqliteDatabase &) {
    return false;
}

std::optional<std::int64_t> NumberOfSql(SqliteDatabase &, const char *) {
    return std::nullopt;
}

SqliteStatement PrepareSql(SqliteDatabase &, const char *) {
    return nullptr;
}

void Bind(const SqliteStatement &, int, std::int64_t) {}

void Bind(const SqliteStatement &, int, std::span<const std::uint8_t>) {}

void Bind(const SqliteStatement &, int, std::string_view) {}

bool NextRow(SqliteDatabase &, const SqliteStatement &) {
    return false;
}

bool Run(SqliteDatabase &, const SqliteStatement &) {
    return false;
}

std::int64_t LastRowOf(SqliteDatabase &) {
    return 0;
}

std::int64_t NumberAt(const SqliteStatement &, int) {
    return 0;
}

std::span<const std::uint8_t> BytesAt(const SqliteStatement &, int) {
    return {};
}

std::string_view TextAt(const SqliteStatement &, int) {
    return {};
}

bool BringSqliteUp(SqliteDatabase &, std::span<const char *const>) {
    return false;
}

std::optional<std::int64_t> SqliteVersion(SqliteDatabase &) {
    return std::nullopt;
}

} // namespace tonewright
