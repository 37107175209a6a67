// Contradictions between a parameter table, an identification, given members and the database.
#include "tool_sfdp_check.h"

#include "tool_sfdp_record.h"
#include "tool_text.h"

#include <algorithm>
#include <map>

namespace {

constexpr std::uint32_t USUAL_PAGE = 256; // bytes
constexpr unsigned char CONTINUATION = 0x7F;
constexpr unsigned char MAKER_WITH_TWO_ROWS = 0xC2;
constexpr std::uint64_t MOST_BITS_OF_3_ADDRESS_BYTES = 0x8000000;
constexpr size_t ID_BYTES = 3;
constexpr char DENSITY_KIND[] = "density";

class CHECKER {
public:
    CHECKER(const TOOL_SFDP_SOURCES& sources, const std::vector<TOOL_SFDP_MEMBER>& members,
            const TOOL_FLASH_RECORDS& records)
        : m_table(sources.table), m_id(sources.id), m_sources(sources), m_members(members), m_records(records) {}

    std::vector<TOOL_SFDP_CONTRADICTION> check();

private:
    void warn(const char* kind, std::string text) { m_found.push_back({kind, std::move(text)}); }
    bool is_given(const char* member) const { return m_sources.given.contains(member); }
    std::optional<DWORD> number(const char* member) const {
        return tool_sfdp_number(tool_sfdp_member(m_members, member));
    }
    std::string id_text() const { return tool_hex_text(m_id.data(), ID_BYTES); }
    bool is_answered_by(const TOVREN_SFL_FLASH_INFO& record) const;
    std::vector<std::string> densities_of_identification(bool& agrees) const;

    void check_identification();
    void check_given_identification();
    void check_density();
    void check_addressing();
    void check_geometry();
    void check_given_geometry();
    void check_given_time(const char* member, std::optional<std::uint64_t> longest, std::uint64_t unit);
    void check_times();
    void check_maker();
    void check_series();

