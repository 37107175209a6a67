// The members of a flash definition, each from the first source that tells it.
#include "tool_sfdp_definition.h"

#include "tool_flash_definition_file.h"
#include "tool_flash_units.h"
#include "tool_sfdp_record.h"
#include "tool_text.h"
#include "tovren_dev_info_manager_auto_export.h"
#include "tovren_flash_ini.h"
#include "tovren_flash_manager.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <type_traits>

namespace {

constexpr std::uint64_t MBIT = 1 << 20;
constexpr std::uint64_t MOST_BITS_OF_3_ADDRESS_BYTES = 0x8000000;
constexpr std::uint32_t LARGEST_SECTOR = 1 << 20; // bytes
constexpr std::uint32_t SECTOR_UNIT = 1 << 10;
constexpr BYTE NO_BYTE = 0xFF; // of a divisor
constexpr char UNKNOWN_VOLTAGE[] = "UNKNOWN";

// What differs within a series with the density.
constexpr std::string_view BY_DENSITY_LIST[] = {"die_count", "bulk_erase_time", "protection_mask", "protection_value",
                                                "bottom_value"};

// A value that a source offers: the answer as a person would type it, or why there is none.
struct OFFER {
    std::string answer = {};
    std::string shown = {}; // with its unit
    TOOL_SURENESS sureness = TOOL_SURENESS::NONE;
    std::string note = {};
    std::string fault = {};
    const TOVREN_SFL_FLASH_INFO* record = nullptr;
};
using OPTIONAL_OFFER = std::optional<OFFER>;
using MEMBERS = std::vector<TOOL_SFDP_MEMBER>;

std::string hex_answer(DWORD value) {
    return TOVREN_FLASH_INI::convert_dword_to_hex_string(value, 2, false);
}

// ---- the table ----

OPTIONAL_OFFER flag_status_of(const SFDP_TABLE& table, const MEMBERS&) {
    if (!table.flag_status_register)
        return std::nullopt;
    const bool has_both = *table.flag_status_register && table.legacy_status_polling.value_or(false);
    return OFFER{*table.flag_status_register ? "Y" : "N", *table.flag_status_register ? "yes" : "no",
                 TOOL_SURENESS::COMPARED, has_both ? "the status register may be polled as well" : ""};
}

// That no such instructions are declared does not say that there are none.
OPTIONAL_OFFER extended_mode_of(const SFDP_TABLE& table, const MEMBERS&) {
    if (!tool_sfdp_has_four_byte_instructions(table))
        return std::nullopt;
    return OFFER{"Y", "yes", TOOL_SURENESS::COMPARED, "it has read, program and erase instructions of 4 address bytes"};
}

OPTIONAL_OFFER density_of(const SFDP_TABLE& table, const MEMBERS&) {
    const bool is_whole = table.density_bits % MBIT == 0;
    return OFFER{is_whole ? std::to_string(table.density_bits / MBIT) : "", tool_bits_text(table.density_bits),
                 TOOL_SURENESS::COMPARED, "", is_whole ? "" : "is no whole number of Mbit"};
}

OPTIONAL_OFFER sector_of(const SFDP_TABLE& table, const MEMBERS&) {
    if (tool_sfdp_has_sector_map(table))
        return OFFER{.fault = "the table has a sector map: the size depends on the address"};
    const SFDP_ERASE_TYPE* largest = nullptr;
    for (const SFDP_ERASE_TYPE& type : table.erase_types)
        if (type.size >= SECTOR_UNIT && type.size <= LARGEST_SECTOR && (!largest || type.size > largest->size))
            largest = &type;
    if (!largest)
        return OFFER{.fault = "no erase block of the table has 1 Kbyte to 1 Mbyte"};
    return OFFER{std::to_string(largest->size / SECTOR_UNIT), tool_bytes_text(largest->size), TOOL_SURENESS::COMPARED,
                 "the largest erase block up to 1 MiB, instruction " + hex_answer(largest->opcode) + 'h'};
}

// "84 s x 24 = 2016 s".
std::string product_text(std::uint64_t typical, std::uint64_t longest) {
    if (typical == 0)
        return tool_sfdp_milliseconds_text(longest);
    return tool_sfdp_milliseconds_text(typical) + " x " + std::to_string(longest / typical) + " = " +
           tool_sfdp_milliseconds_text(longest);
}

std::string seconds_answer(std::uint64_t milliseconds) {
    constexpr std::uint64_t SECOND = 1000;
    return std::to_string((milliseconds + SECOND - 1) / SECOND);
}

OPTIONAL_OFFER bulk_erase_of(const SFDP_TABLE& table, const MEMBERS&) {
    const auto longest = tool_sfdp_longest_chip_erase_ms(table);
    if (!longest)
        return std::nullopt;
    std::string note = "longest " + product_text(table.chip_erase_typ_ms.value_or(0), *longest);
    const auto other = std::min(table.chip_erase_max_ms, table.chip_erase_max_ms_if_program_factor);
    if (other && *other != *longest)
        note += "; read the other way " + tool_sfdp_milliseconds_text(*other);
    return OFFER{seconds_answer(*longest), tool_sfdp_milliseconds_text(*longest), TOOL_SURENESS::KNOWN, note};
}

OPTIONAL_OFFER sector_erase_of(const SFDP_TABLE& table, const MEMBERS& members) {
    const auto sector = tool_sfdp_number(tool_sfdp_member(members, "device_sector_byte"));
    const SFDP_ERASE_TYPE* type = sector ? tool_sfdp_erase_type_of(table, *sector) : nullptr;
    if (!type || !type->max_ms)
        return std::nullopt;
    return OFFER{seconds_answer(*type->max_ms), tool_sfdp_milliseconds_text(*type->max_ms), TOOL_SURENESS::KNOWN,
                 "longest of " + tool_bytes_text(type->size) + ' ' +
                     product_text(type->typ_ms.value_or(0), *type->max_ms)};
}

OPTIONAL_OFFER program_time_of(const SFDP_TABLE& table, const MEMBERS&) {
    if (!table.page_program_max_us)
        return std::nullopt;
    const std::string longest = std::to_string(*table.page_program_max_us);
    return OFFER{longest, longest + " us", TOOL_SURENESS::KNOWN,
                 "longest of a page of " + tool_bytes_text(table.page_bytes) + ' ' +
                     std::to_string(table.page_program_typ_us.value_or(0)) + " us x " +
                     std::to_string(table.program_max_factor.value_or(1)) + " = " + longest + " us"};
}

struct TABLE_READER {
    const char* member;
    OPTIONAL_OFFER (*read)(const SFDP_TABLE& table, const MEMBERS& members);
};

constexpr TABLE_READER TABLE_READER_LIST[] = {
    {"extended_mode", extended_mode_of}, {"flag_status", flag_status_of},    {"device_bit_size", density_of},
    {"device_sector_byte", sector_of},   {"bulk_erase_time", bulk_erase_of}, {"sec_erase_time", sector_erase_of},
    {"program_utime", program_time_of},
};

OPTIONAL_OFFER from_table(const char* member, const SFDP_TABLE& table, const MEMBERS& members) {
    for (const TABLE_READER& reader : TABLE_READER_LIST)
        if (!std::strcmp(reader.member, member))
            return reader.read(table, members);
    return std::nullopt;
}

// ---- the identification ----

struct ID_BYTE {
    const char* member;
    const char* index_member;
    size_t place; // where the standard puts it
};

constexpr ID_BYTE ID_BYTE_LIST[] = {
    {"mfc_id", "mfc_id_index", 0},
    {"memory_type", "memory_type_index", 1},
    {"memory_id", "memory_id_index", 2},
};

// A place that is given decides which byte counts.
size_t place_of(const ID_BYTE& byte, const TOOL_SFDP_SOURCES& sources) {
    const auto given = sources.given.find(byte.index_member);
    const bool is_place =
        given != sources.given.end() && given->second.size() == 1 && given->second >= "0" && given->second <= "2";
    return is_place ? static_cast<size_t>(given->second.front() - '0') : byte.place;
}

OPTIONAL_OFFER from_identification(const char* member, const TOOL_SFDP_SOURCES& sources) {
    for (const ID_BYTE& byte : ID_BYTE_LIST) {
        if (std::strcmp(byte.member, member) != 0)
            continue;
        const size_t place = place_of(byte, sources);
        const std::string text = hex_answer(sources.id[place]);
        return OFFER{text, text, TOOL_SURENESS::GIVEN};
    }
    return std::nullopt;
}

OPTIONAL_OFFER from_convention(const char* member) {
    for (const ID_BYTE& byte : ID_BYTE_LIST)
        if (!std::strcmp(byte.index_member, member))
            return OFFER{std::to_string(byte.place), std::to_string(byte.place), TOOL_SURENESS::FIXED};
    return std::nullopt;
}

// ---- records of the series ----

// Empty where no answer stands for the value.
std::string number_answer(const TOVREN_FLASH_PROMPT& prompt, DWORD value) {
    if (prompt.type == TOVREN_FLASH_PROMPT_DEC)
        return std::to_string(value / prompt.unit);
    if (prompt.type == TOVREN_FLASH_PROMPT_BIT && !std::has_single_bit(value))
        return value == 0 ? "-1" : "";
    if (prompt.type == TOVREN_FLASH_PROMPT_BIT)
        return std::to_string(std::countr_zero(value));
    return prompt.has_none && value == NO_BYTE ? "-1" : hex_answer(value);
}

std::string answer_of_record(const TOVREN_FLASH_PROMPT& prompt, const TOVREN_SFL_FLASH_INFO& record) {
    std::string answer;
    tovren_visit_members(record, [&](const char* member, const auto& value) {
        using VALUE = std::decay_t<decltype(value)>;
        if (std::strcmp(member, prompt.member) != 0)
            return;
        if constexpr (std::is_same_v<VALUE, std::string>)
            answer = value;
        else if constexpr (std::is_same_v<VALUE, bool>)
            answer = value ? "Y" : "N";
        else
            answer = number_answer(prompt, value);
    });
    return answer;
}

class RECORD_READER {
public:
    RECORD_READER(const TOOL_SFDP_SOURCES& sources, const MEMBERS& members)
        : m_table(sources.table), m_id(sources.id), m_records(sources.siblings.records),
          m_series(sources.siblings.series), m_bits(sources.bits), m_members(members) {}

