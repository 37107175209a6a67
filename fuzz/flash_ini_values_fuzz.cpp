// Values of the flash parameter file. By its first byte an input is
//     V   a number of values, their types (modulo 6), and the data that they are read from
//     T   type, flags, multiple (4 bytes), a range and a forbidden pattern (8 bytes each), and a text that a user typed
// Accepted: values are written as they were read; a number lies within its type, and its display text is read as the
// same number.
#include "fuzz_support.h"
#include "tovren_flash_ini.h"

#include <algorithm>
#include <cstring>
#include <deque>

namespace {

constexpr size_t LARGEST_INPUT = size_t{1} << 12;

using BYTES = std::span<const unsigned char>;
using INI = TOVREN_FLASH_INI;

// Takes bytes off the front; zeros when there are none.
unsigned int take(BYTES& input, size_t count) {
    unsigned int value = 0;
    for (size_t i = 0; i < count && !input.empty(); ++i, input = input.subspan(1))
        value |= static_cast<unsigned int>(input[0]) << (8 * i);
    return value;
}

TOVREN_PARAM_TYPE take_type(BYTES& input) {
    return static_cast<TOVREN_PARAM_TYPE>(1 + take(input, 1) % 6);
}

// Objects of some types. Texts have their own; a number of any width is at home in 8 bytes.
struct VALUES {
    explicit VALUES(const std::vector<TOVREN_PARAM_TYPE>& types) : texts(types.size()), numbers(types.size()) {
        for (size_t i = 0; i < types.size(); ++i)
            pointers.push_back(types[i] == TOVREN_PARAM_STRING ? static_cast<void*>(&texts[i]) : numbers[i].bytes);
    }

    struct NUMBER {
        alignas(8) unsigned char bytes[8] = {};
    };
    std::deque<std::string> texts;
    std::deque<NUMBER> numbers;
    std::vector<void*> pointers;
};

void run_values(BYTES input) {
    std::vector<TOVREN_PARAM_TYPE> types(take(input, 1) % 32);
    std::generate(types.begin(), types.end(), [&] { return take_type(input); });
    VALUES values(types);
    const auto size = static_cast<unsigned int>(input.size());
    const auto count = static_cast<unsigned int>(types.size());
    unsigned int end = 0;
    const bool is_read =
        INI::assign_flash_ini_data(input.data(), end, size, count, types.data(), values.pointers.data());
    FUZZ_REQUIRE(end <= size);
    if (!is_read)
        return;

    unsigned int position = 0;
    for (unsigned int i = 0; i < count; ++i) {
        unsigned int room = 0;
        INI::calculate_flash_ini_data_size(room, types[i], values.pointers[i]);
        std::vector<unsigned char> bytes(room);
        unsigned int index = 0;
        INI::fillup_flash_ini_data(bytes.data(), index, types[i], values.pointers[i]);
        FUZZ_REQUIRE(index == room && position + room <= end);
        FUZZ_REQUIRE(types[i] == TOVREN_PARAM_BOOL ? (input[position] != 0) == (bytes[0] != 0)
                                                   : std::memcmp(bytes.data(), input.data() + position, room) == 0);
        FUZZ_REQUIRE(types[i] == TOVREN_PARAM_STRING ||
                     !INI::print_flash_ini_data(types[i], true, values.pointers[i]).empty());
        position += room;
    }
    FUZZ_REQUIRE(position == end);
}

void require_same_number(const std::string& text, unsigned long long value) {
    bool ok = false;
    FUZZ_REQUIRE(INI::convert_string_to_qword(text, true, &ok) == value && ok);
}

void run_text(BYTES input) {
    const TOVREN_PARAM_TYPE type = take_type(input);
    const unsigned int flags = take(input, 1);
    const unsigned int multiple = take(input, 4);
    const unsigned int range[] = {1, take(input, 4), take(input, 4)};
    const unsigned int forbidden[] = {1, take(input, 4), take(input, 4)};
    const std::string text(input.begin(), input.end());

    unsigned long long value = 1;
    std::string error;
    const bool is_accepted =
        INI::convert_string_to_qword(type, value, (flags & 1) != 0, text, (flags & 2) != 0,
                                     (flags & 4) != 0 ? range : nullptr, (flags & 8) != 0 ? forbidden : nullptr,
                                     (flags & 16) != 0, multiple, error);
    FUZZ_REQUIRE(is_accepted == error.empty());
    if (type == TOVREN_PARAM_STRING || type == TOVREN_PARAM_BOOL)
        FUZZ_REQUIRE(is_accepted && value == 0);
    const unsigned int width = 8U << (std::max(type, TOVREN_PARAM_BYTE) - TOVREN_PARAM_BYTE);
    FUZZ_REQUIRE(value <= ~0ULL >> (64 - width));
    require_same_number(INI::convert_qword_to_string(value), value);
    require_same_number(INI::convert_qword_to_hex_string(value, 16, true), value);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0 || size > LARGEST_INPUT)
        return 0;
    const BYTES input(data, size);
    if (data[0] == 'V')
        FUZZ_REQUIRE(fuzz_is_accepted([&] { run_values(input.subspan(1)); }));
    if (data[0] == 'T')
        fuzz_is_accepted([&] { run_text(input.subspan(1)); }); // a multiple of 0 is reported
    return 0;
}
