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

constexpr size_t MOST_FAULTS = 1000;

using BYTES = std::vector<unsigned char>;

// A member of a record, as far as a fault needs to name it.
struct PLACE {
    size_t record;
    unsigned int member;
    std::string_view name; // empty for an unknown one

    std::string text() const {
        return "record " + std::to_string(record) + ", " +
               (name.empty() ? "member " + std::to_string(member) : std::string(name));
    }
};

std::string text_of(const char* text) {
    return text;
}

std::string text_of(const std::string& text) {
    return text;
}

std::string text_of(const PLACE& place) {
    return place.text();
}

// Steps through bytes; what is missing or wrong is thrown as the fault. What is taken is a text or a place.
class CURSOR {
public:
    CURSOR(const char* area, std::span<const unsigned char> bytes) : m_area(area), m_bytes(bytes) {}

    size_t offset() const { return m_offset; }
    size_t left() const { return m_bytes.size() - m_offset; }

    TOOL_DB_FAULT fault(size_t offset, const std::string& reason) const { return {m_area, offset, reason}; }
    [[noreturn]] void fail(size_t offset, const std::string& reason) const { throw fault(offset, reason); }

    template <typename WHAT>
    std::span<const unsigned char> take(size_t count, const WHAT& what) {
        if (left() < count)
            fail(m_offset, text_of(what) + " is cut: " + tool_count_text(count, "byte") + " expected, " +
                               std::to_string(left()) + " left");
        const auto taken = m_bytes.subspan(m_offset, count);
        m_offset += count;
        return taken;
    }

    template <typename WHAT>
    unsigned int take_number(size_t count, const WHAT& what) {
        unsigned int value = 0;
        size_t place = 0;
        for (const unsigned char byte : take(count, what))
            value |= static_cast<unsigned int>(byte) << (8 * place++);
        return value;
    }

    template <typename WHAT>
    std::string take_text(size_t count, const WHAT& what) {
        const auto bytes = take(count, what);
        return {bytes.begin(), bytes.end()};
    }

    // The fault of another text than the marker, which is taken all the same.
    std::optional<TOOL_DB_FAULT> take_marker(const std::string& marker) {
        const size_t begin = m_offset;
        const auto found = take(marker.size(), "the marker " + marker);
        if (std::equal(found.begin(), found.end(), marker.begin()))
            return std::nullopt;
        return fault(begin, tool_quoted(std::string(found.begin(), found.end())) + " where " + marker + " is expected");
    }

    // The byte that would be taken next; none at the end.
    std::optional<unsigned int> next() const {
        return left() == 0 ? std::nullopt : std::optional<unsigned int>(m_bytes[m_offset]);
    }

    // To behind the next such text at or after `offset`; false where there is none.
    bool skip_past(std::string_view text, size_t offset) {
        const auto rest = m_bytes.subspan(offset);
        const auto place = std::search(rest.begin(), rest.end(), text.begin(), text.end());
        if (place == rest.end())
            return false;
        m_offset = offset + static_cast<size_t>(place - rest.begin()) + text.size();
        return true;
    }

private:
    const char* m_area;
    std::span<const unsigned char> m_bytes;
    size_t m_offset = 0;
};

std::string hex_text(std::span<const unsigned char> bytes) {
    return tool_hex_text(bytes.data(), bytes.size());
}

bool is_number_tag(unsigned int tag) {
    return tag == TOVREN_MANAGER_DEVID_ENUM || tag == TOVREN_MANAGER_DWORD || tag == TOVREN_MANAGER_ENUM;
}

bool is_text_tag(unsigned int tag) {
    return tag == TOVREN_MANAGER_DEVID_STR || tag == TOVREN_MANAGER_STRING;
}

class DB_READER {
public:
    explicit DB_READER(bool reads_on) : m_reads_on(reads_on) {}

    TOOL_DB_FILE read(const std::string& path) {
        try {
            read_file(path);
        } catch (TOOL_DB_FAULT& fault) {
            m_file.faults.push_back(std::move(fault));
        }
        return std::move(m_file);
    }

private:
    bool is_device() const { return m_file.kind == "device"; }

    // A fault behind which reading can go on.
    void note(TOOL_DB_FAULT fault) {
        if (!m_reads_on || m_file.faults.size() + 1 >= MOST_FAULTS)
            throw fault;
        m_file.faults.push_back(std::move(fault));
    }

