// The flash parameter file (docs/formats/pgm_flash_ini.md) and the typed values of its sections.
//
// Reading believes no number of the file before it was compared with the file's true size; sums are 64 bits wide. A
// writer never touches the file that readers may have open: it puts a new one in its place.
#include "tovren_flash_ini.h"

#include "host_fio.h"
#include "host_text.h"
#include "tovren_check.h"
#include "tovren_file.h"
#include "tovren_types.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fmt/printf.h>
#include <fstream>
#include <memory>
#include <new>
#include <span>
#include <sys/file.h>
#include <unistd.h>

__attribute__((init_priority(200))) const std::vector<std::string> TOVREN_FLASH_INI_STRING = {"SFL FLASH", "HPS SPI",
                                                                                              "HPS NAND"};
__attribute__((init_priority(200))) const std::string TOVREN_FLASH_INI_CONST_STRING = "TOVREN_FLASH_INI";

namespace {

// ---- the file ----

constexpr unsigned int MAGIC_SIZE = 16;
constexpr unsigned int HEADER_SIZE = MAGIC_SIZE + 4; // with the number of entries
constexpr unsigned int ENTRY_SIZE = 8;               // offset, size
constexpr unsigned int WRITTEN_DATA_START = HEADER_SIZE + TOVREN_FLASH_INI_MAX * ENTRY_SIZE;

// Where a section's data stand in the file; zeros for one that is not there.
struct ENTRY {
    unsigned int offset = 0;
    unsigned int size = 0;
};

struct SECTION {
    std::unique_ptr<unsigned char[]> data; // null where there is none
    unsigned int size = 0;
};

using FILE_STATE = TOVREN_FLASH_INI_FILE_ENUM;

std::string file_path() {
    return gen_get_module_path() + "/pgm_flash.ini";
}

unsigned int dword_at(const unsigned char* bytes) {
    return bytes[0] | static_cast<DWORD>(bytes[1]) << 8 | static_cast<DWORD>(bytes[2]) << 16 |
           static_cast<DWORD>(bytes[3]) << 24;
}

// One look at the file. Its size is that of the file that was opened, which a writer may have replaced since.
class READER {
public:
    explicit READER(const std::string& path);

    // Verifies the whole table and says where a section stands.
    FILE_STATE find(unsigned int section, ENTRY& found);

    // Copies what an entry of a sound file covers.
    bool copy(const ENTRY& entry, SECTION& section);

private:
    template <size_t SIZE>
    bool read(unsigned char (&bytes)[SIZE]) {
        return static_cast<bool>(m_input.read(reinterpret_cast<char*>(bytes), SIZE));
    }
    FILE_STATE walk(unsigned int entry_count, unsigned int section, ENTRY& found);

