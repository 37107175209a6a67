// A host that writes down how it is called. It stands in for the standalone host where the calls themselves are under
// test; what it answers is set by the test.
#ifndef TESTS_SUPPORT_RECORDING_HOST_H
#define TESTS_SUPPORT_RECORDING_HOST_H

#include "host_dev.h"

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

// What a report throws.
struct RECORDED_REPORT {
    std::string expression;
    std::string prefix;
    std::string file;
    int line = 0;
};

struct RECORDING_HOST {
    // "cfg_is_on(PGM_ALLOW_X, false)", in the order of the calls. Text helpers are not written down.
    std::vector<std::string> calls;

    std::string device_db_root;
    std::string product_root;
    std::string module_path;
    std::set<std::string> switches_on;
    std::map<std::string, std::string> settings;
    unsigned int version_index_number = 0; // of the version "1.0"
    std::function<int()> on_debug_message; // gives what msg_local_vdebug returns; 0 without it

    // What the catalogue says of a device and of a part; without one only the generic value has another.
    std::function<DEV_FAMILY_ENUM(DEV_DEVICE_ENUM)> family_of;
    std::function<DEV_DEVICE_ENUM(DEV_PART_ENUM)> device_of;
};

// The process's one.
RECORDING_HOST& recording_host();

#endif
