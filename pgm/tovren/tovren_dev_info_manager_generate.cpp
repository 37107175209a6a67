// Device information manager: writing the database from its CSV description (docs/formats/devices_csv.md), and the part
// list. The index tables are computed here; nowhere else is it decided which record serves a value.
#include "host_pgm_common.h"
#include "host_text.h"
#include "tovren_check.h"
#include "tovren_csv.h"
#include "tovren_db_stream.h"
#include "tovren_dev_info_manager.h"

#include <algorithm>
#include <fmt/printf.h>

namespace {

constexpr unsigned int TYPE_ROW = 0;
constexpr unsigned int NAME_ROW = 1;
constexpr unsigned int FIRST_DATA_ROW = 2;

// The next row of a description, whose lines have a limit.
bool next_row(CSV_READER& input, std::vector<std::string>& svec) {
    std::string line;
    if (!input.next_line(line))
        return false;
    TOVREN_CHECK_TEXT(line.size() < CSV_LINE_LIMIT, "line.size() < 10240");
    gen_tokenize(line, CSV_SEPARATORS, svec);
    return true;
}

void check_type_word(const std::vector<std::string>& svec, size_t i, TOVREN_MANAGER_TYPE type) {
    switch (type) {
    case TOVREN_MANAGER_DEVID_ENUM:
        return TOVREN_CHECK(svec.at(i) == "DEVID_ENUM");
    case TOVREN_MANAGER_DEVID_STR:
        return TOVREN_CHECK(svec.at(i) == "DEVID_STR");
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
    case TOVREN_MANAGER_ENUM:
        return TOVREN_CHECK(svec.at(i) == "ENUM");
    default:
        TOVREN_FAIL("Unsupported type");
    }
}

void check_type_row(const std::vector<std::string>& svec, const std::vector<TOVREN_MANAGER_TYPE>& types) {
    for (size_t i = 0; i < svec.size(); ++i)
        check_type_word(svec, i, types[i]);
}

void check_name_row(const std::vector<std::string>& svec, const std::vector<std::string>& m_db_name_list) {
    for (size_t i = 0; i < svec.size(); ++i) {
        std::string temp = svec[i];
        stl_tolower(temp);
        TOVREN_CHECK(temp == m_db_name_list[i]);
    }
}

// The entry whose name is `name`, to the letter; null when there is none.
const TOVREN_NAME_VALUE* find_name(const std::vector<TOVREN_NAME_VALUE>& list, const std::string& name) {
    const auto entry = std::find_if(list.begin(), list.end(), [&](const auto& each) { return each.name == name; });
    return entry == list.end() ? nullptr : &*entry;
}

const std::string& name_of(const std::vector<TOVREN_NAME_VALUE>& list, unsigned int value) {
    const auto entry = std::find_if(list.begin(), list.end(), [&](const auto& each) { return each.value == value; });
    const bool found = entry != list.end();
    TOVREN_CHECK(found);
    return entry->name;
}

// Values past the bound are searched for by nobody.
template <typename ENTRY>
void note_first(std::vector<const ENTRY*>& first_entries, unsigned int value, const ENTRY* entry) {
    if (value < first_entries.size() && !first_entries[value])
        first_entries[value] = entry;
}

void put_table_head(unsigned char** buffer, unsigned int& index, TOVREN_MANAGER_TYPE type, unsigned int count) {
    (*buffer)[index++] = type;
    db_put_dword(buffer, index, count);
}

constexpr char EMAIL_TITLE[] = "Device information: missing family";
const std::vector<PGM_COMMON_INI_EMAIL_ADDR_ENUM>& email_recipients() {
    static const std::vector<PGM_COMMON_INI_EMAIL_ADDR_ENUM> TOVREN_DEV_INFO_USERNAME_EMAIL = {
        PGM_COMMON_INI_EMAIL_ADDR_DEVICE_DATA, PGM_COMMON_INI_EMAIL_ADDR_BUILD};
    return TOVREN_DEV_INFO_USERNAME_EMAIL;
}

} // namespace

