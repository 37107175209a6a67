// The eight naming maps of the world, and the check of its figures against data/catalogue/shape.txt.
#ifndef WORLD_MAPS_H
#define WORLD_MAPS_H

#include "world_expand.h"

#include <array>
#include <map>

// Key to contents, keys ascending byte by byte: the order in which the image holds them.
using WORLD_MAP = std::map<std::string, std::vector<std::string>>;

enum WORLD_MAP_ENUM {
    PACKAGE_GRAMMAR,       // package-level name: its ordering names
    PGM_GRAMMAR,           // programmer name: package-level names
    PGM_PCF,               // part file: programmer names
    PGM_FAMILY_PCF,        // family file: programmer names
    DEV_PCF,               // part file: device names
    DEV_FAMILY_PCF,        // family file: device names
    DEVICE_PCF_FAMILY_PCF, // family file: part files that share it
    FAMILY,                // family: part files
    WORLD_MAP_COUNT
};

using WORLD_MAPS = std::array<WORLD_MAP, WORLD_MAP_COUNT>;

WORLD_MAPS make_world_maps(const WORLD& world);

// Every string is a name that the maps may hold, no key is without contents, and no content stands under two keys.
void check_world_maps(const WORLD_MAPS& maps, WORLD_FAULTS& faults);

// Compares the world with the figures that `file` demands; each difference is a fault at the figure's row.
void check_world_shape(const WORLD& world, const WORLD_MAPS& maps, const std::string& file, WORLD_FAULTS& faults);

#endif
