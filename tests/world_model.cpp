#include "world_model.h"

#include "pgmddb_grammar_data.h"
#include "pgmddb_opn_data.h"
#include "tovren_catalogue_tables.h"

#include <zlib.h>

WORLD_BYTES inflate_world_image(const unsigned char* stream, unsigned int stream_length, unsigned int length) {
    WORLD_BYTES image(length + 1U); // one spare byte shows a stream that is too long
    uLongf size = static_cast<uLongf>(image.size());
    if (uncompress(image.data(), &size, stream, stream_length) != Z_OK || size != length)
        return {};
    image.resize(length);
    return image;
}

std::uint32_t world_crc(const unsigned char* data, std::size_t size) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (std::size_t index = 0; index < size; ++index) {
        for (unsigned int mask = 0x80; mask != 0; mask >>= 1) {
            const bool flip = ((crc & 0x80000000) != 0) != ((data[index] & mask) != 0);
            crc = (crc << 1) ^ (flip ? 0x04C11DB7 : 0);
        }
    }
    return ~crc;
}

namespace {

constexpr std::size_t MAGIC_SIZE = 10;
constexpr std::size_t TRAILER_SIZE = 4;

// The zero-terminated strings of the body, empty ones included.
std::vector<std::string> body_strings(const WORLD_BYTES& image) {
    std::vector<std::string> strings(1);
    for (std::size_t index = MAGIC_SIZE; index + TRAILER_SIZE < image.size(); ++index) {
        if (image[index] == 0)
            strings.emplace_back();
        else
            strings.back() += static_cast<char>(image[index]);
    }
    if (strings.back().empty())
        strings.pop_back();
    return strings;
}

} // namespace

// Among the strings of the body an empty one ends an entry, and one where a key would stand ends the map.
std::vector<WORLD_NAME_MAP> parse_world_maps(const WORLD_BYTES& image) {
    std::vector<WORLD_NAME_MAP> maps(1);
    std::string key;
    for (const std::string& text : body_strings(image)) {
        if (!key.empty() && text.empty() && maps.back()[key].empty())
            return {};
        if (key.empty() && text.empty())
            maps.emplace_back();
        else if (key.empty() && maps.back().contains(text))
            return {};
        else if (!key.empty() && !text.empty())
            maps.back()[key].push_back(text);
        else
            key = text;
    }
    if (!key.empty() || !maps.back().empty())
        return {};
    maps.pop_back();
    return maps;
}

std::vector<unsigned int> parse_world_ordering(const WORLD_BYTES& image) {
    const std::size_t start = MAGIC_SIZE + 4;
    if (image.size() < start + TRAILER_SIZE)
        return {};
    std::vector<unsigned int> values;
    unsigned int value = 0;
    unsigned int shift = 0;
    for (std::size_t index = start; index + TRAILER_SIZE < image.size(); ++index) {
        value |= (image[index] & 0x7FU) << shift;
        shift += 7;
        if ((image[index] & 0x80) != 0)
            continue;
        values.push_back(value);
        value = shift = 0;
    }
    const std::size_t count = image[10] + image[11] * 0x100U + image[12] * 0x10000U + image[13] * 0x1000000U;
    return shift == 0 && values.size() == count ? values : std::vector<unsigned int>();
}

WORLD_MODEL::WORLD_MODEL()
    : maps(
          parse_world_maps(inflate_world_image(PGMDDB_GRAMMAR_DATA, PGMDDB_GRAMMAR_CMP_LENGTH, PGMDDB_GRAMMAR_LENGTH))),
      ordering(parse_world_ordering(inflate_world_image(PGMDDB_OPN_DATA, PGMDDB_OPN_CMP_LENGTH, PGMDDB_OPN_LENGTH))) {
    m_owners.resize(maps.size());
    for (std::size_t map = 0; map < maps.size(); ++map) {
        for (const auto& [key, contents] : maps[map])
            for (const std::string& content : contents)
                m_owners[map].emplace(content, key); // the first key stays
    }
}

std::string WORLD_MODEL::key_of(std::size_t map, const std::string& name) const {
    const auto found = m_owners.at(map).find(name);
    return found == m_owners[map].end() ? "" : found->second;
}

std::string WORLD_MODEL::package_name(const std::string& name) const {
    const std::string key = key_of(0, name);
    return key.empty() ? name : key;
}

std::string WORLD_MODEL::pgm_name(const std::string& name) const {
    std::string key = key_of(1, name);
    if (key.empty())
        key = key_of(1, key_of(0, name));
    return key.empty() ? name : key;
}

std::string WORLD_MODEL::full_name(const std::string& name) const {
    for (std::size_t number = 1; number + 1 < tovren_catalogue_parts().size(); ++number) {
        std::string part(tovren_catalogue_text(TOVREN_CATALOGUE_PARTS[number].name));
        if (part == name)
            return part;
        if (part.size() < 5 || part.compare(0, 5, name, 0, 5) != 0)
            continue;
        if (package_name(part) == name || pgm_name(part) == name)
            return part;
    }
    return "";
}

// Pass 0 asks for parts in production with an ordering number, 1 in production, 2 with an ordering number, 3 for all.
std::string WORLD_MODEL::part_of_pcf_in_pass(const std::string& part_file, unsigned int pass) const {
    for (std::size_t number = 1; number + 1 < tovren_catalogue_parts().size(); ++number) {
        const TOVREN_CATALOGUE_PART& part = TOVREN_CATALOGUE_PARTS[number];
        std::string name(tovren_catalogue_text(part.name));
        if ((pass > 1 || part.in_production) && (pass % 2 == 1 || part.has_ordering_number) &&
            key_of(2, name) == part_file)
            return name;
    }
    return "";
}

std::string WORLD_MODEL::part_of_pcf(const std::string& part_file) const {
    std::string result;
    for (unsigned int pass = 0; pass < 4; ++pass) {
        const std::string found = part_of_pcf_in_pass(part_file, pass);
        if (!found.empty())
            result = found;
        if (result.empty())
            break;
    }
    return result;
}