    const SFDP_TABLE& m_table;
    std::span<const unsigned char> m_id;
    const TOOL_SFDP_SOURCES& m_sources;
    const std::vector<TOOL_SFDP_MEMBER>& m_members;
    const TOOL_FLASH_RECORDS& m_records;
    std::vector<TOOL_SFDP_CONTRADICTION> m_found;
};

// ---- the identification ----

void CHECKER::check_identification() {
    if (m_id[0] == m_id[1] && m_id[1] == m_id[2])
        warn("repeated_byte", "the identification " + id_text() +
                                  " is one byte repeated: a line that is stuck or an echo rather than a chip");
    if (m_id[0] == CONTINUATION)
        warn("continuation",
             "the identification begins with the continuation code 7F: its maker stands in a later byte, "
             "and a definition compares the first three only");
}

// A given byte counts, and the chip does not answer a definition that holds another than it sends.
void CHECKER::check_given_identification() {
    constexpr const char* MEMBER_LIST[][2] = {{"mfc_id", "mfc_id_index"},
                                              {"memory_type", "memory_type_index"},
                                              {"memory_id", "memory_id_index"}};
    for (const auto& [member, index] : MEMBER_LIST) {
        const auto value = number(member);
        const auto place = number(index);
        if (!is_given(member) || !value || !place || *place >= ID_BYTES || *value == m_id[*place])
            continue;
        const auto byte = static_cast<unsigned char>(*value);
        warn("given_id", std::string(member) + " is given as " + tool_hex_text(&byte, 1) + ", and byte " +
                             std::to_string(*place) + " of " + id_text() + " is " + tool_hex_text(&m_id[*place], 1) +
                             ": the definition does not match the identification");
    }
}

bool CHECKER::is_answered_by(const TOVREN_SFL_FLASH_INFO& record) const {
    return tool_has_usual_id(record) && record.mfc_id == m_id[0] && record.memory_type == m_id[1] &&
           record.memory_id == m_id[2];
}

// Who says what, but for what agrees with the table; one voice that agrees is enough, for codes are not always kept.
std::vector<std::string> CHECKER::densities_of_identification(bool& agrees) const {
    std::vector<std::string> voices;
    if (const auto bits = tool_capacity_bits(m_id[0], m_id[2])) {
        agrees = agrees || *bits == m_table.density_bits;
        voices.push_back("the capacity byte " + tool_hex_text(&m_id[2], 1) + " of " + id_text() + " means " +
                         tool_bits_text(*bits));
    }
    std::map<DWORD, size_t> counts;
    for (const TOVREN_SFL_FLASH_INFO* record : m_records)
        if (is_answered_by(*record))
            ++counts[record->device_bit_size];
    for (const auto& [bits, count] : counts) {
        agrees = agrees || bits == m_table.density_bits;
        voices.push_back(tool_count_text(count, "record") + " of " + id_text() + (count == 1 ? " has " : " have ") +
                         tool_bits_text(bits));
    }
    return voices;
}

void CHECKER::check_density() {
    bool agrees = false;
    const std::vector<std::string> voices = densities_of_identification(agrees);
    const std::string of_table = "the table says " + tool_bits_text(m_table.density_bits);
    if (voices.empty())
        return warn("density_unchecked", of_table + "; the capacity byte " + tool_hex_text(&m_id[2], 1) +
                                             " follows no common code, and nothing else says how large the chip is");
    if (agrees)
        return;
    m_found.push_back({DENSITY_KIND, of_table + "; " + tool_join(voices, ", "), !is_given("device_bit_size"),
                       "read both again; --member device_bit_size=NUMBER (Mbit) decides"});
}

// ---- addressing ----

void CHECKER::check_addressing() {
    const std::string density = tool_bits_text(m_table.density_bits);
    const bool is_large = m_table.density_bits > MOST_BITS_OF_3_ADDRESS_BYTES;
    if (!is_large && m_table.address_mode == SFDP_ADDRESS_MODE::FOUR)
        warn("4_byte_only", "the table takes four address bytes only, and byte4_addressing follows the density, " +
                                density + ", that needs three");
    if (!is_large || tool_sfdp_tells_four_bytes(m_table))
        return;
    const std::string consequence = ": without four address bytes, what lies beyond 16 MiB wraps to the beginning";
    if (m_table.address_mode == SFDP_ADDRESS_MODE::THREE)
        warn("3_byte_only", "the table says three address bytes only, and the chip has " + density + consequence);
    else if (!m_table.enter_4byte)
        warn("no_way_to_4_bytes",
             "the table ends before it tells how a chip of " + density + " takes four address bytes" + consequence);
    else
        warn("no_way_to_4_bytes",
             "the table does not tell how a chip of " + density + " takes four address bytes" + consequence);
}

// ---- geometry ----

void CHECKER::check_geometry() {
    if (tool_sfdp_has_sector_map(m_table))
        warn("sector_map", "the table has a sector map: erase blocks depend on the address, and one size for all of "
                           "them is wrong somewhere");
    if (m_table.page_bytes != USUAL_PAGE)
        warn("page", "a page has " + tool_bytes_text(m_table.page_bytes) + ", which no member of a definition holds");
    if (!m_table.write_granularity_64plus)
        warn("byte_programming", "the table says that the chip programs single bytes, not pages");
    const auto sector = number("device_sector_byte");
    if (!sector || !m_table.four_byte_table || m_table.four_byte_table->erase.empty() ||
        m_table.density_bits <= MOST_BITS_OF_3_ADDRESS_BYTES)
        return;
    const auto& erases = m_table.four_byte_table->erase;
    if (std::none_of(erases.begin(), erases.end(),
                     [&sector](const SFDP_FOUR_BYTE_ERASE& erase) { return erase.size == *sector; }))
        warn("no_4_byte_erase",
             "the table has no erase instruction of four address bytes for a sector of " + tool_bytes_text(*sector));
}

void CHECKER::check_given_geometry() {
    const bool is_told = std::any_of(m_found.begin(), m_found.end(), [](const TOOL_SFDP_CONTRADICTION& contradiction) {
        return std::string_view(contradiction.kind) == DENSITY_KIND;
    });
    if (const auto bits = number("device_bit_size");
        !is_told && is_given("device_bit_size") && bits && *bits != m_table.density_bits)
        warn("given_density", "device_bit_size is given as " + tool_bits_text(*bits) + ", the table says " +
                                  tool_bits_text(m_table.density_bits));
    if (const auto sector = number("device_sector_byte");
        is_given("device_sector_byte") && sector && !tool_sfdp_erase_type_of(m_table, *sector))
        warn("given_sector", "device_sector_byte is given as " + tool_bytes_text(*sector) +
                                 ", and no erase block of the table has that size");
    if (const auto flag = number("flag_status"); is_given("flag_status") && flag && m_table.flag_status_register &&
                                                 (*flag != 0) != *m_table.flag_status_register)
        warn("given_flag_status", std::string("flag_status is given as ") + (*flag != 0 ? "Y" : "N") +
                                      ", and the table says that the chip has " + (*flag != 0 ? "no" : "a") +
                                      " flag status register");
}

// ---- times ----

// `longest` of the table, of which `unit` are one of the member's.
void CHECKER::check_given_time(const char* member, std::optional<std::uint64_t> longest, std::uint64_t unit) {
    const auto given = number(member);
    if (!is_given(member) || !given || !longest || *given * unit >= *longest)
        return;
    const bool is_microseconds = unit == 1;
    const std::string of_table =
        is_microseconds ? std::to_string(*longest) + " us" : tool_sfdp_milliseconds_text(*longest);
    warn("given_time", std::string(member) + " is given as " + std::to_string(*given) +
                           (is_microseconds ? " us" : " s") + ", shorter than the longest of the table, " + of_table);
}

void CHECKER::check_times() {
    constexpr std::uint64_t SECOND = 1000; // in milliseconds
    check_given_time("bulk_erase_time", tool_sfdp_longest_chip_erase_ms(m_table), SECOND);
    if (const auto sector = number("device_sector_byte"))
        if (const SFDP_ERASE_TYPE* type = tool_sfdp_erase_type_of(m_table, *sector))
            check_given_time("sec_erase_time", type->max_ms, SECOND);
    check_given_time("program_utime", m_table.page_program_max_us, 1);
    const auto bulk = number("bulk_erase_time");
    const auto sector = number("sec_erase_time");
    if (bulk && sector && *bulk < *sector)
        warn("bulk_below_sector", "bulk_erase_time, " + tool_seconds_text(*bulk) +
                                      ", is shorter than sec_erase_time, " + tool_seconds_text(*sector));
    if (number("die_count").value_or(1) > 1 &&
        tool_sfdp_member(m_members, "bulk_erase_time").source == TOOL_MEMBER_SOURCE::TABLE)
        warn("time_of_one_die", "the chip erase time of a table is that of one die, and the chip has more");
}

// ---- names ----

void CHECKER::check_maker() {
    const auto given = m_sources.given.find("manufacturer_name");
    TOOL_FLASH_RECORDS alike;
    std::copy_if(m_records.begin(), m_records.end(), std::back_inserter(alike),
                 [this](const TOVREN_SFL_FLASH_INFO* record) {
                     return tool_has_usual_id(*record) && record->mfc_id == m_id[0];
                 });
    const std::vector<std::string> makers = tool_different_texts(alike, &TOVREN_SFL_FLASH_INFO::manufacturer_name);
    if (given == m_sources.given.end() || makers.empty() ||
        std::any_of(makers.begin(), makers.end(),
                    [&given](const std::string& maker) { return tool_equal_ignoring_case(maker, given->second); }))
        return;
    const std::string guess = tool_did_you_mean(tool_nearest_names(given->second, makers));
    warn("maker", "manufacturer_name is given as " + tool_quoted(given->second) +
                      "; the records with the manufacturer byte " + tool_hex_text(m_id.data(), 1) + " are of " +
                      tool_printable(tool_join(makers, ", ")) + (guess.empty() ? "" : ". " + guess));
}

// A name whose series belongs to another manufacturer byte.
void CHECKER::check_series() {
    const TOOL_FLASH_SIBLINGS& siblings = m_sources.siblings;
    if (!is_given("device_name") || siblings.series.empty() || !siblings.records.empty())
        return;
    for (const TOVREN_SFL_FLASH_INFO* record : m_records) {
        if (!tool_has_usual_id(*record) || record->mfc_id == m_id[0] ||
            tool_flash_series(record->device_name, record->device_bit_size) != siblings.series)
            continue;
        return warn("series", "device_name names the series " + siblings.series + ", of " +
                                  tool_printable(record->manufacturer_name) + " with the manufacturer byte " +
                                  tool_hex_text(&record->mfc_id, 1) + "; the identification begins with " +
                                  tool_hex_text(m_id.data(), 1));
    }
}

std::vector<TOOL_SFDP_CONTRADICTION> CHECKER::check() {
    check_identification();
    check_given_identification();
    check_density();
    check_addressing();
    check_geometry();
    check_given_geometry();
    check_times();
    check_maker();
    check_series();
    return std::move(m_found);
}

} // namespace

std::vector<TOOL_SFDP_CONTRADICTION> tool_sfdp_contradictions(const TOOL_SFDP_SOURCES& sources,
                                                              const std::vector<TOOL_SFDP_MEMBER>& members,
                                                              const TOOL_FLASH_RECORDS& records) {
    return CHECKER(sources, members, records).check();
}

std::optional<std::uint64_t> tool_capacity_bits(unsigned char manufacturer, unsigned char capacity) {
    constexpr std::uint64_t BYTE_BITS = 8;
    constexpr unsigned SECOND_ROW = 0x20;
    if (capacity >= 0x10 && capacity <= 0x1F)
        return BYTE_BITS << capacity;
    if (capacity >= 0x20 && capacity <= 0x22)
        return BYTE_BITS << (capacity - SECOND_ROW + 0x1A);
    if (capacity >= 0x30 && capacity <= 0x3F && manufacturer == MAKER_WITH_TWO_ROWS)
        return BYTE_BITS << (capacity - SECOND_ROW);
    return std::nullopt;
}
