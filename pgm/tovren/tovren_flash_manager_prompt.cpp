// Flash manager: the dialogue that defines flashes, and the way of a stored definition into the manager
// (docs/formats/flash_definition.md).
//
// The dialogue and a load have limits of their own: an answer of 20 as the protection divisor is accepted here and
// refused there, and a load does not look at the length of names.
#include "tovren_flash_manager.h"

#include "host_cfg.h"
#include "host_pgm_common.h"
#include "host_text.h"
#include "tovren_check.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <iostream>

namespace {

// ---- the questions ----

constexpr DWORD MOST_FLASHES = 3;
constexpr DWORD MBIT = 0x100000; // in bits
constexpr DWORD KBYTE = 0x400;   // in bytes
constexpr DWORD MOST_BITS_OF_3_ADDRESS_BYTES = 0x8000000;

// Places of the fields that depend on each other.
constexpr size_t MEMORY_ID_INDEX_FIELD = 4;
constexpr size_t MEMORY_TYPE_INDEX_FIELD = 6;
constexpr size_t MFC_ID_INDEX_FIELD = 8;
constexpr size_t DEVICE_BIT_SIZE_FIELD = 19;

constexpr TOVREN_FLASH_PROMPT fixed(const char* member, const char* text) {
    return {member, nullptr, TOVREN_FLASH_PROMPT_FIXED, 0, 0, false, false, 0, text};
}
constexpr TOVREN_FLASH_PROMPT derived(const char* member) {
    return {member, nullptr, TOVREN_FLASH_PROMPT_DERIVED, 0, 0, false, false, 0, nullptr};
}
constexpr TOVREN_FLASH_PROMPT name(const char* member, const char* question) {
    return {member, question, TOVREN_FLASH_PROMPT_NAME, 1, 19, false, false, 0, nullptr};
}
constexpr TOVREN_FLASH_PROMPT yes_no(const char* member, const char* question) {
    return {member, question, TOVREN_FLASH_PROMPT_YES_NO, 0, 0, false, false, 0, nullptr};
}
constexpr TOVREN_FLASH_PROMPT hex(const char* member, const char* question, DWORD least, DWORD most) {
    return {member, question, TOVREN_FLASH_PROMPT_HEX, least, most, false, false, 0, nullptr};
}
constexpr TOVREN_FLASH_PROMPT hex_or_none(const char* member, const char* question, DWORD least, DWORD most) {
    return {member, question, TOVREN_FLASH_PROMPT_HEX, least, most, true, false, 0, nullptr};
}
constexpr TOVREN_FLASH_PROMPT bit_or_none(const char* member, const char* question, DWORD least, DWORD most) {
    return {member, question, TOVREN_FLASH_PROMPT_BIT, least, most, true, false, 0, nullptr};
}
constexpr TOVREN_FLASH_PROMPT dec(const char* member, const char* question, DWORD least, DWORD most) {
    return {member, question, TOVREN_FLASH_PROMPT_DEC, least, most, false, false, 1, nullptr};
}
constexpr TOVREN_FLASH_PROMPT power_of_two(const char* member, const char* question, DWORD most, DWORD unit) {
    return {member, question, TOVREN_FLASH_PROMPT_DEC, 1, most, false, true, unit, nullptr};
}

// Rows in record order.
constexpr std::array<TOVREN_FLASH_PROMPT, TOTAL_DATABASE_MEMBER> FLASH_PROMPT_LIST = {
    name("manufacturer_name", "Manufacture Name : "),
    name("device_name", "Device Name : "),
    fixed("silicon_id", "0"),
    hex("memory_id", "Memory ID (hex) [1 - FE] : ", 0x01, 0xFE),
    hex("memory_id_index", "Memory ID Index [0/1/2] : ", 0, 2),
    hex("memory_type", "Memory Type (hex) [0 - FF] : ", 0x00, 0xFF),
    hex_or_none("memory_type_index", "Memory Type Index [-1/0/1/2] : ", 0, 2),
    hex("mfc_id", "Manufacturer ID (hex) [1 - FE] : ", 0x01, 0xFE),
    hex("mfc_id_index", "Manufacturer ID Index [0/1/2] : ", 0, 2),
    fixed("velkor_id", "32"),
    fixed("default_dev", "1"),
    fixed("ini", "NONE"),
    yes_no("extended_mode", "Support Extended Mode [Y/N] : "),
    yes_no("micron_flow", "Micron flow [Y/N] : "),
    yes_no("spansion_flow", "Spansion flow [Y/N] : "),
    yes_no("startup_protected", "Protected after power-up [Y/N] : "),
    yes_no("aai_mode", "Is AAI mode [Y/N] : "),
    yes_no("flag_status", "Read flag status [Y/N] : "),
    hex("die_count", "Die count [1/2] : ", 1, 2),
    power_of_two("device_bit_size", "Memory Density [1 - 2048 Mbit] : ", 2048, MBIT),
    power_of_two("device_sector_byte", "Sector Size [1 - 1024 Kbyte] : ", 1024, KBYTE),
    fixed("half_size", "0"),
    derived("byte4_addressing"),
    dec("bulk_erase_time", "Bulk Erase time [1 - 900 seconds] : ", 1, 900),
    dec("sec_erase_time", "Sector Erase Time [1 - 60 seconds] : ", 1, 60),
    dec("program_utime", "Page Program Time [1000 - 1000000 microseconds] : ", 1000, 1000000),
    hex("protection_mask", "Protection Mask (hex) [0 - FF] : ", 0, 0xFF),
    hex("protection_value", "Protection Value (hex) [0 - FF] : ", 0, 0xFF),
    hex("unprotect_value", "Unprotect Value (hex) [0 - FF] : ", 0, 0xFF),
    hex_or_none("protection_division", "Protection Divisor (hex) [-1/3 - 20] : ", 0x03, 0x20),
    bit_or_none("bottom_value", "Bottom Value (bit location) [-1/0 - 7] : ", 0, 7),
    yes_no("sdm_support", "SDM Support [Y/N] : "),
    name("asc_voltage", "AS Configuration Voltage : "),
};

// ---- one answer ----

TOVREN_FLASH_ANSWER_ENUM check_name(const TOVREN_FLASH_PROMPT& prompt, const std::string& answer, std::string& field) {
    if (answer.size() < prompt.least || answer.size() > prompt.most)
        return TOVREN_FLASH_ANSWER_BAD_LENGTH;
    field = answer;
    return TOVREN_FLASH_ANSWER_GOOD;
}

TOVREN_FLASH_ANSWER_ENUM check_yes_no(const std::string& answer, std::string& field) {
    if (answer != "Y" && answer != "N")
        return TOVREN_FLASH_ANSWER_NOT_YES_OR_NO;
    field = answer == "Y" ? "1" : "0";
    return TOVREN_FLASH_ANSWER_GOOD;
}

std::string to_field(const TOVREN_FLASH_PROMPT& prompt, DWORD value) {
    if (prompt.type == TOVREN_FLASH_PROMPT_DEC)
        return TOVREN_FLASH_MANAGER::to_string(value * prompt.unit, false);
    if (prompt.type == TOVREN_FLASH_PROMPT_BIT)
        value = value == INVALID_DWORD ? 0 : 1U << value;
    return TOVREN_FLASH_MANAGER::to_string(value & 0xFF, false);
}

TOVREN_FLASH_ANSWER_ENUM check_number(const TOVREN_FLASH_PROMPT& prompt, std::string answer, std::string& field) {
    if (prompt.has_none && answer == "-1")
        answer = "FFFFFFFF";
    if (prompt.type != TOVREN_FLASH_PROMPT_DEC)
        answer.insert(0, "0x");
    bool is_number = false;
    bool is_too_large = false;
    const DWORD value = PGM_COMMON::convert_string_to_dword(answer, true, &is_number, &is_too_large, true);
    if (!is_number)
        return is_too_large ? TOVREN_FLASH_ANSWER_OUT_OF_RANGE : TOVREN_FLASH_ANSWER_NOT_A_NUMBER;

    const bool is_none = prompt.has_none && value == INVALID_DWORD;
    if (!is_none && (value < prompt.least || value > prompt.most))
        return TOVREN_FLASH_ANSWER_OUT_OF_RANGE;
    if (prompt.power_of_two && !TOVREN_FLASH_MANAGER::is_power_of_two(value))
        return TOVREN_FLASH_ANSWER_NO_POWER_OF_TWO;
    field = to_field(prompt, value);
    return TOVREN_FLASH_ANSWER_GOOD;
}

// ---- the dialogue ----

constexpr char TOO_MANY_TEXT[] = "Invalid input or too many flash to define\n";

// One word of standard input; empty at its end.
std::string read_answer(const char* question) {
    std::string answer;
    std::cout << question << std::flush;
    std::cin >> answer;
    return answer;
}

bool ask(const TOVREN_FLASH_PROMPT& prompt, std::string& field) {
    const TOVREN_FLASH_ANSWER_ENUM outcome =
        TOVREN_FLASH_MANAGER::check_flash_answer(prompt, read_answer(prompt.question), field);
    if (outcome == TOVREN_FLASH_ANSWER_GOOD)
        return true;
    if (outcome == TOVREN_FLASH_ANSWER_BAD_LENGTH)
        std::cout << "Empty name or name too long\n";
    std::cout << "Invalid input\n";
    return false;
}

// Encodes the list, decodes it again to see that nothing was lost, and prints the outcome. Empty on failure.
std::string print_encoded(const std::string& list) {
    const std::string encoded = TOVREN_FLASH_MANAGER::encode_ini(list);
    if (encoded.empty())
        return "";
    const std::string decoded = TOVREN_FLASH_MANAGER::decode_ini(encoded);
    if (decoded.empty())
        return "";
    if (decoded != list) {
        std::cout << "Fail to generate INI because fail to counter-check cmp-encode-decode-decmp\n";
        return "";
    }
    std::cout << "INI : " << encoded << '\n';
    return encoded;
}

// ---- a stored definition ----

constexpr BYTE NO_INDEX = 0xFF;
constexpr BYTE MOST_INDEX = 2;
constexpr BYTE MOST_DIVISION = 31;
constexpr BYTE NO_DIVISION = 0xFF;

// The codes 16, 18, 20, 21, 22, 24, 25 and 32, as bits.
constexpr QWORD VELKOR_IDS = 0x103750000;
constexpr BYTE MOST_VELKOR_ID = 32;

constexpr bool is_within(DWORD value, DWORD least, DWORD most) {
    return value >= least && value <= most;
}

constexpr bool is_multiple(DWORD value, DWORD unit) {
    return value != 0 && value % unit == 0;
}

constexpr std::array FLASH_RULE_LIST = {
    TOVREN_FLASH_RULE{"memory_id is not 0 and memory_id_index is at most 2",
                      [](const TOVREN_SFL_FLASH_INFO& flash) {
                          return flash.memory_id != 0 && flash.memory_id_index <= MOST_INDEX;
                      }},
    TOVREN_FLASH_RULE{"memory_type_index is 255, or at most 2 and not memory_id_index",
                      [](const TOVREN_SFL_FLASH_INFO& flash) {
                          return flash.memory_type_index == NO_INDEX ||
                                 (flash.memory_type_index <= MOST_INDEX &&
                                  flash.memory_type_index != flash.memory_id_index);
                      }},
    TOVREN_FLASH_RULE{"mfc_id_index is 255, or at most 2 and neither memory_id_index nor memory_type_index",
                      [](const TOVREN_SFL_FLASH_INFO& flash) {
                          return flash.mfc_id_index == NO_INDEX ||
                                 (flash.mfc_id_index <= MOST_INDEX && flash.mfc_id_index != flash.memory_id_index &&
                                  flash.mfc_id_index != flash.memory_type_index);
                      }},
    TOVREN_FLASH_RULE{"velkor_id is one of 16, 18, 20, 21, 22, 24, 25, 32",
                      [](const TOVREN_SFL_FLASH_INFO& flash) {
                          return flash.velkor_id <= MOST_VELKOR_ID && (VELKOR_IDS >> flash.velkor_id & 1) != 0;
                      }},
    TOVREN_FLASH_RULE{"die_count is not 0", [](const TOVREN_SFL_FLASH_INFO& flash) { return flash.die_count != 0; }},
    TOVREN_FLASH_RULE{"device_bit_size is a multiple of 0x100000 and device_sector_byte one of 0x400, neither is 0",
                      [](const TOVREN_SFL_FLASH_INFO& flash) {
                          return is_multiple(flash.device_bit_size, MBIT) &&
                                 is_multiple(flash.device_sector_byte, KBYTE);
                      }},
    TOVREN_FLASH_RULE{"bulk_erase_time is 1 to 900, sec_erase_time 1 to 60, program_utime 1000 to 1000000",
                      [](const TOVREN_SFL_FLASH_INFO& flash) {
                          return is_within(flash.bulk_erase_time, 1, 900) && is_within(flash.sec_erase_time, 1, 60) &&
                                 is_within(flash.program_utime, 1000, 1000000);
                      }},
    TOVREN_FLASH_RULE{"protection_division is 0 to 31, or 255",
                      [](const TOVREN_SFL_FLASH_INFO& flash) {
                          return flash.protection_division <= MOST_DIVISION || flash.protection_division == NO_DIVISION;
                      }},
};

bool convert_field(const std::string& field, std::string& member) {
    member = field;
    return true;
}

bool convert_field(const std::string& field, bool& member) {
    bool valid = false;
    member = TOVREN_FLASH_MANAGER::get_boolean_from_string(field, valid);
    return valid;
}

// The number's low 32 bits are what is checked; the member takes what it has room for.
template <typename NUMBER>
bool convert_field(const std::string& field, NUMBER& member) {
    bool valid = false;
    constexpr DWORD maximum = sizeof(NUMBER) == 1 ? 0xFF : 0xFFFFFFFF;
    member = static_cast<NUMBER>(TOVREN_FLASH_MANAGER::get_number_from_string(field, maximum, valid));
    return valid;
}

// Converts field after field, up to the first that does not fit.
struct FIELD_CONVERTER {
    std::span<const std::string> fields;
    unsigned int count = 0; // converted
    bool is_stopped = false;

