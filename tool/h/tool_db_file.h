// A database file taken apart without the library: whatever the file holds, as far as it holds together, and the first
// fault. Nothing of it is believed before it was compared with what is there.
#ifndef TOOL_DB_FILE_H
#define TOOL_DB_FILE_H

#include "tovren_types.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

// The first thing that is wrong.
struct TOOL_DB_FAULT {
    const char* area;          // "file", or "payload" for what is compressed in it
    unsigned long long offset; // in that area, bytes
    std::string reason;
};

// A member's value. DWORDs and enumerations are numbers.
using TOOL_DB_VALUE = std::variant<bool, unsigned int, std::string>;

struct TOOL_DB_MEMBER {
    std::string name; // empty where the member count is not one that this build knows
    TOOL_DB_VALUE value;
};

using TOOL_DB_RECORD = std::vector<TOOL_DB_MEMBER>;

struct TOOL_DB_TABLE {
    const char* name; // "family", "device", "part"
    std::vector<unsigned int> positions;
};

struct TOOL_DB_FILE {
    unsigned long long file_size = 0;
    std::string kind;  // "flash", "device"; empty for neither
    std::string magic; // these two as they stand, cut where the file is
    std::string md5;
    bool is_of_this_build = false;            // by its MD5 text
    std::optional<unsigned int> payload_size; // as announced
    unsigned long long compressed_size = 0;
    std::string check_field; // hexadecimal
    std::optional<unsigned int> version;
    std::optional<unsigned int> record_count;
    std::optional<unsigned int> member_count;
    std::vector<TOOL_DB_RECORD> records; // whole ones
    std::vector<TOOL_DB_TABLE> tables;
    unsigned long long trailing_size = 0; // bytes behind the last record of a flash payload, which loads do not read
    std::optional<TOOL_DB_FAULT> fault;
};

TOOL_DB_FILE tool_read_db_file(const std::string& path);

#endif
