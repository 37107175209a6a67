// Flashes that one answer identifies: what they agree on, and what to read to tell them apart.
#include "tool_flash_tell.h"

#include "host_text.h"
#include "tool_file.h"
#include "tool_text.h"
#include "tovren_types.h"

#include <algorithm>
#include <fstream>
#include <set>
#include <sstream>
#include <string_view>

namespace {

constexpr size_t ID_SIZE = 3;
constexpr size_t LARGEST_TABLE = 1 << 20; // bytes

// Names, and what every record with the identification holds, or has for its own place in the table.
constexpr std::string_view NOT_COMPARED[] = {"device_name", "silicon_id",
                                             "memory_id",   "memory_id_index",
                                             "memory_type", "memory_type_index",
                                             "mfc_id",      "mfc_id_index",
                                             "default_dev", "ini"};

constexpr std::string_view IN_PARAMETER_TABLE[] = {"flag_status",      "device_bit_size", "device_sector_byte",
                                                   "byte4_addressing", "bulk_erase_time", "sec_erase_time",
                                                   "program_utime"};

template <typename LIST>
bool is_in(const LIST& list, std::string_view name) {
    return std::find(std::begin(list), std::end(list), name) != std::end(list);
}

std::vector<BYTE> bytes_of(const std::string& digits) {
    std::vector<BYTE> bytes;
    for (size_t i = 0; i + 1 < digits.size(); i += 2)
        bytes.push_back(static_cast<BYTE>(gen_local_strtoQWORD(digits.substr(i, 2).c_str(), nullptr, 16)));
    return bytes;
}

void compare_members(const std::vector<const TOVREN_SFL_FLASH_INFO*>& candidates, TOOL_TELLING& telling) {
    const auto first = tool_flash_member_texts(*candidates.front());
    std::vector<bool> is_equal(first.size(), true);
    for (const TOVREN_SFL_FLASH_INFO* candidate : candidates) {
        const auto texts = tool_flash_member_texts(*candidate);
        for (size_t i = 0; i < first.size(); ++i)
            is_equal[i] = is_equal[i] && texts[i].text == first[i].text;
    }
    for (size_t i = 0; i < first.size(); ++i) {
        if (is_in(NOT_COMPARED, first[i].name))
            continue;
        if (is_equal[i])
            telling.agreed.push_back(first[i]);
        else
            telling.differing.push_back(first[i].name);
        if (!is_equal[i] && is_in(IN_PARAMETER_TABLE, first[i].name))
            telling.told_by_sfdp.push_back(first[i].name);
    }
}

bool is_of(const TOOL_EXTENDED_ID& row, const TOVREN_SFL_FLASH_INFO& record) {
    return row.identification == tool_flash_id_text(record) && row.device_sector_byte == record.device_sector_byte &&
           tool_equal_ignoring_case(row.device_name, record.device_name);
}

// Whether the answer, as far as it goes, is that of a flash with these further bytes.
bool fits(std::span<const BYTE> answer, const std::vector<BYTE>& bytes) {
    const size_t given = answer.size() - std::min(answer.size(), ID_SIZE);
    const size_t count = std::min(given, bytes.size());
    return std::equal(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count),
                      answer.end() - static_cast<std::ptrdiff_t>(given));
}

// How many different beginnings of `size` bytes there are.
size_t beginnings(const std::vector<TOOL_TELLING::STATED>& stated, size_t size) {
    std::set<std::vector<BYTE>> found;
    for (const auto& entry : stated)
        found.emplace(entry.bytes.begin(),
                      entry.bytes.begin() + static_cast<std::ptrdiff_t>(std::min(size, entry.bytes.size())));
    return found.size();
}

// The fewest further bytes that tell apart what all of them do; all of them where only one flash's are known.
size_t shortest_read(const std::vector<TOOL_TELLING::STATED>& stated) {
    size_t longest = 0;
    for (const auto& entry : stated)
        longest = std::max(longest, entry.bytes.size());
    if (beginnings(stated, longest) < 2)
        return longest;
    size_t size = 1;
    while (beginnings(stated, size) < beginnings(stated, longest))
        ++size;
    return size;
}

} // namespace

std::vector<TOOL_EXTENDED_ID> tool_read_extended_ids(const std::string& file) {
    std::vector<TOOL_EXTENDED_ID> ids;
    if (!tool_reading_fault(file).empty())
        return ids;
    std::ifstream stream(file);
    std::istringstream input(tool_read_all(stream, tool_printable(file), LARGEST_TABLE));
    std::vector<std::string> cells;
    for (std::string line; std::getline(input, line);) {
        gen_tokenize(line, " \t\r\n,", cells);
        constexpr size_t CELLS = 4;
        const auto sector = cells.size() == CELLS ? tool_number(cells[2], INVALID_DWORD) : std::nullopt;
        if (sector)
            ids.push_back({cells[0], cells[1], *sector, bytes_of(cells[3])});
    }
    return ids;
}

TOOL_TELLING tool_tell_apart(std::span<const BYTE> answer, const std::vector<const TOVREN_SFL_FLASH_INFO*>& candidates,
                             const std::vector<TOOL_EXTENDED_ID>& extended_ids) {
    TOOL_TELLING telling;
    telling.answer_size = answer.size();
    if (candidates.size() < 2)
        return telling;
    compare_members(candidates, telling);
    for (size_t i = 0; i < candidates.size(); ++i) {
        const auto row = std::find_if(extended_ids.begin(), extended_ids.end(),
                                      [&](const TOOL_EXTENDED_ID& other) { return is_of(other, *candidates[i]); });
        if (row != extended_ids.end())
            telling.stated.push_back({i, row->bytes, fits(answer, row->bytes)});
    }
    if (!telling.stated.empty())
        telling.read_size = ID_SIZE + shortest_read(telling.stated);
    return telling;
}