    template <typename MEMBER>
    void operator()(const char*, MEMBER& member) {
        is_stopped = is_stopped || count == fields.size() || !convert_field(fields[count], member);
        count += is_stopped ? 0 : 1;
    }
};

unsigned int convert_fields(std::span<const std::string> fields, TOVREN_SFL_FLASH_INFO& record) {
    FIELD_CONVERTER converter{fields};
    tovren_visit_members(record, converter);
    return converter.count;
}

bool is_valid(const TOVREN_SFL_FLASH_INFO& record) {
    return std::all_of(FLASH_RULE_LIST.begin(), FLASH_RULE_LIST.end(),
                       [&](const TOVREN_FLASH_RULE& rule) { return rule.holds(record); });
}

TOVREN_FLASH_INI_REFUSAL_ENUM get_refusal(const TOVREN_FLASH_INI_ENTRY& entry, const TOVREN_FLASH_INI_CHECK& check) {
    if (entry.definition.empty() || entry.tag.empty())
        return TOVREN_FLASH_INI_MALFORMED;
    if (check.fields.size() < TOTAL_DATABASE_MEMBER)
        return TOVREN_FLASH_INI_MISSING_FIELD;
    if (check.converted_count < TOTAL_DATABASE_MEMBER)
        return TOVREN_FLASH_INI_BAD_FIELD;
    if (!is_valid(check.record))
        return TOVREN_FLASH_INI_INVALID_RECORD;
    if (!check.is_tag_right)
        return TOVREN_FLASH_INI_WRONG_TAG;
    return check.record.device_name.empty() ? TOVREN_FLASH_INI_NO_DEVICE_NAME : TOVREN_FLASH_INI_ACCEPTED;
}

// What the debug switch shows of a load.
void print_ini_check(const TOVREN_FLASH_INI_ENTRY& entry, const TOVREN_FLASH_INI_CHECK& check) {
    std::cout << entry.definition << '\n' << entry.tag << '\n';
    if (check.refusal == TOVREN_FLASH_INI_MALFORMED)
        return;
    for (size_t i = 0; i < check.fields.size(); ++i)
        std::cout << fmt::format("Status {} : 1\n", i);
    if (check.refusal == TOVREN_FLASH_INI_MISSING_FIELD)
        std::cout << fmt::format("Status {} : 0\n", check.fields.size());
    if (check.refusal == TOVREN_FLASH_INI_INVALID_RECORD)
        std::cout << "Fail to check the validity of the INI\n";
    if (check.refusal == TOVREN_FLASH_INI_WRONG_TAG)
        std::cout << "Fail to compare INI password\n";
}

// Logs each member as a line of its own.
struct MEMBER_LOGGER {
    std::string format;

