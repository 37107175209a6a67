// Flash manager: loading the database, mapping the devices of a chain, selection.
//
// Invariants of a loaded manager: records 0 to m_flash_count - 1 are live and never change; every entry of the map is
// INVALID_DWORD or below m_flash_count; each device_name among the built-in records has exactly one default.
#include "tovren_flash_manager.h"

#include "host_cfg.h"
#include "host_text.h"
#include "tovren_check.h"
#include "tovren_db_stream.h"

#include <algorithm>
#include <fmt/printf.h>
#include <iostream>
#include <iterator>
#include <type_traits>
#include <unordered_map>

namespace {

// A payload handed in from outside: nothing bounds its record count.
constexpr unsigned int UNKNOWN_PAYLOAD_SIZE = INVALID_DWORD;

bool equal_ignoring_case(const std::string& left, const std::string& right) {
    return gen_stricmp(left.c_str(), right.c_str()) == 0;
}

struct NAME_HASH {
    size_t operator()(const char* name) const {
        size_t hash = 14695981039346656037U;
        for (; *name != '\0'; ++name) {
            const auto byte = static_cast<unsigned char>(*name);
            const unsigned char letter = byte >= 'A' && byte <= 'Z' ? byte + ('a' - 'A') : byte;
            hash = (hash ^ letter) * 1099511628211U;
        }
        return hash;
    }
};

struct NAME_EQUAL {
    bool operator()(const char* left, const char* right) const { return gen_stricmp(left, right) == 0; }
};

// How many defaults each name has, letter case aside. The names belong to the records.
using DEFAULT_COUNTS = std::unordered_map<const char*, unsigned int, NAME_HASH, NAME_EQUAL>;

} // namespace

TOVREN_FLASH_MANAGER::TOVREN_FLASH_MANAGER(bool, unsigned int device_count, bool skip_load, bool debug)
    : m_debug(debug ? 1 : 0), m_version(0), m_device_count(device_count), m_flash_count(0), m_ini_count(0),
      m_type_count(0), m_payload_size(UNKNOWN_PAYLOAD_SIZE) {
    if (skip_load)
        return;
    initialize_flash_database(FIO_PATH(gen_get_device_db_fullpath() + "/programmer/pgm_flash.pcf"));

    const unsigned int count = m_device_count;
    TOVREN_CHECK(count > 0);
    m_device_to_flash_map.reset(new unsigned int[count]);
    std::fill_n(m_device_to_flash_map.get(), count, INVALID_DWORD);
}

TOVREN_FLASH_MANAGER::~TOVREN_FLASH_MANAGER() {
    m_device_to_flash_map.reset();
    m_flash_database.reset();
}

void TOVREN_FLASH_MANAGER::initialize_flash_database(FIO_PATH flash_file) {
    const DB_PAYLOAD payload = db_read_file(TOVREN_FLASH_DB_FORMAT, flash_file);
    m_payload_size = payload.size;
    parse_database(payload.data.get());
    m_payload_size = UNKNOWN_PAYLOAD_SIZE;
}

unsigned int TOVREN_FLASH_MANAGER::parse_database(unsigned char* data) {
    unsigned int index = 0;
    m_flash_count = read_payload_header(data, index);
    parse_ext_flash_info();
    m_ini_count = m_ext_flash_info.device_name.empty() ? 0 : 1;

    m_flash_database = std::make_unique<TOVREN_SFL_FLASH_INFO[]>(size_t{m_flash_count} + m_ini_count);
    read_enabled_records(data, index);
    db_confirm_database_end(data, index);
    confirm_default_value(m_ini_count);

    if (m_ini_count > 0) {
        m_flash_database[0] = m_ext_flash_info;
        ++m_flash_count;
    }
    m_ini_count = 0;
    if (m_device_to_flash_map) // of the records before
        std::fill_n(m_device_to_flash_map.get(), m_device_count, INVALID_DWORD);
    for (unsigned int i = 0; m_debug != 0 && i < m_flash_count; ++i)
        print_database(i);
    return 0;
}

