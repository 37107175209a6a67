// Figures of a flash description that no chip can have together: a rule each, which names the two.
#include "tool_flash_physics.h"

#include "tool_flash_capacity.h"
#include "tool_text.h"

#include <utility>

namespace {

constexpr unsigned int BITS_A_BYTE = 8;
constexpr unsigned int PAGE_BYTES = 256;
constexpr unsigned int AAI_WORD_BYTES = 2; // programmed by one command in `aai_mode`
constexpr unsigned int LEAST_UTIME_A_BYTE = 1;
constexpr unsigned int MICROSECONDS_A_SECOND = 1000000;
constexpr unsigned int MOST_BITS_OF_3_BYTES = (1U << 24) * BITS_A_BYTE;

std::string hex(unsigned int byte) {
    const auto value = static_cast<unsigned char>(byte);
    return "0x" + tool_hex_text(&value, 1);
}

// "65536 (64 KiB)", the cell and what it comes to.
std::string with_unit(const std::optional<unsigned int>& value, std::string (*text)(unsigned long long)) {
    return std::to_string(*value) + " (" + text(*value) + ')';
}

// One row under the rules.
class CHECKED_ROW {
public:
    CHECKED_ROW(const TOOL_CSV_ROW& row, std::vector<TOOL_PHYSICS_FINDING>& findings)
        : m_row(row), m_findings(findings) {}

    void set_rule(const char* rule) { m_rule = rule; }

    std::optional<unsigned int> number(const char* member) const { return tool_flash_number(m_row, member); }
    std::optional<bool> flag(const char* member) const { return tool_flash_flag(m_row, member); }

