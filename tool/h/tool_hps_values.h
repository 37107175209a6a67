// A record of an HPS flash: its parameters by name, what a person types for them, and how they are shown.
#ifndef TOOL_HPS_VALUES_H
#define TOOL_HPS_VALUES_H

#include "tool_table.h"
#include "tovren_flash_ini.h"

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string>
#include <variant>
#include <vector>

// The parameters of one kind of flash, in record order.
struct TOOL_HPS_PARAMS {
    const std::vector<std::string>& names;
    const std::vector<TOVREN_PARAM_TYPE>& types;
    const std::vector<std::string>& prompts;
};

class TOOL_HPS_RECORD {
public:
    explicit TOOL_HPS_RECORD(const TOOL_HPS_PARAMS& params);             // empty and zero
    TOOL_HPS_RECORD(const TOOL_HPS_PARAMS& params, void* const* values); // a copy
    std::vector<void*> pointers();                                       // to the values, as the library wants
    std::vector<unsigned char> bytes(const TOOL_HPS_PARAMS& params);     // as a section holds them
    std::vector<std::string> texts(const TOOL_HPS_PARAMS& params);       // for people, with units
    void put(nlohmann::ordered_json& object, const TOOL_HPS_PARAMS& params) const; // members by name

    // Takes what a person typed for parameter `index`. Returns why not, empty where it was taken.
    std::string take(size_t index, const TOOL_HPS_PARAMS& params, const std::string& text);

    // The text of a parameter of type text, by name; none where there is no such parameter.
    const std::string* find_text(const TOOL_HPS_PARAMS& params, const std::string& name) const;

private:
    using VALUE = std::variant<std::string, bool, unsigned int, unsigned long long>;
    std::vector<VALUE> m_values;
};

// What is wrong with the pairs that a person typed.
struct TOOL_HPS_FAULT {
    std::string member; // empty for a pair without a name
    std::string reason;
};

// The record that `name=value` pairs make; every parameter is to be given once. None where there are faults.
std::optional<TOOL_HPS_RECORD> tool_hps_record_of(const TOOL_HPS_PARAMS& params, const std::vector<std::string>& pairs,
                                                  std::vector<TOOL_HPS_FAULT>& faults);

// Columns that texts() fills.
std::vector<TOOL_COLUMN> tool_hps_columns(const TOOL_HPS_PARAMS& params);

// "siid=HEX  Silicon ID (hex)", a line each: what may be typed.
std::string tool_hps_help(const TOOL_HPS_PARAMS& params);

#endif
