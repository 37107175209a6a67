// Flash records in an SQLite file.
#include "flash_sqlite.h"

void write_flash_sqlite(const std::string& path, const std::vector<TOVREN_SFL_FLASH_INFO>& flashes) {
    const SQLITE_DATABASE database = sqlite_create(path);
    sqlite_execute(database.get(), "BEGIN");
    sqlite_write_records(database.get(), "flash", flashes);
    sqlite_execute(database.get(), "COMMIT; CREATE INDEX by_id ON flash (memory_id, memory_type, mfc_id, silicon_id); "
                                   "ANALYZE");
}

SQLITE_DATABASE open_flash_sqlite(const std::string& path) {
    return sqlite_open(path);
}

std::vector<TOVREN_SFL_FLASH_INFO> read_flash_sqlite(sqlite3& database) {
    const SQLITE_STATEMENT select =
        sqlite_prepare(&database, "SELECT " + sqlite_columns<TOVREN_SFL_FLASH_INFO>() + " FROM flash ORDER BY id");
    std::vector<TOVREN_SFL_FLASH_INFO> flashes;
    while (sqlite3_step(select.get()) == SQLITE_ROW)
        tovren_visit_members(flashes.emplace_back(), SQLITE_COLUMN_READER{select.get()});
    return flashes;
}

FLASH_SQLITE_LOOKUP::FLASH_SQLITE_LOOKUP(sqlite3& database)
    : m_statement(sqlite_prepare(&database, "SELECT id FROM flash WHERE memory_id = ? AND memory_type = ? AND "
                                            "mfc_id = ? AND silicon_id = 0 ORDER BY id LIMIT 1")) {}

int FLASH_SQLITE_LOOKUP::find(const unsigned char* id_bytes) {
    sqlite3_bind_int(m_statement.get(), 1, id_bytes[2]);
    sqlite3_bind_int(m_statement.get(), 2, id_bytes[1]);
    sqlite3_bind_int(m_statement.get(), 3, id_bytes[0]);
    const int index = sqlite3_step(m_statement.get()) == SQLITE_ROW ? sqlite3_column_int(m_statement.get(), 0) - 1 : -1;
    sqlite3_reset(m_statement.get());
    return index;
}
