// Typed value stream and file envelope of the device and the flash database.
#include "tovren_db_stream.h"

#include "tovren_check.h"
#include "tovren_dev_info_manager_auto_export.h"
#include "tovren_file.h"
#include "tovren_zlib.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr unsigned int tags(std::initializer_list<TOVREN_MANAGER_TYPE> types) {
    unsigned int all = 0;
    for (const TOVREN_MANAGER_TYPE type : types)
        all |= 1U << type;
    return all;
}

} // namespace

const TOVREN_DB_FORMAT TOVREN_DEVICE_DB_FORMAT = {
    .text_tags = tags({TOVREN_MANAGER_DEVID_STR, TOVREN_MANAGER_STRING}),
    .dword_tags = tags({TOVREN_MANAGER_DEVID_ENUM, TOVREN_MANAGER_DWORD, TOVREN_MANAGER_ENUM}),
    .csv_md5 = &TOVREN_DEV_INFO_CSV_MD5,
    .magic = "PGMIO_DM",
    .exists_text = "FIO_FILE_SYSTEM::exists(device_file.fullpath().c_str()) && "
                   "FIO_FILE_SYSTEM::status(device_file.fullpath().c_str(), &stat_info)",
    .magic_text = "data[index++] == 'P' && data[index++] == 'G' && data[index++] == 'M' && data[index++] == 'I' && "
                  "data[index++] == 'O' && data[index++] == '_' && data[index++] == 'D' && data[index++] == 'M'",
    .string_tag_text = "type == TOVREN_MANAGER_DEVID_STR || type == TOVREN_MANAGER_STRING",
    .dword_tag_text =
        "type == TOVREN_MANAGER_DEVID_ENUM || type == TOVREN_MANAGER_DWORD || type == TOVREN_MANAGER_ENUM",
};

const TOVREN_DB_FORMAT TOVREN_FLASH_DB_FORMAT = {
    .text_tags = tags({TOVREN_MANAGER_STRING}),
    .dword_tags = tags({TOVREN_MANAGER_DWORD}),
    .csv_md5 = &TOVREN_FLASH_INFO_CSV_MD5,
    .magic = "PGMIO_FM",
    .exists_text = "FIO_FILE_SYSTEM::exists(flash_file.fullpath().c_str()) && "
                   "FIO_FILE_SYSTEM::status(flash_file.fullpath().c_str(), &stat_info)",
    .magic_text = "data[index++] == 'P' && data[index++] == 'G' && data[index++] == 'M' && data[index++] == 'I' && "
                  "data[index++] == 'O' && data[index++] == '_' && data[index++] == 'F' && data[index++] == 'M'",
    .string_tag_text = "type == TOVREN_MANAGER_STRING",
    .dword_tag_text = "type == TOVREN_MANAGER_DWORD",
};

namespace {

struct FILE_IMAGE {
    std::unique_ptr<unsigned char[]> data;
    unsigned int size = 0;
};

class INPUT_FILE {
public:
    explicit INPUT_FILE(const char* path) : m_descriptor(open(path, O_RDONLY | O_CLOEXEC)) {}
    ~INPUT_FILE() {
        if (m_descriptor >= 0)
            close(m_descriptor);
    }
    INPUT_FILE(const INPUT_FILE&) = delete;
    INPUT_FILE& operator=(const INPUT_FILE&) = delete;

    bool good() const { return m_descriptor >= 0; }

    // False when there is less to read.
    bool read(std::span<unsigned char> bytes) const {
        while (!bytes.empty()) {
            const ssize_t got = ::read(m_descriptor, bytes.data(), bytes.size());
            if (got > 0)
                bytes = bytes.subspan(static_cast<size_t>(got));
            else if (got == 0 || errno != EINTR)
                return false;
        }
        return true;
    }

private:
    int m_descriptor;
};

FILE_IMAGE read_whole_file(const TOVREN_DB_FORMAT& format, const FIO_PATH& file) {
    const char* path = file.fullpath().c_str();
    FIO_STATUS stat_info;
    TOVREN_CHECK_TEXT(FIO_FILE_SYSTEM::exists(path) && FIO_FILE_SYSTEM::status(path, &stat_info), format.exists_text);

    const INPUT_FILE input(path);
    TOVREN_CHECK(input.good());
    const auto file_size = static_cast<unsigned int>(stat_info.size);
    TOVREN_CHECK(file_size > (8 + 32 + 4 + 2));

    FILE_IMAGE image{std::make_unique_for_overwrite<unsigned char[]>(file_size), file_size};
    const bool is_whole = input.read({image.data.get(), file_size});
    TOVREN_CHECK_TEXT(is_whole, "input.good()");
    return image;
}

void confirm_magic(const TOVREN_DB_FORMAT& format, const unsigned char* data, unsigned int& index) {
    TOVREN_CHECK_TEXT(std::memcmp(data + index, format.magic, DB_MAGIC_SIZE) == 0, format.magic_text);
    index += DB_MAGIC_SIZE;
}

// The length that is tested is the device text's in the flash reader too; a shorter flash text ends in the library's
// out-of-range error.
void confirm_md5(const TOVREN_DB_FORMAT& format, const unsigned char* data, unsigned int& index) {
    TOVREN_CHECK(TOVREN_DEV_INFO_CSV_MD5.size() == 32);
    for (unsigned int i = 0; i < DB_MD5_SIZE; ++i)
        TOVREN_CHECK_TEXT(data[index++] == static_cast<unsigned char>(format.csv_md5->at(i)),
                          "Mismatch ID between flash file and reader");
}

} // namespace