    void operator()(const char* member, const std::string& value) {
        set_format(member, " : %s");
        msg_vdebug_impl(MSG_D_LEVEL_2, format.c_str(), value.c_str());
    }
    void operator()(const char* member, DWORD value) {
        set_format(member, " : %X");
        msg_vdebug_impl(MSG_D_LEVEL_2, format.c_str(), value);
    }
    void set_format(const char* member, const char* conversion) {
        format = "3rd party SPI support - ";
        format += member;
        format += conversion;
    }
};

} // namespace

std::span<const TOVREN_FLASH_PROMPT> TOVREN_FLASH_MANAGER::get_flash_prompts() {
    return FLASH_PROMPT_LIST;
}

std::span<const TOVREN_FLASH_RULE> TOVREN_FLASH_MANAGER::get_flash_rules() {
    return FLASH_RULE_LIST;
}

TOVREN_FLASH_ANSWER_ENUM TOVREN_FLASH_MANAGER::check_flash_answer(const TOVREN_FLASH_PROMPT& prompt, std::string answer,
                                                                  std::string& field) {
    field.clear();
    gen_ascii_toupper(answer);
    switch (prompt.type) {
    case TOVREN_FLASH_PROMPT_NAME:
        return check_name(prompt, answer, field);
    case TOVREN_FLASH_PROMPT_YES_NO:
        return check_yes_no(answer, field);
    case TOVREN_FLASH_PROMPT_HEX:
    case TOVREN_FLASH_PROMPT_BIT:
    case TOVREN_FLASH_PROMPT_DEC:
        return check_number(prompt, std::move(answer), field);
    default:
        return TOVREN_FLASH_ANSWER_NOT_ASKED;
    }
}

