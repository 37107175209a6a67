// The frame of an image: signature, header, parameter headers, and which tables are read.
//
//   byte 0-3   "SFDP"
//        4, 5  minor and major revision; the major one is 1
//        6     number of parameter headers less one
//        7     access protocol
//        8     the parameter headers, 8 bytes each: id (low), minor, major, dwords, pointer (3 bytes), id (high)
//
// Of several headers with one id the highest minor revision counts, among equals the longest, then the first. When
// that one cannot be read the image is refused: what an older one says may be wrong for the flash.
#include "sfdp_parts.h"

#include <algorithm>
#include <cstdio>

namespace {

constexpr std::size_t HEADER_BYTES = 8;
constexpr unsigned MAJOR = 1;
constexpr unsigned BASIC_DWORDS_LEAST = 9;
constexpr unsigned FOUR_BYTE_DWORDS_LEAST = 2;

// The words for a table that is read: of the refusals' kinds, and for people.
struct TABLE_WORDS {
    const char* name;
    unsigned dwords_least;
    const char* too_short;
    const char* unaligned;
    const char* overlaps_headers;
    const char* past_end;
};

constexpr TABLE_WORDS BASIC_WORDS = {
    "the basic parameter table FF00", BASIC_DWORDS_LEAST, "bfpt_too_short", "bfpt_unaligned",
    "bfpt_overlaps_headers",          "bfpt_past_end"};
constexpr TABLE_WORDS FOUR_BYTE_WORDS = {"the table of 4-byte instructions FF84",
                                         FOUR_BYTE_DWORDS_LEAST,
                                         "ff84_too_short",
                                         "ff84_unaligned",
                                         "ff84_overlaps_headers",
                                         "ff84_past_end"};

std::size_t headers_end(const SFDP_TABLE& table) {
    return HEADER_BYTES * (table.tables.size() + 1);
}

SFDP_TABLE_HEADER parameter_header(SFDP_IMAGE bytes) {
    SFDP_TABLE_HEADER header;
    header.id = static_cast<std::uint16_t>(bytes[7] << 8 | bytes[0]);
    header.minor = bytes[1];
    header.major = bytes[2];
    header.dwords = bytes[3];
    header.offset = bytes[4] | std::size_t{bytes[5]} << 8 | std::size_t{bytes[6]} << 16;
    return header;
}

SFDP_FAULT read_header(SFDP_IMAGE image, SFDP_TABLE& table) {
    if (image.size() < HEADER_BYTES)
        return SFDP_REFUSAL{"too_short",
                            "the image has " + std::to_string(image.size()) + " bytes, the header alone takes 8",
                            image.size()};
    constexpr std::array<std::uint8_t, 4> SIGNATURE = {'S', 'F', 'D', 'P'};
    if (!std::equal(SIGNATURE.begin(), SIGNATURE.end(), image.begin()))
        return SFDP_REFUSAL{"bad_signature", "the signature SFDP is missing: " + sfdp_foreign_text(image), 0};
    table.sfdp_minor = image[4];
    table.sfdp_major = image[5];
    table.access_protocol = image[7];
    if (table.sfdp_major != MAJOR)
        return SFDP_REFUSAL{"bad_major", "major revision " + std::to_string(table.sfdp_major) + ", only 1 is known", 5};
    return std::nullopt;
}

SFDP_FAULT read_parameter_headers(SFDP_IMAGE image, SFDP_TABLE& table) {
    const std::size_t count = std::size_t{image[6]} + 1;
    const std::size_t end = HEADER_BYTES * (count + 1);
    if (image.size() < end)
        return SFDP_REFUSAL{"headers_past_end",
                            std::to_string(count) + " parameter headers need " + std::to_string(end) +
                                " bytes, the image has " + std::to_string(image.size()),
                            6};
    for (std::size_t at = HEADER_BYTES; at < end; at += HEADER_BYTES)
        table.tables.push_back(parameter_header(image.subspan(at, HEADER_BYTES)));
    return std::nullopt;
}

// Position in table.tables of the header that counts.
std::optional<std::size_t> chosen_header(const SFDP_TABLE& table, std::uint16_t id) {
    std::optional<std::size_t> best;
    for (std::size_t i = 0; i < table.tables.size(); ++i) {
        const SFDP_TABLE_HEADER& header = table.tables[i];
        if (header.id != id || header.major != MAJOR)
            continue;
        if (!best ||
            std::pair(header.minor, header.dwords) > std::pair(table.tables[*best].minor, table.tables[*best].dwords))
            best = i;
    }
    return best;
}

// Whether the table that parameter header `place` points to can be read at all.
SFDP_FAULT check_place(SFDP_IMAGE image, const SFDP_TABLE& table, std::size_t place, const TABLE_WORDS& words) {
    const SFDP_TABLE_HEADER& header = table.tables[place];
    const std::size_t at = HEADER_BYTES * (place + 1);
    const std::string start = std::string(words.name) + " begins at byte " + std::to_string(header.offset);
    if (header.dwords < words.dwords_least)
        return SFDP_REFUSAL{words.too_short,
                            std::string(words.name) + " has " + std::to_string(header.dwords) + " dwords, it needs " +
                                std::to_string(words.dwords_least),
                            at + 3};
    if (header.offset % 4 != 0)
        return SFDP_REFUSAL{words.unaligned, start + ", which is no multiple of 4", at + 4};
    if (header.offset < headers_end(table))
        return SFDP_REFUSAL{words.overlaps_headers,
                            start + ", inside the headers, which end at " + std::to_string(headers_end(table)), at + 4};
    const std::size_t end = header.offset + std::size_t{4} * header.dwords;
    if (end > image.size())
        return SFDP_REFUSAL{words.past_end,
                            start + " and ends at " + std::to_string(end) + ", the image has " +
                                std::to_string(image.size()) + " bytes: it is cut, or the pointer is wrong",
                            at + 4};
    return std::nullopt;
}

SFDP_FAULT read_basic_table(SFDP_IMAGE image, SFDP_TABLE& table) {
    const std::optional<std::size_t> place = chosen_header(table, SFDP_ID_BASIC);
    if (!place)
        return SFDP_REFUSAL{"no_bfpt", "no parameter header announces the basic parameter table FF00, revision 1",
                            HEADER_BYTES};
    if (SFDP_FAULT fault = check_place(image, table, *place, BASIC_WORDS))
        return fault;
    table.bfpt = table.tables[*place];
    const SFDP_DWORDS basic(image, table.bfpt);
    if (SFDP_FAULT fault = sfdp_read_capabilities(basic, table))
        return fault;
    if (SFDP_FAULT fault = sfdp_read_geometry(basic, table))
        return fault;
    sfdp_read_fast_reads(basic, table);
    sfdp_read_times(basic, table);
    sfdp_read_polling(basic, table);
    sfdp_read_modes(basic, table);
    return std::nullopt;
}

SFDP_FAULT read_four_byte_table(SFDP_IMAGE image, SFDP_TABLE& table, std::optional<SFDP_DWORDS>& words) {
    const std::optional<std::size_t> place = chosen_header(table, SFDP_ID_FOUR_BYTE);
    if (!place)
        return std::nullopt;
    if (SFDP_FAULT fault = check_place(image, table, *place, FOUR_BYTE_WORDS))
        return fault;
    words.emplace(image, table.tables[*place]);
    table.four_byte_table = sfdp_read_four_byte(*words, table);
    return std::nullopt;
}

} // namespace

std::string sfdp_hex(std::uint64_t value, unsigned digits) {
    std::array<char, 17> text{};
    std::snprintf(text.data(), text.size(), "%0*llX", static_cast<int>(digits), static_cast<unsigned long long>(value));
    return text.data();
}

bool sfdp_has_sector_map(const SFDP_TABLE& table) {
    return std::any_of(table.tables.begin(), table.tables.end(),
                       [](const SFDP_TABLE_HEADER& header) { return header.id == SFDP_ID_SECTOR_MAP; });
}

SFDP_RESULT sfdp_decode(std::span<const std::uint8_t> image) {
    SFDP_TABLE table;
    std::optional<SFDP_DWORDS> four_byte;
    if (SFDP_FAULT fault = read_header(image, table))
        return *fault;
    if (SFDP_FAULT fault = read_parameter_headers(image, table))
        return *fault;
    if (SFDP_FAULT fault = read_basic_table(image, table))
        return *fault;
    if (SFDP_FAULT fault = read_four_byte_table(image, table, four_byte))
        return *fault;
    table.warnings = sfdp_warnings(image, table, four_byte);
    return table;
}
