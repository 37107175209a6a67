// A plain model of the compiled-in world of parts, for tests: the tables are inflated and taken apart by the shortest
// code that does it, and the naming rules are written down once more over ordinary maps. It shares nothing with the
// library or the generator.
#ifndef WORLD_MODEL_H
#define WORLD_MODEL_H

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

using WORLD_BYTES = std::vector<unsigned char>;
using WORLD_NAME_MAP = std::map<std::string, std::vector<std::string>>;

// Empty when the stream does not inflate to exactly `length` bytes.
WORLD_BYTES inflate_world_image(const unsigned char* stream, unsigned int stream_length, unsigned int length);

// CRC-32/BZIP2, bit by bit.
std::uint32_t world_crc(const unsigned char* data, std::size_t size);

// The maps of a naming image in their order. A body that breaks the format gives no maps at all.
std::vector<WORLD_NAME_MAP> parse_world_maps(const WORLD_BYTES& image);

// The values of an ordering image. A body that breaks the format gives none.
std::vector<unsigned int> parse_world_ordering(const WORLD_BYTES& image);

class WORLD_MODEL {
public:
    WORLD_MODEL(); // from what is compiled in

    std::vector<WORLD_NAME_MAP> maps;
    std::vector<unsigned int> ordering;

    // The first key of map `map` whose contents hold `name`; empty when none does.
    std::string key_of(std::size_t map, const std::string& name) const;

    std::string package_name(const std::string& name) const; // `name` itself where there is none
    std::string pgm_name(const std::string& name) const;     // through the package-level name; else `name` itself
    std::string family_of_file(const std::string& part_file) const { return key_of(7, part_file); }
    std::string full_name(const std::string& name) const;        // empty when no part matches
    std::string part_of_pcf(const std::string& part_file) const; // empty when no part is found

private:
    std::string part_of_pcf_in_pass(const std::string& part_file, unsigned int pass) const;

    std::vector<std::map<std::string, std::string>> m_owners;
};

#endif