bool TOVREN_FLASH_MANAGER::gen_flash_definition(std::span<std::string, TOTAL_DATABASE_MEMBER> fields,
                                                std::string& definition) {
    definition.clear();
    const std::string& memory_id_index = fields[MEMORY_ID_INDEX_FIELD];
    const std::string& memory_type_index = fields[MEMORY_TYPE_INDEX_FIELD];
    const std::string& mfc_id_index = fields[MFC_ID_INDEX_FIELD];
    if (memory_id_index == memory_type_index || memory_id_index == mfc_id_index || memory_type_index == mfc_id_index)
        return false;

    bool valid = false;
    const auto bits = static_cast<DWORD>(get_number_from_string(fields[DEVICE_BIT_SIZE_FIELD], INVALID_DWORD, valid));
    for (size_t i = 0; i < fields.size(); ++i) {
        if (FLASH_PROMPT_LIST[i].type == TOVREN_FLASH_PROMPT_FIXED)
            fields[i] = FLASH_PROMPT_LIST[i].fixed;
        if (FLASH_PROMPT_LIST[i].type == TOVREN_FLASH_PROMPT_DERIVED)
            fields[i] = bits > MOST_BITS_OF_3_ADDRESS_BYTES ? "1" : "0";
        definition += "@" + fields[i];
    }
    definition += "@";
    return true;
}