DB_PAYLOAD db_read_file(const TOVREN_DB_FORMAT& format, const FIO_PATH& file) {
    const FILE_IMAGE image = read_whole_file(format, file);
    const unsigned int crc16 = db_calculate_crc16(image.data.get(), image.size * 8 - 16);
    TOVREN_CHECK(crc16 == 0);

    unsigned int index = 0;
    confirm_magic(format, image.data.get(), index);
    confirm_md5(format, image.data.get(), index);
    const unsigned int payload_size = db_get_dword(image.data.get(), index);
    return {db_decompress(image.data.get() + index, image.size - DB_HEADER_SIZE - DB_CHECK_SIZE, payload_size),
            payload_size};
}

void db_put_headers(const TOVREN_DB_FORMAT& format, unsigned char** buffer, unsigned int& index,
                    unsigned int payload_size, unsigned int record_count, unsigned int member_count) {
    std::memcpy(*buffer + index, format.magic, DB_MAGIC_SIZE);
    index += DB_MAGIC_SIZE;
    std::memcpy(*buffer + index, format.csv_md5->data(), DB_MD5_SIZE);
    index += DB_MD5_SIZE;
    db_put_dword(buffer, index, payload_size);
    db_put_dword(buffer, index, DB_VERSION);
    db_put_dword(buffer, index, record_count);
    db_put_dword(buffer, index, member_count);
}

void db_write_file(const FIO_PATH& output, const unsigned char* image, unsigned int image_size) {
    unsigned int compressed_size = 0;
    const auto compressed = db_compress(image, DB_HEADER_SIZE, image_size, compressed_size);
    const unsigned int crc16 = db_calculate_crc16(compressed.get(), compressed_size * 8);
    const unsigned char check_field[DB_CHECK_SIZE] = {static_cast<unsigned char>(crc16),
                                                      static_cast<unsigned char>(crc16 >> 8)};

    TOVREN_FILE_WRITER file(output.fullpath());
    file.write({compressed.get(), compressed_size});
    file.write(check_field);
    const bool output_is_written = file.commit();
    TOVREN_CHECK(output_is_written);
}

std::unique_ptr<unsigned char[]> db_compress(const unsigned char* data, unsigned int offset, unsigned int count,
                                             unsigned int& new_memory_count) {
    TOVREN_CHECK(offset < count);
    // Zeroed memory of this size comes untouched from the system: only what the compressor fills is ever paid for.
    const size_t room = size_t{10} * count;
    const std::unique_ptr<unsigned char, decltype(&std::free)> compressed_data(static_cast<unsigned char*>(
                                                                                   std::calloc(room, 1)),
                                                                               &std::free);
    TOVREN_CHECK(compressed_data != NULL);

    auto compressed_count = static_cast<unsigned int>(std::min<size_t>(room, INVALID_DWORD - offset));
    TOVREN_CHECK_TEXT(zlib_compress(compressed_data.get(), &compressed_count, data + offset, count - offset) == ZLIB_OK,
                      "zlib_compress(compressed_data, &compressed_count, data + offset, count - offset) == ZLIB_OK");

    new_memory_count = offset + compressed_count;
    std::unique_ptr<unsigned char[]> result(new unsigned char[new_memory_count]);
    std::memcpy(result.get(), data, offset);
    std::memcpy(result.get() + offset, compressed_data.get(), compressed_count);
    return result;
}

std::unique_ptr<unsigned char[]> db_decompress(const unsigned char* data, unsigned int decompressed_count,
                                               unsigned int original_count) {
    TOVREN_CHECK(decompressed_count > 0 && original_count > 0);
    // However much is claimed, there is no room for more than a stream of this length can give.
    auto new_dcmp_size = static_cast<unsigned int>(
        std::min<unsigned long long>(original_count, zlib_most_uncompressed(decompressed_count)));
    std::unique_ptr<unsigned char[]> decompressed_data(new unsigned char[size_t{new_dcmp_size} + DB_STREAM_SLACK]);
    std::memset(decompressed_data.get() + new_dcmp_size, 0, DB_STREAM_SLACK);
    TOVREN_CHECK_TEXT(zlib_uncompress(decompressed_data.get(), &new_dcmp_size, data, decompressed_count) == ZLIB_OK,
                      "zlib_uncompress(decompressed_data, &new_dcmp_size, data, decompressed_count) == ZLIB_OK");
    TOVREN_CHECK(new_dcmp_size == original_count);
    return decompressed_data;
}