    void add(const char* member, const std::string& fault) {
        m_findings.push_back({&m_row, tool_flash_fault_at(m_row, member, fault, TOOL_CSV_FAULT::SEVERITY::HARMFUL)});
        m_findings.back().fault.rule = m_rule;
    }

private:
    const TOOL_CSV_ROW& m_row;
    std::vector<TOOL_PHYSICS_FINDING>& m_findings;
    const char* m_rule = "";
};

// ---- capacity-byte ----

void check_capacity_byte(CHECKED_ROW& row) {
    constexpr unsigned int NOT_COMPARED = 255;
    const auto bits = row.number("device_bit_size");
    const auto mfc = row.number("mfc_id");
    const auto type = row.number("memory_type");
    const auto type_index = row.number("memory_type_index");
    const auto id = row.number("memory_id");
    if (row.flag("silicon_id") != false || !bits || !mfc || !type || !id || !type_index || type_index == NOT_COMPARED)
        return;
    const auto capacity = tool_flash_capacity(*mfc, *type, *id);
    if (!capacity)
        return;
    const unsigned int told = capacity->bytes.value_or(0) * BITS_A_BYTE;
    if (told == bits && told != 0)
        return;
    const std::string answer = hex(*mfc) + ' ' + hex(*type) + ' ' + hex(*id);
    const std::string meaning = told == 0 ? "no density, as others of its series do" : tool_bits_text(told);
    row.add(capacity->member, "the identification " + answer + " tells " + meaning + ", but device_bit_size is " +
                                  with_unit(bits, tool_bits_text) + "; one of the two is wrong");
}

// ---- sector-size ----

void check_sector_size(CHECKED_ROW& row) {
    const auto bits = row.number("device_bit_size");
    const auto sector = row.number("device_sector_byte");
    if (bits == 0U)
        row.add("device_bit_size", "a flash of 0 bits holds nothing");
    if (sector == 0U)
        row.add("device_sector_byte", "a sector of 0 bytes holds nothing");
    if (!bits || !sector || *bits == 0 || *sector == 0)
        return;
    const unsigned long long sector_bits = 1ULL * *sector * BITS_A_BYTE;
    const std::string sector_text = "a sector of " + with_unit(sector, tool_bytes_text) + ' ';
    const std::string flash_text = "the flash, device_bit_size " + with_unit(bits, tool_bits_text);
    if (sector_bits > *bits)
        row.add("device_sector_byte", sector_text + "is larger than " + flash_text);
    else if (*bits % sector_bits != 0)
        row.add("device_sector_byte", sector_text + "does not divide " + flash_text + "; the last one would be cut");
}

// ---- erase-time ----

void check_erase_time(CHECKED_ROW& row) {
    const auto bulk = row.number("bulk_erase_time");
    const auto sector = row.number("sec_erase_time");
    for (const char* member : {"bulk_erase_time", "sec_erase_time"})
        if (row.number(member) == 0U)
            row.add(member, "0 s: no erase takes no time; a longest time is rounded up, to 1 s at least");
    if (bulk && sector && *bulk != 0 && *bulk < *sector)
        row.add("bulk_erase_time", "all sectors in " + tool_seconds_text(*bulk) +
                                       ", but one alone in sec_erase_time, " + tool_seconds_text(*sector));
}

// ---- program-time ----

void check_program_time(CHECKED_ROW& row) {
    const auto time = row.number("program_utime");
    const auto is_aai = row.flag("aai_mode");
    const auto erase = row.number("sec_erase_time");
    if (!time || !is_aai)
        return;
    const unsigned int bytes = *is_aai ? AAI_WORD_BYTES : PAGE_BYTES;
    const unsigned int least = bytes * LEAST_UTIME_A_BYTE;
    const std::string unit = *is_aai ? "a word" : "a page";
    if (*time < least)
        row.add("program_utime", std::to_string(*time) + " us for " + unit + " of " + std::to_string(bytes) +
                                     " bytes: the longest time is at least 1 us a byte, " + std::to_string(least) +
                                     " us; the member counts microseconds for " + unit);
    if (erase && *erase != 0 && *time > 1ULL * *erase * MICROSECONDS_A_SECOND)
        row.add("program_utime", std::to_string(*time) + " us (" + tool_microseconds_text(*time) + ") for " + unit +
                                     " is more than the erase of a sector takes by sec_erase_time, " +
                                     tool_seconds_text(*erase) + "; the member counts microseconds");
}

// ---- address-width ----

void check_address_width(CHECKED_ROW& row) {
    const auto bits = row.number("device_bit_size");
    const auto is_wide = row.flag("byte4_addressing");
    if (!bits || !is_wide || *is_wide == (*bits > MOST_BITS_OF_3_BYTES))
        return;
    row.add("byte4_addressing", (*is_wide ? "TRUE, but 3 address bytes reach all of device_bit_size, "
                                          : "FALSE, but 3 address bytes reach 128 Mbit and device_bit_size is ") +
                                    with_unit(bits, tool_bits_text));
}

// ---- protection-mask ----

void check_inside_mask(CHECKED_ROW& row, const char* member, unsigned int mask) {
    const auto value = row.number(member);
    if (value && (*value & ~mask) != 0)
        row.add(member, hex(*value) + " sets " + hex(*value & ~mask) + " outside protection_mask, " + hex(mask));
}

void check_protection_mask(CHECKED_ROW& row) {
    const auto mask = row.number("protection_mask");
    if (mask) {
        check_inside_mask(row, "protection_value", *mask);
        check_inside_mask(row, "unprotect_value", *mask);
    }
    const auto locked = row.number("protection_value");
    if (mask && *mask != 0 && locked && locked == row.number("unprotect_value"))
        row.add("unprotect_value", hex(*locked) + " is protection_value too; protected and not are the same");
    const auto bottom = row.number("bottom_value");
    if (bottom && (*bottom & (*bottom - 1)) != 0)
        row.add("bottom_value", hex(*bottom) + " has more than one bit; the top/bottom bit is one, or 0 for none");
}

// ---- all of them ----

struct RULE {
    TOOL_PHYSICS_RULE text;
    void (*check)(CHECKED_ROW& row);
};

constexpr RULE RULES[] = {
    {{"capacity-byte", "device_bit_size is what the identification tells, if any"}, check_capacity_byte},
    {{"sector-size", "device_sector_byte divides the density; neither is 0"}, check_sector_size},
    {{"erase-time", "bulk_erase_time is at least sec_erase_time, that 1 s"}, check_erase_time},
    {{"program-time", "program_utime: from 1 us a byte up to sec_erase_time"}, check_program_time},
    {{"address-width", "byte4_addressing is TRUE just above 128 Mbit"}, check_address_width},
    {{"protection-mask", "protection values lie in protection_mask and differ"}, check_protection_mask},
};

} // namespace

std::span<const TOOL_PHYSICS_RULE> tool_physics_rules() {
    static const std::vector<TOOL_PHYSICS_RULE> TEXTS = [] {
        std::vector<TOOL_PHYSICS_RULE> texts;
        for (const RULE& rule : RULES)
            texts.push_back(rule.text);
        return texts;
    }();
    return TEXTS;
}

std::vector<TOOL_PHYSICS_FINDING> tool_physics_findings(const std::vector<TOOL_CSV_ROW>& rows) {
    std::vector<TOOL_PHYSICS_FINDING> findings;
    for (const TOOL_CSV_ROW& row : rows) {
        CHECKED_ROW checked(row, findings);
        for (const RULE& rule : RULES) {
            checked.set_rule(rule.text.name);
            rule.check(checked);
        }
    }
    return findings;
}
