// Name services over the device catalogue: ordering part numbers and their hashes, the parts behind part files, devices
// and short names, and the names of programming enumerations.
//
//     const unsigned int opn = TOVREN_MGR::get_opn_enum("qx20af256c6"); // its place in the ordering list
//     TOVREN_MGR::get_opn(opn);                                         // "QX20AF256C6"
//     TOVREN_MGR::get_possible_full_name("qx20af256");                  // the first part of that package
//
// All arguments are copies. What a miss gives stands with each operation; only where it says so is a miss an internal
// error, which ends in MSG_INTERNAL_ERROR::report and does not return.
//
// Threads: none. The first use must not race with another.
#ifndef TOVREN_MGR_H
#define TOVREN_MGR_H

#include "tovren_export.h"

#include <string>

// ---- programming enumerations ----

enum PGM_ENUM_TYPE : unsigned int {
    PGM_RBA_TYPE = 0,                 // regions and blocks of the device fabric
    PGM_FLASH_BLOCK_TYPE = 1,         // blocks of an on-chip flash
    PGM_ICB_TYPE = 2,                 // fields of the initialisation configuration bits
    PGM_BITASM_GENERIC_ENUM_TYPE = 3, // settings and results of bitstream assembly
    PGM_ENUM_TYPE_MAX = 4,
};

inline constexpr unsigned int PGM_RBA_TYPE_COUNT = 76;
inline constexpr unsigned int PGM_FLASH_BLOCK_TYPE_COUNT = 9;
inline constexpr unsigned int PGM_ICB_TYPE_COUNT = 43;
inline constexpr unsigned int PGM_BITASM_GENERIC_ENUM_TYPE_COUNT = 21;

// A name's position is its value. Entry 0 of each list is the empty text and stands for none.
extern TOVREN_API const std::string PGM_RBA_TYPE_NAMES[PGM_RBA_TYPE_COUNT];
extern TOVREN_API const std::string PGM_FLASH_BLOCK_TYPE_NAMES[PGM_FLASH_BLOCK_TYPE_COUNT];
extern TOVREN_API const std::string PGM_ICB_TYPE_NAMES[PGM_ICB_TYPE_COUNT];
extern TOVREN_API const std::string PGM_BITASM_GENERIC_ENUM_TYPE_NAMES[PGM_BITASM_GENERIC_ENUM_TYPE_COUNT];

struct PGM_SUPPORTED_ENUM_TYPE {
    unsigned int count; // entries of the list, entry 0 included
    const std::string* names;
};

// By PGM_ENUM_TYPE.
extern TOVREN_API const PGM_SUPPORTED_ENUM_TYPE PGM_SUPPORTED_ENUM_TYPE_MAP[PGM_ENUM_TYPE_MAX];

class TOVREN_API TOVREN_MGR {
public:
    // ---- ordering part numbers ----

    // The ordering-part-number index of the catalogue's part of that name, letter case aside. 0xFFFFFFFF for an unknown
    // name, the generic part, and a part without an index.
    static unsigned int get_opn_enum(std::string part_name);

    // The name, in upper case, of the part that an index stands for; empty where it stands for none.
    static std::string get_opn(unsigned int opn_enum);

    // 48 bits of the SHA-256 of the name in upper case: an identity that depends on nothing but the name. All 64 bits
    // are set for a name that is no part of the catalogue.
    static unsigned long long get_opn_hash(std::string part_name);

    // The name, in upper case, of the first part with that hash; empty where there is none. Bits 48 to 63 do not count.
    // Hashes the whole catalogue in the worst case: for occasional calls.
    static std::string get_opn_from_hash(unsigned long long hash);

    // ---- parts ----

    // The name, as the catalogue spells it, of a part whose programmer part file is `pcf`. Only parts that are in
    // production and have an ordering number make a part file known; then parts that are in production, parts with an
    // ordering number, and any parts are asked in turn, and the last answer counts. Empty where there is none.
    static std::string get_part_name_from_pcf(std::string pcf);

    // The name, as the catalogue spells it, of the first part of a device: one in production with an ordering number if
    // there is one, else one in production, else one with an ordering number, else any. Empty for a device without
    // parts. An unknown device is an internal error.
    static std::string get_part_name_from_dev(std::string device);

    // The upper-case name of the first catalogue part that `name` is, or whose package-level name or programmer name it
    // is. A name that stands for no part is an internal error.
    static std::string get_possible_full_name(std::string name);

    // The same, but empty for a name that stands for no part.
    static std::string find_possible_full_name(std::string name);

    // ---- programming enumerations; a type at or past the maximum is an internal error ----

    // Whether the list has that name, letter case aside; its position goes to `*value` unless that is null. The empty
    // name is in every list, at 0. Without a match `*value` stays.
    static bool pgm_check_type_name_supported(PGM_ENUM_TYPE pgm_enum_type, std::string name, unsigned int* value);

    // Whether `value` is a proper entry of the list, that is not 0; its name goes to `*name` unless that is null.
    // Otherwise `*name` stays.
    static bool pgm_check_type_enum_supported(PGM_ENUM_TYPE pgm_enum_type, unsigned int value, std::string* name);
};

#endif
