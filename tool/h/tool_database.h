// What to tell the person whose database file is refused, whichever of the two it is.
#ifndef TOOL_DATABASE_H
#define TOOL_DATABASE_H

#include "tool_file.h"

#include <string>

struct TOOL_DATABASE {
    const char* kind;       // "flash": the group of the command that writes it
    const char* magic;      // its first eight bytes
    const char* other_kind; // the database it may be mistaken for
    const char* other_magic;
    const char* file; // below the device-database root
};

extern const TOOL_DATABASE TOOL_FLASH_DATABASE;
extern const TOOL_DATABASE TOOL_DEVICE_DATABASE;

// The file that commands work on.
std::string tool_database_path(const TOOL_DATABASE& database);

// Advice for the condition that a load reported over that file.
TOOL_ADVICE tool_database_advice(const TOOL_DATABASE& database, const std::string& condition);

// A fault of the file that writing it anew mends.
TOOL_ADVICE tool_advice_to_generate(const TOOL_DATABASE& database, const std::string& fault);

#endif
