// What a flash record compares with an answer, byte by byte.
#include "tool_flash_match.h"

#include <algorithm>

namespace {

constexpr BYTE NOT_COMPARED = 0xFF; // as an index of the memory type

} // namespace

std::vector<TOOL_COMPARED_BYTE> tool_compared_bytes(const TOVREN_SFL_FLASH_INFO& record, std::span<const BYTE> answer) {
    std::vector<TOOL_COMPARED_BYTE> compared;
    const auto add = [&](const char* member, BYTE place, BYTE expected) {
        compared.push_back(
            {member, place, expected, place < answer.size() ? std::optional<BYTE>(answer[place]) : std::nullopt});
    };
    add("memory_id", record.memory_id_index, record.memory_id);
    if (record.silicon_id)
        return compared;
    if (record.memory_type_index != NOT_COMPARED)
        add("memory_type", record.memory_type_index, record.memory_type);
    add("mfc_id", record.mfc_id_index, record.mfc_id);
    return compared;
}

size_t tool_miss_count(const std::vector<TOOL_COMPARED_BYTE>& compared) {
    return static_cast<size_t>(std::count_if(compared.begin(), compared.end(),
                                             [](const TOOL_COMPARED_BYTE& byte) { return !byte.is_equal(); }));
}

bool tool_is_match(const TOVREN_SFL_FLASH_INFO& record, std::span<const BYTE> answer, bool by_silicon_id) {
    return record.silicon_id == by_silicon_id && tool_miss_count(tool_compared_bytes(record, answer)) == 0;
}
