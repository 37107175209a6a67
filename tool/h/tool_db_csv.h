// The CSV description that a database's records make: generating from it writes the same records again
// (docs/formats/flash_csv.md, docs/formats/devices_csv.md).
#ifndef TOOL_DB_CSV_H
#define TOOL_DB_CSV_H

#include "tool_db_file.h"

#include <string>
#include <vector>

// A value that no cell can hold.
struct TOOL_DB_CSV_FAULT {
    size_t record; // position
    std::string member;
    std::string fault; // "\"A B\" holds a blank, which would end the cell"
};

struct TOOL_DB_CSV {
    std::string text; // only good without faults
    std::vector<TOOL_DB_CSV_FAULT> faults;
};

// The whole description, header rows included. `file` has known members.
TOOL_DB_CSV tool_db_csv(const TOOL_DB_FILE& file);

// The cells of one record, as the description has them; what no cell can hold stands for itself.
std::vector<std::string> tool_db_cells(const std::string& kind, const TOOL_DB_RECORD& record);

#endif
