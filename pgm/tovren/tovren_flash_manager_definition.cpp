// Flash manager: the stored text of user-defined flashes (docs/formats/flash_definition.md).
//
//     definition  @FIELD@FIELD ... @FIELD@          33 fields in record order, none with "@" in it
//     list        definition#TAG;definition#TAG; ...
//     encoded     the list as a zlib stream, six bits a character, least significant bit first
//
// The tag is made of the definition and of the running version: a list is only good for the version that made it.
// Nothing here touches a manager's state.
#include "tovren_flash_manager.h"

#include "host_text.h"
#include "host_ver.h"
#include "tovren_check.h"
#include "tovren_zlib.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <fmt/printf.h>
#include <iostream>
#include <limits>
#include <optional>
#include <string_view>

namespace {

// ---- six bits a character ----

constexpr std::string_view INI_ALPHABET = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz@-";
constexpr unsigned int CHARACTER_BITS = 6;
constexpr unsigned int CHARACTER_MASK = (1U << CHARACTER_BITS) - 1;
constexpr unsigned int NO_VALUE = 0xFF;
static_assert(INI_ALPHABET.size() == CHARACTER_MASK + 1);

// Room for a decoded list, as a multiple of its compressed size.
constexpr size_t LIST_GROWTH = 20;

constexpr std::array<unsigned char, 256> make_character_values() {
    std::array<unsigned char, 256> values = {};
    values.fill(NO_VALUE);
    for (size_t value = 0; value < INI_ALPHABET.size(); ++value)
        values[static_cast<unsigned char>(INI_ALPHABET[value])] = static_cast<unsigned char>(value);
    return values;
}

constexpr std::array<unsigned char, 256> CHARACTER_VALUES = make_character_values();

bool add_character(unsigned int value, std::string& text) {
    if (value >= INI_ALPHABET.size())
        return false;
    text += INI_ALPHABET[value];
    return true;
}

bool add_characters(std::span<const unsigned char> bytes, std::string& text) {
    unsigned int bits = 0;
    unsigned int count = 0;
    for (const unsigned char byte : bytes) {
        bits |= static_cast<unsigned int>(byte) << count;
        for (count += 8; count >= CHARACTER_BITS; count -= CHARACTER_BITS) {
            if (!add_character(bits & CHARACTER_MASK, text))
                return false;
            bits >>= CHARACTER_BITS;
        }
    }
    return count == 0 || add_character(bits, text);
}

// Returns the bytes touched, none at a character outside the alphabet. `bytes` has the room.
std::optional<size_t> read_characters(const std::string& text, std::vector<unsigned char>& bytes) {
    size_t index = 0;
    unsigned int bits = 0;
    unsigned int count = 0;
    for (const char character : text) {
        const unsigned int value = CHARACTER_VALUES[static_cast<unsigned char>(character)];
        if (value == NO_VALUE)
            return std::nullopt;
        bits |= value << count;
        count += CHARACTER_BITS;
        if (count >= 8) {
            bytes[index++] = static_cast<unsigned char>(bits & 0xFF);
            bits >>= 8;
            count -= 8;
        }
    }
    if (count > 0)
        bytes[index++] = static_cast<unsigned char>(bits);
    return index;
}

// ---- the tag ----

constexpr unsigned int LANE_COUNT = 8;

// CRC-16, polynomial 0x1021, initial value 0, most significant bit first.
constexpr std::array<WORD, 256> make_crc16_table() {
    std::array<WORD, 256> table = {};
    for (unsigned int byte = 0; byte < table.size(); ++byte) {
        unsigned int crc = byte << 8;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc << 1) ^ ((crc & 0x8000) != 0 ? 0x1021U : 0U);
        table[byte] = static_cast<WORD>(crc & 0xFFFF);
    }
    return table;
}

constexpr std::array<WORD, 256> CRC16_TABLE = make_crc16_table();

constexpr unsigned int add_to_crc16(unsigned int crc, unsigned int byte) {
    return ((crc << 8) & 0xFFFF) ^ CRC16_TABLE[(crc >> 8) ^ byte];
}

unsigned int get_version_key() {
    unsigned int crc = 0;
    for (const char c : TOVREN_FLASH_MANAGER::get_ini_version_text())
        crc = add_to_crc16(crc, static_cast<unsigned char>(c));
    return crc;
}