    std::ifstream m_input;
    QWORD m_size = 0;
    FILE_STATE m_state = TOVREN_FLASH_INI_FILE_MISSING; // SOUND: open
};

READER::READER(const std::string& path) {
    FIO_STATUS status;
    if (!FIO_FILE_SYSTEM::exists(path.c_str()))
        return;
    m_state = TOVREN_FLASH_INI_FILE_UNREADABLE;
    if (!FIO_FILE_SYSTEM::status(path.c_str(), &status)) // a pipe would be waited for
        return;
    m_input.open(path, std::ios::in | std::ios::binary | std::ios::ate);
    const std::streamoff size = m_input.tellg();
    if (size < 0)
        return;
    m_input.seekg(0);
    m_size = static_cast<QWORD>(size);
    m_state = TOVREN_FLASH_INI_FILE_SOUND;
}

FILE_STATE READER::find(unsigned int section, ENTRY& found) {
    if (m_state != TOVREN_FLASH_INI_FILE_SOUND)
        return m_state;
    unsigned char header[HEADER_SIZE];
    if (m_size <= HEADER_SIZE)
        return TOVREN_FLASH_INI_FILE_DAMAGED;
    if (!read(header))
        return TOVREN_FLASH_INI_FILE_UNREADABLE;
    if (std::memcmp(header, TOVREN_FLASH_INI_CONST_STRING.data(), MAGIC_SIZE) != 0)
        return TOVREN_FLASH_INI_FILE_DAMAGED;
    return walk(dword_at(header + MAGIC_SIZE), section, found);
}

// Data stand back to back behind the table, up to the end of the file.
FILE_STATE READER::walk(unsigned int entry_count, unsigned int section, ENTRY& found) {
    QWORD end = HEADER_SIZE + static_cast<QWORD>(ENTRY_SIZE) * entry_count;
    if (end > m_size)
        return TOVREN_FLASH_INI_FILE_DAMAGED;
    for (unsigned int i = 0; i < entry_count; ++i) {
        unsigned char bytes[ENTRY_SIZE];
        if (!read(bytes))
            return TOVREN_FLASH_INI_FILE_UNREADABLE;
        const ENTRY entry = {dword_at(bytes), dword_at(bytes + 4)};
        const bool is_in_place = entry.offset == 0 ? entry.size == 0 : entry.offset == end && entry.size != 0;
        end += entry.size;
        if (!is_in_place || end > m_size)
            return TOVREN_FLASH_INI_FILE_DAMAGED;
        if (i == section)
            found = entry;
    }
    return end == m_size ? TOVREN_FLASH_INI_FILE_SOUND : TOVREN_FLASH_INI_FILE_DAMAGED;
}

bool READER::copy(const ENTRY& entry, SECTION& section) {
    section.data.reset(new (std::nothrow) unsigned char[entry.size]);
    m_input.seekg(entry.offset);
    if (!section.data || !m_input.read(reinterpret_cast<char*>(section.data.get()), entry.size))
        return false;
    section.size = entry.size;
    return true;
}

// `result` stays empty unless the file is sound and has the section.
FILE_STATE read_section(const std::string& path, unsigned int section, SECTION& result) {
    READER reader(path);
    ENTRY entry;
    const FILE_STATE state = reader.find(section, entry);
    if (state != TOVREN_FLASH_INI_FILE_SOUND || entry.size == 0)
        return state;
    SECTION copy;
    if (!reader.copy(entry, copy))
        return TOVREN_FLASH_INI_FILE_UNREADABLE;
    result = std::move(copy);
    return TOVREN_FLASH_INI_FILE_SOUND;
}

// Keeps other writers out as long as it lives. The lock's file stays: to remove it would let two writers in, one with
// the old and one with a new file.
class WRITE_LOCK {
public:
    explicit WRITE_LOCK(const std::string& path);
    ~WRITE_LOCK() {
        if (m_descriptor >= 0)
            close(m_descriptor);
    }
    WRITE_LOCK(const WRITE_LOCK&) = delete;
    WRITE_LOCK& operator=(const WRITE_LOCK&) = delete;

    bool is_held() const { return m_is_held; }

private:
    int m_descriptor;
    bool m_is_held = false;
};

WRITE_LOCK::WRITE_LOCK(const std::string& path) : m_descriptor(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666)) {
    if (m_descriptor < 0 && errno == EACCES) // another user's lock
        m_descriptor = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (m_descriptor < 0)
        return;
    int result = 0;
    do
        result = flock(m_descriptor, LOCK_EX);
    while (result != 0 && errno == EINTR);
    m_is_held = result == 0;
}

using CONTENTS = std::array<std::span<const unsigned char>, TOVREN_FLASH_INI_MAX>;

// Writes into an image of exactly the size that was computed for it.
class IMAGE_BUILDER {
public:
    IMAGE_BUILDER(unsigned char* file, unsigned int size) : m_file(file), m_size(size) {}

    void put(std::span<const unsigned char> bytes) {
        TOVREN_CHECK_TEXT(bytes.size() <= m_size - m_index, "file_index <= file_size");
        std::copy(bytes.begin(), bytes.end(), m_file + m_index);
        m_index += static_cast<unsigned int>(bytes.size());
    }
    void put_dword(unsigned int value) {
        for (unsigned int shift = 0; shift < 32; shift += 8) {
            TOVREN_CHECK_TEXT(m_index < m_size, "file_index < file_size");
            m_file[m_index++] = static_cast<unsigned char>(value >> shift);
        }
    }
    void finish() const { TOVREN_CHECK_TEXT(m_index == m_size, "file_index == file_size"); }

private:
    unsigned char* m_file;
    unsigned int m_size;
    unsigned int m_index = 0;
};

void build_image(const CONTENTS& contents, unsigned char* file, unsigned int file_size) {
    IMAGE_BUILDER image(file, file_size);
    const std::string& magic = TOVREN_FLASH_INI_CONST_STRING;
    image.put({reinterpret_cast<const unsigned char*>(magic.data()), magic.size()});
    image.put_dword(TOVREN_FLASH_INI_MAX);
    unsigned int offset = WRITTEN_DATA_START;
    for (const auto& section : contents) {
        const auto size = static_cast<unsigned int>(section.size());
        image.put_dword(size == 0 ? 0 : offset);
        image.put_dword(size);
        offset += size;
    }
    for (const auto& section : contents)
        image.put(section);
    image.finish();
}