unsigned int TOVREN_DEV_INFO_MANAGER::check_device_file(FIO_PATH csv, unsigned int& device_count) {
    device_count = 0;
    size_t size = DB_PAYLOAD_HEADER_SIZE + DB_MARKER_SIZE;
    CSV_READER input(csv);
    std::vector<std::string> svec;
    for (unsigned int row = 0; next_row(input, svec); ++row) {
        TOVREN_CHECK(DWORD(svec.size()) == TOTAL_DEVICE_DATABASE_MEMBER);
        if (row == TYPE_ROW)
            check_type_row(svec, m_db_type_list);
        else if (row == NAME_ROW)
            check_name_row(svec, m_db_name_list);
        else {
            size += db_record_size(m_db_type_list, svec);
            ++device_count;
        }
    }
    const bool status = input.is_good();
    TOVREN_CHECK(status);
    TOVREN_CHECK(device_count == TOTAL_DATABASE_DEVICE);
    return static_cast<unsigned int>(size);
}

void TOVREN_DEV_INFO_MANAGER::generate_device_database(FIO_PATH csv, FIO_PATH output) {
    unsigned int device_count = 0;
    const unsigned int pure_memory_size = check_device_file(csv, device_count);
    TOVREN_CHECK(pure_memory_size > 0);
    const unsigned int payload_size = pure_memory_size + get_table_size();
    const unsigned int memory_size = DB_HEADER_SIZE + payload_size;
    const auto memory = std::make_unique<unsigned char[]>(memory_size);
    unsigned char* buffer = memory.get();

    unsigned int index = 0;
    TOVREN_CHECK(TOVREN_DEV_INFO_CSV_MD5.size() == 32);
    db_put_headers(TOVREN_DEVICE_DB_FORMAT, &buffer, index, payload_size, device_count, TOTAL_DEVICE_DATABASE_MEMBER);
    dump_rows(csv, &buffer, index, DB_HEADER_SIZE + pure_memory_size);

    m_csv_memory_size = pure_memory_size;
    parse_database(buffer + DB_HEADER_SIZE, true);
    TOVREN_CHECK(m_device_database != NULL);
    parse_pgm_parts();
    print_table(&buffer, index);
    TOVREN_CHECK(index == memory_size);
    db_write_file(output, buffer, memory_size);
}

// Encodes every data row and the end of the records; `end` is where that must be.
void TOVREN_DEV_INFO_MANAGER::dump_rows(const FIO_PATH& csv, unsigned char** buffer, unsigned int& index,
                                        unsigned int end) {
    CSV_READER input(csv);
    std::vector<std::string> svec;
    for (unsigned int row = 0; next_row(input, svec); ++row) {
        if (row < FIRST_DATA_ROW)
            continue;
        // The file may have grown since it was checked.
        TOVREN_CHECK_TEXT(size_t{index} + db_record_size(m_db_type_list, svec) + DB_MARKER_SIZE <= end,
                          "index == memory_size");
        dump_to_database(buffer, index, svec);
        db_put_record_end(buffer, index);
    }
    const bool status = input.is_good();
    TOVREN_CHECK(status);
    db_put_database_end(buffer, index);
    TOVREN_CHECK_TEXT(index == end, "index == memory_size");
}

void TOVREN_DEV_INFO_MANAGER::dump_to_database(unsigned char** buffer, unsigned int& index,
                                               std::vector<std::string> svec) {
    TOVREN_CHECK(svec.size() == TOTAL_DEVICE_DATABASE_MEMBER);
    for (size_t i = 0; i < svec.size(); ++i) {
        const TOVREN_MANAGER_TYPE type = m_db_type_list[i];
        if (type == TOVREN_MANAGER_DEVID_ENUM)
            dump_enum_to_database(buffer, index, std::move(svec[i]), m_db_name_list[i]);
        else if (type == TOVREN_MANAGER_ENUM)
            dump_enum_to_database(buffer, index, std::move(svec[i]), "");
        else if (db_is_text(type))
            dump_string_to_database(buffer, index, true, std::move(svec[i]), type);
        else if (type == TOVREN_MANAGER_BOOL)
            dump_bool_to_database(buffer, index, std::move(svec[i]));
        else
            dump_value_to_database(buffer, index, std::move(svec[i]), db_value_size(type));
    }
}

void TOVREN_DEV_INFO_MANAGER::dump_dword_database(unsigned char** buffer, unsigned int& index, unsigned int value) {
    db_put_dword(buffer, index, value);
}