    OPTIONAL_OFFER read(const TOVREN_FLASH_PROMPT& prompt) const;

private:
    DWORD number(const char* member) const { return tool_sfdp_number(tool_sfdp_member(m_members, member)).value_or(0); }
    bool is_same_answer(const TOVREN_SFL_FLASH_INFO& record) const {
        return record.mfc_id == m_id[0] && record.memory_type == m_id[1] && record.memory_id == m_id[2];
    }
    bool is_only_name() const;
    bool tells(const std::string& member, const TOVREN_SFL_FLASH_INFO& record) const;
    std::string note(const TOVREN_FLASH_PROMPT& prompt, const TOVREN_SFL_FLASH_INFO& record,
                     const std::string& answer) const;

    const SFDP_TABLE& m_table;
    std::span<const unsigned char> m_id;
    const TOOL_FLASH_RECORDS& m_records;
    const std::string& m_series;
    unsigned long long m_bits;
    const MEMBERS& m_members;
};

bool RECORD_READER::is_only_name() const {
    TOOL_FLASH_RECORDS alike;
    std::copy_if(m_records.begin(), m_records.end(), std::back_inserter(alike),
                 [this](const TOVREN_SFL_FLASH_INFO* record) { return is_same_answer(*record); });
    return tool_different_texts(alike, &TOVREN_SFL_FLASH_INFO::device_name).size() == 1;
}

// Whether a record can tell a member of the chip at all. Another chip has another name; a smaller one is erased sooner;
// what it says of 4-byte instructions holds for chips that need them as little or as much, and where the table itself
// leaves no doubt.
bool RECORD_READER::tells(const std::string& member, const TOVREN_SFL_FLASH_INFO& record) const {
    if (member == "device_name")
        return is_same_answer(record) && is_only_name();
    if (member == "bulk_erase_time")
        return record.device_bit_size >= m_bits;
    if (member == "sec_erase_time")
        return record.device_sector_byte == number("device_sector_byte");
    if (member == "extended_mode")
        return (record.device_bit_size > MOST_BITS_OF_3_ADDRESS_BYTES) == tool_sfdp_needs_four_bytes(m_table) &&
               (!tool_sfdp_needs_four_bytes(m_table) || tool_sfdp_tells_four_bytes(m_table));
    if (member == "asc_voltage")
        return record.asc_voltage != UNKNOWN_VOLTAGE;
    return member != "device_bit_size" && member != "device_sector_byte";
}

std::string RECORD_READER::note(const TOVREN_FLASH_PROMPT& prompt, const TOVREN_SFL_FLASH_INFO& record,
                                const std::string& answer) const {
    std::string note;
    const bool depends_on_density = std::find(std::begin(BY_DENSITY_LIST), std::end(BY_DENSITY_LIST),
                                              std::string_view(prompt.member)) != std::end(BY_DENSITY_LIST);
    if (depends_on_density && record.device_bit_size != m_bits)
        note = "of a chip of " + tool_bits_text(record.device_bit_size);
    const auto others = std::count_if(m_records.begin(), m_records.end(), [&](const TOVREN_SFL_FLASH_INFO* other) {
        return tells(prompt.member, *other) && answer_of_record(prompt, *other) != answer;
    });
    if (others != 0)
        note += (note.empty() ? "" : "; ") + std::to_string(others) + " of " + std::to_string(m_records.size()) +
                " records of " + m_series + " say otherwise";
    return note;
}

OPTIONAL_OFFER RECORD_READER::read(const TOVREN_FLASH_PROMPT& prompt) const {
    const auto place = std::find_if(m_records.begin(), m_records.end(),
                                    [&](const TOVREN_SFL_FLASH_INFO* record) { return tells(prompt.member, *record); });
    if (place == m_records.end())
        return std::nullopt;
    const TOVREN_SFL_FLASH_INFO& record = **place;
    const std::string answer = answer_of_record(prompt, record);
    OFFER offer{answer, answer + " of the record " + record.device_name, TOOL_SURENESS::GUESS,
                note(prompt, record, answer)};
    offer.record = &record;
    return offer;
}

// ---- one member ----

void refuse(TOOL_SFDP_MEMBER& member, std::string fault) {
    member.source = TOOL_MEMBER_SOURCE::MISSING;
    member.sureness = TOOL_SURENESS::NONE;
    member.field.clear();
    member.fault = std::move(fault);
}

void take(TOOL_SFDP_MEMBER& member, TOOL_MEMBER_SOURCE source, const OFFER& offer) {
    member.source = source;
    member.sureness = offer.sureness;
    member.note = offer.note;
    member.record = offer.record;
    if (!offer.fault.empty())
        return refuse(member, offer.shown + (offer.shown.empty() ? "" : " ") + offer.fault);
    if (const std::string fault = tool_flash_answer_fault(*member.prompt, offer.answer, member.field); !fault.empty())
        refuse(member, offer.shown + ' ' + fault);
}

void take_given(TOOL_SFDP_MEMBER& member, const std::string& text) {
    member.source = TOOL_MEMBER_SOURCE::GIVEN;
    member.sureness = TOOL_SURENESS::GIVEN;
    const std::string fault = tool_flash_answer_fault(*member.prompt, text, member.field);
    if (fault.empty())
        return;
    const std::string hint = tool_flash_unit_hint(*member.prompt, text);
    refuse(member, tool_quoted(text) + ' ' + fault + (hint.empty() ? "" : "; " + hint));
}

class FILLER {
public:
    explicit FILLER(const TOOL_SFDP_SOURCES& sources) : m_sources(sources) {}

