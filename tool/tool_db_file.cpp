// Taking a database file apart (docs/formats/pcf.md).
#include "tool_db_file.h"

#include "host_fio.h"
#include "tool_file.h"
#include "tool_text.h"
#include "tovren_dev_info_manager.h"
#include "tovren_flash_manager.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <span>
#include <zlib.h>

namespace {

constexpr size_t MAGIC_SIZE = 8;
constexpr size_t MD5_SIZE = 32;
constexpr size_t HEADER_SIZE = MAGIC_SIZE + MD5_SIZE + 4;
constexpr size_t CHECK_SIZE = 2;
constexpr unsigned int VERSION = 1;
constexpr size_t INFLATE_STEP = 1 << 16;
constexpr unsigned int LARGEST_FILE = 64 << 20;
constexpr unsigned int LARGEST_PAYLOAD = 64 << 20; // of what is taken apart; no table comes near it
// What is kept of it has these bounds, far past any table.
constexpr unsigned int MOST_MEMBERS = 4096; // of a record
constexpr size_t MOST_RECORDS = 200'000;
constexpr size_t MOST_VALUES = 1'000'000; // of all records

using BYTES = std::vector<unsigned char>;

// Steps through bytes; what is missing or wrong is thrown as the fault.
class CURSOR {
public:
    CURSOR(const char* area, std::span<const unsigned char> bytes) : m_area(area), m_bytes(bytes) {}

    size_t offset() const { return m_offset; }
    size_t left() const { return m_bytes.size() - m_offset; }

    [[noreturn]] void fail(size_t offset, const std::string& reason) const {
        throw TOOL_DB_FAULT{m_area, offset, reason};
    }

    std::span<const unsigned char> take(size_t count, const std::string& what) {
        if (left() < count)
            fail(m_offset, what + " is cut: " + tool_count_text(count, "byte") + " expected, " +
                               std::to_string(left()) + " left");
        const auto taken = m_bytes.subspan(m_offset, count);
        m_offset += count;
        return taken;
    }

    unsigned int take_number(size_t count, const std::string& what) {
        unsigned int value = 0;
        size_t place = 0;
        for (const unsigned char byte : take(count, what))
            value |= static_cast<unsigned int>(byte) << (8 * place++);
        return value;
    }

    std::string take_text(size_t count, const std::string& what) {
        const auto bytes = take(count, what);
        return {bytes.begin(), bytes.end()};
    }

    void take_marker(const std::string& marker) {
        const size_t begin = m_offset;
        if (const std::string found = take_text(marker.size(), "the marker " + marker); found != marker)
            fail(begin, tool_quoted(found) + " where " + marker + " is expected");
    }

private:
    const char* m_area;
    std::span<const unsigned char> m_bytes;
    size_t m_offset = 0;
};

std::string hex_text(std::span<const unsigned char> bytes) {
    return tool_hex_text(bytes.data(), bytes.size());
}

const char* type_word(unsigned int type) {
    static constexpr const char* WORDS[] = {"DEVID_ENUM", "DEVID_STR", "STL_STRING", "bool",
                                            "BYTE",       "WORD",      "DWORD",      "ENUM"};
    return type < std::size(WORDS) ? WORDS[type] : "none";
}

bool is_number_tag(unsigned int tag) {
    return tag == TOVREN_MANAGER_DEVID_ENUM || tag == TOVREN_MANAGER_DWORD || tag == TOVREN_MANAGER_ENUM;
}

bool is_text_tag(unsigned int tag) {
    return tag == TOVREN_MANAGER_DEVID_STR || tag == TOVREN_MANAGER_STRING;
}

class DB_READER {
public:
    TOOL_DB_FILE read(const std::string& path) {
        try {
            read_file(path);
        } catch (TOOL_DB_FAULT& fault) {
            m_file.fault = std::move(fault);
        }
        return std::move(m_file);
    }

private:
    bool is_device() const { return m_file.kind == "device"; }

    void read_file(const std::string& path) {
        if (const std::string fault = tool_reading_fault(path); !fault.empty())
            throw TOOL_DB_FAULT{"file", 0, fault};
        FIO_STATUS status;
        if (!FIO_FILE_SYSTEM::status(path.c_str(), &status))
            throw TOOL_DB_FAULT{"file", 0, "it is not a regular file"};
        m_file.file_size = status.size;
        if (status.size > LARGEST_FILE)
            throw TOOL_DB_FAULT{"file", 0,
                                "it has " + tool_count_text(status.size, "byte") +
                                    "; more than 64 MiB are not taken apart"};
        std::ifstream input(path, std::ios::binary);
        const BYTES bytes{std::istreambuf_iterator<char>(input), {}};
        m_file.file_size = bytes.size();
        CURSOR file("file", bytes);
        read_header(file);
        const auto compressed = file.take(file.left() - CHECK_SIZE, "the payload");
        m_file.compressed_size = compressed.size();
        m_file.check_field = hex_text(file.take(CHECK_SIZE, "the check field"));
        const BYTES payload = inflate_payload(compressed);
        CURSOR cursor("payload", payload);
        read_payload(cursor);
    }

