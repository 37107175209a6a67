// A database file taken apart without the library: whatever the file holds, as far as it holds together, and its
// faults. Nothing of it is believed before it was compared with what is there.
#ifndef TOOL_DB_FILE_H
#define TOOL_DB_FILE_H

#include "tovren_types.h"

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

// A thing that is wrong.
struct TOOL_DB_FAULT {
    const char* area;          // "file", or "payload" for what is compressed in it
    unsigned long long offset; // in that area, bytes
    std::string reason;
};

// A member's value. DWORDs and enumerations are numbers.
using TOOL_DB_VALUE = std::variant<bool, unsigned int, std::string>;

struct TOOL_DB_MEMBER {
    std::string_view name; // empty where the member count is not one that this build knows
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
    bool has_other_tags = false;         // a tag that a load takes and this build does not write
    std::vector<TOOL_DB_RECORD> records; // whole ones; an empty one in the place of a broken one that was passed over
    std::vector<TOOL_DB_TABLE> tables;
    unsigned long long trailing_size = 0; // bytes behind the last record of a flash payload, which loads do not read
    std::vector<TOOL_DB_FAULT> faults;    // in the order in which they were met

    // The members are those that this build knows: records have names, and as many members as there are names.
    bool has_known_members() const;
};

// With `reads_on`, reading goes on behind a fault wherever there is a way: all faults are told then, up to a thousand.
TOOL_DB_FILE tool_read_db_file(const std::string& path, bool reads_on = false);

// The member names of "flash" or "device" records, in record order, and their tags.
const std::vector<std::string>& tool_db_member_names(const std::string& kind);
const std::vector<TOVREN_MANAGER_TYPE>& tool_db_member_types(const std::string& kind);

// The word that a description's type row has for a tag; "none" for one without.
const char* tool_db_type_word(unsigned int tag);

// "NAME: payload offset 12: the reason".
std::string tool_db_fault_text(const std::string& path, const TOOL_DB_FAULT& fault);

// Why its records cannot be worked with: its faults, or members that this build does not know.
std::vector<std::string> tool_db_refusals(const std::string& path, const TOOL_DB_FILE& file);

#endif
