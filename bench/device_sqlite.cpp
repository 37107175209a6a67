// Device records and their index tables in an SQLite file.
#include "device_sqlite.h"

namespace {

constexpr const char* TABLE_NAMES[] = {"family_table", "device_table", "part_table"};

void write_table(sqlite3* database, const std::string& name, const unsigned int* positions, unsigned int count) {
    sqlite_execute(database, "CREATE TABLE " + name + " (value INTEGER PRIMARY KEY, position INTEGER NOT NULL)");
    const SQLITE_STATEMENT insert = sqlite_prepare(database, "INSERT INTO " + name + " VALUES (?, ?)");
    for (unsigned int value = 0; value < count; ++value) {
        sqlite3_bind_int64(insert.get(), 1, value);
        sqlite3_bind_int64(insert.get(), 2, positions[value]);
        sqlite_require(sqlite3_step(insert.get()) == SQLITE_DONE, database);
        sqlite3_reset(insert.get());
    }
}

std::vector<unsigned int> read_table(sqlite3* database, const std::string& name) {
    const SQLITE_STATEMENT select = sqlite_prepare(database, "SELECT position FROM " + name + " ORDER BY value");
    std::vector<unsigned int> positions;
    while (sqlite3_step(select.get()) == SQLITE_ROW)
        positions.push_back(static_cast<unsigned int>(sqlite3_column_int64(select.get(), 0)));
    return positions;
}

} // namespace

void write_device_sqlite(const std::string& path, const TOVREN_DEV_INFO_MANAGER& manager) {
    const SQLITE_DATABASE database = sqlite_create(path);
    sqlite_execute(database.get(), "BEGIN");
    std::vector<TOVREN_DEVICE_INFO> records;
    for (unsigned int position = 0; position < manager.get_record_count(); ++position)
        records.push_back(*manager.get_record(position));
    sqlite_write_records(database.get(), "device_info", records);
    write_table(database.get(), TABLE_NAMES[0], manager.m_family_table.get(), DEV_FAMILY_MAX);
    write_table(database.get(), TABLE_NAMES[1], manager.m_device_table.get(), DEV_DEVICE_MAX);
    write_table(database.get(), TABLE_NAMES[2], manager.m_part_table.get(), DEV_PART_MAX);
    sqlite_execute(database.get(), "COMMIT; ANALYZE");
}

SQLITE_DEVICES read_device_sqlite(sqlite3& database) {
    SQLITE_DEVICES devices;
    const SQLITE_STATEMENT select =
        sqlite_prepare(&database, "SELECT " + sqlite_columns<TOVREN_DEVICE_INFO>() + " FROM device_info ORDER BY id");
    while (sqlite3_step(select.get()) == SQLITE_ROW)
        tovren_visit_members(devices.records.emplace_back(), SQLITE_COLUMN_READER{select.get()});
    for (size_t i = 0; i < devices.tables.size(); ++i)
        devices.tables[i] = read_table(&database, TABLE_NAMES[i]);
    return devices;
}

DEVICE_SQLITE_LOOKUP::DEVICE_SQLITE_LOOKUP(sqlite3& database)
    : m_statement(sqlite_prepare(&database, "SELECT " + sqlite_columns<TOVREN_DEVICE_INFO>() +
                                                " FROM part_table JOIN device_info ON id = position + 1 "
                                                "WHERE value = ?")) {}

std::unique_ptr<TOVREN_DEVICE_INFO> DEVICE_SQLITE_LOOKUP::get_by_part(DEV_PART_ENUM part) {
    sqlite3_bind_int64(m_statement.get(), 1, part);
    std::unique_ptr<TOVREN_DEVICE_INFO> record;
    if (sqlite3_step(m_statement.get()) == SQLITE_ROW) {
        record = std::make_unique<TOVREN_DEVICE_INFO>();
        tovren_visit_members(*record, SQLITE_COLUMN_READER{m_statement.get()});
    }
    sqlite3_reset(m_statement.get());
    return record;
}