    void read_header(CURSOR& file) {
        m_file.magic = file.take_text(std::min(MAGIC_SIZE, file.left()), "the magic");
        m_file.kind = m_file.magic == "PGMIO_FM" ? "flash" : m_file.magic == "PGMIO_DM" ? "device" : "";
        if (m_file.kind.empty())
            file.fail(0, tool_quoted(m_file.magic) + " where PGMIO_DM or PGMIO_FM is expected");
        m_file.md5 = file.take_text(MD5_SIZE, "the MD5 text");
        m_file.is_of_this_build = m_file.md5 == (is_device() ? TOVREN_DEV_INFO_CSV_MD5 : TOVREN_FLASH_INFO_CSV_MD5);
        m_file.payload_size = file.take_number(4, "the payload size");
        if (file.left() <= CHECK_SIZE)
            file.fail(file.offset(), "there is no payload: the file has " + tool_count_text(m_file.file_size, "byte") +
                                         ", more than 46 are expected");
    }

    // As much as the stream holds, up to the announced size and one byte.
    BYTES inflate_payload(std::span<const unsigned char> compressed) {
        if (*m_file.payload_size > LARGEST_PAYLOAD)
            throw TOOL_DB_FAULT{"file", MAGIC_SIZE + MD5_SIZE,
                                "the payload size is " + std::to_string(*m_file.payload_size) +
                                    "; more than 64 MiB are not taken apart"};
        z_stream stream = {};
        if (inflateInit(&stream) != Z_OK)
            throw std::bad_alloc();
        stream.next_in = const_cast<unsigned char*>(compressed.data());
        stream.avail_in = static_cast<unsigned int>(compressed.size());
        BYTES payload;
        int result = Z_OK;
        const size_t most = size_t{*m_file.payload_size} + 1;
        while (result == Z_OK && payload.size() < most) {
            const size_t begin = payload.size();
            payload.resize(std::min(begin + INFLATE_STEP, most));
            stream.next_out = payload.data() + begin;
            stream.avail_out = static_cast<unsigned int>(payload.size() - begin);
            result = inflate(&stream, Z_NO_FLUSH);
            payload.resize(payload.size() - stream.avail_out);
        }
        const std::string message = stream.msg ? stream.msg : "it is cut";
        const size_t consumed = HEADER_SIZE + stream.total_in;
        inflateEnd(&stream);
        check_inflation(result, payload.size(), consumed, message);
        return payload;
    }

    // A damaged stream ends here: what it gave cannot be told from noise.
    void check_inflation(int result, size_t size, size_t consumed, const std::string& message) {
        if (size > *m_file.payload_size)
            throw TOOL_DB_FAULT{"file", MAGIC_SIZE + MD5_SIZE,
                                "the payload size is " + std::to_string(*m_file.payload_size) +
                                    ", the payload is longer"};
        if (result != Z_STREAM_END)
            throw TOOL_DB_FAULT{"file", consumed, "the compressed payload is damaged: " + message};
        if (size < *m_file.payload_size)
            throw TOOL_DB_FAULT{"file", MAGIC_SIZE + MD5_SIZE,
                                "the payload size is " + std::to_string(*m_file.payload_size) + ", the payload has " +
                                    tool_count_text(size, "byte")};
    }

    void read_payload(CURSOR& payload) {
        m_file.version = payload.take_number(4, "the version");
        if (*m_file.version != VERSION)
            payload.fail(0, "the version is " + std::to_string(*m_file.version) + ", expected 1");
        m_file.record_count = payload.take_number(4, "the record count");
        m_file.member_count = payload.take_number(4, "the member count");
        if (*m_file.record_count == 0)
            payload.fail(4, "the record count is 0");
        if (*m_file.member_count == 0)
            payload.fail(8, "the member count is 0");
        if (*m_file.member_count > MOST_MEMBERS)
            payload.fail(8, "the member count is " + std::to_string(*m_file.member_count) + "; more than " +
                                std::to_string(MOST_MEMBERS) + " are not taken apart");
        const size_t most = std::min(MOST_RECORDS, MOST_VALUES / *m_file.member_count);
        while (m_file.records.size() < *m_file.record_count) {
            if (m_file.records.size() == most)
                payload.fail(payload.offset(), "more than " + std::to_string(most) + " records of " +
                                                   tool_count_text(*m_file.member_count, "member") +
                                                   " are not taken apart");
            m_file.records.push_back(read_record(payload));
        }
        payload.take_marker("END2");
        if (is_device())
            read_tables(payload);
        else
            m_file.trailing_size = payload.left();
    }

