// Integer names and the value tags that both databases share.
#ifndef TOVREN_TYPES_H
#define TOVREN_TYPES_H

#include <string>

using BYTE = unsigned char;       // 8 bit
using WORD = unsigned short;      // 16 bit
using DWORD = unsigned int;       // 32 bit
using QWORD = unsigned long long; // 64 bit

// "None" in index tables, in the device-to-flash map and in lookup results.
inline constexpr DWORD INVALID_DWORD = 0xFFFFFFFF;

// The byte ahead of every value of a database record and ahead of each index table. These numbers are on disk.
// 9 was never written and is never accepted.
enum TOVREN_MANAGER_TYPE : BYTE {
    TOVREN_MANAGER_DEVID_ENUM = 0,  // 4 bytes: a family, device or part of the host's catalogue
    TOVREN_MANAGER_DEVID_STR = 1,   // length byte, characters: the PCF name of a device record
    TOVREN_MANAGER_STRING = 2,      // length byte, characters
    TOVREN_MANAGER_BOOL = 3,        // 1 byte, 0 or 1
    TOVREN_MANAGER_BYTE = 4,        // 1 byte
    TOVREN_MANAGER_WORD = 5,        // 2 bytes
    TOVREN_MANAGER_DWORD = 6,       // 4 bytes
    TOVREN_MANAGER_ENUM = 7,        // 4 bytes: a value of one of the host's other enumerations
    TOVREN_MANAGER_FAMILY_TBL = 8,  // family index table
    TOVREN_MANAGER_DEVICE_TBL = 10, // device index table
    TOVREN_MANAGER_PART_TBL = 11,   // part index table
    TOVREN_MANAGER_TYPE_MAX = 12,
};

// A name of a CSV cell and the value that the database holds for it.
struct TOVREN_NAME_VALUE {
    std::string name;
    unsigned int value;
};

#endif