// Returns the record count.
unsigned int TOVREN_FLASH_MANAGER::read_payload_header(const unsigned char* data, unsigned int& index) {
    m_version = db_get_dword(data, index);
    TOVREN_CHECK_TEXT(m_version == DB_VERSION, "Mismatch version between flash file and reader");
    m_flash_count = db_get_dword(data, index);
    m_type_count = db_get_dword(data, index);
    TOVREN_CHECK(m_flash_count > 0 && m_type_count > 0);
    const unsigned int smallest_record = db_record_size(m_type_list, {});
    TOVREN_CHECK_TEXT(m_payload_size == UNKNOWN_PAYLOAD_SIZE || m_flash_count <= m_payload_size / smallest_record,
                      "m_flash_count <= payload_size / record_size");
    return m_flash_count;
}

// A disabled record leaves its slot to the next one.
void TOVREN_FLASH_MANAGER::read_enabled_records(unsigned char* data, unsigned int& index) {
    unsigned int kept = 0;
    while (kept < m_flash_count) {
        const unsigned int slot = m_ini_count + kept;
        if (get_database(data, index, slot)) {
            ++kept;
        } else {
            m_flash_database[slot] = TOVREN_SFL_FLASH_INFO();
            --m_flash_count;
        }
        db_confirm_record_end(data, index);
    }
}

bool TOVREN_FLASH_MANAGER::get_database(unsigned char* data, unsigned int& index, unsigned int slot) {
    TOVREN_CHECK(m_flash_database != NULL);
    TOVREN_CHECK_TEXT(slot < m_flash_count + m_ini_count, "index < (m_flash_count + m_ini_count)");
    read_record(data, index, m_flash_database[slot]);
    return enable_device(slot);
}

namespace {

// Reads each member by its type.
struct MEMBER_READER {
    const unsigned char* data;
    unsigned int& index;

    void operator()(const char*, std::string& value) {
        db_get_string(TOVREN_FLASH_DB_FORMAT, data, index, true, value);
    }
    void operator()(const char*, bool& value) { value = db_get_bool(data, index); }
    void operator()(const char*, BYTE& value) { value = db_get_byte(data, index); }
    void operator()(const char*, WORD& value) { value = db_get_word(data, index); }
    void operator()(const char*, DWORD& value) { value = db_get_dword_value(TOVREN_FLASH_DB_FORMAT, data, index); }
};

} // namespace

void TOVREN_FLASH_MANAGER::read_record(const unsigned char* data, unsigned int& index, TOVREN_SFL_FLASH_INFO& record) {
    tovren_visit_members(record, MEMBER_READER{data, index});
}

bool TOVREN_FLASH_MANAGER::enable_device(unsigned int index) {
    TOVREN_CHECK(m_flash_database != NULL);
    TOVREN_CHECK(index < (m_flash_count + m_ini_count));
    const std::string& ini = m_flash_database[index].ini;
    TOVREN_CHECK(!ini.empty());
    return equal_ignoring_case(ini, "NONE") || cfg_is_on("PGM_ALLOW_" + ini, false);
}

void TOVREN_FLASH_MANAGER::confirm_default_value(unsigned int first) {
    DEFAULT_COUNTS defaults;
    defaults.reserve(m_flash_count);
    for (unsigned int i = first; i < first + m_flash_count; ++i)
        defaults[m_flash_database[i].device_name.c_str()] += m_flash_database[i].default_dev ? 1 : 0;
    if (std::all_of(defaults.begin(), defaults.end(), [](const auto& name) { return name.second == 1; }))
        return;

    // Something is wrong: what stands first in the table is reported.
    for (unsigned int i = first; i < first + m_flash_count; ++i) {
        const unsigned int count = defaults[m_flash_database[i].device_name.c_str()];
        const bool one_default = count != 0;
        TOVREN_CHECK_TEXT(count <= 1, "!one_default");
        TOVREN_CHECK(one_default);
    }
}

bool TOVREN_FLASH_MANAGER::is_matching(const TOVREN_SFL_FLASH_INFO& record, bool by_silicon_id,
                                       const unsigned char* id_bytes) const {
    if (record.silicon_id != by_silicon_id || id_bytes[record.memory_id_index] != record.memory_id)
        return false;
    if (by_silicon_id)
        return true;
    return (record.memory_type_index == 0xFF || id_bytes[record.memory_type_index] == record.memory_type) &&
           id_bytes[record.mfc_id_index] == record.mfc_id;
}

