// The serial flashes that a Linux kernel publishes below its sysfs. Nothing is written there.
//
//     bus/spi/devices/spiB.C/spi-nor/   jedec_id, manufacturer, partname, sfdp: each may be missing
//     class/mtd/mtdN/                   type, name, size, erasesize, device -> the flash or the mtd it is a part of;
//                                       a partition has an offset too; the whole flash need not be there
#ifndef TOOL_MTD_SYSFS_H
#define TOOL_MTD_SYSFS_H

#include "sfdp.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

struct TOOL_MTD {
    std::string device; // "mtd0"
    std::string name;
    std::uint64_t size = 0;              // bytes
    std::uint64_t erase_size = 0;        // bytes
    std::optional<std::uint64_t> offset; // of a partition
};

struct TOOL_SYSTEM_FLASH {
    std::string device;            // "spi0.0"
    std::vector<unsigned char> id; // empty where it cannot be read
    std::string maker;             // as the kernel names it; may be empty, as the next
    std::string name;
    std::string sfdp_path; // empty where none is published
    std::optional<SFDP_TABLE> sfdp;
    std::vector<TOOL_MTD> mtds;
};

struct TOOL_SYSTEM_FLASHES {
    std::vector<TOOL_SYSTEM_FLASH> flashes;
    std::vector<std::string> faults;   // "FILE: what is wrong", printable
    std::vector<std::string> unlinked; // mtds of type nor that belong to none of the flashes
};

// `folder` is where sysfs is mounted; one that cannot be read ends the command.
TOOL_SYSTEM_FLASHES tool_read_system_flashes(const std::string& folder);

// The size of the flash by its mtds: that of the whole one, else the end of the last partition, at which the flash may
// go on.
struct TOOL_MTD_SIZE {
    std::uint64_t bytes = 0;
    bool is_whole = false;
};
std::optional<TOOL_MTD_SIZE> tool_mtd_size(const std::vector<TOOL_MTD>& mtds);

#endif
