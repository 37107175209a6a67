// The three index tables of a device database, held against its records: who is served by which of them
// (docs/formats/devices_csv.md, "Which record serves whom").
#ifndef TOOL_DB_TABLES_H
#define TOOL_DB_TABLES_H

#include "tool_db_file.h"

#include <string>
#include <vector>

inline constexpr size_t TOOL_DB_TABLE_COUNT = 3; // families, devices, parts

// Of a file with known members and all its tables. What the part list decided is taken from the tables: a device may be
// served by any record with a PCF name. Entries that name no record are left to the reader of the file.
std::vector<std::string> tool_db_table_faults(const TOOL_DB_FILE& file);

// "74 families, 1048 devices and 9274 parts, served by 79 records".
std::string tool_db_tables_text(const TOOL_DB_FILE& file);

#endif
