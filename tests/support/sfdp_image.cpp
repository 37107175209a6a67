// Images of serial flash discoverable parameters for tests.
#include "sfdp_image.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

void add_dwords(BYTES& bytes, const std::vector<std::uint32_t>& dwords) {
    for (const std::uint32_t dword : dwords) {
        const BYTES four = le32_bytes(dword);
        bytes.insert(bytes.end(), four.begin(), four.end());
    }
}

BYTES header_bytes(const SFDP_HEADER_MODEL& header) {
    const auto byte = [](unsigned int value) { return static_cast<unsigned char>(value & 0xFF); };
    return {byte(header.id),      byte(header.minor),        byte(header.major),         byte(header.dwords),
            byte(header.pointer), byte(header.pointer >> 8), byte(header.pointer >> 16), byte(header.id >> 8)};
}

} // namespace

BYTES hex_bytes(const std::string& digits) {
    BYTES bytes;
    for (size_t i = 0; i + 1 < digits.size(); i += 2)
        bytes.push_back(static_cast<unsigned char>(std::stoi(digits.substr(i, 2), nullptr, 16)));
    return bytes;
}

nlohmann::json sfdp_document(const char* name) {
    const std::string text = read_text(std::string(TESTS_SFDP_DATA) + '/' + name);
    return nlohmann::json::parse(text);
}

BYTES sfdp_image(const nlohmann::json& document, const std::string& name) {
    for (const nlohmann::json& entry : document)
        if (entry.at("name") == name)
            return hex_bytes(entry.at("sfdp_hex").get<std::string>());
    ADD_FAILURE() << "no image " << name;
    return {};
}

SFDP_IMAGE_MODEL::SFDP_IMAGE_MODEL() {
    basic = {
        0xFF8020E5, // 4 KiB erase 20h, no fast reads, 3 address bytes, write buffer
        0x01FFFFFF, // 2^25 bits
        0,          0, 0, 0, 0,
        0xD810200C, // 2^12 20h, 2^16 D8h
        0,
        0x00004A42, // factor 6; type 1: (4 + 1) * 16 ms; type 2: (9 + 1) * 1 ms
        0x00000481, // factor 4; page 2^8, (4 + 1) * 8 us; bytes 1 us; chip erase 16 ms
        0x80000000, // no suspend
        0,
        0x80000004, // 05h bit 0; no deep power-down
        0,          0,
    };
}

void SFDP_IMAGE_MODEL::set(size_t number, std::uint32_t value) {
    if (basic.size() < number)
        basic.resize(number);
    basic[number - 1] = value;
}

void SFDP_IMAGE_MODEL::cut(size_t dwords) {
    basic.resize(dwords);
}

void SFDP_IMAGE_MODEL::add_table(unsigned int id, const std::vector<std::uint32_t>& dwords) {
    SFDP_HEADER_MODEL header;
    header.id = id;
    header.minor = 0;
    header.dwords = static_cast<unsigned int>(dwords.size());
    others.push_back(header);
    other_dwords.push_back(dwords);
}

BYTES SFDP_IMAGE_MODEL::image() const {
    BYTES bytes = text_bytes(signature);
    const auto byte = [](size_t value) { return static_cast<unsigned char>(value); };
    bytes.insert(bytes.end(), {byte(minor), byte(major), byte(others.size()), byte(access_protocol)});
    const size_t basic_at = 8 * (others.size() + 2);
    SFDP_HEADER_MODEL first;
    first.id = 0xFF00;
    first.minor = minor;
    first.dwords = static_cast<unsigned int>(basic.size());
    first.pointer = static_cast<unsigned int>(basic_at);
    bytes = join({bytes, header_bytes(first)});
    size_t at = basic_at + 4 * basic.size();
    for (size_t i = 0; i < others.size(); ++i) {
        SFDP_HEADER_MODEL header = others[i];
        header.pointer = static_cast<unsigned int>(at);
        bytes = join({bytes, header_bytes(header)});
        at += 4 * other_dwords[i].size();
    }
    add_dwords(bytes, basic);
    for (const std::vector<std::uint32_t>& dwords : other_dwords)
        add_dwords(bytes, dwords);
    return bytes;
}
