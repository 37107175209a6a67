// The table of the naming maps. By its first character an input is
//     B   the body of an image, which gets its magic and its CRC
//     S   the compressed table: two bytes with the length that it is said to inflate to, lowest first, and the stream
// and anything else is a whole image.
// Accepted: the maps hold what a plain reading of the body gives, and the first key that lists a name owns it.
#include "fuzz_support.h"
#include "tovren_ddb_mgr.h"

#include <optional>

namespace {

using MGR = TOVREN_DDB_GRAMMAR_MGR;

constexpr unsigned int MAP_COUNT = 8;

// What a plain reading gives: texts up to the next zero byte, an empty one at the end of each list.
std::vector<TOVREN_DDB_MAP> read_plainly(std::string_view body) {
    const auto next_text = [&body] {
        const size_t size = body.find('\0');
        FUZZ_REQUIRE(size != std::string_view::npos);
        const std::string text(body.substr(0, size));
        body.remove_prefix(size + 1);
        return text;
    };
    std::vector<TOVREN_DDB_MAP> maps;
    while (!body.empty()) {
        TOVREN_DDB_MAP& map = maps.emplace_back();
        for (std::string key = next_text(); !key.empty(); key = next_text())
            for (std::string content = next_text(); !content.empty(); content = next_text())
                map[key].push_back(content);
    }
    return maps;
}

std::string owner_of(const TOVREN_DDB_MAP& map, const std::string& name) {
    for (const auto& [key, contents] : map)
        for (const std::string& content : contents)
            if (content == name)
                return key;
    return "";
}

void require_sound(const MGR& manager, std::string_view body) {
    const std::vector<TOVREN_DDB_MAP> expected = read_plainly(body);
    FUZZ_REQUIRE(expected.size() == MAP_COUNT);
    for (unsigned int number = 0; number < MAP_COUNT; ++number) {
        TOVREN_DDB_MAP* const map = manager.get_map(TOVREN_DDB_GRAMMAR_ENUM(number));
        FUZZ_REQUIRE(*map == expected[number]);
        const auto& [first_key, first_contents] = *map->begin();
        std::string name = first_contents.back();
        const std::string owner = manager.get_mapping_key(name, map); // standardises the name
        FUZZ_REQUIRE(owner == owner_of(*map, name));
        std::string key = first_key;
        const std::vector<std::string> contents = manager.get_key_mapping(key, map);
        FUZZ_REQUIRE(contents == (map->contains(key) ? map->at(key) : std::vector<std::string>()));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const FUZZ_NAMING_TABLE table({data, size});
    std::optional<MGR> manager;
    if (fuzz_is_accepted([&] { manager.emplace(TOVREN_DDB_BLOB{table.stream, table.length}); }) && !table.body.empty())
        FUZZ_REQUIRE(fuzz_is_accepted([&] { require_sound(*manager, table.body); }));
    return 0;
}
