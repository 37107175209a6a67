// Flash manager: writing the database from its CSV description (docs/formats/flash_csv.md).
//
// Two passes over the description: the first checks the header rows and adds up the exact size of the file image, the
// second encodes. What the first does not look into is refused by the writers of the second. As nearly every
// description is without fault, the first pass encodes along; the second is only made when that met a fault or when the
// description is no file whose two passes read the same.
#include "host_pgm_common.h"
#include "host_text.h"
#include "tovren_check.h"
#include "tovren_csv.h"
#include "tovren_db_stream.h"
#include "tovren_flash_manager.h"

#include <array>
#include <filesystem>
#include <limits>
#include <string_view>

namespace {

constexpr unsigned int TYPE_ROW = 0;
constexpr unsigned int NAME_ROW = 1;
constexpr unsigned int FIRST_DATA_ROW = 8;

// Rows 2, 3 and 7 may have any number of cells, 4 to 6 may not.
constexpr bool is_free_row(unsigned int row) {
    return row == 2 || row == 3 || row == 7;
}

void check_type_word(const std::vector<std::string>& svec, size_t i, TOVREN_MANAGER_TYPE type) {
    switch (type) {
    case TOVREN_MANAGER_STRING:
        return TOVREN_CHECK(svec.at(i) == "STL_STRING");
    case TOVREN_MANAGER_BOOL:
        return TOVREN_CHECK(svec.at(i) == "bool");
    case TOVREN_MANAGER_BYTE:
        return TOVREN_CHECK(svec.at(i) == "BYTE");
    case TOVREN_MANAGER_WORD:
        return TOVREN_CHECK(svec.at(i) == "WORD");
    case TOVREN_MANAGER_DWORD:
        return TOVREN_CHECK(svec.at(i) == "DWORD");
    default:
        TOVREN_FAIL("Unsupported type");
    }
}

void check_type_row(const std::vector<std::string>& svec, const std::vector<TOVREN_MANAGER_TYPE>& types) {
    TOVREN_CHECK(svec.size() == TOTAL_DATABASE_MEMBER);
    for (size_t i = 0; i < svec.size(); ++i)
        check_type_word(svec, i, types[i]);
}

void check_name_row(const std::vector<std::string>& svec, const std::vector<std::string>& m_name_list) {
    TOVREN_CHECK(svec.size() == TOTAL_DATABASE_MEMBER);
    for (size_t i = 0; i < svec.size(); ++i) {
        std::string temp = svec[i];
        stl_tolower(temp);
        TOVREN_CHECK(temp == m_name_list[i]);
    }
}

bool is_regular_file(const FIO_PATH& file) {
    std::error_code error;
    return std::filesystem::is_regular_file(file.fullpath(), error);
}

// Bit 0 for a decimal digit, bit 1 for a hexadecimal one.
constexpr std::array<unsigned char, 256> DIGIT_KINDS = [] {
    std::array<unsigned char, 256> kinds = {};
    for (const char c : std::string_view("0123456789"))
        kinds[static_cast<unsigned char>(c)] = 3;
    for (const char c : std::string_view("abcdefABCDEF"))
        kinds[static_cast<unsigned char>(c)] = 2;
    return kinds;
}();

inline bool are_all(std::string_view digits, unsigned int kind) {
    unsigned int common = kind;
    for (const char c : digits)
        common &= DIGIT_KINDS[static_cast<unsigned char>(c)];
    return common != 0;
}

// Whether a host cannot but take the number: 32 bits, plainly written. It is asked without a status and would report
// any other at once, ahead of what is wrong with the shape of later rows.
inline bool is_plain_number(std::string_view cell) {
    constexpr std::string_view LARGEST = "4294967295";
    if (cell.size() > 2 && cell.size() <= 10 && cell[0] == '0' && (cell[1] | 0x20) == 'x')
        return are_all(cell.substr(2), 2);
    return (cell.size() < LARGEST.size() || (cell.size() == LARGEST.size() && cell <= LARGEST)) && are_all(cell, 1);
}

// Encodes rows into a file image that grows. It reports nothing: at the first fault it gives up.
class ROW_ENCODER {
public:
    // Without `is_wanted` it gives up at once.
    ROW_ENCODER(const std::vector<TOVREN_MANAGER_TYPE>& types, bool is_wanted)
        : m_types(types), m_is_faulty(!is_wanted) {}

