// What a user would take instead of the flash database: an SQLite file with the same records.
#ifndef FLASH_SQLITE_H
#define FLASH_SQLITE_H

#include "sqlite_support.h"
#include "tovren_flash_info.h"

#include <string>
#include <vector>

// Writes the records into a new file, with an index on the three identification bytes.
void write_flash_sqlite(const std::string& path, const std::vector<TOVREN_SFL_FLASH_INFO>& flashes);

SQLITE_DATABASE open_flash_sqlite(const std::string& path);
std::vector<TOVREN_SFL_FLASH_INFO> read_flash_sqlite(sqlite3& database);

// Finds the first record with three identification bytes by a statement that is prepared once.
class FLASH_SQLITE_LOOKUP {
public:
    explicit FLASH_SQLITE_LOOKUP(sqlite3& database);

    // The record's index, -1 when there is none.
    int find(const unsigned char* id_bytes);

private:
    SQLITE_STATEMENT m_statement;
};

#endif
