// What differs between two databases of one kind.
//
// A record keeps its identity from one database to the other by what identifies it: a flash by its name and
// identification, then by one of the two where that leaves no choice; a device record by its key. Records that nothing
// tells apart are taken in their order.
#ifndef TOOL_DB_DIFFERENCE_H
#define TOOL_DB_DIFFERENCE_H

#include "tool_db_file.h"

#include <string>
#include <vector>

inline constexpr size_t TOOL_DB_NO_RECORD = static_cast<size_t>(-1);

// Positions of one record in the two databases, or of two records that do the same work in them. Either may be
// TOOL_DB_NO_RECORD.
struct TOOL_DB_PAIR {
    size_t before;
    size_t after;
};

struct TOOL_DB_PAIRING {
    std::vector<size_t> after_of;    // by position before
    std::vector<size_t> before_of;   // by position after
    std::vector<TOOL_DB_PAIR> moved; // the fewest that stand in another order, by position after

    bool is_same(TOOL_DB_PAIR records) const;
};

TOOL_DB_PAIRING tool_db_pairing(const TOOL_DB_FILE& before, const TOOL_DB_FILE& after);

// A record with other values.
struct TOOL_DB_CHANGE {
    TOOL_DB_PAIR records;
    std::vector<size_t> members; // positions
};

// Another record than before answers to something.
struct TOOL_DB_ANSWER {
    std::string asked;   // an identification, a flash name
    std::string setting; // "PGM_ALLOW_X" where it is so only while that is on
    TOOL_DB_PAIR records;
};

// Another record than before serves a value of the catalogue, or one where there was none.
struct TOOL_DB_SERVED {
    const char* kind; // "family", "device", "part"
    unsigned int number;
    TOOL_DB_PAIR records;
};

struct TOOL_DB_DIFFERENCE {
    bool has_other_md5 = false;
    std::vector<size_t> removed; // positions before
    std::vector<size_t> added;   // positions after
    std::vector<TOOL_DB_CHANGE> changed;
    std::vector<TOOL_DB_PAIR> moved;
    std::vector<TOOL_DB_ANSWER> identified; // flashes: identifications
    std::vector<TOOL_DB_ANSWER> defaults;   // flashes: the default record of a name
    std::vector<TOOL_DB_SERVED> served;     // devices

    bool is_none() const;
};

// Both without faults, of one kind and with known members.
TOOL_DB_DIFFERENCE tool_db_difference(const TOOL_DB_FILE& before, const TOOL_DB_FILE& after);

// For each identification of either table, and for each default name, those that another record answers to than before.
std::vector<TOOL_DB_ANSWER> tool_db_other_identified(const TOOL_DB_FILE& before, const TOOL_DB_FILE& after,
                                                     const TOOL_DB_PAIRING& pairing);
std::vector<TOOL_DB_ANSWER> tool_db_other_defaults(const TOOL_DB_FILE& before, const TOOL_DB_FILE& after,
                                                   const TOOL_DB_PAIRING& pairing);

#endif
