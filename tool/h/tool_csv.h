// Faults of the CSV descriptions, each with its place: what the library reports by a condition's text alone, all of
// them in one run, and what it lets through.
#ifndef TOOL_CSV_H
#define TOOL_CSV_H

#include <string>
#include <vector>

struct TOOL_CSV_FAULT {
    enum class SEVERITY : unsigned char {
        REFUSED, // the generator refuses the description
        HARMFUL, // it lets the row through, and the database is not what the row says or cannot be loaded
        REMARK,  // nothing is wrong for sure
    };

    unsigned int line = 0;   // from 1; 0 for the file as a whole
    unsigned int column = 0; // from 1; 0 for the row as a whole
    std::string member = {}; // empty for the row as a whole
    std::string found = {};  // the cell
    std::string fault = {};  // "\"64K\" is not a number"
    SEVERITY severity = SEVERITY::REFUSED;
    std::string rule = {}; // that a waiver may name; empty for a fault that cannot be waived

    std::string text(const std::string& file) const; // "flash.csv:23: device_sector_byte: \"64K\" is not a number"
};

// All faults, in the order of the file.
std::vector<TOOL_CSV_FAULT> tool_flash_csv_faults(const std::string& file);
std::vector<TOOL_CSV_FAULT> tool_device_csv_faults(const std::string& file);

// Lines for people: what the generator refuses, or the rest; the first ten, and how many more there are.
std::vector<std::string> tool_csv_fault_lines(const std::vector<TOOL_CSV_FAULT>& faults, const std::string& file,
                                              bool is_refused);

#endif
