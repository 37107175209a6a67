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
    unsigned int text_tags;  // what texts may bear: bit n stands for tag n
    unsigned int dword_tags; // what 32-bit numbers may bear
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

// Characters that a reader of short texts may take along from behind a text.
inline constexpr unsigned int DB_TEXT_OVERRUN = 12;

// Zeros that satisfy a reader are tag 0 with its number (5 bytes) for at most the 86 members of a record, behind a text
// of 255 characters that starts with the payload's last bytes.
inline constexpr unsigned int DB_STREAM_SLACK = 2 + 255 + 5 * 86 + DB_PAYLOAD_HEADER_SIZE + DB_TEXT_OVERRUN;

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

// Whether `tag` is among `tags`, a bit for each.
constexpr bool db_takes(unsigned int tags, unsigned char tag) {
    return tag < TOVREN_MANAGER_TYPE_MAX && (tags >> tag & 1) != 0;
}

// The size of a payload that was handed in from outside: what it holds has no bound, and there is no slack behind it.
inline constexpr unsigned int DB_UNKNOWN_SIZE = INVALID_DWORD;

// Whether records are to be looked at before there is memory for them: when the payload has no room for as many, or
// when they are so many that a few bytes, decompressed to zeros, may stand for them.
constexpr bool db_is_doubtful_count(unsigned int count, unsigned int smallest_record, unsigned int payload_size) {
    constexpr unsigned int MANY = 0x10000;
    return payload_size != DB_UNKNOWN_SIZE && (count >= MANY || count > payload_size / smallest_record);
}

// ---- readers ----

// What a reader does with a value that it cannot take: reports what is wrong with it. `value` is at the tag.
[[noreturn]] void db_refuse_bool(const unsigned char* value);
[[noreturn]] void db_refuse_byte(const unsigned char* value);
[[noreturn]] void db_refuse_word(const unsigned char* value);
[[noreturn]] void db_refuse_dword_value(const TOVREN_DB_FORMAT& format, const unsigned char* value);
[[noreturn]] void db_refuse_string(const TOVREN_DB_FORMAT& format, const unsigned char* value);
[[noreturn]] void db_refuse_record_end(const unsigned char* marker);
[[noreturn]] void db_refuse_database_end(const unsigned char* marker);

// The readers are inline: one of them runs for each member of each record.

inline unsigned int db_get_dword(const unsigned char* data, unsigned int& index) {
    const unsigned char* bytes = data + index;
    index += 4;
    return static_cast<unsigned int>(bytes[0]) | static_cast<unsigned int>(bytes[1]) << 8 |
           static_cast<unsigned int>(bytes[2]) << 16 | static_cast<unsigned int>(bytes[3]) << 24;
}

// As many bare numbers as `values` holds.
inline void db_get_dwords(const unsigned char* data, unsigned int& index, std::span<unsigned int> values) {
    for (unsigned int& value : values)
        value = db_get_dword(data, index);
}

inline bool db_get_bool(const unsigned char* data, unsigned int& index) {
    const unsigned char* value = data + index;
    if (value[0] != TOVREN_MANAGER_BOOL || value[1] > 1)
        db_refuse_bool(value);
    index += 2;
    return value[1] == 1;
}

inline unsigned char db_get_byte(const unsigned char* data, unsigned int& index) {
    const unsigned char* value = data + index;
    if (value[0] != TOVREN_MANAGER_BYTE)
        db_refuse_byte(value);
    index += 2;
    return value[1];
}

inline unsigned short db_get_word(const unsigned char* data, unsigned int& index) {
    const unsigned char* value = data + index;
    if (value[0] != TOVREN_MANAGER_WORD)
        db_refuse_word(value);
    index += 3;
    return static_cast<unsigned short>(value[1] | value[2] << 8);
}

inline unsigned int db_get_dword_value(const TOVREN_DB_FORMAT& format, const unsigned char* data, unsigned int& index) {
    if (!db_takes(format.dword_tags, data[index]))
        db_refuse_dword_value(format, data + index);
    ++index;
    return db_get_dword(data, index);
}

inline void db_get_string(const TOVREN_DB_FORMAT& format, const unsigned char* data, unsigned int& index,
                          bool allow_empty, std::string& string) {
    const unsigned char* value = data + index;
    if (!db_takes(format.text_tags, value[0]) || (value[1] == 0 && !allow_empty))
        db_refuse_string(format, value);
    const unsigned char length = value[1];
    index += 2U + length;
    string.assign(reinterpret_cast<const char*>(value + 2), length);
}

inline void db_confirm_record_end(const unsigned char* data, unsigned int& index) { // "END1"
    const unsigned char* marker = data + index;
    if (marker[0] != 'E' || marker[1] != 'N' || marker[2] != 'D' || marker[3] != '1')
        db_refuse_record_end(marker);
    index += DB_MARKER_SIZE;
}

inline void db_confirm_database_end(const unsigned char* data, unsigned int& index) { // "END2"
    const unsigned char* marker = data + index;
    if (marker[0] != 'E' || marker[1] != 'N' || marker[2] != 'D' || marker[3] != '2')
        db_refuse_database_end(marker);
    index += DB_MARKER_SIZE;
}

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
