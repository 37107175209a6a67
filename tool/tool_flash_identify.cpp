// `tovren flash identify`: the flash behind each device of a chain, the other flashes that answer alike, and why an
// answer may match none.
#include "tool_flash_identify.h"

#include "tool_database.h"
#include "tool_error.h"
#include "tool_flash_cause.h"
#include "tool_flash_database.h"
#include "tool_flash_id.h"
#include "tool_flash_match.h"
#include "tool_flash_record.h"
#include "tool_flash_why_sfdp.h"
#include "tool_output.h"
#include "tool_sfdp_file.h"
#include "tool_table.h"
#include "tool_text.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <optional>

namespace {

constexpr size_t ANSWER_SIZE = 256; // reaches every index that a record can hold

struct DEVICE {
    TOOL_FLASH_ID id;
    std::vector<unsigned int> candidates; // every matching record, in scan order
    unsigned int index = INVALID_DWORD;   // the one that the chain is mapped to
    const TOVREN_SFL_FLASH_INFO* flash = nullptr;

    bool is_matched() const { return flash != nullptr; }
};

// The library's mapping takes a whole answer. Behind the bytes that were given it sees zeros, which a record may happen
// to expect: then its choice differs from the first candidate, and the candidate counts.
void map_device(TOVREN_FLASH_MANAGER& manager, unsigned int number, bool is_silicon_id, DEVICE& device) {
    const std::vector<unsigned char>& bytes = device.id.bytes;
    device.candidates =
        manager.get_matching_flashes(is_silicon_id, bytes.data(), static_cast<unsigned int>(bytes.size()));
    if (device.candidates.empty())
        return;
    std::array<unsigned char, ANSWER_SIZE> answer = {};
    std::copy(bytes.begin(), bytes.end(), answer.begin());
    manager.flash_id_database_mapping(is_silicon_id, number, answer.data());
    if (manager.get_flash_mapping_index(number, true) != device.candidates.front())
        manager.set_flash_mapping_index(number, device.candidates.front());
    device.index = manager.get_flash_mapping_index(number, false);
    device.flash = manager.get_flash(device.index);
}

std::vector<DEVICE> map_chain(TOVREN_FLASH_MANAGER& manager, std::vector<TOOL_FLASH_ID> ids, bool is_silicon_id) {
    std::vector<DEVICE> chain(ids.size());
    for (size_t i = 0; i < ids.size(); ++i) {
        chain[i].id = std::move(ids[i]);
        map_device(manager, static_cast<unsigned int>(i), is_silicon_id, chain[i]);
    }
    return chain;
}

// None where no device is mapped.
std::optional<unsigned int> longest_program_time(TOVREN_FLASH_MANAGER& manager, const std::vector<DEVICE>& chain) {
    if (std::none_of(chain.begin(), chain.end(), [](const DEVICE& device) { return device.is_matched(); }))
        return std::nullopt;
    return manager.sfl_get_chain_longest_program_utime();
}

// ---- why ----

struct EXPLANATION {
    TOOL_WHY_TABLES tables;
    std::vector<TOOL_FLASH_WHY> devices; // empty where nobody asked
    std::string sfdp_file;
    std::optional<SFDP_TABLE> sfdp; // of the only device
};

SFDP_TABLE read_sfdp(const std::string& file) {
    SFDP_RESULT result = tool_read_sfdp(file);
    if (const auto* refusal = std::get_if<SFDP_REFUSAL>(&result))
        throw tool_sfdp_error(file, *refusal);
    return std::get<SFDP_TABLE>(std::move(result));
}

EXPLANATION explain(const TOOL_IDENTIFY_OPTIONS& options, const TOVREN_FLASH_MANAGER& manager,
                    const std::vector<DEVICE>& chain) {
    EXPLANATION why;
    if (!options.is_why)
        return why;
    TOOL_WHY_TABLES& tables = why.tables;
    tables.csv = tool_find_flash_csv(options.csv);
    tables.records = tool_all_flashes();
    tables.listed = tool_listed_flashes(manager, tables.records);
    constexpr char SHARED_IDS[] = "flash_shared_ids.csv"; // beside the description, else beside the database
    if (tables.csv)
        tables.extended_ids = tool_read_extended_ids(tool_beside(tables.csv->file, SHARED_IDS));
    if (tables.extended_ids.empty())
        tables.extended_ids = tool_read_extended_ids(tool_beside(tool_database_path(TOOL_FLASH_DATABASE), SHARED_IDS));
    for (const DEVICE& device : chain)
        why.devices.push_back(tool_flash_why(device.id.bytes, options.is_silicon_id, tables));
    if (options.sfdp) {
        why.sfdp_file = *options.sfdp;
        why.sfdp = read_sfdp(*options.sfdp);
    }
    return why;
}

// ---- JSON ----

nlohmann::ordered_json device_json(const DEVICE& device, size_t number) {
    nlohmann::ordered_json object;
    object["device"] = number;
    object["id"] = device.id.text();
    object["index"] = nullptr;
    object["candidates"] = device.candidates;
    object["flash"] = nullptr;
    if (device.is_matched()) {
        object["index"] = device.index;
        object["flash"] = nlohmann::ordered_json::object();
        tool_put_flash_members(object["flash"], *device.flash);
    }
    return object;
}

void write_json(const std::vector<DEVICE>& chain, std::optional<unsigned int> longest, const EXPLANATION& why,
                const TOOL_OUTPUT& output) {
    nlohmann::ordered_json document;
    document["devices"] = nlohmann::ordered_json::array();
    for (size_t i = 0; i < chain.size(); ++i)
        document["devices"].push_back(device_json(chain[i], i + 1));
    for (size_t i = 0; i < why.devices.size(); ++i)
        document["devices"][i]["why"] = tool_why_json(why.devices[i], why.tables);
    if (why.sfdp)
        document["devices"][0]["why"]["sfdp"] = tool_why_sfdp_json(why.devices[0], why.sfdp_file, *why.sfdp);
    document["longest_program_utime"] = nullptr;
    if (longest)
        document["longest_program_utime"] = *longest;
    output.write_json(document);
}

// ---- unmatched answers ----

// "NAME (--set SWITCH=on)" for each flash that would match, were it not hidden.
std::vector<std::string> hidden_matches(const std::vector<TOVREN_SFL_FLASH_INFO>& records, const TOOL_FLASH_ID& id,
                                        bool is_silicon_id) {
    std::vector<std::string> hidden;
    for (const TOVREN_SFL_FLASH_INFO& record : records) {
        if (const std::string shown_by = tool_switch_that_shows(record);
            !shown_by.empty() && tool_is_match(record, id.bytes, is_silicon_id))
            hidden.push_back(tool_printable(record.device_name) + " (--set " + tool_printable(shown_by) + "=on)");
    }
    return hidden;
}

std::string next_step(const std::vector<std::string>& hidden, bool is_stuck) {
    if (!hidden.empty())
        return "Hidden flashes answer so; a setting shows them: " + tool_join(hidden, ", ") + '.';
    if (is_stuck)
        return "Check power, wiring and chip select, then read the identification again.";
    return "Read the identification once more; `tovren flash list --all` shows what each known flash answers.";
}

void note_cause(const TOOL_FLASH_CAUSE& cause) {
    tool_note("  " + cause.text + (cause.meant.empty() ? "" : ":"));
    if (!cause.meant.empty())
        tool_note("    " + tool_meant_text(cause.meant.front()));
}

// The most plausible cause, and the first one that leads to a flash; of that one identification.
void note_causes(const std::vector<TOOL_FLASH_CAUSE>& causes) {
    if (causes.empty())
        return;
    const auto with_flash =
        std::find_if(causes.begin(), causes.end(), [](const TOOL_FLASH_CAUSE& cause) { return !cause.meant.empty(); });
    note_cause(causes.front());
    size_t shown = 1;
    if (with_flash != causes.begin() && with_flash != causes.end()) {
        note_cause(*with_flash);
        ++shown;
    }
    if (causes.size() > shown || (with_flash != causes.end() && with_flash->meant.size() > 1))
        tool_note("  --why lists what else may have happened.");
}

void note_unmatched(const std::vector<DEVICE>& chain, bool is_silicon_id, const TOVREN_FLASH_MANAGER& manager) {
    const auto records = tool_all_flashes();
    const auto listed = tool_listed_flashes(manager, records);
    for (size_t i = 0; i < chain.size(); ++i) {
        const DEVICE& device = chain[i];
        if (device.is_matched())
            continue;
        tool_complain("device " + std::to_string(i + 1) + ": no flash answers " + device.id.text() +
                      (is_silicon_id ? " as its silicon ID" : ""));
        const auto hidden = hidden_matches(records, device.id, is_silicon_id);
        if (hidden.empty())
            note_causes(tool_flash_causes(device.id.bytes, is_silicon_id, listed));
        tool_note("  " + next_step(hidden, tool_stuck_line(device.id.bytes).has_value()));
    }
}

// ---- for people ----

std::vector<std::string> row_of(const DEVICE& device, size_t number) {
    std::vector<std::string> cells = {std::to_string(number), device.id.text()};
    if (!device.is_matched()) {
        const auto line = tool_stuck_line(device.id.bytes);
        cells.insert(cells.end(), {line ? std::string("no match: ") + line->look : "no match", "", "-"});
        cells.resize(10);
        return cells;
    }
    const TOVREN_SFL_FLASH_INFO& flash = *device.flash;
    cells.insert(cells.end(), {flash.device_name, flash.manufacturer_name, std::to_string(device.index),
                               tool_bits_text(flash.device_bit_size), tool_flash_sectors_text(flash),
                               tool_seconds_text(flash.sec_erase_time), tool_seconds_text(flash.bulk_erase_time),
                               tool_microseconds_text(flash.program_utime)});
    return cells;
}

void write_table(const std::vector<DEVICE>& chain, const TOOL_OUTPUT& output) {
    TOOL_TABLE table({{"Device", true},
                      {"ID"},
                      {"Flash"},
                      {"Maker", false, 2},
                      {"Index", true, 3},
                      {"Density", true},
                      {"Sectors", true, 1},
                      {"Erase", true, 1},
                      {"Erase all", true, 2},
                      {"Program", true, 1}});
    for (size_t i = 0; i < chain.size(); ++i)
        table.add_row(row_of(chain[i], i + 1));
    table.write(output);
}

// The members in which `other` differs from `taken`: "bulk_erase_time 250 s (240 s)". The name stands elsewhere.
std::vector<std::string> differences(const TOVREN_SFL_FLASH_INFO& taken, const TOVREN_SFL_FLASH_INFO& other) {
    const auto taken_texts = tool_flash_member_texts(taken);
    const auto other_texts = tool_flash_member_texts(other);
    std::vector<std::string> found;
    for (size_t i = 0; i < taken_texts.size(); ++i) {
        if (taken_texts[i].text != other_texts[i].text && std::string_view(taken_texts[i].name) != "device_name")
            found.push_back(std::string(taken_texts[i].name) + ' ' + tool_printable(other_texts[i].text) + " (" +
                            tool_printable(taken_texts[i].text) + ')');
    }
    return found;
}

// Flashes that differ from the one taken in the same way.
struct ALIKE {
    std::vector<std::string> names;
    std::vector<std::string> differences;
};

std::vector<ALIKE> other_candidates(const DEVICE& device, const TOVREN_FLASH_MANAGER& manager) {
    std::vector<ALIKE> groups;
    for (size_t i = 1; i < device.candidates.size(); ++i) {
        const TOVREN_SFL_FLASH_INFO& other = *manager.get_flash(device.candidates[i]);
        std::vector<std::string> found = differences(*device.flash, other);
        auto group = std::find_if(groups.begin(), groups.end(),
                                  [&found](const ALIKE& known) { return known.differences == found; });
        if (group == groups.end())
            group = groups.insert(group, {{}, std::move(found)});
        group->names.push_back(tool_printable(other.device_name) + " [" + std::to_string(device.candidates[i]) + ']');
    }
    return groups;
}

// "NAME [INDEX], NAME [INDEX]: MEMBER OTHER (TAKEN), MEMBER ..." in words that stay together.
std::vector<std::string> words_of(const ALIKE& group) {
    std::vector<std::string> words;
    for (const std::string& name : group.names)
        words.push_back(name + (&name == &group.names.back() ? ":" : ","));
    for (const std::string& difference : group.differences)
        words.push_back(difference + (&difference == &group.differences.back() ? "" : ","));
    if (group.differences.empty())
        words.emplace_back("no member but the name");
    return words;
}

void write_others(const DEVICE& device, size_t number, const TOVREN_FLASH_MANAGER& manager, const TOOL_OUTPUT& output) {
    const size_t count = device.candidates.size() - 1;
    std::string text = "\n" + output.bold("Device " + std::to_string(number)) + ": " + device.id.text() +
                       " is also the answer of " + (count == 1 ? "1 flash" : std::to_string(count) + " flashes") +
                       ".\nMembers that differ, in brackets as " + tool_printable(device.flash->device_name) +
                       " has them:\n";
    for (const ALIKE& group : other_candidates(device, manager))
        text += tool_wrapped(words_of(group), output.width());
    output.write(text);
}

void write_people(const std::vector<DEVICE>& chain, std::optional<unsigned int> longest,
                  const TOVREN_FLASH_MANAGER& manager, const EXPLANATION& why, const TOOL_OUTPUT& output) {
    write_table(chain, output);
    if (longest)
        output.write("\nLongest page program of the chain: " + tool_microseconds_text(*longest) + '\n');
    for (size_t i = 0; i < chain.size(); ++i)
        if (chain[i].candidates.size() > 1)
            write_others(chain[i], i + 1, manager, output);
    for (size_t i = 0; i < why.devices.size(); ++i)
        tool_write_why(why.devices[i], i + 1, why.tables, output);
    if (why.sfdp)
        tool_write_why_sfdp(why.devices[0], why.sfdp_file, *why.sfdp, output);
}

} // namespace