    MEMBERS fill();

private:
    void fill_asked(TOOL_SFDP_MEMBER& member);
    void fill_derived(TOOL_SFDP_MEMBER& member);

    const TOOL_SFDP_SOURCES& m_sources;
    MEMBERS m_members; // in record order: those that others depend on stand before them
};

void FILLER::fill_asked(TOOL_SFDP_MEMBER& member) {
    const TOVREN_FLASH_PROMPT& prompt = *member.prompt;
    const auto given = m_sources.given.find(prompt.member);
    if (given != m_sources.given.end())
        take_given(member, given->second);
    else if (const auto of_table = from_table(prompt.member, m_sources.table, m_members))
        take(member, TOOL_MEMBER_SOURCE::TABLE, *of_table);
    else if (const auto of_id = from_identification(prompt.member, m_sources))
        take(member, TOOL_MEMBER_SOURCE::IDENTIFICATION, *of_id);
    else if (const auto of_convention = from_convention(prompt.member))
        take(member, TOOL_MEMBER_SOURCE::CONSTANT, *of_convention);
    else if (const auto of_record = RECORD_READER(m_sources, m_members).read(prompt))
        take(member, TOOL_MEMBER_SOURCE::RECORD, *of_record);
}

void FILLER::fill_derived(TOOL_SFDP_MEMBER& member) {
    const TOOL_SFDP_MEMBER& density = tool_sfdp_member(m_members, "device_bit_size");
    if (const auto bits = tool_sfdp_number(density)) {
        member.source = TOOL_MEMBER_SOURCE::DENSITY;
        member.sureness = density.sureness;
        member.field = *bits > MOST_BITS_OF_3_ADDRESS_BYTES ? "1" : "0";
    }
}

MEMBERS FILLER::fill() {
    for (const TOVREN_FLASH_PROMPT& prompt : TOVREN_FLASH_MANAGER::get_flash_prompts()) {
        TOOL_SFDP_MEMBER member;
        member.prompt = &prompt;
        if (prompt.question) {
            fill_asked(member);
        } else if (prompt.fixed) {
            member.source = TOOL_MEMBER_SOURCE::CONSTANT;
            member.sureness = TOOL_SURENESS::FIXED;
            member.field = prompt.fixed;
        } else {
            fill_derived(member);
        }
        m_members.push_back(std::move(member));
    }
    return std::move(m_members);
}

} // namespace

