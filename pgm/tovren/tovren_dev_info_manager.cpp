// Device information manager: loading the database, lookup, searches.
//
// Invariants of a loaded manager: at least TOTAL_DATABASE_DEVICE records are allocated (zeroed where the file held
// fewer), so a search never leaves the array; records and tables never change; only m_index moves. An entry of a table
// comes from the file as it is and is compared with TOTAL_DATABASE_DEVICE when a record is fetched.
#include "tovren_dev_info_manager.h"

#include "host_text.h"
#include "tovren_check.h"
#include "tovren_db_record.h"

#include <algorithm>
#include <cstring>

namespace {

unsigned long long length_bit(const char* text) {
    return 1ULL << std::min<size_t>(std::strlen(text), 63);
}

std::unique_ptr<unsigned int[]> make_empty_table(unsigned int count) {
    std::unique_ptr<unsigned int[]> table(new unsigned int[count]);
    std::fill_n(table.get(), count, INVALID_DWORD);
    return table;
}

} // namespace

TOVREN_DEV_INFO_MANAGER::TOVREN_DEV_INFO_MANAGER(bool skip_load, unsigned int debug_mode)
    : m_version(0), m_device_count(0), m_type_count(0), m_index(0), m_csv_memory_size(0), m_debug(debug_mode),
      m_family_table(make_empty_table(DEV_FAMILY_MAX)), m_device_table(make_empty_table(DEV_DEVICE_MAX)),
      m_part_table(make_empty_table(DEV_PART_MAX)), m_pcf_lengths(0), m_payload_size(DB_UNKNOWN_SIZE) {
    if (!skip_load)
        initialize_device_database(FIO_PATH(gen_get_device_db_fullpath() + "/programmer/pgm_dev_info.pcf"));
}

TOVREN_DEV_INFO_MANAGER::~TOVREN_DEV_INFO_MANAGER() = default;

// ---- loading ----

void TOVREN_DEV_INFO_MANAGER::initialize_device_database(FIO_PATH device_file) {
    const DB_PAYLOAD payload = db_read_file(TOVREN_DEVICE_DB_FORMAT, device_file);
    const unsigned int memory_size = payload.size;
    TOVREN_CHECK(memory_size > get_table_size());
    m_csv_memory_size = memory_size - get_table_size();
    m_payload_size = memory_size;
    parse_database(payload.data.get(), false);
    m_payload_size = DB_UNKNOWN_SIZE;
}

void TOVREN_DEV_INFO_MANAGER::parse_database(unsigned char* data, bool records_only) {
    unsigned int index = 0;
    read_payload_header(data, index);
    TOVREN_CHECK(m_device_database == NULL);
    confirm_records(data, index);
    m_device_database = std::make_unique<TOVREN_DEVICE_INFO[]>(std::max(m_device_count, TOTAL_DATABASE_DEVICE));
    for (unsigned int record = 0; record < m_device_count; ++record) {
        get_database(data, index, record);
        db_confirm_record_end(data, index);
    }
    db_confirm_database_end(data, index);
    if (records_only)
        return;

    TOVREN_CHECK(index == m_csv_memory_size);
    get_table(data, index);
    print_debug_report();
}

void TOVREN_DEV_INFO_MANAGER::read_payload_header(const unsigned char* data, unsigned int& index) {
    m_version = db_get_dword(data, index);
    TOVREN_CHECK_TEXT(m_version == DB_VERSION, "Mismatch version between device file and reader");
    m_device_count = db_get_dword(data, index);
    m_type_count = db_get_dword(data, index);
    TOVREN_CHECK(m_device_count > 0 && m_type_count > 0);
}

// Reads the records of a doubtful payload once before there is memory for them.
void TOVREN_DEV_INFO_MANAGER::confirm_records(const unsigned char* data, unsigned int index) {
    if (!db_is_doubtful_count(m_device_count, db_record_size(m_db_type_list, {}), m_payload_size))
        return;
    TOVREN_DEVICE_INFO record;
    for (unsigned int i = 0; i < m_device_count; ++i) {
        db_read_record(TOVREN_DEVICE_DB_FORMAT, true, data, index, record);
        db_confirm_record_end(data, index);
    }
}

