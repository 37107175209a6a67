// `tovren report`: the sections of its page, each from templates (tool/report/) and from what is loaded.
#ifndef TOOL_REPORT_H
#define TOOL_REPORT_H

#include "tool_flash_database.h"
#include "tool_html.h"
#include "tovren_dev_info_manager.h"

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

// ---- geometry ----

// Rulings that drawings share, each drawn once in the page: how long the whole is and how far apart the lines, in their
// largest common unit.
using TOOL_RULINGS = std::set<std::pair<unsigned long long, unsigned long long>>;

// A flash drawn to scale: its sectors, dies, the end of 3-byte addresses, its protection. Adds what it draws with.
TOOL_HTML tool_report_geometry(const TOVREN_SFL_FLASH_INFO& flash, TOOL_RULINGS& rulings);

TOOL_HTML tool_report_rulings(const TOOL_RULINGS& rulings);

// ---- flashes ----

struct TOOL_FLASH_SECTION {
    TOOL_HTML rows;
    TOOL_HTML makers; // the choices of the filters
    TOOL_HTML densities;
    TOOL_HTML rulings;
    std::map<std::string, std::string> anchors; // of each name's default record, names in lower case
};

// The first `external_count` are the user's own.
TOOL_FLASH_SECTION tool_report_flashes(const std::vector<TOOL_LISTED_FLASH>& listed, size_t external_count);

// ---- device records ----

TOOL_HTML tool_report_devices(const TOVREN_DEV_INFO_MANAGER& manager,
                              const std::map<std::string, std::string>& flash_anchors);

// ---- names ----

struct TOOL_NAME_SECTION {
    TOOL_HTML families;
    size_t family_count = 0; // named ones, the generic one aside; likewise below
    size_t device_count = 0;
    size_t part_count = 0;
    size_t package_count = 0;
    size_t ordering_count = 0;
};

TOOL_NAME_SECTION tool_report_names(const TOVREN_DEV_INFO_MANAGER& manager);

#endif