bool TOVREN_FLASH_MANAGER::flash_id_database_mapping(bool by_silicon_id, unsigned int device_index,
                                                     unsigned char* id_bytes) {
    TOVREN_CHECK(m_device_to_flash_map != NULL);
    TOVREN_CHECK(device_index < m_device_count);
    TOVREN_CHECK(m_flash_database != NULL && m_flash_count > 0);

    unsigned int& entry = m_device_to_flash_map[device_index];
    entry = INVALID_DWORD;
    unsigned int i = 0;
    while (i < m_flash_count && !is_matching(m_flash_database[i], by_silicon_id, id_bytes))
        ++i;
    if (i == m_flash_count)
        return false;

    msg_vdebug_impl(MSG_D_LEVEL_2,
                    by_silicon_id ? "Found Device %d silicon id at index %d" : "Found Device %d device id at index %d",
                    static_cast<int>(device_index + 1), static_cast<int>(i));
    entry = i;
    TOVREN_CHECK_TEXT(entry < m_flash_count, "m_device_to_flash_map[device_index] >= 0 && "
                                             "m_device_to_flash_map[device_index] < m_flash_count");
    return true;
}

unsigned int TOVREN_FLASH_MANAGER::get_flash_mapping_index(unsigned int device, bool allow_invalid) {
    TOVREN_CHECK_TEXT(m_device_to_flash_map != NULL && device < m_device_count && m_flash_database != NULL &&
                          m_flash_count > 0,
                      "m_device_to_flash_map != NULL && device < m_device_count && m_flash_database != NULL && "
                      "m_flash_count > 0");
    const unsigned int index = m_device_to_flash_map[device];
    TOVREN_CHECK_TEXT(allow_invalid || index != INVALID_DWORD, "index != INVALID_DWORD");
    return index;
}

void TOVREN_FLASH_MANAGER::set_flash_mapping_index(unsigned int device, unsigned int index) {
    TOVREN_CHECK_TEXT(m_device_to_flash_map != NULL && device < m_device_count && m_flash_database != NULL &&
                          m_flash_count > 0 && index < m_flash_count,
                      "m_device_to_flash_map != NULL && device < m_device_count && m_flash_database != NULL && "
                      "m_flash_count > 0 && index < m_flash_count");
    m_device_to_flash_map[device] = index;
}

TOVREN_SFL_FLASH_INFO* TOVREN_FLASH_MANAGER::get_default_flash(std::string device_name) {
    for (unsigned int i = 0; i < m_flash_count; ++i)
        if (m_flash_database[i].default_dev && equal_ignoring_case(m_flash_database[i].device_name, device_name))
            return &m_flash_database[i];
    return nullptr;
}

unsigned int TOVREN_FLASH_MANAGER::sfl_get_chain_longest_program_utime() {
    TOVREN_CHECK(m_device_count > 0);
    unsigned int longest = 0;
    bool found = false;
    for (unsigned int device = 0; device < m_device_count; ++device) {
        const unsigned int index = get_flash_mapping_index(device, true);
        if (index == INVALID_DWORD)
            continue;
        found = true;
        longest = std::max(longest, m_flash_database[index].program_utime);
    }
    TOVREN_CHECK(found);
    return longest;
}

const TOVREN_SFL_FLASH_INFO* TOVREN_FLASH_MANAGER::get_flash(unsigned int index) const {
    return index < m_flash_count ? &m_flash_database[index] : nullptr;
}

std::vector<unsigned int> TOVREN_FLASH_MANAGER::get_matching_flashes(bool by_silicon_id, const unsigned char* id_bytes,
                                                                     unsigned int id_size) const {
    unsigned char answer[256] = {};
    std::copy_n(id_bytes, std::min<size_t>(id_size, sizeof answer), answer);
    const auto is_inside = [&](const TOVREN_SFL_FLASH_INFO& record) {
        return record.memory_id_index < id_size &&
               (by_silicon_id || ((record.memory_type_index == 0xFF || record.memory_type_index < id_size) &&
                                  record.mfc_id_index < id_size));
    };

    std::vector<unsigned int> matches;
    for (unsigned int i = 0; i < m_flash_count; ++i)
        if (is_inside(m_flash_database[i]) && is_matching(m_flash_database[i], by_silicon_id, answer))
            matches.push_back(i);
    return matches;
}

