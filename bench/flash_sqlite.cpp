// Flash records in an SQLite file.
#include "flash_sqlite.h"

#include "tovren_dev_info_manager_auto_export.h"

#include <cstdio>
#include <cstdlib>
#include <type_traits>

namespace {

void require(bool condition, sqlite3* database) {
    if (condition)
        return;
    std::fprintf(stderr, "SQLite: %s\n", sqlite3_errmsg(database));
    std::exit(1);
}

void execute(sqlite3* database, const std::string& text) {
    require(sqlite3_exec(database, text.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK, database);
}

SQLITE_STATEMENT prepare(sqlite3* database, const std::string& text) {
    sqlite3_stmt* statement = nullptr;
    require(sqlite3_prepare_v2(database, text.c_str(), -1, &statement, nullptr) == SQLITE_OK, database);
    return SQLITE_STATEMENT(statement);
}

// "manufacturer_name, device_name, ..." with `suffix` behind each name, texts apart.
std::string column_list(const std::string& number_suffix, const std::string& text_suffix) {
    std::string list;
    const TOVREN_SFL_FLASH_INFO empty;
    tovren_visit_members(empty, [&](const char* name, const auto& value) {
        constexpr bool IS_TEXT = std::is_same_v<std::decay_t<decltype(value)>, std::string>;
        list += (list.empty() ? "" : ", ") + std::string(name) + (IS_TEXT ? text_suffix : number_suffix);
    });
    return list;
}

struct BINDER {
    sqlite3_stmt* statement;
    int column = 0;

    void operator()(const char*, const std::string& value) {
        sqlite3_bind_text(statement, ++column, value.c_str(), -1, SQLITE_TRANSIENT);
    }
    void operator()(const char*, DWORD value) { sqlite3_bind_int64(statement, ++column, value); }
};

struct COLUMN_READER {
    sqlite3_stmt* statement;
    int column = 0;

    void operator()(const char*, std::string& value) {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
        value.assign(text, static_cast<size_t>(sqlite3_column_bytes(statement, column)));
        ++column;
    }
    void operator()(const char*, bool& value) { value = sqlite3_column_int(statement, column++) != 0; }
    void operator()(const char*, BYTE& value) { value = static_cast<BYTE>(sqlite3_column_int(statement, column++)); }
    void operator()(const char*, DWORD& value) {
        value = static_cast<DWORD>(sqlite3_column_int64(statement, column++));
    }
};

} // namespace

void write_flash_sqlite(const std::string& path, const std::vector<TOVREN_SFL_FLASH_INFO>& flashes) {
    std::remove(path.c_str());
    sqlite3* raw = nullptr;
    require(sqlite3_open(path.c_str(), &raw) == SQLITE_OK, raw);
    const SQLITE_DATABASE database(raw);
    execute(raw, "CREATE TABLE flash (id INTEGER PRIMARY KEY, " + column_list(" INTEGER NOT NULL", " TEXT NOT NULL") +
                     "); BEGIN");

    std::string marks = "?";
    for (unsigned int i = 1; i < TOTAL_DATABASE_MEMBER; ++i)
        marks += ", ?";
    const SQLITE_STATEMENT insert =
        prepare(raw, "INSERT INTO flash (" + column_list("", "") + ") VALUES (" + marks + ")");
    for (const TOVREN_SFL_FLASH_INFO& flash : flashes) {
        tovren_visit_members(flash, BINDER{insert.get()});
        require(sqlite3_step(insert.get()) == SQLITE_DONE, raw);
        sqlite3_reset(insert.get());
    }
    execute(raw, "COMMIT; CREATE INDEX by_id ON flash (memory_id, memory_type, mfc_id, silicon_id); ANALYZE");
}

SQLITE_DATABASE open_flash_sqlite(const std::string& path) {
    sqlite3* database = nullptr;
    require(sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK, database);
    return SQLITE_DATABASE(database);
}

std::vector<TOVREN_SFL_FLASH_INFO> read_flash_sqlite(sqlite3& database) {
    const SQLITE_STATEMENT select = prepare(&database, "SELECT " + column_list("", "") + " FROM flash ORDER BY id");
    std::vector<TOVREN_SFL_FLASH_INFO> flashes;
    while (sqlite3_step(select.get()) == SQLITE_ROW)
        tovren_visit_members(flashes.emplace_back(), COLUMN_READER{select.get()});
    return flashes;
}

FLASH_SQLITE_LOOKUP::FLASH_SQLITE_LOOKUP(sqlite3& database)
    : m_statement(prepare(&database, "SELECT id FROM flash WHERE memory_id = ? AND memory_type = ? AND mfc_id = ? AND "
                                     "silicon_id = 0 ORDER BY id LIMIT 1")) {}

int FLASH_SQLITE_LOOKUP::find(const unsigned char* id_bytes) {
    sqlite3_bind_int(m_statement.get(), 1, id_bytes[2]);
    sqlite3_bind_int(m_statement.get(), 2, id_bytes[1]);
    sqlite3_bind_int(m_statement.get(), 3, id_bytes[0]);
    const int index = sqlite3_step(m_statement.get()) == SQLITE_ROW ? sqlite3_column_int(m_statement.get(), 0) - 1 : -1;
    sqlite3_reset(m_statement.get());
    return index;
}