void TOVREN_DEV_INFO_MANAGER::dump_string_to_database(unsigned char** buffer, unsigned int& index, bool allow_empty,
                                                      std::string string, TOVREN_MANAGER_TYPE type) {
    TOVREN_CHECK(string.size() > 0 || allow_empty);
    TOVREN_CHECK(type == TOVREN_MANAGER_DEVID_STR || type == TOVREN_MANAGER_STRING);
    db_put_string(buffer, index, type, string);
}

void TOVREN_DEV_INFO_MANAGER::dump_bool_to_database(unsigned char** buffer, unsigned int& index, std::string string) {
    TOVREN_CHECK(string == "" || string == "FALSE" || string == "TRUE");
    db_put_bool(buffer, index, string == "TRUE");
}

void TOVREN_DEV_INFO_MANAGER::dump_value_to_database(unsigned char** buffer, unsigned int& index, std::string string,
                                                     unsigned int count) {
    db_put_value(buffer, index, get_dword_from_string(std::move(string)), count);
}

// The tag is 7 for the catalogue's columns too, as in every file that exists; readers accept 0 beside it.
void TOVREN_DEV_INFO_MANAGER::dump_enum_to_database(unsigned char** buffer, unsigned int& index, std::string value,
                                                    std::string type_name) {
    const std::vector<TOVREN_NAME_VALUE>* list = &m_supported_enum_list;
    if (type_name == "family")
        list = &m_supported_family_list;
    else if (type_name == "device")
        list = &m_supported_device_list;
    else if (type_name == "part")
        list = &m_supported_part_list;
    else
        TOVREN_CHECK(type_name.empty());

    const TOVREN_NAME_VALUE* entry = find_name(*list, value);
    const bool found = entry != nullptr;
    TOVREN_CHECK(found);
    db_put_tagged_dword(buffer, index, TOVREN_MANAGER_ENUM, entry->value);
}

unsigned int TOVREN_DEV_INFO_MANAGER::get_dword_from_string(std::string string) {
    return PGM_COMMON::convert_string_to_dword(string, 0, NULL, NULL, 1);
}

std::string TOVREN_DEV_INFO_MANAGER::convert_id_enum_to_string(std::string type_name, unsigned int id) {
    if (type_name == "family") {
        TOVREN_CHECK(id < DWORD(DEV_FAMILY_MAX));
        return name_of(m_supported_family_list, id);
    }
    if (type_name == "device") {
        TOVREN_CHECK(id < DWORD(DEV_DEVICE_MAX));
        return name_of(m_supported_device_list, id);
    }
    if (type_name == "part") {
        TOVREN_CHECK(id < DWORD(DEV_PART_MAX));
        return name_of(m_supported_part_list, id);
    }
    TOVREN_FAIL("Unsupported type name");
}

// ---- index tables ----

void TOVREN_DEV_INFO_MANAGER::print_table(unsigned char** buffer, unsigned int& index) {
    const DEV_PART_MANAGER parts;
    TOVREN_CHECK(m_device_database != NULL);
    print_family_table(buffer, index);
    print_device_table(buffer, index, parts);
    print_part_table(buffer, index, parts);
}

void TOVREN_DEV_INFO_MANAGER::print_family_table(unsigned char** buffer, unsigned int& index) {
    put_table_head(buffer, index, TOVREN_MANAGER_FAMILY_TBL, DEV_FAMILY_MAX);
    for (unsigned int i = 0; i < DEV_FAMILY_MAX; ++i) {
        if (search_family(DEV_FAMILY_ENUM(i), true)) {
            TOVREN_CHECK(m_index < TOTAL_DATABASE_DEVICE && m_device_database[m_index].family == i);
        } else {
            TOVREN_CHECK(m_index == DWORD(-1));
            TOVREN_CHECK(DEV_FAMILY_ENUM(i) != DEV_FAMILY_GENERIC);
            if (i != DEV_FAMILY_INVALID)
                m_index = serve_missing_family(DEV_FAMILY_ENUM(i));
        }
        m_family_table[i] = m_index;
        db_put_dword(buffer, index, m_index);
    }
}

