#include "naming_image.h"

unsigned int crc_of(const BYTES& bytes) {
    unsigned int crc = 0xFFFFFFFF;
    for (const unsigned char byte : bytes) {
        for (unsigned int mask = 0x80; mask != 0; mask >>= 1) {
            const bool is_one = ((crc & 0x80000000) != 0) != ((byte & mask) != 0);
            crc = (crc << 1) ^ (is_one ? 0x04C11DB7 : 0);
        }
    }
    return ~crc;
}

namespace {

BYTES string_bytes(const std::string& text) {
    return join({text_bytes(text), {0}});
}

} // namespace

BYTES entry_bytes(const NAMING_ENTRY& entry) {
    BYTES bytes = string_bytes(entry.first);
    for (const std::string& content : entry.second)
        bytes = join({bytes, string_bytes(content)});
    return join({bytes, {0}});
}

BYTES map_bytes(const NAMING_MAP& map) {
    BYTES bytes;
    for (const NAMING_ENTRY& entry : map)
        bytes = join({bytes, entry_bytes(entry)});
    return join({bytes, {0}});
}

GRAMMAR_IMAGE::GRAMMAR_IMAGE() {
    for (int map = 0; map < 8; ++map)
        maps.push_back({{"KEY" + std::to_string(map), {"CONTENT" + std::to_string(map)}}});
}

BYTES GRAMMAR_IMAGE::body_bytes() const {
    if (body)
        return *body;
    BYTES bytes;
    for (const NAMING_MAP& map : maps)
        bytes = join({bytes, map_bytes(map)});
    return bytes;
}

BYTES GRAMMAR_IMAGE::bytes() const {
    return image_bytes(magic, body_bytes(), trailer);
}

BYTES packed_bytes(unsigned long long value) {
    BYTES bytes;
    for (; value > 0x7F; value >>= 7)
        bytes.push_back(static_cast<unsigned char>(0x80 | (value & 0x7F)));
    bytes.push_back(static_cast<unsigned char>(value));
    return bytes;
}

BYTES OPN_IMAGE::bytes() const {
    BYTES all_packed;
    for (const unsigned int value : values)
        all_packed = join({all_packed, packed_bytes(value)});
    const unsigned int true_count = static_cast<unsigned int>(values.size());
    return image_bytes(magic, join({le32_bytes(count.value_or(true_count)), packed.value_or(all_packed)}), trailer);
}

BYTES image_bytes(const std::string& magic, const BYTES& body, const std::optional<BYTES>& trailer) {
    const BYTES front = join({text_bytes(magic), body});
    return join({front, trailer.value_or(le32_bytes(crc_of(front)))});
}

std::string crc_condition(unsigned int computed, unsigned int stored) {
    const unsigned int wrong = computed ^ stored;
    if ((wrong & 0xFF) != 0)
        return "BYTE(crc32) == data[data_size-4]";
    if ((wrong & 0xFF00) != 0)
        return "BYTE(crc32 >> 8) == data[data_size-3]";
    if ((wrong & 0xFF0000) != 0)
        return "BYTE(crc32 >> 16) == data[data_size-2]";
    return "BYTE(crc32 >> 24) == data[data_size-1]";
}
