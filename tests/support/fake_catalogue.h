// A device catalogue that a test fills, in the place of the standalone host's. The invalid part is not 0, and the
// generic part is not the last one.
#ifndef TESTS_SUPPORT_FAKE_CATALOGUE_H
#define TESTS_SUPPORT_FAKE_CATALOGUE_H

#include "host_dev.h"

#include <array>
#include <set>
#include <string>
#include <vector>

inline constexpr unsigned int FAKE_PART_INVALID = 3;
inline constexpr unsigned int FAKE_PART_GENERIC = 20;
inline constexpr unsigned int FAKE_PART_MAX = 23;

struct FAKE_PART {
    std::string name;
    unsigned int device = 0;
    bool in_production = true;
    bool has_ordering_number = true;
};

struct FAKE_DEVICE {
    std::string name;
    unsigned int family = 0;
};

struct FAKE_CATALOGUE {
    std::vector<std::string> families; // row 0 is the invalid one
    std::vector<FAKE_DEVICE> devices;  // likewise
    std::array<FAKE_PART, FAKE_PART_MAX> parts;
    std::set<unsigned int> failing_filters; // calls of the filter, counted from 0, that fail

    std::vector<std::string> filter_calls; // "QUARN ANY ANY ANY ANY 1 0 0 any"
    unsigned int wrong_questions = 0;      // for parts that there are not
};

// The process's one.
FAKE_CATALOGUE& fake_catalogue();

#endif
