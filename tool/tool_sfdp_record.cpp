// A parameter table (SFDP) beside a flash record.
#include "tool_sfdp_record.h"

#include "tool_text.h"

#include <algorithm>

namespace {

constexpr std::uint16_t SECTOR_MAP_ID = 0xFF81;
constexpr std::uint64_t MOST_BITS_OF_3_ADDRESS_BYTES = 0x8000000;
constexpr std::uint32_t USUAL_PAGE = 256; // bytes
constexpr unsigned READ_OPCODES[] = {0x13, 0x0C};
constexpr unsigned PROGRAM_OPCODE = 0x12;

class COMPARISON {
public:
    COMPARISON(const TOVREN_SFL_FLASH_INFO& record, const SFDP_TABLE& table) : m_record(record), m_table(table) {}

    std::vector<SFDP_DIFFERENCE> differences();

private:
    void add_where(bool is_different, const char* member, std::string record_value, std::string table_value) {
        if (is_different)
            m_found.push_back({member, std::move(record_value), std::move(table_value)});
    }
    void compare_flags();
    void compare_geometry();
    void compare_seconds(const char* member, DWORD seconds, std::optional<std::uint64_t> milliseconds);
    void compare_times();

    const TOVREN_SFL_FLASH_INFO& m_record;
    const SFDP_TABLE& m_table;
    std::vector<SFDP_DIFFERENCE> m_found;
};

const char* flag_text(bool value) {
    return value ? "yes" : "no";
}

// "4 KiB, 64 KiB".
std::string erase_sizes_text(const SFDP_TABLE& table) {
    std::vector<std::uint32_t> sizes;
    for (const SFDP_ERASE_TYPE& type : table.erase_types)
        sizes.push_back(type.size);
    std::sort(sizes.begin(), sizes.end());
    sizes.erase(std::unique(sizes.begin(), sizes.end()), sizes.end());
    std::vector<std::string> texts;
    texts.reserve(sizes.size());
    for (const std::uint32_t size : sizes)
        texts.push_back(tool_bytes_text(size));
    return tool_join(texts, ", ");
}

void COMPARISON::compare_flags() {
    if (tool_sfdp_has_four_byte_instructions(m_table))
        add_where(!m_record.extended_mode, "extended_mode", flag_text(m_record.extended_mode), flag_text(true));
    if (m_table.flag_status_register)
        add_where(m_record.flag_status != *m_table.flag_status_register, "flag_status", flag_text(m_record.flag_status),
                  flag_text(*m_table.flag_status_register));
}

void COMPARISON::compare_geometry() {
    add_where(m_record.device_bit_size != m_table.density_bits, "device_bit_size",
              tool_bits_text(m_record.device_bit_size), tool_bits_text(m_table.density_bits));
    add_where(!tool_sfdp_erase_type_of(m_table, m_record.device_sector_byte), "device_sector_byte",
              tool_bytes_text(m_record.device_sector_byte), erase_sizes_text(m_table));
    const bool is_needed = tool_sfdp_needs_four_bytes(m_table);
    add_where(m_record.byte4_addressing != is_needed, "byte4_addressing", flag_text(m_record.byte4_addressing),
              flag_text(is_needed));
}

void COMPARISON::compare_seconds(const char* member, DWORD seconds, std::optional<std::uint64_t> milliseconds) {
    if (milliseconds)
        add_where(seconds != (*milliseconds + 999) / 1000, member, tool_seconds_text(seconds),
                  tool_sfdp_milliseconds_text(*milliseconds));
}

void COMPARISON::compare_times() {
    compare_seconds("bulk_erase_time", m_record.bulk_erase_time, tool_sfdp_longest_chip_erase_ms(m_table));
    if (const SFDP_ERASE_TYPE* type = tool_sfdp_erase_type_of(m_table, m_record.device_sector_byte))
        compare_seconds("sec_erase_time", m_record.sec_erase_time, type->max_ms);
    if (m_table.page_program_max_us)
        add_where(m_record.program_utime != *m_table.page_program_max_us, "program_utime",
                  tool_microseconds_text(m_record.program_utime),
                  tool_microseconds_text(static_cast<unsigned int>(*m_table.page_program_max_us)));
}

std::vector<SFDP_DIFFERENCE> COMPARISON::differences() {
    compare_flags();
    compare_geometry();
    compare_times();
    add_where(m_table.page_bytes != USUAL_PAGE, "page", "-", tool_bytes_text(m_table.page_bytes));
    return std::move(m_found);
}

} // namespace

std::vector<SFDP_DIFFERENCE> sfdp_differences(const TOVREN_SFL_FLASH_INFO& record, const SFDP_TABLE& table) {
    return COMPARISON(record, table).differences();
}

const SFDP_ERASE_TYPE* tool_sfdp_erase_type_of(const SFDP_TABLE& table, std::uint64_t size) {
    const SFDP_ERASE_TYPE* found = nullptr;
    for (const SFDP_ERASE_TYPE& type : table.erase_types)
        if (type.size == size && (!found || type.max_ms > found->max_ms))
            found = &type;
    return found;
}

std::optional<std::uint64_t> tool_sfdp_longest_chip_erase_ms(const SFDP_TABLE& table) {
    return std::max(table.chip_erase_max_ms, table.chip_erase_max_ms_if_program_factor);
}

bool tool_sfdp_has_sector_map(const SFDP_TABLE& table) {
    return std::any_of(table.tables.begin(), table.tables.end(),
                       [](const SFDP_TABLE_HEADER& header) { return header.id == SECTOR_MAP_ID; });
}

bool tool_sfdp_has_four_byte_instructions(const SFDP_TABLE& table) {
    if (!table.four_byte_table || table.four_byte_table->erase.empty())
        return false;
    const auto& supported = table.four_byte_table->supported;
    const auto has = [&supported](unsigned opcode) {
        return std::any_of(supported.begin(), supported.end(),
                           [opcode](const auto& instruction) { return instruction.second == opcode; });
    };
    return has(PROGRAM_OPCODE) && std::any_of(std::begin(READ_OPCODES), std::end(READ_OPCODES), has);
}

bool tool_sfdp_needs_four_bytes(const SFDP_TABLE& table) {
    return table.address_mode == SFDP_ADDRESS_MODE::FOUR || table.density_bits > MOST_BITS_OF_3_ADDRESS_BYTES;
}

bool tool_sfdp_tells_four_bytes(const SFDP_TABLE& table) {
    if (table.address_mode == SFDP_ADDRESS_MODE::FOUR)
        return true;
    return table.address_mode == SFDP_ADDRESS_MODE::THREE_OR_FOUR &&
           (tool_sfdp_has_four_byte_instructions(table) || (table.enter_4byte && !table.enter_4byte->empty()));
}

std::string tool_sfdp_milliseconds_text(std::uint64_t milliseconds) {
    constexpr std::uint64_t SECOND = 1000;
    if (milliseconds < SECOND)
        return std::to_string(milliseconds) + " ms";
    std::string text = std::to_string(milliseconds / SECOND);
    if (const std::uint64_t rest = milliseconds % SECOND; rest != 0) {
        text += '.' + std::to_string(SECOND + rest).substr(1);
        text.erase(text.find_last_not_of('0') + 1);
    }
    return text + " s";
}
