// What the SQLite files of the benchmarks share.
#include "sqlite_support.h"

#include <cstdio>
#include <cstdlib>

void sqlite_require(bool condition, sqlite3* database) {
    if (condition)
        return;
    std::fprintf(stderr, "SQLite: %s\n", sqlite3_errmsg(database));
    std::exit(1);
}

void sqlite_execute(sqlite3* database, const std::string& text) {
    sqlite_require(sqlite3_exec(database, text.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK, database);
}

SQLITE_STATEMENT sqlite_prepare(sqlite3* database, const std::string& text) {
    sqlite3_stmt* statement = nullptr;
    sqlite_require(sqlite3_prepare_v2(database, text.c_str(), -1, &statement, nullptr) == SQLITE_OK, database);
    return SQLITE_STATEMENT(statement);
}

SQLITE_DATABASE sqlite_create(const std::string& path) {
    std::remove(path.c_str());
    sqlite3* database = nullptr;
    sqlite_require(sqlite3_open(path.c_str(), &database) == SQLITE_OK, database);
    return SQLITE_DATABASE(database);
}

SQLITE_DATABASE sqlite_open(const std::string& path) {
    sqlite3* database = nullptr;
    sqlite_require(sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK, database);
    return SQLITE_DATABASE(database);
}