void TOVREN_DEV_INFO_MANAGER::get_database(unsigned char* data, unsigned int& index, unsigned int record) {
    TOVREN_CHECK_TEXT(m_device_database != NULL && record < m_device_count, "m_device_database != NULL");
    TOVREN_DEVICE_INFO& info = m_device_database[record];
    const bool has_slack = m_payload_size != DB_UNKNOWN_SIZE; // only what initialize_device_database() unpacked
    db_read_record(TOVREN_DEVICE_DB_FORMAT, has_slack, data, index, info);
    if (record >= TOTAL_DATABASE_DEVICE)
        return;
    m_family_ids.set(record, info.family);
    m_device_ids.set(record, info.device);
    m_part_ids.set(record, info.part);
    m_pcf_lengths |= length_bit(info.pcf.c_str());
}

void TOVREN_DEV_INFO_MANAGER::get_table(unsigned char* data, unsigned int& index) {
    TOVREN_CHECK_TEXT(m_device_database != NULL && m_family_table != NULL && m_device_table != NULL &&
                          m_part_table != NULL,
                      "m_device_database != NULL && m_family_table != NULL && m_device_table != NULL && "
                      "m_part_table != NULL");
    TOVREN_CHECK(data[index++] == TOVREN_MANAGER_FAMILY_TBL);
    TOVREN_CHECK(get_dword(data, index) == DWORD(DEV_FAMILY_MAX));
    db_get_dwords(data, index, {m_family_table.get(), DEV_FAMILY_MAX});
    TOVREN_CHECK(data[index++] == TOVREN_MANAGER_DEVICE_TBL);
    TOVREN_CHECK(get_dword(data, index) == DWORD(DEV_DEVICE_MAX));
    db_get_dwords(data, index, {m_device_table.get(), DEV_DEVICE_MAX});
    TOVREN_CHECK(data[index++] == TOVREN_MANAGER_PART_TBL);
    TOVREN_CHECK(get_dword(data, index) == DWORD(DEV_PART_MAX));
    db_get_dwords(data, index, {m_part_table.get(), DEV_PART_MAX});
}

unsigned int TOVREN_DEV_INFO_MANAGER::get_table_size() {
    constexpr unsigned int HEAD_SIZE = 1 + 4; // tag, count
    return 3 * HEAD_SIZE + 4 * (DWORD(DEV_FAMILY_MAX) + DWORD(DEV_DEVICE_MAX) + DWORD(DEV_PART_MAX));
}

void TOVREN_DEV_INFO_MANAGER::print_debug_report() {
    const auto label = [](auto value, auto generic) {
        return value == generic ? std::string("Generic") : dstr_get_user_string(value);
    };
    if (m_debug == 1)
        for (unsigned int i = 0; i < m_device_count; ++i)
            print_database(i, "");
    if (m_debug == 2)
        for (unsigned int i = 1; i < DEV_FAMILY_MAX; ++i)
            print_database(m_family_table[i], label(DEV_FAMILY_ENUM(i), DEV_FAMILY_GENERIC));
    if (m_debug == 3)
        for (unsigned int i = 1; i < DEV_DEVICE_MAX; ++i)
            print_database(m_device_table[i], label(DEV_DEVICE_ENUM(i), DEV_DEVICE_GENERIC));
    if (m_debug == 4)
        for (unsigned int i = 0; i < DEV_PART_MAX; ++i)
            if (i != DEV_PART_INVALID)
                print_database(m_part_table[i], label(DEV_PART_ENUM(i), DEV_PART_GENERIC));
}

// ---- lookup ----

TOVREN_DEVICE_INFO* TOVREN_DEV_INFO_MANAGER::get_db_by_family(DEV_FAMILY_ENUM family) {
    TOVREN_CHECK(family < DEV_FAMILY_MAX);
    return copy_record_at(m_family_table[family]);
}