// Tells the keepers of the description. The entry is the search's success as a number, not the position that it found:
// files hold it so. The two agree while the Generic record stands at position 1.
unsigned int TOVREN_DEV_INFO_MANAGER::serve_missing_family(DEV_FAMILY_ENUM family) {
    std::string label = fmt::sprintf("%s (%d)", dstr_get_user_string(family), static_cast<unsigned int>(family));
    stl_toupper(label);
    PGM_COMMON::send_auto_email_file(email_recipients(), EMAIL_TITLE,
                                     "Missing family " + label +
                                         " from Dev Info CSV.\n\n"
                                         "Forcing this family to use Generic database.\n\n"
                                         "Please add the family support as soon as possible.\n");
    return search_family(DEV_FAMILY_GENERIC, false) ? 1 : 0;
}

void TOVREN_DEV_INFO_MANAGER::print_device_table(unsigned char** buffer, unsigned int& index,
                                                 const DEV_PART_MANAGER& parts) {
    put_table_head(buffer, index, TOVREN_MANAGER_DEVICE_TBL, DEV_DEVICE_MAX);
    for (unsigned int i = 0; i < DEV_DEVICE_MAX; ++i) {
        if (search_device(DEV_DEVICE_ENUM(i), true)) {
            TOVREN_CHECK(m_index < TOTAL_DATABASE_DEVICE && m_device_database[m_index].device == i);
        } else if (i == DEV_DEVICE_INVALID) {
            TOVREN_CHECK(m_index == DWORD(-1));
        } else if (search_pcf_for_device(DEV_DEVICE_ENUM(i))) {
            TOVREN_CHECK(m_index < TOTAL_DATABASE_DEVICE);
        } else {
            const DEV_FAMILY_ENUM family = parts.get_family_of(DEV_DEVICE_ENUM(i));
            TOVREN_CHECK(family != DEV_FAMILY_INVALID && family < DEV_FAMILY_MAX);
            m_index = m_family_table[family];
            TOVREN_CHECK(m_index != DWORD(-1) && m_index < TOTAL_DATABASE_DEVICE);
        }
        m_device_table[i] = m_index;
        db_put_dword(buffer, index, m_index);
    }
}

void TOVREN_DEV_INFO_MANAGER::print_part_table(unsigned char** buffer, unsigned int& index,
                                               const DEV_PART_MANAGER& parts) {
    put_table_head(buffer, index, TOVREN_MANAGER_PART_TBL, DEV_PART_MAX);
    for (unsigned int i = 0; i < DEV_PART_MAX; ++i) {
        if (search_part(DEV_PART_ENUM(i), true)) {
            TOVREN_CHECK(m_index < TOTAL_DATABASE_DEVICE && m_device_database[m_index].part == i);
        } else if (i == DEV_PART_INVALID) {
            TOVREN_CHECK(m_index == DWORD(-1));
        } else {
            const DEV_DEVICE_ENUM device = parts.get_device_of(DEV_PART_ENUM(i));
            TOVREN_CHECK(device != DEV_DEVICE_INVALID && device < DEV_DEVICE_MAX);
            m_index = m_device_table[device];
            TOVREN_CHECK(m_index != DWORD(-1) && m_index < TOTAL_DATABASE_DEVICE);
        }
        m_part_table[i] = m_index;
        db_put_dword(buffer, index, m_index);
    }
}

// ---- part list ----

void TOVREN_DEV_INFO_MANAGER::parse_pgm_parts() {
    m_pcf_of_part.resize(DEV_PART_MAX);
    m_pcf_of_device.resize(DEV_DEVICE_MAX);
    CSV_READER input(FIO_PATH(gen_get_morvath_path() + "/h/pgm_parts.txt"));
    std::string line;
    std::vector<std::string> svec;
    while (input.next_line(line)) {
        TOVREN_CHECK_TEXT(line.size() < CSV_LINE_LIMIT, "line.size() < 10240");
        if (line.starts_with("//"))
            continue;
        gen_tokenize(line, CSV_SEPARATORS, svec);
        auto entry = std::make_unique<TOVREN_DEVICE_INFO_PCF_MAP>();
        entry->part = dstr_get_dev_part_enum_by_string(svec.at(0));
        entry->device = dstr_get_dev_device_enum_by_string(svec.at(1));
        entry->pcf = svec.at(6);
        note_first(m_pcf_of_part, entry->part, entry.get());
        note_first(m_pcf_of_device, entry->device, entry.get());
        m_pcf_map.push_back(std::move(entry));
    }
    TOVREN_CHECK(!input.has_failed());
}
