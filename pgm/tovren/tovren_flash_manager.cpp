// Flash manager: loading the database, mapping the devices of a chain, selection.
//
// Invariants of a loaded manager: records 0 to m_flash_count - 1 are live and never change; every entry of the map is
// INVALID_DWORD or below m_flash_count; each device_name among the built-in records has exactly one default.
#include "tovren_flash_manager.h"

#include "host_cfg.h"
#include "host_text.h"
#include "tovren_check.h"
#include "tovren_db_record.h"
#include "tovren_dev_info_manager_auto_export.h"
#include "tovren_index_table.h"

#include <algorithm>
#include <cstring>
#include <fmt/printf.h>
#include <iostream>
#include <iterator>
#include <string_view>
#include <type_traits>

namespace {

bool equal_ignoring_case(const std::string& left, const std::string& right) {
    return gen_stricmp(left.c_str(), right.c_str()) == 0;
}

// Characters from `text` on, upper and lower case made alike: a letter's case is the bit 0x20.
template <size_t COUNT>
QWORD fold_case(const char* text) {
    QWORD bytes = 0;
    std::memcpy(&bytes, text, COUNT);
    return bytes | 0x2020202020202020U;
}

// Equal for names that differ in letter case only, up to their first zero byte. Eight characters a step; the last steps
// may overlap.
DWORD hash_ignoring_case(const std::string& name) {
    constexpr QWORD SPREAD = 0x9E3779B97F4A7C15U;
    const char* text = name.c_str();
    const size_t length = std::strlen(text);
    const char* const end = text + length;
    QWORD hash = length;
    if (length >= 8) {
        for (; end - text > 8; text += 8)
            hash = (hash ^ fold_case<8>(text)) * SPREAD;
        hash = (hash ^ fold_case<8>(end - 8)) * SPREAD;
    } else if (length >= 4) {
        hash = (hash ^ fold_case<4>(text) ^ fold_case<4>(end - 4) << 32) * SPREAD;
    } else {
        for (; text != end; ++text)
            hash = (hash ^ fold_case<1>(text)) * SPREAD;
    }
    return static_cast<DWORD>(hash >> 32);
}

bool is_switched_on(const std::string& ini) {
    TOVREN_CHECK(!ini.empty());
    return equal_ignoring_case(ini, "NONE") || cfg_is_on("PGM_ALLOW_" + ini, false);
}

// Hardly any flash has a key of its own, and "NONE" is hardly ever written otherwise.
inline bool is_enabled(const std::string& ini) {
    return ini == std::string_view("NONE") || is_switched_on(ini);
}

// Names that are alike are nearly always the same to the letter.
bool is_same_name(const std::string& left, const std::string& right) {
    return left == right || equal_ignoring_case(left, right);
}

// The rule that each device name, letter case aside, has exactly one default record.
class ONE_DEFAULT_RULE {
public:
    // For at most `count` records, `records` on.
    ONE_DEFAULT_RULE(const TOVREN_SFL_FLASH_INFO* records, size_t count)
        : m_records(records), m_names(count), m_default_counts(count, 1) {}

    // Records are added in order, from 0 on.
    void add(DWORD i) {
        const TOVREN_SFL_FLASH_INFO& record = m_records[i];
        const DWORD first = m_names.find_or_add(hash_ignoring_case(record.device_name), i, [&](DWORD other) {
            return is_same_name(m_records[other].device_name, record.device_name);
        });
        if (first == i)
            m_default_counts[i] = 0;
        m_default_counts[first] += record.default_dev ? 1 : 0;
    }

    // Reports the first name that breaks the rule.
    void confirm() const {
        for (const DWORD count : m_default_counts) {
            const bool one_default = count != 0;
            TOVREN_CHECK_TEXT(count <= 1, "!one_default");
            TOVREN_CHECK(one_default);
        }
    }

private:
    const TOVREN_SFL_FLASH_INFO* m_records;
    TOVREN_INDEX_TABLE m_names; // the first record of each name
    // How many defaults the name has, where a record is its name's first; 1 elsewhere, which breaks no rule.
    std::vector<DWORD> m_default_counts;
};

} // namespace

// Finds a flash without looking at every record. Nearly every flash answers three bytes in the usual places:
// manufacturer, type, memory. Of the records that compare those, only the first of each three bytes can ever be found:
// these stand in a hash table. All other records (silicon IDs, other places, no type byte) are few and are gone through
// one by one.
struct TOVREN_FLASH_MANAGER::ID_INDEX {
    ID_INDEX(const TOVREN_SFL_FLASH_INFO* records, DWORD count);

    TOVREN_INDEX_TABLE usual;
    bool has_usual = false;
    std::vector<DWORD> unusual; // positions, in order
};

TOVREN_FLASH_MANAGER::TOVREN_FLASH_MANAGER(bool, unsigned int device_count, bool skip_load, bool debug)
    : m_debug(debug ? 1 : 0), m_version(0), m_device_count(device_count), m_flash_count(0), m_ini_count(0),
      m_type_count(0), m_payload_size(DB_UNKNOWN_SIZE) {
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
    m_payload_size = DB_UNKNOWN_SIZE;
}

unsigned int TOVREN_FLASH_MANAGER::parse_database(unsigned char* data) {
    unsigned int index = 0;
    m_flash_count = read_payload_header(data, index);
    parse_ext_flash_info();
    m_ini_count = m_ext_flash_info.device_name.empty() ? 0 : 1;

    m_id_index.reset();
    confirm_records(data, index);
    // The record's own initializers set every member.
    m_flash_database = std::make_unique_for_overwrite<TOVREN_SFL_FLASH_INFO[]>(size_t{m_flash_count} + m_ini_count);
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
    return m_flash_count;
}