// Only a file, or nothing, is replaced. Whoever opens a pipe for writing waits for a reader.
bool may_be_replaced(const std::string& path) {
    FIO_STATUS status;
    return !FIO_FILE_SYSTEM::exists(path.c_str()) || FIO_FILE_SYSTEM::status(path.c_str(), &status);
}

// Both under the lock, so the new file may have the same name beside it each time.
std::string temporary_of(const std::string& path) {
    return path + ".new";
}

bool write_image(const std::string& path, const CONTENTS& contents) {
    QWORD size = WRITTEN_DATA_START;
    for (const auto& section : contents)
        size += section.size();
    if (size > INVALID_DWORD || !may_be_replaced(path)) // offsets are 32 bits wide
        return false;
    const auto file_size = static_cast<unsigned int>(size);
    const std::unique_ptr<unsigned char[]> file(new (std::nothrow) unsigned char[file_size]);
    if (!file)
        return false;
    build_image(contents, file.get(), file_size);

    TOVREN_FILE_WRITER writer(path, temporary_of(path));
    writer.write({file.get(), file_size});
    return writer.commit();
}

bool keep_damaged(const std::string& path) {
    const std::string copy = path + ".damaged";
    if (!may_be_replaced(copy))
        return false;
    std::ifstream input(path, std::ios::in | std::ios::binary);
    TOVREN_FILE_WRITER writer(copy, temporary_of(path));
    std::array<unsigned char, 65536> block;
    do {
        input.read(reinterpret_cast<char*>(block.data()), block.size());
        writer.write({block.data(), static_cast<size_t>(input.gcount())});
    } while (input);
    return input.eof() && writer.commit();
}

// Under the lock: read, change, write. `change` puts the new contents of its section.
template <typename CHANGE>
bool replace_section(const std::string& path, unsigned int section, CHANGE&& change) {
    std::array<SECTION, TOVREN_FLASH_INI_MAX> former;
    CONTENTS contents;
    FILE_STATE state = TOVREN_FLASH_INI_FILE_MISSING;
    for (unsigned int i = 0; i < TOVREN_FLASH_INI_MAX; ++i) {
        state = read_section(path, i, former[i]);
        if (state == TOVREN_FLASH_INI_FILE_UNREADABLE) // it may hold sections
            return false;
        contents[i] = {former[i].data.get(), former[i].size};
    }
    change(contents[section]);
    if (state == TOVREN_FLASH_INI_FILE_DAMAGED && !keep_damaged(path))
        return false;
    return write_image(path, contents);
}

template <typename CHANGE>
bool replace_locked(unsigned int section, CHANGE&& change) {
    const std::string path = tovren_follow_links(file_path());
    if (path.empty())
        return false;
    const WRITE_LOCK lock(path + ".lock");
    return lock.is_held() && replace_section(path, section, change);
}

// ---- values ----

[[noreturn]] void fail_type() {
    TOVREN_FAIL("Unsupport param type");
}

// How many bytes a value takes that is no text.
unsigned int byte_count(TOVREN_PARAM_TYPE type) {
    switch (type) {
    case TOVREN_PARAM_BOOL:
    case TOVREN_PARAM_BYTE:
        return 1;
    case TOVREN_PARAM_WORD:
        return 2;
    case TOVREN_PARAM_DWORD:
        return 4;
    case TOVREN_PARAM_QWORD:
        return 8;
    default:
        fail_type();
    }
}

QWORD load_number(TOVREN_PARAM_TYPE type, const void* value) {
    switch (type) {
    case TOVREN_PARAM_BOOL:
        return *static_cast<const bool*>(value) ? 1 : 0;
    case TOVREN_PARAM_BYTE:
        return *static_cast<const BYTE*>(value);
    case TOVREN_PARAM_WORD:
        return *static_cast<const WORD*>(value);
    case TOVREN_PARAM_DWORD:
        return *static_cast<const DWORD*>(value);
    case TOVREN_PARAM_QWORD:
        return *static_cast<const QWORD*>(value);
    default:
        fail_type();
    }
}

void store_number(TOVREN_PARAM_TYPE type, QWORD number, void* value) {
    switch (type) {
    case TOVREN_PARAM_BOOL:
        *static_cast<bool*>(value) = number != 0;
        break;
    case TOVREN_PARAM_BYTE:
        *static_cast<BYTE*>(value) = static_cast<BYTE>(number);
        break;
    case TOVREN_PARAM_WORD:
        *static_cast<WORD*>(value) = static_cast<WORD>(number);
        break;
    case TOVREN_PARAM_DWORD:
        *static_cast<DWORD*>(value) = static_cast<DWORD>(number);
        break;
    case TOVREN_PARAM_QWORD:
        *static_cast<QWORD*>(value) = number;
        break;
    default:
        fail_type();
    }
}