bool TOVREN_FLASH_MANAGER::prompt_flash_info(std::string& definition) {
    definition.clear();
    std::array<std::string, TOTAL_DATABASE_MEMBER> fields;
    for (size_t i = 0; i < fields.size(); ++i)
        if (FLASH_PROMPT_LIST[i].question && !ask(FLASH_PROMPT_LIST[i], fields[i]))
            return false;
    if (!gen_flash_definition(fields, definition)) {
        std::cout << "Memory ID, Memory Type and Manufacturer ID index cannot be at the same location";
        return false;
    }
    std::cout << "Prompt outcome: " << definition << '\n';
    return true;
}

void TOVREN_FLASH_MANAGER::gen_flash_ini() {
    prompt_flash_ini();
}

std::string TOVREN_FLASH_MANAGER::prompt_flash_ini() {
    bool is_number = false;
    const DWORD count =
        get_dword_from_string(read_answer("Number of 3rd party flash to define (max 3) : "), &is_number);
    if (!is_number) {
        std::cout << TOO_MANY_TEXT;
        return "";
    }
    if (count < 1 || count > MOST_FLASHES)
        return "";

    std::string list;
    for (DWORD i = 0; i < count; ++i) {
        std::string definition;
        if (!prompt_flash_info(definition)) {
            std::cout << TOO_MANY_TEXT;
            return "";
        }
        add_ini_entry(list, definition);
        std::cout << "Raw: " << list << '\n';
    }
    return print_encoded(list);
}

