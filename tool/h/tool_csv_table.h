// Reading a CSV description for its faults: the generators' rules, applied to every row rather than up to the first
// fault.
#ifndef TOOL_CSV_TABLE_H
#define TOOL_CSV_TABLE_H

#include "tool_csv.h"
#include "tovren_types.h"

// What the two descriptions differ in.
struct TOOL_CSV_LAYOUT {
    const std::vector<std::string>& names;
    const std::vector<TOVREN_MANAGER_TYPE>& types;
    unsigned int first_data_row;           // row 0 is the type row, row 1 the name row
    bool (*is_free_row)(unsigned int row); // may have any number of cells
    bool is_empty_allowed;                 // in texts, flags and numbers
    const std::vector<TOVREN_NAME_VALUE>* (*names_of)(const std::string& member); // of an enumeration cell
    TOOL_CSV_FAULT::SEVERITY long_text; // of a text past 255 bytes: only the device generator reads back its records
    size_t longest_line;                // characters without the white space at both ends; 0: any
};

struct TOOL_CSV_ROW {
    unsigned int line;
    std::vector<std::string> cells; // as many as there are members
};

// What the numbers of rows are called, and the first of them: "line" from 1, "record" from 0. In a row they count
// from 1.
struct TOOL_CSV_PLACES {
    const char* name;
    unsigned int first;

    std::string text(unsigned int line) const { return std::string(name) + ' ' + std::to_string(line - 1 + first); }
};
inline constexpr TOOL_CSV_PLACES TOOL_CSV_LINES = {"line", 1};

struct TOOL_CSV_TABLE {
    std::vector<TOOL_CSV_ROW> rows; // the data rows that have the right number of cells
    std::vector<TOOL_CSV_FAULT> faults;
    unsigned int row_count = 0; // rows that are not blank, headers included
};

TOOL_CSV_TABLE tool_read_csv(const std::string& file, const TOOL_CSV_LAYOUT& layout);

// Faults between rows: the defaults of flash names and rows that are never identified; keys of device records and the
// place of the generic one.
std::vector<TOOL_CSV_FAULT> tool_flash_row_faults(const std::vector<TOOL_CSV_ROW>& rows, const TOOL_CSV_PLACES& places);
std::vector<TOOL_CSV_FAULT> tool_device_row_faults(const std::vector<TOOL_CSV_ROW>& rows,
                                                   const TOOL_CSV_PLACES& places);

// Brings the faults into the order of the file.
std::vector<TOOL_CSV_FAULT> tool_sorted_faults(std::vector<TOOL_CSV_FAULT> faults);

#endif
