// What a user would take instead of the device database: an SQLite file with the same records and index tables.
#ifndef DEVICE_SQLITE_H
#define DEVICE_SQLITE_H

#include "host_dev.h"
#include "sqlite_support.h"
#include "tovren_dev_info_manager.h"

#include <array>
#include <string>
#include <vector>

// Everything that a loaded manager holds.
struct SQLITE_DEVICES {
    std::vector<TOVREN_DEVICE_INFO> records;
    std::array<std::vector<unsigned int>, 3> tables; // of families, devices and parts
};

// Writes what the manager has loaded into a new file, each index table as a table of value and position.
void write_device_sqlite(const std::string& path, const TOVREN_DEV_INFO_MANAGER& manager);

SQLITE_DEVICES read_device_sqlite(sqlite3& database);

// Fetches the record that serves a part by a statement that is prepared once.
class DEVICE_SQLITE_LOOKUP {
public:
    explicit DEVICE_SQLITE_LOOKUP(sqlite3& database);

    // A new record, null when none serves the part.
    std::unique_ptr<TOVREN_DEVICE_INFO> get_by_part(DEV_PART_ENUM part);

private:
    SQLITE_STATEMENT m_statement;
};

#endif