    // `size`: encoded bytes of the row, "END1" included.
    void add(const std::vector<std::string>& svec, size_t size) {
        if (m_is_faulty)
            return;
        m_image.resize(m_index + size + DB_MARKER_SIZE);
        unsigned char* buffer = m_image.data();
        for (size_t i = 0; i < svec.size() && !m_is_faulty; ++i)
            m_is_faulty = !put(&buffer, m_types[i], svec[i]);
        if (!m_is_faulty)
            db_put_record_end(&buffer, m_index);
    }

    // Writes the headers and "END2". The image, null when there was a fault or its size is not `size`.
    unsigned char* finish(unsigned int device_count, size_t size) {
        if (m_is_faulty || m_index + DB_MARKER_SIZE != size)
            return nullptr;
        unsigned char* buffer = m_image.data();
        unsigned int index = 0;
        db_put_headers(TOVREN_FLASH_DB_FORMAT, &buffer, index, static_cast<unsigned int>(size) - DB_HEADER_SIZE,
                       device_count, TOTAL_DATABASE_MEMBER);
        db_put_database_end(&buffer, m_index);
        return buffer;
    }

private:
    bool put(unsigned char** buffer, TOVREN_MANAGER_TYPE type, const std::string& cell) {
        if (cell.empty())
            return false;
        if (type == TOVREN_MANAGER_STRING) {
            db_put_string(buffer, m_index, type, cell);
            return true;
        }
        if (type == TOVREN_MANAGER_BOOL) {
            const bool value = cell == std::string_view("TRUE");
            db_put_bool(buffer, m_index, value);
            return value || cell == std::string_view("FALSE");
        }
        if (!is_plain_number(cell))
            return false;
        const unsigned int value = PGM_COMMON::convert_string_to_dword(cell, true, nullptr, nullptr, true);
        db_put_value(buffer, m_index, value, db_value_size(type));
        return true;
    }

    const std::vector<TOVREN_MANAGER_TYPE>& m_types;
    std::vector<unsigned char> m_image;
    unsigned int m_index = DB_HEADER_SIZE + DB_PAYLOAD_HEADER_SIZE;
    bool m_is_faulty;
};

// The encoded size of a row: what all rows have in common and the characters of its texts.
class ROW_SIZES {
public:
    explicit ROW_SIZES(const std::vector<TOVREN_MANAGER_TYPE>& types) : m_fixed(db_record_size(types, {})) {
        for (size_t i = 0; i < types.size(); ++i)
            if (db_is_text(types[i]))
                m_texts.push_back(i);
    }

    size_t of(const std::vector<std::string>& svec) const {
        size_t size = m_fixed;
        for (const size_t text : m_texts)
            size += svec[text].size();
        return size;
    }

private:
    size_t m_fixed;
    std::vector<size_t> m_texts; // positions
};

// Returns the payload's size. `encoder` may be null.
size_t scan_flash_file(const FIO_PATH& csv, unsigned int& device_count, const std::vector<std::string>& names,
                       const std::vector<TOVREN_MANAGER_TYPE>& types, ROW_ENCODER* encoder) {
    device_count = 0;
    const ROW_SIZES sizes(types);
    size_t size = DB_PAYLOAD_HEADER_SIZE + DB_MARKER_SIZE;
    CSV_READER input(csv);
    std::vector<std::string> svec;
    for (unsigned int row = 0; input.next(svec); ++row) {
        if (!is_free_row(row))
            TOVREN_CHECK(DWORD(svec.size()) == TOTAL_DATABASE_MEMBER);
        if (row == TYPE_ROW)
            check_type_row(svec, types);
        else if (row == NAME_ROW)
            check_name_row(svec, names);
        else if (row >= FIRST_DATA_ROW) {
            const size_t record_size = sizes.of(svec);
            size += record_size;
            ++device_count;
            if (encoder)
                encoder->add(svec, record_size);
        }
    }
    const bool status = input.is_good();
    TOVREN_CHECK(status && device_count > 0);
    TOVREN_CHECK_TEXT(size + DB_HEADER_SIZE <= std::numeric_limits<unsigned int>::max(), "pure_memory_size > 0");
    return size;
}

} // namespace

