// A flash drawn to scale. What the record does not say is not drawn, and said to be unknown.
//
// A drawing is as wide as the flash is large. Lines stand at the sectors; where there are more than MOST_LINES, at
// groups of them, and a second drawing enlarges one group.
#include "tool_flash_record.h"
#include "tool_report.h"
#include "tool_report_templates.h"
#include "tool_text.h"

#include <numeric>

namespace {

constexpr unsigned long long MOST_LINES = 128;
constexpr unsigned long long THREE_BYTE_BITS = 8ULL << 24; // what addresses of three bytes reach
constexpr BYTE NO_DIVISION = 0xFF;

TOOL_HTML number(unsigned long long value) {
    return TOOL_HTML(std::to_string(value));
}

TOOL_HTML hex(BYTE value) {
    return TOOL_HTML("0x" + tool_hex_text(&value, 1));
}

// `part` of `whole` in percent, to four places.
std::string percent(unsigned long long part, unsigned long long whole) {
    const unsigned long long scaled = part * 1000000 / whole;
    std::string text = std::to_string(scaled / 10000) + '.' + std::to_string(10000 + scaled % 10000).substr(1);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.')
        text.pop_back();
    return text + '%';
}

std::string ruling_name(unsigned long long whole, unsigned long long step) {
    return 'd' + std::to_string(whole) + (step == 1 ? "" : '-' + std::to_string(step));
}

// Lines every `step` of `whole`.
TOOL_HTML ruled(unsigned long long whole, unsigned long long step, const char* look, TOOL_RULINGS& rulings) {
    if (step == 0 || step >= whole)
        return {};
    const unsigned long long unit = std::gcd(whole, step);
    rulings.emplace(whole / unit, step / unit);
    return tool_fill(TOOL_PAGE_RULED,
                     {{"name", TOOL_HTML(ruling_name(whole / unit, step / unit))}, {"look", TOOL_HTML(look)}});
}

struct SECTORS {
    unsigned long long bits;        // of the flash
    unsigned long long sector_bits; // 0 where the record gives none
    unsigned long long count;       // the last may be cut
    unsigned long long grouped;     // sectors between two lines
};

SECTORS sectors_of(const TOVREN_SFL_FLASH_INFO& flash) {
    SECTORS sectors = {flash.device_bit_size, 8ULL * flash.device_sector_byte, 0, 1};
    if (sectors.sector_bits == 0)
        return sectors;
    sectors.count = (sectors.bits + sectors.sector_bits - 1) / sectors.sector_bits;
    while (sectors.count > MOST_LINES * sectors.grouped)
        sectors.grouped *= 2;
    return sectors;
}

TOOL_HTML sectors_words(const TOVREN_SFL_FLASH_INFO& flash, const SECTORS& sectors) {
    if (sectors.sector_bits == 0)
        return tool_fill(TOOL_PAGE_SECTORS_UNKNOWN);
    const TOOL_HTML size(tool_bytes_text(flash.device_sector_byte));
    if (sectors.bits % sectors.sector_bits != 0)
        return tool_fill(TOOL_PAGE_SECTORS_UNEVEN, {{"size", size}});
    if (sectors.grouped == 1)
        return tool_fill(TOOL_PAGE_SECTORS, {{"count", number(sectors.count)}, {"size", size}});
    return tool_fill(TOOL_PAGE_SECTORS_GROUPED,
                     {{"count", number(sectors.count)}, {"size", size}, {"grouped", number(sectors.grouped)}});
}

// One group of sectors, larger.
TOOL_HTML enlarged(const TOVREN_SFL_FLASH_INFO& flash, const SECTORS& sectors, TOOL_RULINGS& rulings) {
    if (sectors.grouped <= 2 || sectors.grouped > MOST_LINES)
        return {};
    return tool_fill(TOOL_PAGE_ENLARGED,
                     {{"lines", ruled(sectors.grouped, 1, "sector", rulings)},
                      {"grouped", number(sectors.grouped)},
                      {"size", TOOL_HTML(tool_bytes_text(flash.device_sector_byte))},
                      {"end", TOOL_HTML(tool_bytes_text(sectors.grouped * flash.device_sector_byte))}});
}

TOOL_HTML dies_words(const TOVREN_SFL_FLASH_INFO& flash) {
    if (flash.die_count < 2)
        return {};
    return tool_fill(TOOL_PAGE_DIES, {{"count", number(flash.die_count)}});
}

TOOL_HTML address_words(const TOVREN_SFL_FLASH_INFO& flash) {
    const bool is_large = flash.device_bit_size > THREE_BYTE_BITS;
    return tool_fill(is_large ? TOOL_PAGE_ADDRESS_LARGE : TOOL_PAGE_ADDRESS_SMALL,
                     {{"byte4", TOOL_HTML(flash.byte4_addressing ? "yes" : "no")}});
}

TOOL_HTML boundary(const TOVREN_SFL_FLASH_INFO& flash) {
    if (flash.device_bit_size <= THREE_BYTE_BITS)
        return {};
    return tool_fill(TOOL_PAGE_BOUNDARY, {{"place", TOOL_HTML(percent(THREE_BYTE_BITS, flash.device_bit_size))}});
}

// Quarters of the flash, in bytes.
TOOL_HTML scale(unsigned long long bits) {
    constexpr unsigned int QUARTERS = 4;
    const unsigned int steps = bits % (8 * QUARTERS) == 0 ? QUARTERS : 1;
    TOOL_HTML marks;
    for (unsigned int step = 0; step <= steps; ++step) {
        const unsigned long long place = bits / steps * step;
        const std::string text = place % 8 == 0 ? tool_bytes_text(place / 8) : tool_bits_text(place);
        marks += tool_fill(TOOL_PAGE_MARK, {{"text", TOOL_HTML(place == 0 ? "0" : text)}});
    }
    return marks;
}

// ---- protection ----

// The eight bits of the status register, the highest first.
TOOL_HTML status_bits(const TOVREN_SFL_FLASH_INFO& flash) {
    TOOL_HTML bits;
    for (unsigned int bit = 8; bit-- > 0;) {
        const bool protects = (flash.protection_mask >> bit & 1U) != 0;
        const bool is_bottom = (flash.bottom_value >> bit & 1U) != 0;
        bits += tool_fill(protects    ? TOOL_PAGE_BIT_PROTECTS
                          : is_bottom ? TOOL_PAGE_BIT_BOTTOM
                                      : TOOL_PAGE_BIT_OTHER,
                          {{"bit", number(bit)}});
    }
    return bits;
}

bool is_divided(const TOVREN_SFL_FLASH_INFO& flash) {
    return flash.protection_division > 1 && flash.protection_division != NO_DIVISION;
}

TOOL_HTML extent_words(const TOVREN_SFL_FLASH_INFO& flash) {
    if (is_divided(flash))
        return tool_fill(TOOL_PAGE_PROTECTION_DIVIDED, {{"divisor", number(flash.protection_division)}});
    return tool_fill(TOOL_PAGE_PROTECTION_WHOLE);
}

TOOL_HTML protection(const TOVREN_SFL_FLASH_INFO& flash, TOOL_RULINGS& rulings) {
    const TOOL_HTML at_start = tool_fill(flash.startup_protected ? TOOL_PAGE_STARTUP_PROTECTED : TOOL_PAGE_STARTUP_NOT);
    const TOOL_HTML bottom = flash.bottom_value == 0 ? tool_fill(TOOL_PAGE_BOTTOM_UNKNOWN)
                                                     : tool_fill(TOOL_PAGE_BOTTOM, {{"bit", hex(flash.bottom_value)}});
    if (flash.protection_mask == 0)
        return tool_fill(TOOL_PAGE_PROTECTION_UNKNOWN,
                         {{"value", hex(flash.protection_value)}, {"bottom", bottom}, {"at_start", at_start}});
    const TOOL_HTML parts = is_divided(flash) ? ruled(flash.protection_division, 1, "sector", rulings) : TOOL_HTML();
    return tool_fill(TOOL_PAGE_PROTECTION, {{"parts", parts},
                                            {"bits", status_bits(flash)},
                                            {"mask", hex(flash.protection_mask)},
                                            {"value", hex(flash.protection_value)},
                                            {"lifted", hex(flash.unprotect_value)},
                                            {"extent", extent_words(flash)},
                                            {"bottom", bottom},
                                            {"at_start", at_start}});
}

} // namespace

