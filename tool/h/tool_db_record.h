// A database's record as the library's own, and as JSON.
#ifndef TOOL_DB_RECORD_H
#define TOOL_DB_RECORD_H

#include "tool_db_file.h"
#include "tovren_dev_info_manager_auto_export.h"

#include <nlohmann/json_fwd.hpp>

// Of records with known members.
TOVREN_SFL_FLASH_INFO tool_db_flash(const TOOL_DB_RECORD& record);
TOVREN_DEVICE_INFO tool_db_device(const TOOL_DB_RECORD& record);

// The position of a flash member in its record.
size_t tool_db_flash_member(const char* name);

// {"position", members}; members without a name are the array "values".
nlohmann::ordered_json tool_db_json(const TOOL_DB_RECORD& record, size_t position);
nlohmann::ordered_json tool_db_json(const TOOL_DB_VALUE& value);

#endif
