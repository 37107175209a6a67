// What a user would take instead of the flash database: an SQLite file with the same records.
#ifndef FLASH_SQLITE_H
#define FLASH_SQLITE_H

#include "tovren_flash_info.h"

#include <memory>
#include <sqlite3.h>
#include <string>
#include <vector>

struct SQLITE_CLOSER {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using SQLITE_DATABASE = std::unique_ptr<sqlite3, SQLITE_CLOSER>;
using SQLITE_STATEMENT = std::unique_ptr<sqlite3_stmt, SQLITE_CLOSER>;

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
