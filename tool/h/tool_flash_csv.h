// Where the records of a flash database stand in the CSV description that it was generated from.
#ifndef TOOL_FLASH_CSV_H
#define TOOL_FLASH_CSV_H

#include "tool_csv_table.h"
#include "tovren_flash_info.h"

#include <optional>
#include <string>

struct TOOL_FLASH_CSV {
    std::string file;
    TOOL_CSV_TABLE table;

    // The line, from 1, of the row that holds these 33 values: the one at `place` among the data rows (from 0), else
    // the first. 0 where there is none.
    unsigned int line_of(const TOVREN_SFL_FLASH_INFO& record, unsigned int place) const;

    // From 1.
    static unsigned int column_of(const std::string& member);
};

// The description that was asked for, which is refused where it is none; else flash.csv beside the database; none where
// there is no such file.
std::optional<TOOL_FLASH_CSV> tool_find_flash_csv(const std::optional<std::string>& given);

// What is said of a further file beside the description: "DIR/NAME" for the description "DIR/flash.csv".
std::string tool_beside(const std::string& file, const std::string& name);

#endif
