// The world of parts, expanded: every family, device, part file, package and ordering name, and the numbers they bear.
//
// Numbers count from 1 in the order of the description; number N is at position N - 1 of its list here. A part's number
// follows its device, then its package, then the order of its grade set, so the parts of a package are consecutive.
#ifndef WORLD_EXPAND_H
#define WORLD_EXPAND_H

#include "world_description.h"

struct WORLD_FAMILY {
    std::string name;
    std::string family_file; // empty: no names in the naming maps
    bool own_record = true;
};

struct WORLD_DEVICE {
    std::string name;
    unsigned int family = 0;
    std::string part_file; // empty: none
    std::string pcf;       // the PCF record that serves it, or its part file; empty: neither
};

struct WORLD_PART {
    std::string name;
    unsigned int device = 0;
    WORLD_PACKAGE package;
    std::string temperature; // empty for a bare name
    std::string speed;       // empty for a bare name
    bool in_production = false;
    bool has_ordering_number = false;
    bool has_hard_processor = false;
};

struct WORLD_PACKAGE_NAME {
    std::string name; // "QX20AF256"
    std::vector<std::string> ordering_names;
};

struct WORLD_PROGRAMMER_NAME {
    std::string name;
    std::vector<WORLD_PACKAGE_NAME> packages;
};

struct WORLD_PART_FILE {
    std::string name;
    std::string family;
    std::string family_file;
    bool shared = false;
    std::vector<std::string> devices;
    std::vector<WORLD_PROGRAMMER_NAME> programmer_names;
};

struct WORLD {
    std::vector<WORLD_FAMILY> families;
    std::vector<WORLD_DEVICE> devices;
    std::vector<WORLD_PART> parts;
    std::vector<WORLD_PART_FILE> part_files;
    std::vector<std::string> pcf_records;
    // The part number at each place of the ordering list, 0 where the catalogue has no part of that place.
    std::vector<unsigned int> ordering_list;
};

// Expands the description; two families, devices, parts or part files of one name are faults.
WORLD expand_world(const WORLD_DESCRIPTION& description, WORLD_FAULTS& faults);

#endif
