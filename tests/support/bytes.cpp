#include "bytes.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <zlib.h>

BYTES text_bytes(std::string_view text) {
    return {text.begin(), text.end()};
}

BYTES le32_bytes(unsigned int value) {
    return {static_cast<unsigned char>(value & 0xFF), static_cast<unsigned char>(value >> 8 & 0xFF),
            static_cast<unsigned char>(value >> 16 & 0xFF), static_cast<unsigned char>(value >> 24)};
}

BYTES join(std::initializer_list<BYTES> parts) {
    BYTES whole;
    for (const BYTES& part : parts)
        whole.insert(whole.end(), part.begin(), part.end());
    return whole;
}

BYTES first(const BYTES& bytes, size_t count) {
    return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count)};
}

BYTES with_byte(BYTES bytes, size_t position, unsigned char value) {
    bytes.at(position) = value;
    return bytes;
}

BYTES zlib_stream(const BYTES& bytes) {
    uLongf size = compressBound(bytes.size());
    BYTES stream(size);
    EXPECT_EQ(Z_OK, compress2(stream.data(), &size, bytes.data(), bytes.size(), Z_BEST_SPEED)); // no reader minds
    stream.resize(size);
    return stream;
}

BYTES inflated(const BYTES& stream) {
    BYTES bytes(stream.size() * 1032 + 1);
    uLongf size = bytes.size();
    uLong used = stream.size();
    EXPECT_EQ(Z_OK, uncompress2(bytes.data(), &size, stream.data(), &used));
    EXPECT_EQ(stream.size(), used) << "bytes behind the zlib stream";
    bytes.resize(size);
    return bytes;
}

std::string hex_text(const BYTES& bytes) {
    static constexpr char DIGITS[] = "0123456789ABCDEF";
    std::string text;
    for (const unsigned char byte : bytes) {
        text += text.empty() ? "" : " ";
        text += DIGITS[byte >> 4];
        text += DIGITS[byte & 15];
    }
    return text;
}

std::string read_text(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.good()) << path;
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

BYTES read_file(const std::string& path) {
    return text_bytes(read_text(path));
}

void write_text(const std::string& path, std::string_view text) {
    std::ofstream file(path, std::ios::binary);
    file.write(text.data(), static_cast<std::streamsize>(text.size()));
    file.flush();
    EXPECT_TRUE(file.good()) << path;
}

void write_file(const std::string& path, const BYTES& bytes) {
    write_text(path, std::string(bytes.begin(), bytes.end()));
}