// Reads the records of a doubtful payload once before there is memory for them.
void TOVREN_FLASH_MANAGER::confirm_records(const unsigned char* data, unsigned int index) {
    if (!db_is_doubtful_count(m_flash_count, db_record_size(m_type_list, {}), m_payload_size))
        return;
    TOVREN_SFL_FLASH_INFO record;
    for (unsigned int i = 0; i < m_flash_count; ++i) {
        read_record(data, index, record);
        TOVREN_CHECK_TEXT(!record.ini.empty(), "!ini.empty()");
        db_confirm_record_end(data, index);
    }
}

// A disabled record leaves its slot to the next one.
void TOVREN_FLASH_MANAGER::read_enabled_records(unsigned char* data, unsigned int& index) {
    TOVREN_SFL_FLASH_INFO* record = m_flash_database.get() + m_ini_count;
    unsigned int kept = 0;
    for (unsigned int left = m_flash_count; left > 0; --left) {
        read_record(data, index, *record);
        if (is_enabled(record->ini)) {
            ++record;
            ++kept;
        } else {
            *record = TOVREN_SFL_FLASH_INFO();
        }
        db_confirm_record_end(data, index);
    }
    m_flash_count = kept;
}

bool TOVREN_FLASH_MANAGER::get_database(unsigned char* data, unsigned int& index, unsigned int slot) {
    TOVREN_CHECK(m_flash_database != NULL);
    TOVREN_CHECK_TEXT(slot < m_flash_count + m_ini_count, "index < (m_flash_count + m_ini_count)");
    m_id_index.reset();
    read_record(data, index, m_flash_database[slot]);
    return enable_device(slot);
}

void TOVREN_FLASH_MANAGER::read_record(const unsigned char* data, unsigned int& index, TOVREN_SFL_FLASH_INFO& record) {
    const bool has_slack = m_payload_size != DB_UNKNOWN_SIZE; // only what initialize_flash_database() unpacked
    db_read_record(TOVREN_FLASH_DB_FORMAT, has_slack, data, index, record);
}

bool TOVREN_FLASH_MANAGER::enable_device(unsigned int index) {
    TOVREN_CHECK(m_flash_database != NULL);
    TOVREN_CHECK(index < (m_flash_count + m_ini_count));
    return is_enabled(m_flash_database[index].ini);
}

void TOVREN_FLASH_MANAGER::confirm_default_value(unsigned int first) {
    if (m_flash_count == 0)
        return;
    ONE_DEFAULT_RULE rule(&m_flash_database[first], m_flash_count);
    for (DWORD i = 0; i < m_flash_count; ++i)
        rule.add(i);
    rule.confirm();
}

// ---- identification ----

namespace {

// Where nearly every flash has its bytes in its answer.
constexpr BYTE MFC_PLACE = 0;
constexpr BYTE TYPE_PLACE = 1;
constexpr BYTE MEMORY_PLACE = 2;

bool is_usual(const TOVREN_SFL_FLASH_INFO& record) {
    return !record.silicon_id && record.memory_id_index == MEMORY_PLACE && record.memory_type_index == TYPE_PLACE &&
           record.mfc_id_index == MFC_PLACE;
}

DWORD usual_key(BYTE mfc_id, BYTE memory_type, BYTE memory_id) {
    return static_cast<DWORD>(mfc_id) | static_cast<DWORD>(memory_type) << 8 | static_cast<DWORD>(memory_id) << 16;
}

// The keys are whole: equal ones are the same three bytes.
bool is_same_key(DWORD) {
    return true;
}

} // namespace

TOVREN_FLASH_MANAGER::ID_INDEX::ID_INDEX(const TOVREN_SFL_FLASH_INFO* records, DWORD count) : usual(count) {
    for (DWORD i = 0; i < count; ++i) {
        const TOVREN_SFL_FLASH_INFO& record = records[i];
        if (is_usual(record))
            usual.find_or_add(usual_key(record.mfc_id, record.memory_type, record.memory_id), i, is_same_key);
        else
            unusual.push_back(i);
    }
    has_usual = unusual.size() < count;
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

// The first record that matches, INVALID_DWORD for none. The index is made when it is first needed.
DWORD TOVREN_FLASH_MANAGER::find_flash(bool by_silicon_id, const unsigned char* id_bytes) {
    if (!m_id_index)
        m_id_index = std::make_unique<ID_INDEX>(m_flash_database.get(), m_flash_count);
    DWORD found = INVALID_DWORD;
    if (!by_silicon_id && m_id_index->has_usual)
        found = m_id_index->usual.find(usual_key(id_bytes[MFC_PLACE], id_bytes[TYPE_PLACE], id_bytes[MEMORY_PLACE]),
                                       is_same_key);
    for (const DWORD i : m_id_index->unusual) {
        if (i > found)
            break;
        if (is_matching(m_flash_database[i], by_silicon_id, id_bytes))
            return i;
    }
    return found;
}

bool TOVREN_FLASH_MANAGER::flash_id_database_mapping(bool by_silicon_id, unsigned int device_index,
                                                     unsigned char* id_bytes) {
    TOVREN_CHECK(m_device_to_flash_map != NULL);
    TOVREN_CHECK(device_index < m_device_count);
    TOVREN_CHECK(m_flash_database != NULL && m_flash_count > 0);

    unsigned int& entry = m_device_to_flash_map[device_index];
    entry = INVALID_DWORD;
    const DWORD i = find_flash(by_silicon_id, id_bytes);
    if (i == INVALID_DWORD)
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
    m_id_index.reset(); // the caller may change the record
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
    const unsigned int count = reader.read_payload_header(payload.data.get(), index);
    reader.confirm_records(payload.data.get(), index);
    std::vector<TOVREN_SFL_FLASH_INFO> records(count);
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