// The check field of every file is zero and is never compared, so there is nothing to compute.
unsigned int db_calculate_crc16(const unsigned char*, unsigned int) {
    return 0;
}

unsigned int db_record_size(std::span<const TOVREN_MANAGER_TYPE> types, std::span<const std::string> cells) {
    size_t size = DB_MARKER_SIZE;
    for (size_t i = 0; i < types.size(); ++i) {
        const bool has_characters = i < cells.size() && db_is_text(types[i]);
        size += 1 + db_value_size(types[i]) + (has_characters ? cells[i].size() : 0);
    }
    return static_cast<unsigned int>(size);
}

// ---- readers ----

void db_refuse_bool(const unsigned char* value) {
    const unsigned char type = value[0];
    TOVREN_CHECK(type == TOVREN_MANAGER_BOOL);
    TOVREN_FAIL("value == 0 || value == 1");
}

void db_refuse_byte(const unsigned char*) {
    TOVREN_FAIL("type == TOVREN_MANAGER_BYTE");
}

void db_refuse_word(const unsigned char*) {
    TOVREN_FAIL("type == TOVREN_MANAGER_WORD");
}

void db_refuse_dword_value(const TOVREN_DB_FORMAT& format, const unsigned char*) {
    TOVREN_FAIL(format.dword_tag_text);
}

void db_refuse_string(const TOVREN_DB_FORMAT& format, const unsigned char* value) {
    TOVREN_CHECK_TEXT(db_takes(format.text_tags, value[0]), format.string_tag_text);
    TOVREN_FAIL("allow_empty");
}

void db_refuse_record_end(const unsigned char* data) {
    unsigned int index = 0;
    TOVREN_CHECK(data[index++] == 'E');
    TOVREN_CHECK(data[index++] == 'N');
    TOVREN_CHECK(data[index++] == 'D');
    TOVREN_FAIL("data[index++] == '1'");
}

void db_refuse_database_end(const unsigned char* data) {
    unsigned int index = 0;
    TOVREN_CHECK(data[index++] == 'E');
    TOVREN_CHECK(data[index++] == 'N');
    TOVREN_CHECK(data[index++] == 'D');
    TOVREN_FAIL("data[index++] == '2'");
}

// ---- writers ----

namespace {

void put_bytes(unsigned char** buffer, unsigned int& index, unsigned int value, unsigned int count) {
    unsigned char* place = *buffer + index;
    index += count;
    for (unsigned int i = 0; i < count; ++i)
        place[i] = static_cast<unsigned char>(value >> (8 * i));
}

void put_marker(unsigned char** buffer, unsigned int& index, const char* marker) {
    std::memcpy(*buffer + index, marker, DB_MARKER_SIZE);
    index += DB_MARKER_SIZE;
}

} // namespace

void db_put_dword(unsigned char** buffer, unsigned int& index, unsigned int value) {
    put_bytes(buffer, index, value, 4);
}

void db_put_tagged_dword(unsigned char** buffer, unsigned int& index, TOVREN_MANAGER_TYPE type, unsigned int value) {
    (*buffer)[index++] = type;
    put_bytes(buffer, index, value, 4);
}

void db_put_bool(unsigned char** buffer, unsigned int& index, bool value) {
    (*buffer)[index++] = TOVREN_MANAGER_BOOL;
    (*buffer)[index++] = value ? 1 : 0;
}

// Higher bytes than `count` keeps are dropped without a check.
void db_put_value(unsigned char** buffer, unsigned int& index, unsigned int value, unsigned int count) {
    TOVREN_CHECK(count == 1 || count == 2 || count == 4);
    (*buffer)[index++] = count == 1 ? TOVREN_MANAGER_BYTE : count == 2 ? TOVREN_MANAGER_WORD : TOVREN_MANAGER_DWORD;
    put_bytes(buffer, index, value, count);
}

// A text of 256 characters or more leaves the low byte of its length and all of its characters.
void db_put_string(unsigned char** buffer, unsigned int& index, TOVREN_MANAGER_TYPE type, const std::string& string) {
    (*buffer)[index++] = type;
    (*buffer)[index++] = static_cast<unsigned char>(string.size());
    std::memcpy(*buffer + index, string.data(), string.size());
    index += static_cast<unsigned int>(string.size());
}

void db_put_record_end(unsigned char** buffer, unsigned int& index) {
    put_marker(buffer, index, "END1");
}

void db_put_database_end(unsigned char** buffer, unsigned int& index) {
    put_marker(buffer, index, "END2");
}