// These two advance `index`, unless the value does not end before `size`.
bool read_text(const unsigned char* data, unsigned int& index, unsigned int size, std::string& text) {
    const unsigned char* const begin = data + index;
    const unsigned char* const end = std::find(begin, data + size, '\0');
    if (end == data + size)
        return false;
    text.assign(begin, end);
    index = static_cast<unsigned int>(end - data) + 1;
    return true;
}

bool read_number(const unsigned char* data, unsigned int& index, unsigned int size, TOVREN_PARAM_TYPE type,
                 void* value) {
    const unsigned int count = byte_count(type);
    if (size - index < count)
        return false;
    QWORD number = 0;
    for (unsigned int i = 0; i < count; ++i)
        number |= static_cast<QWORD>(data[index + i]) << (8 * i);
    store_number(type, number, value);
    index += count;
    return true;
}

// ---- checked conversion ----

// The first step that a user's number fails at gives its reason; null stands for none.
using REASON = const char*;

REASON read_input(QWORD most, bool hex, const std::string& text, QWORD& value) {
    if (text == "-1") {
        value = most;
        return nullptr;
    }
    const char* const prefix = hex && !text.starts_with("0x") ? "0x" : "";
    bool ok = false;
    value = TOVREN_FLASH_INI::convert_string_to_qword(prefix + text, false, &ok);
    if (!ok)
        return "Invalid QWORD conversion";
    return value > most ? "Conversion overflow compare to type" : nullptr;
}

// Whether any of the pairs behind the count fits.
template <typename FITS>
bool any_pair(const unsigned int* list, QWORD most, FITS fits) {
    for (unsigned int i = 0; i < list[0]; ++i)
        if (fits(list[1 + 2 * static_cast<size_t>(i)] & most, list[2 + 2 * static_cast<size_t>(i)] & most))
            return true;
    return false;
}

REASON check_input(QWORD value, QWORD most, bool power_of_two, const unsigned int* ranges,
                   const unsigned int* forbidden) {
    if (power_of_two && !std::has_single_bit(value))
        return "Input must be power of 2";
    if (ranges && !any_pair(ranges, most, [&](QWORD low, QWORD high) { return low <= value && value <= high; }))
        return "Input is out of range";
    if (forbidden && any_pair(forbidden, most, [&](QWORD mask, QWORD pattern) { return (value & mask) == pattern; }))
        return "Input is invalid (hit)";
    return nullptr;
}

REASON scale_input(QWORD most, bool bit_position, unsigned int multiple, QWORD& value) {
    static constexpr char OVERFLOW_REASON[] = "Calculation overflow compare to type";
    if (bit_position && value != most) {
        if (value >= static_cast<QWORD>(std::bit_width(most)))
            return OVERFLOW_REASON;
        value = 1ULL << value;
        return nullptr;
    }
    TOVREN_CHECK(multiple != 0);
    if (value > most / multiple)
        return OVERFLOW_REASON;
    value *= multiple;
    return nullptr;
}

} // namespace

std::string TOVREN_FLASH_INI::get_flash_ini_path() {
    return file_path();
}

TOVREN_FLASH_INI_FILE_ENUM TOVREN_FLASH_INI::get_flash_ini_file_state() {
    READER reader(file_path());
    ENTRY entry;
    return reader.find(TOVREN_FLASH_INI_SFL, entry);
}

unsigned char* TOVREN_FLASH_INI::read_flash_ini_data(TOVREN_FLASH_INI_ENUM section, unsigned int& size) {
    SECTION result;
    read_section(file_path(), section, result);
    size = result.size;
    return result.data.release();
}

bool TOVREN_FLASH_INI::write_flash_ini_data(TOVREN_FLASH_INI_ENUM section, unsigned char* data, unsigned int size) {
    if (section >= TOVREN_FLASH_INI_MAX)
        return false;
    if (size != 0)
        TOVREN_CHECK(data != NULL);
    else
        TOVREN_CHECK(data == NULL);

    return replace_locked(section, [&](std::span<const unsigned char>& contents) { contents = {data, size}; });
}

bool TOVREN_FLASH_INI::change_flash_ini_data(TOVREN_FLASH_INI_ENUM section,
                                             const std::function<void(std::vector<unsigned char>& bytes)>& change) {
    if (section >= TOVREN_FLASH_INI_MAX)
        return false;
    std::vector<unsigned char> bytes;
    return replace_locked(section, [&](std::span<const unsigned char>& contents) {
        bytes.assign(contents.begin(), contents.end());
        change(bytes);
        contents = bytes;
    });
}

