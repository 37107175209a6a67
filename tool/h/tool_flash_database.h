// The flash database that a command works on: pgm_flash.pcf of the device-database root.
#ifndef TOOL_FLASH_DATABASE_H
#define TOOL_FLASH_DATABASE_H

#include "tovren_flash_manager.h"

#include <memory>
#include <string>
#include <vector>

// Whether managers print their records as they load (--debug 3).
void tool_set_printing_records(bool is_printing);

// A loaded manager for a chain of `device_count` devices. A database that is missing, foreign or broken is refused.
std::unique_ptr<TOVREN_FLASH_MANAGER> tool_load_flashes(unsigned int device_count);

// The records of the database in file order, those included that a switch hides. Refusals as above.
std::vector<TOVREN_SFL_FLASH_INFO> tool_all_flashes();

// The setting that shows a record ("PGM_ALLOW_X"); empty for a record that is hidden by none.
std::string tool_switch_that_shows(const TOVREN_SFL_FLASH_INFO& record);

// A record in its place among all that there are.
struct TOOL_LISTED_FLASH {
    const TOVREN_SFL_FLASH_INFO* flash;
    unsigned int index;   // INVALID_DWORD for a hidden one
    std::string shown_by; // the setting that would show a hidden one
    unsigned int place;   // in the database file, from 0; INVALID_DWORD for a flash of the user's own
};

// The loaded records in scan order; with `records`, those of the database file, the hidden ones among them. They point
// into the manager and into `records`.
std::vector<TOOL_LISTED_FLASH> tool_listed_flashes(const TOVREN_FLASH_MANAGER& manager);
std::vector<TOOL_LISTED_FLASH> tool_listed_flashes(const TOVREN_FLASH_MANAGER& manager,
                                                   const std::vector<TOVREN_SFL_FLASH_INFO>& records);

// The records that the manager holds, in order.
std::vector<const TOVREN_SFL_FLASH_INFO*> tool_loaded_flashes(const TOVREN_FLASH_MANAGER& manager);

#endif