unsigned int TOVREN_FLASH_MANAGER::check_flash_file(FIO_PATH csv, unsigned int& device_count) {
    return static_cast<unsigned int>(scan_flash_file(csv, device_count, m_name_list, m_type_list, nullptr));
}

void TOVREN_FLASH_MANAGER::generate_flash_database(FIO_PATH csv, FIO_PATH output) {
    unsigned int device_count = 0;
    ROW_ENCODER encoder(m_type_list, is_regular_file(csv));
    const auto pure_memory_size =
        static_cast<unsigned int>(scan_flash_file(csv, device_count, m_name_list, m_type_list, &encoder));
    TOVREN_CHECK(pure_memory_size > 0);
    const unsigned int memory_size = DB_HEADER_SIZE + pure_memory_size;
    TOVREN_CHECK(TOVREN_FLASH_INFO_CSV_MD5.size() == 32);
    if (const unsigned char* image = encoder.finish(device_count, memory_size))
        return db_write_file(output, image, memory_size);

    const auto memory = std::make_unique<unsigned char[]>(memory_size);
    unsigned char* buffer = memory.get();

    unsigned int index = 0;
    db_put_headers(TOVREN_FLASH_DB_FORMAT, &buffer, index, pure_memory_size, device_count, TOTAL_DATABASE_MEMBER);

    CSV_READER input(csv);
    const bool status = input.is_good();
    TOVREN_CHECK(status);
    std::vector<std::string> svec;
    for (unsigned int row = 0; input.next(svec); ++row) {
        if (row < FIRST_DATA_ROW)
            continue;
        // The file may have grown since it was checked.
        TOVREN_CHECK(svec.size() == TOTAL_DATABASE_MEMBER);
        TOVREN_CHECK_TEXT(size_t{index} + db_record_size(m_type_list, svec) + DB_MARKER_SIZE <= memory_size,
                          "index == memory_size");
        dump_to_database(&buffer, index, svec);
        db_put_record_end(&buffer, index);
    }
    db_put_database_end(&buffer, index);
    TOVREN_CHECK(index == memory_size);
    db_write_file(output, buffer, memory_size);
}

void TOVREN_FLASH_MANAGER::dump_to_database(unsigned char** buffer, unsigned int& index,
                                            std::vector<std::string> svec) {
    TOVREN_CHECK(svec.size() == TOTAL_DATABASE_MEMBER);
    for (size_t i = 0; i < svec.size(); ++i) {
        const TOVREN_MANAGER_TYPE type = m_type_list[i];
        if (type == TOVREN_MANAGER_STRING)
            dump_string_to_database(buffer, index, std::move(svec[i]));
        else if (type == TOVREN_MANAGER_BOOL)
            dump_bool_to_database(buffer, index, std::move(svec[i]));
        else
            dump_value_to_database(buffer, index, std::move(svec[i]), db_value_size(type));
    }
}

void TOVREN_FLASH_MANAGER::dump_dword_database(unsigned char** buffer, unsigned int& index, unsigned int value) {
    db_put_dword(buffer, index, value);
}

void TOVREN_FLASH_MANAGER::dump_string_to_database(unsigned char** buffer, unsigned int& index, std::string string) {
    TOVREN_CHECK(string.size() > 0);
    db_put_string(buffer, index, TOVREN_MANAGER_STRING, string);
}

void TOVREN_FLASH_MANAGER::dump_bool_to_database(unsigned char** buffer, unsigned int& index, std::string string) {
    TOVREN_CHECK(string == "FALSE" || string == "TRUE");
    db_put_bool(buffer, index, string == "TRUE");
}

void TOVREN_FLASH_MANAGER::dump_value_to_database(unsigned char** buffer, unsigned int& index, std::string string,
                                                  unsigned int count) {
    TOVREN_CHECK(string.size() > 0);
    TOVREN_CHECK(count == 1 || count == 2 || count == 4);
    db_put_value(buffer, index, get_dword_from_string(std::move(string), nullptr), count);
}

unsigned int TOVREN_FLASH_MANAGER::get_dword_from_string(std::string string, bool* ok) {
    return PGM_COMMON::convert_string_to_dword(string, true, ok, nullptr, true);
}
