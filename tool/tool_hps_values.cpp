// Records of HPS flashes. What a person types goes by the library's prompts: sizes in Mbit, Kbyte or Mbyte, hexadecimal
// where the prompt says so; it is converted and checked by the library.
#include "tool_hps_values.h"

#include "tool_text.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>

namespace {

constexpr unsigned int KIBI = 1024;
constexpr unsigned int MEBI = KIBI * KIBI;

enum class UNIT : unsigned char { PLAIN, HEX, BITS, BYTES, SECONDS, MICROSECONDS };

// What the checked conversion is asked for, and how the number is shown.
struct PARAM_RULE {
    const char* name;
    UNIT unit;
    unsigned int rank;          // of the table's column
    const unsigned int* ranges; // the number of pairs, then the pairs
    unsigned int multiple;      // what an input of 1 means
};

constexpr unsigned int DENSITY_RANGES[] = {1, 1, 4096};
constexpr unsigned int SECTOR_RANGES[] = {1, 1, 1024};
constexpr unsigned int DIE_RANGES[] = {3, 1, 1, 2, 2, 4, 4};

constexpr PARAM_RULE PARAM_RULES[] = {
    {"siid", UNIT::HEX, 0, nullptr, 1},
    {"mask", UNIT::HEX, 3, nullptr, 1},
    {"ext_siid", UNIT::HEX, 2, nullptr, 1},
    {"ext_mask", UNIT::HEX, 3, nullptr, 1},
    {"manufacturer", UNIT::PLAIN, 1, nullptr, 1},
    {"name", UNIT::PLAIN, 0, nullptr, 1},
    {"flash_bit_size", UNIT::BITS, 0, DENSITY_RANGES, MEBI},
    {"sector_byte_size", UNIT::BYTES, 2, SECTOR_RANGES, KIBI},
    {"page_byte_size", UNIT::BYTES, 4, nullptr, 1},
    {"bulk_erase_time", UNIT::SECONDS, 5, nullptr, 1},
    {"bulk_erase_interval_wait_time", UNIT::SECONDS, 6, nullptr, 1},
    {"sector_erase_time", UNIT::SECONDS, 5, nullptr, 1},
    {"page_program_time", UNIT::MICROSECONDS, 5, nullptr, 1},
    {"program_time", UNIT::SECONDS, 6, nullptr, 1},
    {"die_size", UNIT::PLAIN, 4, DIE_RANGES, 1},
    {"speed_mode", UNIT::PLAIN, 6, nullptr, 1},
    {"byte4_se_opcode", UNIT::HEX, 7, nullptr, 1},
    {"byte4_pp_opcode", UNIT::HEX, 7, nullptr, 1},
    {"byte4_read_opcode", UNIT::HEX, 7, nullptr, 1},
    {"manufacturer_id", UNIT::HEX, 0, nullptr, 1},
    {"device_id", UNIT::HEX, 0, nullptr, 1},
    {"flash_byte_size", UNIT::BYTES, 0, nullptr, MEBI},
};

const PARAM_RULE& rule_of(const std::string& name) {
    static constexpr PARAM_RULE OTHER = {"", UNIT::PLAIN, 8, nullptr, 1};
    const auto* const place = std::find_if(std::begin(PARAM_RULES), std::end(PARAM_RULES),
                                           [&name](const PARAM_RULE& rule) { return name == rule.name; });
    return place == std::end(PARAM_RULES) ? OTHER : *place;
}

std::string number_text(const PARAM_RULE& rule, TOVREN_PARAM_TYPE type, unsigned long long number, void* value) {
    switch (rule.unit) {
    case UNIT::BITS:
        return tool_bits_text(number);
    case UNIT::BYTES:
        return tool_bytes_text(number);
    case UNIT::SECONDS:
        return tool_seconds_text(static_cast<unsigned int>(number));
    case UNIT::MICROSECONDS:
        return tool_microseconds_text(static_cast<unsigned int>(number));
    default:
        return TOVREN_FLASH_INI::print_flash_ini_data(type, rule.unit == UNIT::HEX, value);
    }
}

// ---- what a person types ----

// Names and values of the pairs, and the faults of those that have no name, an unknown one, or one that was given.
class TYPED {
public:
    TYPED(const TOOL_HPS_PARAMS& params, const std::vector<std::string>& pairs, std::vector<TOOL_HPS_FAULT>& faults);

