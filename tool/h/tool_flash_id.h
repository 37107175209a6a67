// Identifications as a person types them.
//
// `20BA18`, `20 BA 18`, `20:ba:18` and `0x20,0xba,0x18` are the same three bytes: groups of an even number of
// hexadecimal digits, 0x before a group or not, between two groups white space, a comma or a colon.
#ifndef TOOL_FLASH_ID_H
#define TOOL_FLASH_ID_H

#include <string>
#include <vector>

// What one device's flash answered.
struct TOOL_FLASH_ID {
    std::vector<unsigned char> bytes; // 255 at most; 3 at least, of a silicon ID 1
    std::string text() const;         // "20BA18"
};

// The identifications that the arguments give, in order; "-", once, stands for those on standard input, one a line,
// where `#` begins a comment. A bad one is wrong usage, named by its argument or its line. Never empty.
std::vector<TOOL_FLASH_ID> tool_read_flash_ids(const std::vector<std::string>& arguments, bool is_silicon_id);

// One device ID that an option of a command gives, with the same spellings.
TOOL_FLASH_ID tool_read_flash_id(const std::string& text, const std::string& command, const std::string& option);

#endif
