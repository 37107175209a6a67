// Byte lists for tests: built from literals, compressed and read back with zlib itself, never with the library.
#ifndef TESTS_SUPPORT_BYTES_H
#define TESTS_SUPPORT_BYTES_H

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

using BYTES = std::vector<unsigned char>;

BYTES text_bytes(std::string_view text);
BYTES le32_bytes(unsigned int value); // least significant byte first
BYTES join(std::initializer_list<BYTES> parts);
BYTES first(const BYTES& bytes, size_t count);

// The byte at `position` replaced.
BYTES with_byte(BYTES bytes, size_t position, unsigned char value);

BYTES zlib_stream(const BYTES& bytes);

// What a zlib stream of exactly these bytes stands for. Anything else fails the test and gives no bytes.
BYTES inflated(const BYTES& stream);

// "02 03 51 58 31", for messages and dumps.
std::string hex_text(const BYTES& bytes);

// A missing file fails the test and gives no bytes.
BYTES read_file(const std::string& path);
std::string read_text(const std::string& path);
void write_file(const std::string& path, const BYTES& bytes);
void write_text(const std::string& path, std::string_view text);

#endif
