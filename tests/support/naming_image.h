// Images of the two naming tables, spelled out from their format, and the compressed tables around them. Nothing here
// is taken from the library or the generator.
#ifndef TESTS_SUPPORT_NAMING_IMAGE_H
#define TESTS_SUPPORT_NAMING_IMAGE_H

#include "bytes.h"

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// CRC-32/BZIP2, bit by bit.
unsigned int crc_of(const BYTES& bytes);

// ---- naming maps ----

using NAMING_ENTRY = std::pair<std::string, std::vector<std::string>>; // key, contents
using NAMING_MAP = std::vector<NAMING_ENTRY>;

BYTES entry_bytes(const NAMING_ENTRY& entry); // with its end mark
BYTES map_bytes(const NAMING_MAP& map);       // with its end mark

// Field by field; a test sets the one that it wants wrong.
struct GRAMMAR_IMAGE {
    std::string magic = "TOVREN_DDB";
    std::vector<NAMING_MAP> maps; // at first eight, map N with the key "KEYN" and the content "CONTENTN"
    std::optional<BYTES> body;    // else that of the maps
    std::optional<BYTES> trailer; // else the true one

    GRAMMAR_IMAGE();
    BYTES body_bytes() const;
    BYTES bytes() const;
};

// ---- ordering list ----

BYTES packed_bytes(unsigned long long value); // in as few bytes as it takes

struct OPN_IMAGE {
    std::string magic = "TOVREN_DDB";
    std::optional<unsigned int> count; // else the true one
    std::vector<unsigned int> values;
    std::optional<BYTES> packed;  // else that of the values
    std::optional<BYTES> trailer; // else the true one

    explicit OPN_IMAGE(std::vector<unsigned int> all = {0}) : values(std::move(all)) {}
    BYTES bytes() const;
};

// ---- around both ----

// `magic` and `body` with the four bytes of their CRC, least significant first, or other ones.
BYTES image_bytes(const std::string& magic, const BYTES& body, const std::optional<BYTES>& trailer);

// The condition that a wrong CRC is reported by: that of the lowest byte in which the two differ.
std::string crc_condition(unsigned int computed, unsigned int stored);

#endif