// Every eighth byte from `lane` on, under the key byte of its parity, with zeros up to `sector_size` bytes.
unsigned int get_lane_crc16(const std::string& definition, unsigned int lane, unsigned int sector_size,
                            unsigned int key) {
    const unsigned int key_byte = lane % 2 == 0 ? key & 0xFF : key >> 8;
    unsigned int crc = 0;
    for (size_t sector = 0; sector < sector_size; ++sector) {
        const size_t place = LANE_COUNT * sector + lane;
        crc =
            add_to_crc16(crc, place < definition.size() ? static_cast<unsigned char>(definition[place]) ^ key_byte : 0);
    }
    return crc;
}

constexpr char to_letter(unsigned int byte) {
    return static_cast<char>(byte >= 'A' && byte <= 'Z' ? byte : 'A' + byte % 26);
}

// ---- the setting ----

// The setting's name is not to be found by looking through the program for texts.
constexpr size_t SETTING_NAME_SIZE = 23;
constexpr unsigned char SCRAMBLE_START = 0xA7;

constexpr unsigned char get_scramble(unsigned char former) {
    return static_cast<unsigned char>(former * 5 + 0x3B);
}

consteval std::array<unsigned char, SETTING_NAME_SIZE> scramble(const char (&name)[SETTING_NAME_SIZE + 1]) {
    std::array<unsigned char, SETTING_NAME_SIZE> scrambled = {};
    unsigned char mask = SCRAMBLE_START;
    for (size_t i = 0; i < SETTING_NAME_SIZE; ++i, mask = get_scramble(mask))
        scrambled[i] = static_cast<unsigned char>(name[i]) ^ mask;
    return scrambled;
}

constexpr std::array<unsigned char, SETTING_NAME_SIZE> SCRAMBLED_SETTING_NAME = scramble("TOVREN_USER_SPI_FLASHES");

} // namespace

std::string TOVREN_FLASH_MANAGER::encode_ini(std::string list) {
    const auto list_size = static_cast<unsigned int>(list.size());
    unsigned int size = 2 * list_size;
    std::vector<unsigned char> compressed(size);
    if (zlib_compress(compressed.data(), &size, reinterpret_cast<const unsigned char*>(list.data()), list_size) !=
        ZLIB_OK) {
        std::cout << "Fail to generate INI because of compression failure\n";
        return "";
    }

    const unsigned int bit_count = 8 * size;
    const unsigned int encoded_size = bit_count / CHARACTER_BITS + (bit_count % CHARACTER_BITS != 0 ? 1 : 0);
    std::string encoded_ini;
    encoded_ini.reserve(encoded_size);
    if (!add_characters({compressed.data(), size}, encoded_ini)) {
        std::cout << "Invalid INI encoding\n";
        return "";
    }
    TOVREN_CHECK(encoded_ini.size() == encoded_size);
    return encoded_ini;
}

std::string TOVREN_FLASH_MANAGER::decode_ini(std::string encoded) {
    const size_t bit_count = CHARACTER_BITS * encoded.size();
    const size_t decoded_size = bit_count / 8 + (bit_count % 8 != 0 ? 1 : 0);
    std::vector<unsigned char> decoded(decoded_size);
    const std::optional<size_t> decoded_index = read_characters(encoded, decoded);
    if (!decoded_index) {
        std::cout << "Invalid INI decoding\n";
        return "";
    }
    TOVREN_CHECK(decoded_index == decoded_size);

    // The stream may end one byte early: a last character that fills up its bits begins a byte of its own.
    auto size = static_cast<unsigned int>(LIST_GROWTH * decoded_size);
    std::string list(size, '\0');
    if (zlib_uncompress(reinterpret_cast<unsigned char*>(list.data()), &size, decoded.data(),
                        static_cast<unsigned int>(decoded_size)) != ZLIB_OK) {
        std::cout << "Fail to generate INI because of decompression failure\n";
        return "";
    }
    list.resize(std::min<size_t>(size, list.find('\0')));
    return list;
}

std::string TOVREN_FLASH_MANAGER::get_ini_version_text() {
    const unsigned int index_number = ver_get_current_version_index_number();
    const unsigned int service_pack = index_number & 0xFF;
    const unsigned int build = index_number >> 8 & 0xFFFF;
    std::string text = fmt::sprintf("Morvath Version: %s ", ver_get_version().c_str());
    if (service_pack != 0)
        text += fmt::sprintf("SP%d ", service_pack);
    return text + fmt::sprintf("Build %d", build);
}