    const std::string* find(const std::string& name) const {
        const auto place = m_values.find(name);
        return place == m_values.end() ? nullptr : &place->second;
    }

private:
    void add(const TOOL_HPS_PARAMS& params, const std::string& name, const std::string& value);

    std::map<std::string, std::string> m_values;
    std::vector<TOOL_HPS_FAULT>& m_faults;
};

TYPED::TYPED(const TOOL_HPS_PARAMS& params, const std::vector<std::string>& pairs, std::vector<TOOL_HPS_FAULT>& faults)
    : m_faults(faults) {
    for (const std::string& pair : pairs) {
        const size_t sign = pair.find('=');
        if (sign == std::string::npos || sign == 0)
            m_faults.push_back({"", tool_quoted(pair) + " is not of the form name=value"});
        else
            add(params, pair.substr(0, sign), pair.substr(sign + 1));
    }
}

void TYPED::add(const TOOL_HPS_PARAMS& params, const std::string& name, const std::string& value) {
    const auto known = std::find_if(params.names.begin(), params.names.end(), [&name](const std::string& candidate) {
        return tool_equal_ignoring_case(candidate, name);
    });
    if (known == params.names.end()) {
        const std::string guess = tool_did_you_mean(tool_nearest_names(name, params.names));
        m_faults.push_back({name, "there is no such parameter" + (guess.empty() ? "" : ". " + guess)});
    } else if (!m_values.emplace(*known, value).second) {
        m_faults.push_back({*known, "it is given twice"});
    }
}

// An empty reason: converted.
std::string convert_flag(const std::string& text, bool& flag) {
    flag = tool_equal_ignoring_case(text, "Y");
    return flag || tool_equal_ignoring_case(text, "N") ? "" : "neither Y nor N";
}

std::string convert_number(TOVREN_PARAM_TYPE type, const std::string& name, const std::string& text,
                           unsigned long long& number) {
    const PARAM_RULE& rule = rule_of(name);
    std::string error;
    TOVREN_FLASH_INI::convert_string_to_qword(type, number, rule.unit == UNIT::HEX, text, false, rule.ranges, nullptr,
                                              false, rule.multiple, error);
    return error;
}

struct CONVERTER {
    TOVREN_PARAM_TYPE type;
    const std::string& name;
    const std::string& text;

    std::string operator()(std::string& value) const {
        value = text;
        return "";
    }
    std::string operator()(bool& value) const { return convert_flag(text, value); }
    std::string operator()(unsigned int& value) const {
        unsigned long long number = 0;
        std::string error = convert_number(type, name, text, number);
        value = static_cast<unsigned int>(number);
        return error;
    }
    std::string operator()(unsigned long long& value) const { return convert_number(type, name, text, value); }
};

} // namespace

TOOL_HPS_RECORD::TOOL_HPS_RECORD(const TOOL_HPS_PARAMS& params) {
    for (const TOVREN_PARAM_TYPE type : params.types) {
        switch (type) {
        case TOVREN_PARAM_STRING:
            m_values.emplace_back(std::string());
            break;
        case TOVREN_PARAM_BOOL:
            m_values.emplace_back(false);
            break;
        case TOVREN_PARAM_QWORD:
            m_values.emplace_back(0ULL);
            break;
        default: // no flash has a parameter of a smaller type
            m_values.emplace_back(0U);
        }
    }
}

TOOL_HPS_RECORD::TOOL_HPS_RECORD(const TOOL_HPS_PARAMS& params, void* const* values) : TOOL_HPS_RECORD(params) {
    for (size_t i = 0; i < m_values.size(); ++i)
        std::visit([&](auto& value) { value = *static_cast<std::decay_t<decltype(value)>*>(values[i]); }, m_values[i]);
}