std::vector<TOVREN_SFL_FLASH_INFO> TOVREN_FLASH_MANAGER::get_all_flashes(const FIO_PATH& flash_file) {
    const DB_PAYLOAD payload = db_read_file(TOVREN_FLASH_DB_FORMAT, flash_file);
    TOVREN_FLASH_MANAGER reader(false, 0, true, false);
    reader.m_payload_size = payload.size;

    unsigned int index = 0;
    std::vector<TOVREN_SFL_FLASH_INFO> records(reader.read_payload_header(payload.data.get(), index));
    for (TOVREN_SFL_FLASH_INFO& record : records) {
        reader.read_record(payload.data.get(), index, record);
        TOVREN_CHECK_TEXT(!record.ini.empty(), "!ini.empty()");
        db_confirm_record_end(payload.data.get(), index);
    }
    db_confirm_database_end(payload.data.get(), index);
    return records;
}

void TOVREN_FLASH_MANAGER::print_database(unsigned int index) {
    TOVREN_CHECK(m_flash_database != NULL && index < m_flash_count);
    std::string line = fmt::format("Flash Manager Debug {}\n\t", index);
    const char* separator = "";
    tovren_visit_members(m_flash_database[index], [&](const char*, const auto& value) {
        line += separator;
        if constexpr (std::is_same_v<std::decay_t<decltype(value)>, std::string>)
            line += value;
        else
            fmt::format_to(std::back_inserter(line), "{}", static_cast<unsigned int>(value));
        separator = " ";
    });
    line += '\n';
    std::cout << line;
}

bool TOVREN_FLASH_MANAGER::is_power_of_two(unsigned int value) {
    return value != 0 && (value & (value - 1)) == 0;
}

std::string TOVREN_FLASH_MANAGER::to_string(unsigned int value, bool byte_form) {
    if (value == 0xFFFFFFFF || (byte_form && value == 0xFF))
        return "-1";
    return fmt::sprintf("%d", static_cast<int>(value));
}

// ---- the typed stream ----

unsigned int TOVREN_FLASH_MANAGER::get_dword(const unsigned char* data, unsigned int& index) {
    return db_get_dword(data, index);
}

void TOVREN_FLASH_MANAGER::get_string_data(const unsigned char* data, unsigned int& index, bool allow_empty,
                                           std::string* string) {
    db_get_string(TOVREN_FLASH_DB_FORMAT, data, index, allow_empty, *string);
}

void TOVREN_FLASH_MANAGER::get_bool_data(const unsigned char* data, unsigned int& index, bool* value) {
    *value = db_get_bool(data, index);
}

void TOVREN_FLASH_MANAGER::get_byte_data(const unsigned char* data, unsigned int& index, unsigned char* value) {
    *value = db_get_byte(data, index);
}

void TOVREN_FLASH_MANAGER::get_word_data(const unsigned char* data, unsigned int& index, unsigned short* value) {
    *value = db_get_word(data, index);
}

void TOVREN_FLASH_MANAGER::get_dword_data(const unsigned char* data, unsigned int& index, unsigned int* value) {
    *value = db_get_dword_value(TOVREN_FLASH_DB_FORMAT, data, index);
}

void TOVREN_FLASH_MANAGER::confirm_data_type_end(const unsigned char* data, unsigned int& index) {
    db_confirm_record_end(data, index);
}

void TOVREN_FLASH_MANAGER::confirm_database_end(const unsigned char* data, unsigned int& index) {
    db_confirm_database_end(data, index);
}

unsigned char* TOVREN_FLASH_MANAGER::compress_data(const unsigned char* data, unsigned int offset, unsigned int count,
                                                   unsigned int& new_memory_count) {
    return db_compress(data, offset, count, new_memory_count).release();
}

unsigned char* TOVREN_FLASH_MANAGER::decompress_data(const unsigned char* data, unsigned int decompressed_count,
                                                     unsigned int original_count) {
    return db_decompress(data, decompressed_count, original_count).release();
}

unsigned int TOVREN_FLASH_MANAGER::calculate_crc16(const unsigned char* data, unsigned int length) {
    return db_calculate_crc16(data, length);
}
