// The table of the ordering list. By its first character an input is
//     B   the body of an image, which gets its magic and its CRC
//     S   the compressed table: two bytes with the length that it is said to inflate to, lowest first, and the stream
// and anything else is a whole image.
// Accepted: the list holds what a plain reading of the body gives, and the lowest index of a value is found by it.
#include "fuzz_support.h"
#include "tovren_ddb_mgr.h"

#include <algorithm>
#include <optional>

namespace {

using MGR = TOVREN_DDB_OPN_MGR;

constexpr size_t COUNT_SIZE = 4;
constexpr unsigned int NONE = 0xFFFFFFFF;
constexpr size_t MOST_SEARCHED = 64;

// What a plain reading gives: a value ends with a byte below 0x80, the bytes before it weigh less.
std::vector<unsigned int> read_plainly(std::string_view packed) {
    std::vector<unsigned int> values;
    unsigned long long value = 0;
    unsigned int weight = 0;
    for (const char character : packed) {
        const auto byte = static_cast<unsigned char>(character);
        value += (byte % 128ULL) << weight;
        weight += 7;
        if (byte < 128) {
            FUZZ_REQUIRE(weight <= 35 && value <= NONE);
            values.push_back(static_cast<unsigned int>(value));
            value = weight = 0;
        }
    }
    FUZZ_REQUIRE(weight == 0);
    return values;
}

void require_sound(const MGR& manager, std::string_view body) {
    const std::vector<unsigned int> expected = read_plainly(body.substr(COUNT_SIZE));
    const auto count = static_cast<unsigned int>(expected.size());
    for (unsigned int index = 0; index < count; ++index)
        FUZZ_REQUIRE(manager.dev_opn_enum(index) == expected[index]);
    FUZZ_REQUIRE(manager.dev_opn_enum(count) == NONE);
    for (size_t place = 0; place < std::min(expected.size(), MOST_SEARCHED); ++place) {
        const auto lowest = std::find(expected.begin(), expected.end(), expected[place]) - expected.begin();
        FUZZ_REQUIRE(manager.opn_enum(expected[place]) == static_cast<unsigned int>(lowest));
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
