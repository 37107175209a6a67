#include "definition_model.h"

#include <stdexcept>
#include <zlib.h>

namespace {

char character_of(unsigned int value) {
    if (value <= 9)
        return static_cast<char>('0' + value);
    if (value <= 35)
        return static_cast<char>('A' + (value - 10));
    if (value <= 61)
        return static_cast<char>('a' + (value - 36));
    return value == 62 ? '@' : '-';
}

unsigned int value_of(char character) {
    for (unsigned int value = 0; value < 64; ++value)
        if (character_of(value) == character)
            return value;
    throw std::invalid_argument("not a character of the alphabet");
}

std::vector<bool> bits_of(unsigned int value, unsigned int count) {
    std::vector<bool> bits;
    for (unsigned int bit = 0; bit < count; ++bit)
        bits.push_back((value >> bit & 1) != 0);
    return bits;
}

// Cut into numbers of `width` bits, the last one filled up with zeros.
std::vector<unsigned int> numbers_of(const std::vector<bool>& bits, unsigned int width) {
    std::vector<unsigned int> numbers((bits.size() + width - 1) / width, 0);
    for (size_t i = 0; i < bits.size(); ++i)
        numbers[i / width] += bits[i] ? 1U << (i % width) : 0;
    return numbers;
}

void append(std::vector<bool>& bits, const std::vector<bool>& more) {
    bits.insert(bits.end(), more.begin(), more.end());
}

char letter_of(unsigned int byte) {
    if (byte >= 65 && byte <= 90)
        return static_cast<char>(byte);
    return static_cast<char>(65 + byte % 26);
}

} // namespace

unsigned int crc16_bit_by_bit(const std::string& bytes) {
    unsigned int crc = 0;
    for (const char byte : bytes) {
        for (int bit = 7; bit >= 0; --bit) {
            const bool in = (static_cast<unsigned char>(byte) >> bit & 1) != 0;
            const bool out = (crc & 0x8000) != 0;
            crc = (crc << 1 & 0xFFFF) ^ (in != out ? 0x1021U : 0U);
        }
    }
    return crc;
}

std::string model_tag(const std::string& definition, const std::string& version_text) {
    const unsigned int key = crc16_bit_by_bit(version_text);
    const size_t sector_size = (definition.size() + 7) / 8;
    std::string tag;
    for (size_t lane = 0; lane < 8; ++lane) {
        std::string buffer;
        for (size_t i = lane; i < definition.size(); i += 8)
            buffer +=
                static_cast<char>(static_cast<unsigned char>(definition[i]) ^ (i % 2 == 0 ? key & 0xFF : key >> 8));
        buffer.resize(sector_size, '\0');
        tag += letter_of(crc16_bit_by_bit(buffer) & 0xFF);
        tag += letter_of(crc16_bit_by_bit(buffer) >> 8);
    }
    return tag;
}

std::string model_characters(const std::string& bytes) {
    std::vector<bool> bits;
    for (const char byte : bytes)
        append(bits, bits_of(static_cast<unsigned char>(byte), 8));
    std::string characters;
    for (const unsigned int value : numbers_of(bits, 6))
        characters += character_of(value);
    return characters;
}

std::string model_bytes(const std::string& characters) {
    std::vector<bool> bits;
    for (const char character : characters)
        append(bits, bits_of(value_of(character), 6));
    std::string bytes;
    for (const unsigned int value : numbers_of(bits, 8))
        bytes += static_cast<char>(value);
    return bytes;
}

std::string model_stream(const std::string& list) {
    std::string stream(2 * list.size(), '\0');
    uLongf size = stream.size();
    if (compress(reinterpret_cast<Bytef*>(stream.data()), &size, reinterpret_cast<const Bytef*>(list.data()),
                 list.size()) != Z_OK)
        return "";
    stream.resize(size);
    return stream;
}

std::string model_encoded(const std::string& list) {
    return model_characters(model_stream(list));
}

std::string model_decoded(const std::string& text) {
    const std::string stream = model_bytes(text);
    std::string list(20 * stream.size(), '\0');
    uLongf size = list.size();
    if (uncompress(reinterpret_cast<Bytef*>(list.data()), &size, reinterpret_cast<const Bytef*>(stream.data()),
                   stream.size()) != Z_OK)
        return "";
    list.resize(size);
    return list.substr(0, list.find('\0'));
}

DEFINITION DEFINITION::with(size_t number, const std::string& text) const {
    DEFINITION changed = *this;
    changed.fields.at(number - 1) = text;
    return changed;
}

std::string DEFINITION::text() const {
    std::string text;
    for (const std::string& field : fields)
        text += "@" + field;
    return text + "@";
}