std::string TOVREN_FLASH_MANAGER::gen_ini_password(std::string definition) {
    const auto total_size = static_cast<unsigned int>(definition.size());
    TOVREN_CHECK(total_size > 0);
    const unsigned int sector_size = total_size / LANE_COUNT + (total_size % LANE_COUNT != 0 ? 1 : 0);
    TOVREN_CHECK(sector_size > 0);

    const unsigned int key = get_version_key();
    std::string tag;
    for (unsigned int lane = 0; lane < LANE_COUNT; ++lane) {
        const unsigned int crc = get_lane_crc16(definition, lane, sector_size, key);
        tag += to_letter(crc & 0xFF);
        tag += to_letter(crc >> 8);
    }
    return tag;
}

bool TOVREN_FLASH_MANAGER::cmp_ini_password(std::string definition, std::string tag) {
    return tag.size() == size_t{2} * LANE_COUNT && gen_ini_password(std::move(definition)) == tag;
}

bool TOVREN_FLASH_MANAGER::get_string_from_ini(std::string definition, std::string& field, size_t& position) {
    return read_ini_field(definition, field, position);
}

bool TOVREN_FLASH_MANAGER::get_string_from_ini(std::string definition, std::string& field, QWORD& position) {
    size_t place = position;
    const bool is_found = read_ini_field(definition, field, place);
    position = place;
    return is_found;
}

bool TOVREN_FLASH_MANAGER::read_ini_field(const std::string& definition, std::string& field, size_t& position) {
    field.clear();
    const size_t opening = definition.find('@', position);
    const size_t closing = opening == std::string::npos ? opening : definition.find('@', opening + 1);
    if (closing == std::string::npos)
        return false;
    field.assign(definition, opening + 1, closing - opening - 1);
    gen_ascii_toupper(field);
    position = closing;
    return true;
}

bool TOVREN_FLASH_MANAGER::get_boolean_from_string(std::string field, bool& valid) {
    valid = field == "1" || field == "0";
    return field == "1";
}

long long TOVREN_FLASH_MANAGER::get_number_from_string(std::string field, unsigned int maximum, bool& valid) {
    using LIMITS = std::numeric_limits<long long>;
    const char* begin = field.data();
    const char* const end = begin + field.size();
    if (end - begin > 1 && begin[0] == '+' && begin[1] != '-')
        ++begin;
    long long number = 0;
    if (std::from_chars(begin, end, number).ec == std::errc::result_out_of_range)
        number = *begin == '-' ? LIMITS::min() : LIMITS::max();
    valid = static_cast<unsigned int>(number) <= maximum;
    return number;
}

std::string TOVREN_FLASH_MANAGER::get_ext_flash_setting_name() {
    std::string name;
    volatile unsigned char start = SCRAMBLE_START; // read at run time, or the compiler does the sum
    unsigned char mask = start;
    for (const unsigned char scrambled : SCRAMBLED_SETTING_NAME) {
        name += static_cast<char>(scrambled ^ mask);
        mask = get_scramble(mask);
    }
    return name;
}

void TOVREN_FLASH_MANAGER::add_ini_entry(std::string& list, const std::string& definition) {
    list = fmt::sprintf("%s%s#%s;", list, definition, gen_ini_password(definition));
}

std::vector<TOVREN_FLASH_INI_ENTRY> TOVREN_FLASH_MANAGER::get_ini_entries(const std::string& list) {
    std::vector<TOVREN_FLASH_INI_ENTRY> entries;
    for (size_t begin = 0; begin < list.size(); begin += entries.back().text.size())
        entries.push_back(read_ini_entry(list, begin));
    return entries;
}

// The entry reaches to the first ";". A "#" behind that is another entry's.
TOVREN_FLASH_INI_ENTRY TOVREN_FLASH_MANAGER::read_ini_entry(const std::string& list, size_t begin) {
    TOVREN_FLASH_INI_ENTRY entry;
    const size_t sign = list.find('#', begin);
    const size_t end = list.find(';', begin);
    entry.text = list.substr(begin, end == std::string::npos ? end : end + 1 - begin);
    if (end != std::string::npos && sign < end) {
        entry.definition = list.substr(begin, sign - begin);
        entry.tag = list.substr(sign + 1, end - sign - 1);
    }
    return entry;
}