bool TOVREN_FLASH_MANAGER::assign_ini(std::span<const std::string, TOTAL_DATABASE_MEMBER> fields) {
    return convert_fields(fields, m_ext_flash_info) == TOTAL_DATABASE_MEMBER;
}

bool TOVREN_FLASH_MANAGER::assign_ini(const std::string* fields) {
    return assign_ini(std::span<const std::string, TOTAL_DATABASE_MEMBER>(fields, TOTAL_DATABASE_MEMBER));
}

TOVREN_FLASH_INI_CHECK TOVREN_FLASH_MANAGER::check_ini_entry(const TOVREN_FLASH_INI_ENTRY& entry) {
    TOVREN_FLASH_INI_CHECK check;
    std::string field;
    size_t position = 0;
    check.fields.reserve(TOTAL_DATABASE_MEMBER);
    while (check.fields.size() < TOTAL_DATABASE_MEMBER && read_ini_field(entry.definition, field, position))
        check.fields.push_back(field);
    check.converted_count = convert_fields(check.fields, check.record);
    if (check.converted_count < TOTAL_DATABASE_MEMBER)
        check.record = TOVREN_SFL_FLASH_INFO();
    check.is_tag_right = !entry.definition.empty() && cmp_ini_password(entry.definition, entry.tag);
    check.refusal = get_refusal(entry, check);
    return check;
}

void TOVREN_FLASH_MANAGER::parse_ext_flash_info() {
    m_ext_flash_info = TOVREN_SFL_FLASH_INFO();
    const std::string setting = get_ext_flash_setting_name();
    const std::string encoded = cfg_get_value(setting);
    const std::string list = encoded.empty() ? "" : decode_ini(encoded);
    if (list.empty())
        return;

    const bool is_debug = cfg_is_on(setting + "_DEBUG", false);
    if (is_debug)
        std::cout << list << '\n';
    const TOVREN_FLASH_INI_ENTRY entry = read_ini_entry(list, 0);
    const TOVREN_FLASH_INI_CHECK check = check_ini_entry(entry);
    if (is_debug)
        print_ini_check(entry, check);
    if (check.refusal != TOVREN_FLASH_INI_ACCEPTED && check.refusal != TOVREN_FLASH_INI_NO_DEVICE_NAME)
        return;
    m_ext_flash_info = check.record;
    tovren_visit_members(m_ext_flash_info, MEMBER_LOGGER());
}