    TOOL_DB_RECORD read_record(CURSOR& payload) {
        const auto& names = is_device() ? TOVREN_DEV_INFO_MANAGER::m_db_name_list : TOVREN_FLASH_MANAGER::m_name_list;
        const auto& types = is_device() ? TOVREN_DEV_INFO_MANAGER::m_db_type_list : TOVREN_FLASH_MANAGER::m_type_list;
        const bool is_known = *m_file.member_count == names.size();
        TOOL_DB_RECORD record;
        for (unsigned int i = 0; i < *m_file.member_count; ++i) {
            const std::string name = is_known ? names[i] : "";
            const std::string what = "record " + std::to_string(m_file.records.size()) + ", " +
                                     (is_known ? name : "member " + std::to_string(i));
            record.push_back({name, read_value(payload, what, is_known ? &types[i] : nullptr)});
        }
        payload.take_marker("END1");
        return record;
    }

    // `expected`: the tag of the member, null where it is not known.
    TOOL_DB_VALUE read_value(CURSOR& payload, const std::string& what, const TOVREN_MANAGER_TYPE* expected) {
        const size_t begin = payload.offset();
        const unsigned int tag = payload.take_number(1, what);
        if (expected && !is_accepted(tag, *expected))
            payload.fail(begin, what + ": tag " + std::to_string(tag) + " where " + std::to_string(*expected) + " (" +
                                    type_word(*expected) + ") is expected");
        if (is_number_tag(tag))
            return payload.take_number(4, what);
        if (is_text_tag(tag))
            return payload.take_text(payload.take_number(1, what), what);
        if (tag == TOVREN_MANAGER_BYTE || tag == TOVREN_MANAGER_WORD)
            return payload.take_number(tag == TOVREN_MANAGER_BYTE ? 1 : 2, what);
        if (tag != TOVREN_MANAGER_BOOL)
            payload.fail(begin, what + ": tag " + std::to_string(tag) + " begins no value");
        const unsigned int flag = payload.take_number(1, what);
        if (flag > 1)
            payload.fail(begin + 1, what + ": a flag of " + std::to_string(flag) + ", expected 0 or 1");
        return flag == 1;
    }

    // As the readers of the library accept tags.
    bool is_accepted(unsigned int tag, TOVREN_MANAGER_TYPE expected) const {
        if (!is_device())
            return tag == expected;
        return is_number_tag(expected) ? is_number_tag(tag)
               : is_text_tag(expected) ? is_text_tag(tag)
                                       : tag == expected;
    }

    void read_tables(CURSOR& payload) {
        read_table(payload, "family", TOVREN_MANAGER_FAMILY_TBL, DEV_FAMILY_MAX);
        read_table(payload, "device", TOVREN_MANAGER_DEVICE_TBL, DEV_DEVICE_MAX);
        read_table(payload, "part", TOVREN_MANAGER_PART_TBL, DEV_PART_MAX);
        if (payload.left() != 0)
            payload.fail(payload.offset(), tool_count_text(payload.left(), "byte") + " behind the part table");
    }

    void read_table(CURSOR& payload, const char* name, unsigned int expected_tag, unsigned int expected_count) {
        const std::string what = std::string("the ") + name + " table";
        const size_t begin = payload.offset();
        if (const unsigned int tag = payload.take_number(1, what); tag != expected_tag)
            payload.fail(begin, what + ": tag " + std::to_string(tag) + ", expected " + std::to_string(expected_tag));
        if (const unsigned int count = payload.take_number(4, what); count != expected_count)
            payload.fail(begin + 1, what + " has " + std::to_string(count) + " entries, the catalogue " +
                                        std::to_string(expected_count));
        TOOL_DB_TABLE table{name, {}};
        for (unsigned int i = 0; i < expected_count; ++i)
            table.positions.push_back(read_position(payload, what, i));
        m_file.tables.push_back(std::move(table));
    }

    unsigned int read_position(CURSOR& payload, const std::string& what, unsigned int entry) {
        const size_t begin = payload.offset();
        const unsigned int position = payload.take_number(4, what);
        if (position >= *m_file.record_count && position != INVALID_DWORD)
            payload.fail(begin, what + ": entry " + std::to_string(entry) + " names record " +
                                    std::to_string(position) + ", there are " + std::to_string(*m_file.record_count));
        return position;
    }

    TOOL_DB_FILE m_file;
};

} // namespace

TOOL_DB_FILE tool_read_db_file(const std::string& path) {
    return DB_READER().read(path);
}
