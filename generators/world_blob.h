// The two compressed images that are compiled into the library: the naming maps and the ordering list.
//
// An image is the magic "TOVREN_DDB", a body, and the CRC-32/BZIP2 of all before it, least significant byte first.
// Maps: for each map its entries (key, contents, one zero byte), then one more zero byte; strings end in a zero byte.
// Ordering list: the number of places (32 bits, least significant byte first), then each part number as a packed
// integer (7 bits a byte, least significant first, the top bit set where another byte follows).
#ifndef WORLD_BLOB_H
#define WORLD_BLOB_H

#include "world_maps.h"

#include <cstdint>

using WORLD_IMAGE = std::vector<std::uint8_t>;

WORLD_IMAGE make_grammar_image(const WORLD_MAPS& maps);
WORLD_IMAGE make_ordering_image(const std::vector<unsigned int>& ordering_list);

// The zlib stream of `image`, inflated again and compared; empty when zlib fails or the comparison does.
std::vector<std::uint8_t> compress_image(const WORLD_IMAGE& image);

// The text of the header and of the source that define NAME_DATA, NAME_CMP_LENGTH and NAME_LENGTH.
std::string blob_header_text(const std::string& name);
std::string blob_source_text(const std::string& name, const std::string& header, const WORLD_IMAGE& image,
                             const std::vector<std::uint8_t>& stream);

#endif
