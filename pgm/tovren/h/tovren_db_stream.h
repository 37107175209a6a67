// The typed value stream and the file envelope of both databases (docs/formats/pcf.md), written once. What differs
// between the two is data: a TOVREN_DB_FORMAT.
//
// Readers advance `index` past what they read and report a wrong tag, a wrong marker or a bad value. They do not test
// `index` against an end: whoever makes a payload puts DB_STREAM_SLACK zero bytes behind it, and zeros are refused
// before those are used up. Writers write at `index`, advance it and never grow the buffer.
#ifndef TOVREN_DB_STREAM_H
#define TOVREN_DB_STREAM_H

#include "host_fio.h"
#include "tovren_types.h"

#include <memory>
#include <span>
#include <string>
#include <vector>

struct TOVREN_DB_FORMAT {
    bool has_devid_values; // texts may bear the tag 1, 32-bit numbers the tags 0 and 7
    const std::string* csv_md5;
    const char* magic;
    // Condition texts. They stand apart from the conditions because one piece of code serves both databases.
    const char* exists_text;
    const char* magic_text;
    const char* string_tag_text;
    const char* dword_tag_text;
};

extern const TOVREN_DB_FORMAT TOVREN_DEVICE_DB_FORMAT;
extern const TOVREN_DB_FORMAT TOVREN_FLASH_DB_FORMAT;

// ---- envelope ----

inline constexpr unsigned int DB_MAGIC_SIZE = 8;
inline constexpr unsigned int DB_MD5_SIZE = 32;
inline constexpr unsigned int DB_HEADER_SIZE = DB_MAGIC_SIZE + DB_MD5_SIZE + 4; // never compressed
inline constexpr unsigned int DB_CHECK_SIZE = 2;
inline constexpr unsigned int DB_PAYLOAD_HEADER_SIZE = 12; // version, record count, member count
inline constexpr unsigned int DB_VERSION = 1;
inline constexpr unsigned int DB_MARKER_SIZE = 4;

// Zeros that satisfy a reader are tag 0 with its number (5 bytes) for at most the 86 members of a record, behind a text
// of 255 characters that starts with the payload's last bytes.
inline constexpr unsigned int DB_STREAM_SLACK = 2 + 255 + 5 * 86 + DB_PAYLOAD_HEADER_SIZE;

struct DB_PAYLOAD {
    std::unique_ptr<unsigned char[]> data; // `size` bytes and DB_STREAM_SLACK zeros
    unsigned int size = 0;
};

// Reads a database file, verifies its envelope and decompresses its payload.
DB_PAYLOAD db_read_file(const TOVREN_DB_FORMAT& format, const FIO_PATH& file);

// The start of a file image of `payload_size` bytes of payload: the header and the payload's three counts.
void db_put_headers(const TOVREN_DB_FORMAT& format, unsigned char** buffer, unsigned int& index,
                    unsigned int payload_size, unsigned int record_count, unsigned int member_count);

// Compresses the payload of a complete file image and writes the file, check field included, in one step: an older file
// stays whole until the new one is on disk.
void db_write_file(const FIO_PATH& output, const unsigned char* image, unsigned int image_size);

std::unique_ptr<unsigned char[]> db_compress(const unsigned char* data, unsigned int offset, unsigned int count,
                                             unsigned int& new_memory_count);
std::unique_ptr<unsigned char[]> db_decompress(const unsigned char* data, unsigned int decompressed_count,
                                               unsigned int original_count);
unsigned int db_calculate_crc16(const unsigned char* data, unsigned int length);

// Encoded bytes of a value behind its tag; of a text its length byte only.
constexpr unsigned int db_value_size(TOVREN_MANAGER_TYPE type) {
    const bool is_dword =
        type == TOVREN_MANAGER_DEVID_ENUM || type == TOVREN_MANAGER_DWORD || type == TOVREN_MANAGER_ENUM;
    return is_dword ? 4 : type == TOVREN_MANAGER_WORD ? 2 : 1;
}

constexpr bool db_is_text(TOVREN_MANAGER_TYPE type) {
    return type == TOVREN_MANAGER_DEVID_STR || type == TOVREN_MANAGER_STRING;
}

// Encoded bytes of a record with these cells, "END1" included; without cells that of a record whose texts are empty.
unsigned int db_record_size(std::span<const TOVREN_MANAGER_TYPE> types, std::span<const std::string> cells);

// ---- readers ----

unsigned int db_get_dword(const unsigned char* data, unsigned int& index);
void db_get_dwords(const unsigned char* data, unsigned int& index, std::span<unsigned int> values);
bool db_get_bool(const unsigned char* data, unsigned int& index);
unsigned char db_get_byte(const unsigned char* data, unsigned int& index);
unsigned short db_get_word(const unsigned char* data, unsigned int& index);
unsigned int db_get_dword_value(const TOVREN_DB_FORMAT& format, const unsigned char* data, unsigned int& index);
void db_get_string(const TOVREN_DB_FORMAT& format, const unsigned char* data, unsigned int& index, bool allow_empty,
                   std::string& string);
void db_confirm_record_end(const unsigned char* data, unsigned int& index);   // "END1"
void db_confirm_database_end(const unsigned char* data, unsigned int& index); // "END2"

// ---- writers ----

void db_put_dword(unsigned char** buffer, unsigned int& index, unsigned int value);             // no tag
void db_put_tagged_dword(unsigned char** buffer, unsigned int& index, TOVREN_MANAGER_TYPE type, // tag 0, 6 or 7
                         unsigned int value);
void db_put_bool(unsigned char** buffer, unsigned int& index, bool value);
void db_put_value(unsigned char** buffer, unsigned int& index, unsigned int value, unsigned int count);
void db_put_string(unsigned char** buffer, unsigned int& index, TOVREN_MANAGER_TYPE type, const std::string& string);
void db_put_record_end(unsigned char** buffer, unsigned int& index);
void db_put_database_end(unsigned char** buffer, unsigned int& index);

#endif
