// The naming scheme (data/naming/scheme.txt): the codes that names are made of, and the sets of ordering names.
#ifndef WORLD_SCHEME_H
#define WORLD_SCHEME_H

#include "world_rows.h"

#include <map>
#include <optional>

// One ordering name of a package, as what is appended to the package-level name.
struct WORLD_SUFFIX {
    std::string text;        // "C6N"; empty for the bare name
    std::string temperature; // "C"; empty for the bare name
    std::string speed;       // "6"; empty for the bare name
    bool listed = false;     // whether the catalogue lists the name as a part
};

struct WORLD_PACKAGE {
    std::string code; // "F256"
    std::string type; // "FBGA"
    unsigned int pin_count = 0;
};

class WORLD_SCHEME {
public:
    // Grade sets by name; the suffixes of each in the order of the ordering names.
    std::map<std::string, std::vector<WORLD_SUFFIX>> grade_sets;
    std::map<char, std::string> package_types;
    std::vector<std::string> temperatures;
    std::vector<std::string> speeds;
    std::vector<std::string> options;

    // Takes "F256" apart; none when it is no package of the scheme.
    std::optional<WORLD_PACKAGE> package_of(std::string_view code) const;
};

WORLD_SCHEME read_world_scheme(const std::string& file, WORLD_FAULTS& faults);

#endif