    void note(const std::optional<TOOL_DB_FAULT>& fault) {
        if (fault)
            note(TOOL_DB_FAULT(*fault));
    }

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
        BYTES bytes(status.size);
        input.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        bytes.resize(static_cast<size_t>(input.gcount()));
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
        m_names = m_file.has_known_members() ? &tool_db_member_names(m_file.kind) : nullptr;
        m_types = m_names ? &tool_db_member_types(m_file.kind) : nullptr;
        read_records(payload);
        note(payload.take_marker("END2"));
        if (is_device())
            read_tables(payload);
        else
            m_file.trailing_size = payload.left();
    }

    void read_records(CURSOR& payload) {
        const size_t most = std::min(MOST_RECORDS, MOST_VALUES / *m_file.member_count);
        while (m_file.records.size() < *m_file.record_count) {
            if (m_file.records.size() == most)
                payload.fail(payload.offset(), "more than " + std::to_string(most) + " records of " +
                                                   tool_count_text(*m_file.member_count, "member") +
                                                   " are not taken apart");
            m_file.records.push_back(read_record_or_pass(payload));
        }
    }

    // A broken record is empty, and passed over where the place of the next one can be told.
    TOOL_DB_RECORD read_record_or_pass(CURSOR& payload) {
        const size_t begin = payload.offset();
        try {
            return read_record(payload);
        } catch (TOOL_DB_FAULT& fault) {
            if (!m_reads_on || !payload.skip_past("END1", begin))
                throw;
            note(std::move(fault));
            return {};
        }
    }

    TOOL_DB_RECORD read_record(CURSOR& payload) {
        TOOL_DB_RECORD record;
        record.reserve(*m_file.member_count);
        for (unsigned int i = 0; i < *m_file.member_count; ++i) {
            const std::string_view name = m_names ? std::string_view((*m_names)[i]) : std::string_view();
            record.push_back({name, read_value(payload, {m_file.records.size(), i, name})});
        }
        if (const auto fault = payload.take_marker("END1")) {
            if (!is_before_record_or_end(payload))
                throw TOOL_DB_FAULT(*fault);
            note(fault);
        }
        return record;
    }

    // A marker that is no more than misspelt has one of them behind it.
    bool is_before_record_or_end(const CURSOR& payload) const {
        const auto next = payload.next();
        return next && (next == 'E' || !m_types || is_accepted(*next, m_types->front()));
    }

    TOOL_DB_VALUE read_value(CURSOR& payload, const PLACE& place) {
        const size_t begin = payload.offset();
        const unsigned int tag = payload.take_number(1, place);
        if (m_types)
            check_tag(payload, place, tag, (*m_types)[place.member]);
        if (is_number_tag(tag))
            return payload.take_number(4, place);
        if (is_text_tag(tag))
            return payload.take_text(payload.take_number(1, place), place);
        if (tag == TOVREN_MANAGER_BYTE || tag == TOVREN_MANAGER_WORD)
            return payload.take_number(tag == TOVREN_MANAGER_BYTE ? 1 : 2, place);
        if (tag != TOVREN_MANAGER_BOOL)
            payload.fail(begin, place.text() + ": tag " + std::to_string(tag) + " begins no value");
        const unsigned int flag = payload.take_number(1, place);
        if (flag > 1)
            note(payload.fault(begin + 1, place.text() + ": a flag of " + std::to_string(flag) + ", expected 0 or 1"));
        return flag == 1;
    }

    void check_tag(const CURSOR& payload, const PLACE& place, unsigned int tag, TOVREN_MANAGER_TYPE expected) {
        if (!is_accepted(tag, expected))
            payload.fail(payload.offset() - 1, place.text() + ": tag " + std::to_string(tag) + " where " +
                                                   std::to_string(expected) + " (" + tool_db_type_word(expected) +
                                                   ") is expected");
        const unsigned int written = expected == TOVREN_MANAGER_DEVID_ENUM ? TOVREN_MANAGER_ENUM : expected;
        m_file.has_other_tags = m_file.has_other_tags || tag != written;
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
            note(payload.fault(begin, what + ": entry " + std::to_string(entry) + " names record " +
                                          std::to_string(position) + ", there are " +
                                          std::to_string(*m_file.record_count)));
        return position;
    }

    bool m_reads_on;
    TOOL_DB_FILE m_file;
    const std::vector<std::string>* m_names = nullptr; // null where the members are not known
    const std::vector<TOVREN_MANAGER_TYPE>* m_types = nullptr;
};

} // namespace

bool TOOL_DB_FILE::has_known_members() const {
    return member_count && *member_count == tool_db_member_names(kind).size();
}

const std::vector<std::string>& tool_db_member_names(const std::string& kind) {
    return kind == "device" ? TOVREN_DEV_INFO_MANAGER::m_db_name_list : TOVREN_FLASH_MANAGER::m_name_list;
}

const std::vector<TOVREN_MANAGER_TYPE>& tool_db_member_types(const std::string& kind) {
    return kind == "device" ? TOVREN_DEV_INFO_MANAGER::m_db_type_list : TOVREN_FLASH_MANAGER::m_type_list;
}

const char* tool_db_type_word(unsigned int type) {
    static constexpr const char* WORDS[] = {"DEVID_ENUM", "DEVID_STR", "STL_STRING", "bool",
                                            "BYTE",       "WORD",      "DWORD",      "ENUM"};
    return type < std::size(WORDS) ? WORDS[type] : "none";
}

TOOL_DB_FILE tool_read_db_file(const std::string& path, bool reads_on) {
    return DB_READER(reads_on).read(path);
}

std::string tool_db_fault_text(const std::string& path, const TOOL_DB_FAULT& fault) {
    return tool_printable(path) + ": " + fault.area + " offset " + std::to_string(fault.offset) + ": " + fault.reason;
}

std::vector<std::string> tool_db_refusals(const std::string& path, const TOOL_DB_FILE& file) {
    std::vector<std::string> refusals;
    for (const TOOL_DB_FAULT& fault : file.faults)
        refusals.push_back(tool_db_fault_text(path, fault));
    if (refusals.empty() && !file.has_known_members())
        refusals.push_back(tool_printable(path) + ": its records have " +
                           tool_count_text(*file.member_count, "member") + "; this build's " + file.kind +
                           " records have " + std::to_string(tool_db_member_names(file.kind).size()));
    return refusals;
}
