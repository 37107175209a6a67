// The device catalogue of the host: families, the devices of each family, the parts of each device. A value of an
// enumeration is a number from 0 (invalid) up to its bound.
#ifndef HOST_DEV_H
#define HOST_DEV_H

#include <string>
#include <vector>

enum DEV_FAMILY_ENUM : unsigned int {
    DEV_FAMILY_INVALID = 0,
    DEV_FAMILY_GENERIC = 73, // stands for any family
    DEV_FAMILY_MAX = 74,
};

enum DEV_DEVICE_ENUM : unsigned int {
    DEV_DEVICE_INVALID = 0,
    DEV_DEVICE_GENERIC = 1047, // stands for any device
    DEV_DEVICE_MAX = 1048,
};

// The bounds of the parts are the catalogue's: constants of the host that are set before any code runs.
enum DEV_PART_ENUM : unsigned int {};
extern const DEV_PART_ENUM DEV_PART_INVALID;
extern const DEV_PART_ENUM DEV_PART_GENERIC;
extern const DEV_PART_ENUM DEV_PART_MAX;

// The name that users know: "GENERIC" for the generic value, empty for INVALID and for a value out of range.
std::string dstr_get_user_string(DEV_FAMILY_ENUM family);
std::string dstr_get_user_string(DEV_DEVICE_ENUM device);
std::string dstr_get_user_string(DEV_PART_ENUM part);

// The value whose user name is `name`, letter case aside; INVALID for an unknown and for the empty name.
DEV_FAMILY_ENUM dstr_get_dev_family_enum_by_string(const std::string& name);
DEV_DEVICE_ENUM dstr_get_dev_device_enum_by_string(const std::string& name);
DEV_PART_ENUM dstr_get_dev_part_enum_by_string(const std::string& name);

// Neither INVALID nor at or past the bound. The generic value is valid.
bool dstr_is_valid_dev_family_enum(DEV_FAMILY_ENUM family);
bool dstr_is_valid_dev_device_enum(DEV_DEVICE_ENUM device);

// Questions over the whole catalogue. Cheap to make; holds no state that a caller sees.
class DEV_PART_MANAGER {
public:
    // The device of a part: the generic one for the generic part, INVALID for INVALID and out of range.
    DEV_DEVICE_ENUM get_device_of(DEV_PART_ENUM part) const;

    // The family of a device, likewise.
    DEV_FAMILY_ENUM get_family_of(DEV_DEVICE_ENUM device) const;

    // Fills `parts`, cleared before, with the named parts that pass every filter, in enumerator order.
    //   family              user name of the family
    //   package             kind of package, such as FBGA
    //   pin_count           its pins, as a decimal number
    //   temperature_grade   one letter
    //   speed_grade         one digit
    //   name_part           a text that the part's user name contains
    // For each of them "ANY" passes everything; letter case does not count.
    //   in_production       only parts that are in production; false lifts the restriction, as for the next two
    //   has_ordering_number only parts with an ordering number
    //   has_hard_processor  only parts with a hard processor system
    // False, with an empty list, for a family that the catalogue does not know. No match is not a failure.
    bool filter_part_list(std::vector<DEV_PART_ENUM>& parts, const std::string& family, const std::string& package,
                          const std::string& pin_count, const std::string& temperature_grade,
                          const std::string& speed_grade, bool in_production, bool has_ordering_number,
                          bool has_hard_processor, const std::string& name_part) const;
};

// Blocks of a configuration bitstream.
enum CFG_BLOCK_ENUM : unsigned int {
    CFG_BLOCK_NONE = 0,
    CFG_BLOCK_IOCSR = 1,
    CFG_BLOCK_CORE = 2,
    CFG_BLOCK_HPS = 3,
    CFG_BLOCK_TRAILER = 4,
};

// How a device is programmed unless the user says otherwise.
enum PROG_MODE_ENUM : unsigned int {
    PROG_MODE_NONE = 0,
    PROG_MODE_JTAG = 1,
    PROG_MODE_PASSIVE_SERIAL = 2,
    PROG_MODE_ACTIVE_SERIAL = 3,
};

#endif
