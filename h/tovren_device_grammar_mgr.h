// The names of one device: full ordering name, package-level name, programmer name, part file, family file, family.
//
//     std::string name = " qx20af256c6n ";
//     TOVREN_DEVICE_GRAMMAR_MGR::get_package_name(name, false);   // "QX20AF256"; name is "QX20AF256C6N" now
//     TOVREN_DEVICE_GRAMMAR_MGR::get_pgm_name(name, false, false); // the name that the programmer knows it by
//
// Attention: a name argument that is a const std::string& is standardised in place. Afterwards the caller's string is
// trimmed and upper-case, although it was passed read-only. Hand in a copy where the spelling matters, never an object
// that is itself constant.
//
// Errors: none. An unknown name gives the empty text, or, where an operation says so, the standardised name itself. The
// first use takes the compiled-in table apart; a broken one ends in MSG_INTERNAL_ERROR::report, which does not return.
//
// With the setting TOVREN_ENABLE_GRAMMAR_DEBUG on, get_package_name and get_pgm_name, whoever calls them, print what
// they did on standard output.
//
// Threads: none. The first use must not race with another, and a string is used by one thread at a time.
#ifndef TOVREN_DEVICE_GRAMMAR_MGR_H
#define TOVREN_DEVICE_GRAMMAR_MGR_H

#include "tovren_export.h"

#include <functional>
#include <string>
#include <vector>

class TOVREN_API TOVREN_DEVICE_GRAMMAR_MGR {
public:
    // ---- names ----

    // The package-level name of a full ordering name. For any other name: empty with `keep_empty`, else the name.
    static std::string get_package_name(const std::string& name, bool keep_empty);

    // The programmer's name for a package-level name or, unless `skip_package_conversion`, for a full ordering name.
    // What the name maps to directly comes first. For any other name: empty with `keep_empty`, else the name.
    static std::string get_pgm_name(const std::string& name, bool skip_package_conversion, bool keep_empty);

    // The family of a part file, programmer name or device. Full ordering names and package-level names are not
    // converted first.
    static std::string get_family(const std::string& name);

    // Whether the programmer knows the part by its package-level name. True for the empty name.
    static bool use_package_name(const std::string& name);

    // Whether the programmer knows the part by this name itself, which then is its package-level name too.
    static bool use_full_name(const std::string& name);

    // ---- files ----

    // The programmer's part file and family file of a programmer name.
    static std::string get_pgm_part_pcf(const std::string& pgm_name);
    static std::string get_pgm_family_pcf(const std::string& pgm_name);

    // Both for any name that get_pgm_name converts. The outputs are overwritten in any case.
    static void get_pgm_pcfs(const std::string& name, std::string& part_pcf, std::string& family_pcf);

    // The part file and family file of a device.
    static std::string get_dev_part_pcf(const std::string& device);
    static std::string get_dev_family_pcf(const std::string& device);
    static void get_dev_pcfs(const std::string& device, std::string& part_pcf, std::string& family_pcf);

    // The family file that lists a device part file.
    static std::string get_pcf_family_pcf(const std::string& pcf);

    // The first device of a device part file.
    static std::string get_pcf_device(const std::string& pcf);

    // ---- all that is known; these leave their arguments alone ----

    // The maps that relate names, each from a coarser name (the key) to the finer ones that it owns (its contents).
    static constexpr unsigned int MAP_COUNT = 8;

    // "PACKAGE_GRAMMAR" for 0; empty at or past MAP_COUNT.
    static std::string get_map_name(unsigned int map);

    // Calls `visit` for every key of the map, in ascending byte order, with its contents in theirs. `map` is below
    // MAP_COUNT, or it is reported. The references last for the call of `visit`.
    using MAP_VISITOR = std::function<void(const std::string& key, const std::vector<std::string>& contents)>;
    static void visit_map(unsigned int map, const MAP_VISITOR& visit);

    // The names of any map that are nearest to `name`, standardised, five at most: those at most two edits away (a
    // character put in, left out or replaced), the nearest first, equally near ones in byte order. Where there are
    // none, those that share its longest known beginning of three characters or more, in byte order. A known name comes
    // first, no edits away.
    static std::vector<std::string> get_near_names(std::string name);
};

// The class of a character: 'c' for a capital letter, 'd' for a digit, '_' and '-' for themselves, '?' for any other.
TOVREN_API char get_grammar_character_type(char c);

// Takes white space off both ends, then upper-cases.
TOVREN_API void standardize_name(std::string& name);

#endif
