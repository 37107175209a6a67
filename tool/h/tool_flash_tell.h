// Flashes that one answer identifies: what they agree on, and what to read to tell them apart.
#ifndef TOOL_FLASH_TELL_H
#define TOOL_FLASH_TELL_H

#include "tool_flash_record.h"
#include "tovren_flash_info.h"

#include <span>
#include <string>
#include <vector>

// Bytes that a flash answers behind its identification, from the fourth on.
struct TOOL_EXTENDED_ID {
    std::string identification; // "20BA19"
    std::string device_name;
    DWORD device_sector_byte = 0;
    std::vector<BYTE> bytes;
};

// The rows of a table as data/README.md describes flash_shared_ids.csv; a row that does not read so is left out. None
// where there is no such file.
std::vector<TOOL_EXTENDED_ID> tool_read_extended_ids(const std::string& file);

struct TOOL_TELLING {
    // What is known of a candidate's further bytes. `fits` tells whether those of the answer, if it has any, are the
    // same.
    struct STATED {
        size_t candidate = 0; // position among the candidates
        std::vector<BYTE> bytes = {};
        bool fits = true;
    };

    std::vector<TOOL_MEMBER_TEXT> agreed;  // without names and what the identification gives
    std::vector<const char*> differing;    // in record order
    std::vector<STATED> stated;            // empty: the data know no bytes that tell
    size_t read_size = 0;                  // bytes of the whole answer that tell as much as can be told
    size_t answer_size = 0;                // bytes that were given
    std::vector<const char*> told_by_sfdp; // members that differ and that a parameter table tells

    bool has_read_enough() const { return answer_size >= read_size; }
};

TOOL_TELLING tool_tell_apart(std::span<const BYTE> answer, const std::vector<const TOVREN_SFL_FLASH_INFO*>& candidates,
                             const std::vector<TOOL_EXTENDED_ID>& extended_ids);

#endif
