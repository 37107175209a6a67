// Loading the device database.
#include "tool_device_database.h"

#include "tool_database.h"

std::unique_ptr<TOVREN_DEV_INFO_MANAGER> tool_load_devices(unsigned int debug_mode) {
    const auto advise = [](const TOOL_REPORT& report) {
        return tool_database_advice(TOOL_DEVICE_DATABASE, report.condition());
    };
    return tool_over_file(tool_database_path(TOOL_DEVICE_DATABASE), advise,
                          [&] { return std::make_unique<TOVREN_DEV_INFO_MANAGER>(false, debug_mode); });
}