TOVREN_DEVICE_INFO* TOVREN_DEV_INFO_MANAGER::get_db_by_device(DEV_DEVICE_ENUM device) {
    TOVREN_CHECK(device < DEV_DEVICE_MAX);
    return copy_record_at(m_device_table[device]);
}

TOVREN_DEVICE_INFO* TOVREN_DEV_INFO_MANAGER::get_db_by_part(DEV_PART_ENUM part) {
    TOVREN_CHECK(part < DEV_PART_MAX);
    return copy_record_at(m_part_table[part]);
}

TOVREN_DEVICE_INFO* TOVREN_DEV_INFO_MANAGER::copy_record_at(unsigned int position) {
    m_index = position;
    if (m_index == INVALID_DWORD)
        return nullptr;
    TOVREN_DEVICE_INFO* info = copy_database();
    TOVREN_CHECK(info != NULL);
    return info;
}

// ---- searches ----

void TOVREN_DEV_INFO_MANAGER::RECORD_IDS::set(unsigned int record, unsigned int id) {
    ids[record] = id;
    hashes |= 1ULL << id % 64;
    largest = std::max(largest, id);
}

// The first record of `value`, which is below `bound`; every record up to it must be so.
bool TOVREN_DEV_INFO_MANAGER::search_ids(const RECORD_IDS& records, unsigned int value, unsigned int bound,
                                         const char* bound_text) {
    if (records.largest < bound && !records.may_have(value))
        return false;
    const auto place = std::find(records.ids.begin(), records.ids.end(), value);
    const bool is_bounded = std::all_of(records.ids.begin(), place, [bound](unsigned int id) { return id < bound; });
    TOVREN_CHECK_TEXT(is_bounded, bound_text);
    if (place == records.ids.end())
        return false;
    m_index = static_cast<unsigned int>(place - records.ids.begin());
    return true;
}

bool TOVREN_DEV_INFO_MANAGER::search_family(DEV_FAMILY_ENUM family, bool allow_invalid) {
    m_index = INVALID_DWORD;
    TOVREN_CHECK_TEXT(m_device_database != NULL && family < DEV_FAMILY_MAX &&
                          (allow_invalid || family != DEV_FAMILY_INVALID),
                      "m_device_database != NULL && family < DEV_FAMILY_MAX && "
                      "(allow_invalid || family != DEV_FAMILY_INVALID)");
    return search_ids(m_family_ids, family, DEV_FAMILY_MAX, "id < DEV_FAMILY_MAX");
}

bool TOVREN_DEV_INFO_MANAGER::search_device(DEV_DEVICE_ENUM device, bool allow_invalid) {
    m_index = INVALID_DWORD;
    TOVREN_CHECK_TEXT(m_device_database != NULL && device < DEV_DEVICE_MAX &&
                          (allow_invalid || device != DEV_DEVICE_INVALID),
                      "m_device_database != NULL && device < DEV_DEVICE_MAX && "
                      "(allow_invalid || device != DEV_DEVICE_INVALID)");
    return search_ids(m_device_ids, device, DEV_DEVICE_MAX, "id < DEV_DEVICE_MAX");
}

bool TOVREN_DEV_INFO_MANAGER::search_part(DEV_PART_ENUM part, bool allow_invalid) {
    m_index = INVALID_DWORD;
    TOVREN_CHECK_TEXT(m_device_database != NULL && part < DEV_PART_MAX && (allow_invalid || part != DEV_PART_INVALID),
                      "m_device_database != NULL && part < DEV_PART_MAX && "
                      "(allow_invalid || part != DEV_PART_INVALID)");
    return search_ids(m_part_ids, part, DEV_PART_MAX, "id < DEV_PART_MAX");
}

bool TOVREN_DEV_INFO_MANAGER::search_pcf_for_device(DEV_DEVICE_ENUM device) {
    m_index = INVALID_DWORD;
    TOVREN_CHECK(m_device_database != NULL && device < DEV_DEVICE_MAX);
    return search_pcf(m_pcf_of_device, device);
}