int tool_flash_identify(const TOOL_IDENTIFY_OPTIONS& options, const TOOL_OUTPUT& output) {
    if ((options.csv || options.sfdp) && !options.is_why)
        throw tool_usage_error("flash identify", std::string(options.csv ? "--csv" : "--sfdp") + " goes with --why");
    auto ids = tool_read_flash_ids(options.ids, options.is_silicon_id);
    if (options.sfdp && ids.size() != 1)
        throw tool_usage_error("flash identify", "--sfdp is the table of one flash, there are " +
                                                     tool_count_text(ids.size(), "identification"));
    const auto manager = tool_load_flashes(static_cast<unsigned int>(ids.size()));
    const std::vector<DEVICE> chain = map_chain(*manager, std::move(ids), options.is_silicon_id);
    const auto longest = longest_program_time(*manager, chain);
    const EXPLANATION why = explain(options, *manager, chain);

    if (output.is_json())
        write_json(chain, longest, why, output);
    else
        write_people(chain, longest, *manager, why, output);

    const bool is_complete =
        std::all_of(chain.begin(), chain.end(), [](const DEVICE& device) { return device.is_matched(); });
    if (!is_complete)
        note_unmatched(chain, options.is_silicon_id, *manager);
    return is_complete ? TOOL_EXIT_DONE : TOOL_EXIT_NOT_FOUND;
}
