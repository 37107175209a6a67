// The description of the world of parts (data/catalogue/world.txt) as it is written: series, families and rows of dies.
// Reading checks each row for itself; what concerns several rows (a name given twice) is found when it is expanded.
#ifndef WORLD_DESCRIPTION_H
#define WORLD_DESCRIPTION_H

#include "world_scheme.h"

// Which devices share one part file.
enum class WORLD_FILES { NONE, LINE, DIE, DEVICE };

// What of a row is in production: all of it, the first variant of each die, nothing; ANNOUNCED has no packages yet.
enum class WORLD_STATUS { CURRENT, FADING, RETIRED, ANNOUNCED };

// Which devices' parts have an ordering number: none, the first variant of each die, all.
enum class WORLD_NUMBERED { NONE, FIRST, ALL };

// Dies of one line that differ in density only: one device for each density and variant.
struct WORLD_DIES {
    WORLD_PLACE place;
    std::string line;                   // "QX"
    std::vector<std::string> densities; // "20"
    std::string variants;               // "AB"
    WORLD_FILES files = WORLD_FILES::NONE;
    // Packages of every device, in order; the packages of one group share a programmer name.
    std::vector<std::vector<WORLD_PACKAGE>> groups;
    WORLD_STATUS status = WORLD_STATUS::RETIRED;
    WORLD_NUMBERED numbered = WORLD_NUMBERED::NONE;
    bool merged_by_device = false; // a group of several packages bears the device's name, not its first package's
    bool shared = false;           // the part files belong to the family file itself (map DEVICE_PCF_FAMILY_PCF)
    std::string pcf;               // the PCF record that serves the devices; empty for none
};

struct WORLD_FAMILY_ROW {
    WORLD_PLACE place;
    std::string name;                       // "QUARN-3S"
    std::vector<WORLD_SUFFIX> first_grades; // ordering names of a device's first package
    std::vector<WORLD_SUFFIX> other_grades; // ordering names of its other packages
    bool hard_processor = false;            // the kind letter S
    bool own_record = true;                 // false: the device database serves it by the Generic record
    std::vector<WORLD_DIES> dies;
};

struct WORLD_SERIES {
    WORLD_PLACE place;
    std::string letter;        // "Q": the first letter of its lines
    std::string word;          // "QUARN": the first word of its families
    std::string family_file;   // empty for a series without names in the naming maps
    unsigned int reserved = 0; // places that each device of such a series keeps in the ordering list
    std::vector<WORLD_FAMILY_ROW> families;
};

using WORLD_DESCRIPTION = std::vector<WORLD_SERIES>;

WORLD_DESCRIPTION read_world_description(const std::string& file, const WORLD_SCHEME& scheme, WORLD_FAULTS& faults);

#endif