std::vector<void*> TOOL_HPS_RECORD::pointers() {
    std::vector<void*> pointers;
    for (VALUE& value : m_values)
        std::visit([&pointers](auto& held) { pointers.push_back(&held); }, value);
    return pointers;
}

std::vector<unsigned char> TOOL_HPS_RECORD::bytes(const TOOL_HPS_PARAMS& params) {
    const std::vector<void*> values = pointers();
    unsigned int size = 0;
    for (size_t i = 0; i < values.size(); ++i)
        TOVREN_FLASH_INI::calculate_flash_ini_data_size(size, params.types[i], values[i]);
    std::vector<unsigned char> bytes(size);
    unsigned int index = 0;
    for (size_t i = 0; i < values.size(); ++i)
        TOVREN_FLASH_INI::fillup_flash_ini_data(bytes.data(), index, params.types[i], values[i]);
    return bytes;
}

std::vector<std::string> TOOL_HPS_RECORD::texts(const TOOL_HPS_PARAMS& params) {
    const std::vector<void*> values = pointers();
    std::vector<std::string> texts;
    for (size_t i = 0; i < values.size(); ++i) {
        const auto text_of = [&](const auto& value) -> std::string {
            using TYPE = std::decay_t<decltype(value)>;
            if constexpr (std::is_same_v<TYPE, std::string> || std::is_same_v<TYPE, bool>)
                return TOVREN_FLASH_INI::print_flash_ini_data(params.types[i], false, values[i]);
            else
                return number_text(rule_of(params.names[i]), params.types[i], value, values[i]);
        };
        texts.push_back(std::visit(text_of, m_values[i]));
    }
    return texts;
}

void TOOL_HPS_RECORD::put(nlohmann::ordered_json& object, const TOOL_HPS_PARAMS& params) const {
    for (size_t i = 0; i < m_values.size(); ++i)
        std::visit([&](const auto& value) { object[params.names[i]] = value; }, m_values[i]);
}

std::string TOOL_HPS_RECORD::take(size_t index, const TOOL_HPS_PARAMS& params, const std::string& text) {
    return std::visit(CONVERTER{params.types[index], params.names[index], text}, m_values[index]);
}

const std::string* TOOL_HPS_RECORD::find_text(const TOOL_HPS_PARAMS& params, const std::string& name) const {
    const auto place = std::find(params.names.begin(), params.names.end(), name);
    return place == params.names.end()
               ? nullptr
               : std::get_if<std::string>(&m_values[static_cast<size_t>(place - params.names.begin())]);
}

std::optional<TOOL_HPS_RECORD> tool_hps_record_of(const TOOL_HPS_PARAMS& params, const std::vector<std::string>& pairs,
                                                  std::vector<TOOL_HPS_FAULT>& faults) {
    const TYPED typed(params, pairs, faults);
    TOOL_HPS_RECORD record(params);
    for (size_t i = 0; i < params.names.size(); ++i) {
        const std::string* const text = typed.find(params.names[i]);
        const std::string reason = text ? record.take(i, params, *text) : "it is missing";
        if (!reason.empty())
            faults.push_back(
                {params.names[i], (text ? tool_quoted(*text) + ": " : "") + reason + " (" + params.prompts[i] + ')'});
    }
    if (!faults.empty())
        return std::nullopt;
    return record;
}

std::vector<TOOL_COLUMN> tool_hps_columns(const TOOL_HPS_PARAMS& params) {
    std::vector<TOOL_COLUMN> columns;
    for (size_t i = 0; i < params.names.size(); ++i)
        columns.push_back({params.names[i], params.types[i] > TOVREN_PARAM_BOOL, rule_of(params.names[i]).rank});
    return columns;
}

std::string tool_hps_help(const TOOL_HPS_PARAMS& params) {
    std::string help = "\nEvery parameter is to be given once, in any order, in the unit of its prompt;\n"
                       "a number may begin with 0x, and -1 stands for the largest one:\n";
    for (size_t i = 0; i < params.names.size(); ++i)
        help += "  " + params.names[i] + std::string(32 - params.names[i].size(), ' ') + params.prompts[i] + '\n';
    return help;
}
