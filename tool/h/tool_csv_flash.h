// The rows of a flash description, with its faults, for the checks that look at more than a cell.
#ifndef TOOL_CSV_FLASH_H
#define TOOL_CSV_FLASH_H

#include "tool_csv_table.h"

#include <optional>

// The faults are in the order of the file.
TOOL_CSV_TABLE tool_read_flash_csv(const std::string& file);

const std::string& tool_flash_cell(const TOOL_CSV_ROW& row, const char* member);
std::optional<unsigned int> tool_flash_number(const TOOL_CSV_ROW& row, const char* member); // none past its type
std::optional<bool> tool_flash_flag(const TOOL_CSV_ROW& row, const char* member);

TOOL_CSV_FAULT tool_flash_fault_at(const TOOL_CSV_ROW& row, const char* member, const std::string& fault,
                                   TOOL_CSV_FAULT::SEVERITY severity);

#endif
