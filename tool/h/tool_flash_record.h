// A flash record as JSON and as text for people.
#ifndef TOOL_FLASH_RECORD_H
#define TOOL_FLASH_RECORD_H

#include "tovren_flash_info.h"

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <vector>

// Adds the 33 members, by name and in record order.
void tool_put_flash_members(nlohmann::ordered_json& object, const TOVREN_SFL_FLASH_INFO& record);

// The 33 members for people, with units, in record order.
struct TOOL_MEMBER_TEXT {
    const char* name;
    std::string text;
};
std::vector<TOOL_MEMBER_TEXT> tool_flash_member_texts(const TOVREN_SFL_FLASH_INFO& record);

// What the flash answers: "20BA18", ".." for a byte that is not compared; "10 (silicon)" for a silicon ID.
std::string tool_flash_id_text(const TOVREN_SFL_FLASH_INFO& record);

// "256 x 64 KiB"; the sector's size alone where sectors do not fill the flash.
std::string tool_flash_sectors_text(const TOVREN_SFL_FLASH_INFO& record);

#endif
