// `tovren device catalogue`.
#include "tool_device_catalogue.h"

#include "tool_device_record.h"
#include "tool_error.h"
#include "tool_table.h"
#include "tool_text.h"

#include <nlohmann/json.hpp>

namespace {

using KIND = TOOL_CATALOGUE_VALUE::KIND;

// What a value belongs to: a device to a family, a part to a device. Empty where there is nothing.
std::string owner_name(TOOL_CATALOGUE_VALUE value) {
    if (value.kind == KIND::DEVICE)
        return dstr_get_user_string(DEV_PART_MANAGER().get_family_of(DEV_DEVICE_ENUM(value.number)));
    if (value.kind == KIND::PART)
        return dstr_get_user_string(DEV_PART_MANAGER().get_device_of(DEV_PART_ENUM(value.number)));
    return "";
}

const char* owner_title(KIND kind) {
    return kind == KIND::DEVICE ? "family" : "device";
}

nlohmann::ordered_json text_or_null(const std::string& text) {
    return text.empty() ? nlohmann::ordered_json() : nlohmann::ordered_json(text);
}

void write_json(KIND kind, const TOOL_OUTPUT& output) {
    TOOL_JSON_LINES lines(output);
    for (unsigned int number = 0; number < tool_catalogue_bound(kind); ++number) {
        nlohmann::ordered_json object;
        object["number"] = number;
        object["name"] = text_or_null(tool_user_name({kind, number}));
        if (kind != KIND::FAMILY)
            object[owner_title(kind)] = text_or_null(owner_name({kind, number}));
        lines.add(object);
    }
    lines.end();
}

void write_table(KIND kind, const TOOL_OUTPUT& output) {
    std::vector<TOOL_COLUMN> columns = {{"Number", true}, {"Name"}};
    if (kind != KIND::FAMILY)
        columns.push_back({kind == KIND::DEVICE ? "Family" : "Device"});
    TOOL_TABLE table(std::move(columns));
    for (unsigned int number = 0; number < tool_catalogue_bound(kind); ++number) {
        const std::string name = tool_user_name({kind, number});
        std::vector<std::string> cells = {std::to_string(number), name.empty() ? "(invalid)" : name};
        if (kind != KIND::FAMILY)
            cells.push_back(owner_name({kind, number}));
        table.add_row(std::move(cells));
    }
    table.write(output);
}

KIND kind_of(const std::string& which) {
    if (which == "families")
        return KIND::FAMILY;
    if (which == "devices")
        return KIND::DEVICE;
    if (which == "parts")
        return KIND::PART;
    throw tool_usage_error("device catalogue", tool_quoted(which) + " is none of families, devices, parts");
}

} // namespace

int tool_device_catalogue(const std::string& which, const TOOL_OUTPUT& output) {
    const KIND kind = kind_of(which);
    if (output.is_json())
        write_json(kind, output);
    else
        write_table(kind, output);
    return TOOL_EXIT_DONE;
}
