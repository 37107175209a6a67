// What is found when a database is held against this library: all of it, a finding for each check that passes and one
// for each fault.
#ifndef TOOL_DB_CHECKS_H
#define TOOL_DB_CHECKS_H

#include "tool_database.h"

#include <string>
#include <vector>

struct TOOL_DB_FINDING {
    enum class VERDICT : unsigned char {
        OK,
        NOTE, // nothing is wrong for sure, or it could not be checked
        FAULT,
    };

    const char* database; // "flash", "device"
    const char* check;    // "envelope", "payload", "defaults", "identifications", "keys", "tables", "load"
    VERDICT verdict;
    std::string text;
};

// The databases of the device-database root.
std::vector<TOOL_DB_FINDING> tool_db_flash_findings();
std::vector<TOOL_DB_FINDING> tool_db_device_findings();

#endif
