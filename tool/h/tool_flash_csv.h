// Faults of a flash description, each with its place: what the library reports by a condition's text alone.
#ifndef TOOL_FLASH_CSV_H
#define TOOL_FLASH_CSV_H

#include <string>
#include <vector>

struct TOOL_CSV_FAULT {
    unsigned int line = 0;  // from 1; 0 for the file as a whole
    std::string member;     // empty for the row as a whole
    std::string fault;      // "\"64K\" is not a number"
    bool is_refused = true; // false: the generator lets it through

    std::string text(const std::string& file) const; // "flash.csv:23: device_sector_byte: \"64K\" is not a number"
};

// All faults, in the order of the file.
std::vector<TOOL_CSV_FAULT> tool_flash_csv_faults(const std::string& file);

#endif