bool TOVREN_FLASH_INI::assign_flash_ini_data(const unsigned char* data, unsigned int& index, unsigned int size,
                                             unsigned int count, const TOVREN_PARAM_TYPE* types, void** values) {
    if (count != 0 && index >= size)
        return false;
    for (unsigned int i = 0; i < count; ++i) {
        const bool is_read = types[i] == TOVREN_PARAM_STRING
                                 ? read_text(data, index, size, *static_cast<std::string*>(values[i]))
                                 : read_number(data, index, size, types[i], values[i]);
        if (!is_read)
            return false;
    }
    return true;
}

void TOVREN_FLASH_INI::calculate_flash_ini_data_size(unsigned int& size, TOVREN_PARAM_TYPE type, void* value) {
    if (type == TOVREN_PARAM_STRING)
        size += static_cast<unsigned int>(static_cast<const std::string*>(value)->size()) + 1;
    else
        size += byte_count(type);
}

void TOVREN_FLASH_INI::fillup_flash_ini_data(unsigned char* buffer, unsigned int& index, TOVREN_PARAM_TYPE type,
                                             void* value) {
    if (type == TOVREN_PARAM_STRING) {
        const std::string& text = *static_cast<const std::string*>(value);
        std::memcpy(buffer + index, text.c_str(), text.size() + 1);
        index += static_cast<unsigned int>(text.size()) + 1;
        return;
    }
    const QWORD number = load_number(type, value);
    for (unsigned int i = 0; i < byte_count(type); ++i)
        buffer[index++] = static_cast<unsigned char>(number >> (8 * i));
}

std::string TOVREN_FLASH_INI::print_flash_ini_data(TOVREN_PARAM_TYPE type, bool hex, void* value) {
    if (type == TOVREN_PARAM_STRING)
        return *static_cast<const std::string*>(value);
    const QWORD number = load_number(type, value);
    if (type == TOVREN_PARAM_BOOL)
        return number != 0 ? "True" : "False";
    return hex ? convert_qword_to_hex_string(number, 2 * byte_count(type), true) : convert_qword_to_string(number);
}

std::string TOVREN_FLASH_INI::convert_qword_to_hex_string(unsigned long long value, unsigned int count, bool prefix) {
    TOVREN_CHECK(count != 0 && count <= 16);
    return (prefix ? "0x" : "") + fmt::sprintf("%016llX", value).substr(16 - count);
}

std::string TOVREN_FLASH_INI::convert_dword_to_hex_string(unsigned int value, unsigned int count, bool prefix) {
    TOVREN_CHECK(count != 0 && count <= 8);
    return (prefix ? "0x" : "") + fmt::sprintf("%08X", value).substr(8 - count);
}

std::string TOVREN_FLASH_INI::convert_qword_to_string(unsigned long long value) {
    return fmt::sprintf("%llu", value);
}

unsigned long long TOVREN_FLASH_INI::convert_string_to_qword(std::string string, bool no_empty, bool* ok) {
    TOVREN_CHECK(!no_empty || !string.empty());
    const bool is_hex = string.starts_with("0x");
    if (is_hex) {
        string.erase(0, 2);
        stl_toupper(string);
    }
    const bool is_number = string.find_first_not_of(is_hex ? "0123456789ABCDEF" : "0123456789") == std::string::npos;
    TOVREN_CHECK_TEXT(is_number || ok != nullptr, "Invalid string to integer conversion");
    if (ok)
        *ok = is_number;
    return is_number ? gen_local_strtoQWORD(string.c_str(), nullptr, is_hex ? 16 : 10) : 0;
}

bool TOVREN_FLASH_INI::convert_string_to_qword(TOVREN_PARAM_TYPE type, unsigned long long& value, bool hex,
                                               std::string text, bool power_of_two, const unsigned int* ranges,
                                               const unsigned int* forbidden, bool bit_position, unsigned int multiple,
                                               std::string& error) {
    value = 0;
    error.clear();
    if (type == TOVREN_PARAM_STRING || type == TOVREN_PARAM_BOOL)
        return true;
    const QWORD most = ~0ULL >> (64 - 8 * byte_count(type));
    QWORD number = 0;
    REASON reason = read_input(most, hex, text, number);
    if (!reason)
        reason = check_input(number, most, power_of_two, ranges, forbidden);
    if (!reason)
        reason = scale_input(most, bit_position, multiple, number);
    if (reason)
        error = reason;
    else
        value = number;
    return !reason;
}