std::vector<TOOL_SFDP_MEMBER> tool_fill_definition(const TOOL_SFDP_SOURCES& sources) {
    return FILLER(sources).fill();
}

const TOOL_SFDP_MEMBER& tool_sfdp_member(const std::vector<TOOL_SFDP_MEMBER>& members, const char* name) {
    static const TOOL_SFDP_MEMBER NONE;
    const auto place = std::find_if(members.begin(), members.end(), [name](const TOOL_SFDP_MEMBER& member) {
        return !std::strcmp(member.prompt->member, name);
    });
    return place == members.end() ? NONE : *place;
}

// A field is a number as "%d" prints it.
std::optional<DWORD> tool_sfdp_number(const TOOL_SFDP_MEMBER& member) {
    if (member.field.empty())
        return std::nullopt;
    return static_cast<DWORD>(std::strtoll(member.field.c_str(), nullptr, 10));
}

const char* tool_source_text(TOOL_MEMBER_SOURCE source) {
    constexpr const char* TEXT_LIST[] = {"", "--member", "table", "identification", "record", "constant", "density"};
    return TEXT_LIST[static_cast<size_t>(source)];
}

const char* tool_sureness_text(TOOL_SURENESS sureness) {
    constexpr const char* TEXT_LIST[] = {"", "given", "compared", "known", "guess", "fixed"};
    return TEXT_LIST[static_cast<size_t>(sureness)];
}
