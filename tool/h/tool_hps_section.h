// The two kinds of HPS flashes, and their sections of the flash parameter file.
//
// A section is the fingerprint of the record layout, then records back to back; the managers leave a section with
// another fingerprint aside, and bytes behind the last whole record.
#ifndef TOOL_HPS_SECTION_H
#define TOOL_HPS_SECTION_H

#include "tool_hps_values.h"
#include "tool_params_file.h"

#include <string>
#include <vector>

// The library's flashes of a kind.
struct TOOL_HPS_LIST {
    std::vector<TOOL_HPS_RECORD> records; // the user's own first
    size_t user_count;
};

struct TOOL_HPS_KIND {
    const char* command; // "hps spi"
    TOVREN_FLASH_INI_ENUM section;
    const std::string& md5;
    const TOOL_HPS_PARAMS& params;
    TOOL_HPS_LIST (*load)();
};

extern const TOOL_HPS_KIND TOOL_HPS_SPI;
extern const TOOL_HPS_KIND TOOL_HPS_NAND;

// The kind whose flashes a section holds; null for a section of another use.
const TOOL_HPS_KIND* tool_hps_kind_of(TOVREN_FLASH_INI_ENUM section);

// A section taken apart.
struct TOOL_HPS_SECTION {
    bool is_foreign = false; // there is a section, with another fingerprint
    std::vector<TOOL_HPS_RECORD> records;
    std::vector<size_t> offsets; // of the records in the section, and of the end of the last
    size_t rest = 0;             // bytes behind the last whole record
};
TOOL_HPS_SECTION tool_hps_section(const TOOL_HPS_KIND& kind, const TOOL_BYTES& bytes);

#endif
