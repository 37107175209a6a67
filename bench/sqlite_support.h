// Records in an SQLite file, one column a member.
#ifndef SQLITE_SUPPORT_H
#define SQLITE_SUPPORT_H

#include "tovren_dev_info_manager_auto_export.h"

#include <memory>
#include <sqlite3.h>
#include <string>
#include <type_traits>

struct SQLITE_CLOSER {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using SQLITE_DATABASE = std::unique_ptr<sqlite3, SQLITE_CLOSER>;
using SQLITE_STATEMENT = std::unique_ptr<sqlite3_stmt, SQLITE_CLOSER>;

// Each of these ends the program when SQLite refuses.
void sqlite_require(bool condition, sqlite3* database);
void sqlite_execute(sqlite3* database, const std::string& text);
SQLITE_STATEMENT sqlite_prepare(sqlite3* database, const std::string& text);
SQLITE_DATABASE sqlite_create(const std::string& path); // in the place of an older file
SQLITE_DATABASE sqlite_open(const std::string& path);   // for reading

// "family, pcf, ..." of a record type, with a suffix behind each name, texts apart.
template <typename RECORD>
std::string sqlite_columns(const std::string& number_suffix = "", const std::string& text_suffix = "") {
    std::string list;
    const RECORD empty;
    tovren_visit_members(empty, [&](const char* name, const auto& value) {
        constexpr bool IS_TEXT = std::is_same_v<std::decay_t<decltype(value)>, std::string>;
        list += (list.empty() ? "" : ", ") + std::string(name) + (IS_TEXT ? text_suffix : number_suffix);
    });
    return list;
}

// Binds each member to the statement's next parameter.
struct SQLITE_BINDER {
    sqlite3_stmt* statement;
    int column = 0;

    void operator()(const char*, const std::string& value) {
        sqlite3_bind_text(statement, ++column, value.c_str(), -1, SQLITE_TRANSIENT);
    }
    void operator()(const char*, DWORD value) { sqlite3_bind_int64(statement, ++column, value); }
};

// Takes each member from the row's next column.
struct SQLITE_COLUMN_READER {
    sqlite3_stmt* statement;
    int column = 0;

    void operator()(const char*, std::string& value) {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
        value.assign(text, static_cast<size_t>(sqlite3_column_bytes(statement, column)));
        ++column;
    }
    void operator()(const char*, bool& value) { value = sqlite3_column_int(statement, column++) != 0; }

    template <typename VALUE>
    void operator()(const char*, VALUE& value) {
        value = static_cast<VALUE>(sqlite3_column_int64(statement, column++));
    }
};

// A table `name` of the records, numbered from 1 in the column `id`.
template <typename RECORDS>
void sqlite_write_records(sqlite3* database, const std::string& name, const RECORDS& records) {
    using RECORD = typename RECORDS::value_type;
    sqlite_execute(database, "CREATE TABLE " + name + " (id INTEGER PRIMARY KEY, " +
                                 sqlite_columns<RECORD>(" INTEGER NOT NULL", " TEXT NOT NULL") + ")");
    std::string marks;
    tovren_visit_members(RECORD(), [&](const char*, const auto&) { marks += marks.empty() ? "?" : ", ?"; });
    const SQLITE_STATEMENT insert =
        sqlite_prepare(database, "INSERT INTO " + name + " (" + sqlite_columns<RECORD>() + ") VALUES (" + marks + ")");
    for (const RECORD& record : records) {
        tovren_visit_members(record, SQLITE_BINDER{insert.get()});
        sqlite_require(sqlite3_step(insert.get()) == SQLITE_DONE, database);
        sqlite3_reset(insert.get());
    }
}

#endif