TOOL_HTML tool_report_geometry(const TOVREN_SFL_FLASH_INFO& flash, TOOL_RULINGS& rulings) {
    if (flash.device_bit_size == 0)
        return tool_fill(TOOL_PAGE_NO_GEOMETRY, {{"protection", protection(flash, rulings)}});
    const SECTORS sectors = sectors_of(flash);
    const bool are_dies_drawn = flash.die_count > 1 && flash.die_count <= MOST_LINES;
    return tool_fill(TOOL_PAGE_GEOMETRY,
                     {{"name", TOOL_HTML(flash.device_name)},
                      {"lines", ruled(sectors.bits, sectors.sector_bits * sectors.grouped, "sector", rulings)},
                      {"dies", are_dies_drawn ? ruled(flash.die_count, 1, "die", rulings) : TOOL_HTML()},
                      {"boundary", boundary(flash)},
                      {"scale", scale(flash.device_bit_size)},
                      {"sectors", sectors_words(flash, sectors)},
                      {"dies_words", dies_words(flash)},
                      {"address", address_words(flash)},
                      {"enlarged", enlarged(flash, sectors, rulings)},
                      {"protection", protection(flash, rulings)}});
}

TOOL_HTML tool_report_rulings(const TOOL_RULINGS& rulings) {
    TOOL_HTML symbols;
    for (const auto& [whole, step] : rulings) {
        std::string path;
        for (unsigned long long place = step; place < whole; place += step)
            path += 'M' + std::to_string(place) + " 0v1";
        symbols += tool_fill(TOOL_PAGE_RULING, {{"name", TOOL_HTML(ruling_name(whole, step))},
                                                {"whole", number(whole)},
                                                {"path", TOOL_HTML(path)}});
    }
    return symbols;
}
