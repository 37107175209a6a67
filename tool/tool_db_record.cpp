// A database's record as the library's own, and as JSON.
#include "tool_db_record.h"

#include "tovren_flash_manager.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <type_traits>

namespace {

template <typename RECORD>
RECORD converted(const TOOL_DB_RECORD& members) {
    RECORD record;
    auto next = members.begin();
    tovren_visit_members(record, [&next](const char*, auto& member) {
        using MEMBER = std::decay_t<decltype(member)>;
        const TOOL_DB_VALUE& value = (next++)->value;
        if constexpr (std::is_same_v<MEMBER, std::string> || std::is_same_v<MEMBER, bool>)
            member = std::get<MEMBER>(value);
        else
            member = static_cast<MEMBER>(std::get<unsigned int>(value));
    });
    return record;
}

} // namespace

TOVREN_SFL_FLASH_INFO tool_db_flash(const TOOL_DB_RECORD& record) {
    return converted<TOVREN_SFL_FLASH_INFO>(record);
}

TOVREN_DEVICE_INFO tool_db_device(const TOOL_DB_RECORD& record) {
    return converted<TOVREN_DEVICE_INFO>(record);
}

size_t tool_db_flash_member(const char* name) {
    const auto& names = TOVREN_FLASH_MANAGER::m_name_list;
    return static_cast<size_t>(std::find(names.begin(), names.end(), name) - names.begin());
}

nlohmann::ordered_json tool_db_json(const TOOL_DB_VALUE& value) {
    return std::visit([](const auto& each) { return nlohmann::ordered_json(each); }, value);
}

nlohmann::ordered_json tool_db_json(const TOOL_DB_RECORD& record, size_t position) {
    nlohmann::ordered_json object = {{"position", position}};
    for (const TOOL_DB_MEMBER& member : record) {
        if (member.name.empty())
            object["values"].push_back(tool_db_json(member.value));
        else
            object[std::string(member.name)] = tool_db_json(member.value);
    }
    return object;
}