bool TOVREN_DEV_INFO_MANAGER::search_pcf_for_part(DEV_PART_ENUM part) {
    m_index = INVALID_DWORD;
    TOVREN_CHECK(m_device_database != NULL && part < DEV_PART_MAX);
    return part != DEV_PART_INVALID && search_pcf(m_pcf_of_part, part);
}

bool TOVREN_DEV_INFO_MANAGER::search_pcf(const PCF_INDEX& first_entries, unsigned int value) {
    if (value >= first_entries.size() || !first_entries[value] || first_entries[value]->pcf.empty())
        return false;
    const char* const pcf = first_entries[value]->pcf.c_str();
    if ((m_pcf_lengths & length_bit(pcf)) == 0)
        return false;
    for (unsigned int i = 0; i < TOTAL_DATABASE_DEVICE; ++i) {
        if (gen_stricmp(m_device_database[i].pcf.c_str(), pcf) != 0)
            continue;
        m_index = i;
        return true;
    }
    return false;
}

// ---- reading what is loaded ----

const TOVREN_DEVICE_INFO* TOVREN_DEV_INFO_MANAGER::get_record(unsigned int index) const {
    return index < m_device_count && m_device_database ? &m_device_database[index] : nullptr;
}

unsigned int TOVREN_DEV_INFO_MANAGER::get_position_of(DEV_FAMILY_ENUM family) const {
    return family < DEV_FAMILY_MAX ? m_family_table[family] : INVALID_DWORD;
}

unsigned int TOVREN_DEV_INFO_MANAGER::get_position_of(DEV_DEVICE_ENUM device) const {
    return device < DEV_DEVICE_MAX ? m_device_table[device] : INVALID_DWORD;
}

unsigned int TOVREN_DEV_INFO_MANAGER::get_position_of(DEV_PART_ENUM part) const {
    return part < DEV_PART_MAX ? m_part_table[part] : INVALID_DWORD;
}

// ---- the typed stream ----

unsigned int TOVREN_DEV_INFO_MANAGER::get_dword(const unsigned char* data, unsigned int& index) {
    return db_get_dword(data, index);
}

void TOVREN_DEV_INFO_MANAGER::get_string_data(const unsigned char* data, unsigned int& index, bool allow_empty,
                                              std::string* string) {
    db_get_string(TOVREN_DEVICE_DB_FORMAT, data, index, allow_empty, *string);
}

void TOVREN_DEV_INFO_MANAGER::get_bool_data(const unsigned char* data, unsigned int& index, bool* value) {
    *value = db_get_bool(data, index);
}

void TOVREN_DEV_INFO_MANAGER::get_byte_data(const unsigned char* data, unsigned int& index, unsigned char* value) {
    *value = db_get_byte(data, index);
}

void TOVREN_DEV_INFO_MANAGER::get_word_data(const unsigned char* data, unsigned int& index, unsigned short* value) {
    *value = db_get_word(data, index);
}

void TOVREN_DEV_INFO_MANAGER::get_dword_data(const unsigned char* data, unsigned int& index, unsigned int* value) {
    *value = db_get_dword_value(TOVREN_DEVICE_DB_FORMAT, data, index);
}

void TOVREN_DEV_INFO_MANAGER::confirm_data_type_end(const unsigned char* data, unsigned int& index) {
    db_confirm_record_end(data, index);
}

void TOVREN_DEV_INFO_MANAGER::confirm_database_end(const unsigned char* data, unsigned int& index) {
    db_confirm_database_end(data, index);
}

unsigned char* TOVREN_DEV_INFO_MANAGER::compress_data(const unsigned char* data, unsigned int offset,
                                                      unsigned int count, unsigned int& new_memory_count) {
    return db_compress(data, offset, count, new_memory_count).release();
}

unsigned char* TOVREN_DEV_INFO_MANAGER::decompress_data(const unsigned char* data, unsigned int decompressed_count,
                                                        unsigned int original_count) {
    return db_decompress(data, decompressed_count, original_count).release();
}

unsigned int TOVREN_DEV_INFO_MANAGER::calculate_crc16(const unsigned char* data, unsigned int length) {
    return db_calculate_crc16(data, length);
}
