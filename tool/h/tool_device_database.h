// The device database that a command works on: pgm_dev_info.pcf of the device-database root.
#ifndef TOOL_DEVICE_DATABASE_H
#define TOOL_DEVICE_DATABASE_H

#include "tovren_dev_info_manager.h"

#include <memory>

// A loaded manager. A database that is missing, foreign or broken is refused. `debug_mode` as its constructor takes it.
std::unique_ptr<TOVREN_DEV_INFO_MANAGER> tool_load_devices(unsigned int debug_mode = 0);

#endif
