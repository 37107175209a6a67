// `tovren hps`: the flashes that a hard processor system boots from, and the systems.
#include "tool_command_line.h"
#include "tool_error.h"
#include "tool_groups.h"
#include "tool_hps_section.h"
#include "tool_output.h"
#include "tool_table.h"
#include "tool_text.h"
#include "tovren_hps_mgr.h"
#include "tovren_types.h"

#include <memory>
#include <nlohmann/json.hpp>

namespace {

std::string section_place(const TOOL_HPS_KIND& kind) {
    return tool_printable(TOVREN_FLASH_INI::get_flash_ini_path()) + ": section " + tool_section_text(kind.section);
}

// ---- list ----

// Why a list may lack what a person stored.
void note_unused_section(const TOOL_HPS_KIND& kind) {
    const TOVREN_FLASH_INI_FILE_ENUM state = TOVREN_FLASH_INI::get_flash_ini_file_state();
    if (state == TOVREN_FLASH_INI_FILE_DAMAGED || state == TOVREN_FLASH_INI_FILE_UNREADABLE) {
        tool_note("warning: " + tool_printable(TOVREN_FLASH_INI::get_flash_ini_path()) + ": it is " +
                  tool_params_state_text(state) + "; the list has built-in flashes only");
        return;
    }
    const TOOL_HPS_SECTION section = tool_hps_section(kind, tool_read_section_to_change(kind.section));
    if (section.is_foreign)
        tool_note("warning: " + section_place(kind) + ": its fingerprint is not " + kind.md5 + "; it is not used");
    else if (section.rest != 0)
        tool_note("warning: " + section_place(kind) + ": its last record is cut short; it is not used");
}

nlohmann::ordered_json entry_json(const TOOL_HPS_KIND& kind, const TOOL_HPS_LIST& list, size_t index) {
    nlohmann::ordered_json object;
    object["index"] = index;
    object["origin"] = index < list.user_count ? "user" : "built-in";
    list.records[index].put(object, kind.params);
    return object;
}

void write_list_json(const TOOL_HPS_KIND& kind, const TOOL_HPS_LIST& list, const TOOL_OUTPUT& output) {
    TOOL_JSON_LINES lines(output);
    for (size_t i = 0; i < list.records.size(); ++i)
        lines.add(entry_json(kind, list, i));
    lines.end();
}

void write_list_table(const TOOL_HPS_KIND& kind, TOOL_HPS_LIST& list, const TOOL_OUTPUT& output) {
    std::vector<TOOL_COLUMN> columns = {{"Index", true}, {"Origin"}};
    for (TOOL_COLUMN& column : tool_hps_columns(kind.params))
        columns.push_back(std::move(column));
    TOOL_TABLE table(std::move(columns));
    for (size_t i = 0; i < list.records.size(); ++i) {
        std::vector<std::string> cells = {std::to_string(i), i < list.user_count ? "user" : "built-in"};
        for (std::string& text : list.records[i].texts(kind.params))
            cells.push_back(std::move(text));
        table.add_row(std::move(cells));
    }
    table.write(output);
}

int list_flashes(const TOOL_HPS_KIND& kind, const TOOL_OUTPUT& output) {
    TOOL_HPS_LIST list = kind.load();
    note_unused_section(kind);
    if (output.is_json())
        write_list_json(kind, list, output);
    else
        write_list_table(kind, list, output);
    return TOOL_EXIT_DONE;
}

// ---- add and remove ----

// A section of another layout is not ours to change.
void require_own_layout(const TOOL_HPS_KIND& kind, const TOOL_HPS_SECTION& section) {
    if (!section.is_foreign)
        return;
    const std::string number = std::to_string(kind.section);
    throw TOOL_ERROR(TOOL_EXIT_REFUSED,
                     section_place(kind) + ": its fingerprint is not " + kind.md5 +
                         ": it has records of another layout and is left as it is",
                     {"next: look at it with `tovren params show " + number + "`, then take it out with",
                      "      `tovren params remove " + number + "` and run the command again"});
}

[[noreturn]] void refuse_values(const TOOL_HPS_KIND& kind, const std::vector<TOOL_HPS_FAULT>& faults,
                                const TOOL_OUTPUT& output) {
    std::vector<std::string> lines;
    nlohmann::ordered_json document = {{"index", nullptr}, {"faults", nlohmann::ordered_json::array()}};
    for (const TOOL_HPS_FAULT& fault : faults) {
        lines.push_back(fault.member.empty() ? fault.reason : tool_printable(fault.member) + ": " + fault.reason);
        nlohmann::ordered_json object = {{"member", nullptr}, {"reason", fault.reason}};
        if (!fault.member.empty())
            object["member"] = fault.member;
        document["faults"].push_back(object);
    }
    if (output.is_json())
        output.write_json(document);
    lines.push_back("`tovren " + std::string(kind.command) + " add --help` lists the parameters.");
    throw TOOL_ERROR(TOOL_EXIT_REFUSED, std::string(kind.command) + " add: nothing was added", std::move(lines));
}

void write_change(const TOOL_HPS_KIND& kind, const char* what, size_t index, const TOOL_HPS_RECORD& record,
                  const TOOL_OUTPUT& output) {
    const std::string path = TOVREN_FLASH_INI::get_flash_ini_path();
    if (output.is_json()) {
        nlohmann::ordered_json document = {{"file", path}, {"section", TOVREN_FLASH_INI_STRING[kind.section]}};
        document[what] = {{"index", index}};
        record.put(document[what], kind.params);
        output.write_json(document);
        return;
    }
    output.write(std::string(what) + " user flash " + std::to_string(index) + " in " + tool_printable(path) + '\n');
}

// The new record stands first: of flashes that answer alike the first one counts.
int add_flash(const TOOL_HPS_KIND& kind, const std::vector<std::string>& pairs, const TOOL_OUTPUT& output) {
    std::vector<TOOL_HPS_FAULT> faults;
    std::optional<TOOL_HPS_RECORD> record = tool_hps_record_of(kind.params, pairs, faults);
    if (!record)
        refuse_values(kind, faults, output);
    tool_read_section_to_change(kind.section); // says why where the file cannot be read
    const TOOL_BYTES added = record->bytes(kind.params);
    tool_change_section(kind.section, [&](TOOL_BYTES& bytes) {
        require_own_layout(kind, tool_hps_section(kind, bytes));
        if (bytes.empty())
            bytes.assign(kind.md5.begin(), kind.md5.end());
        bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(kind.md5.size()), added.begin(), added.end());
    });
    write_change(kind, "added", 0, *record, output);
    return TOOL_EXIT_DONE;
}

[[noreturn]] void not_found(const std::string& message, const TOOL_HPS_KIND& kind, const TOOL_OUTPUT& output) {
    if (output.is_json())
        output.write_json(nlohmann::ordered_json());
    throw TOOL_ERROR(TOOL_EXIT_NOT_FOUND, message,
                     {"`tovren " + std::string(kind.command) + " list` shows which there are."});
}

size_t index_of_number(const TOOL_HPS_KIND& kind, const TOOL_HPS_SECTION& section, unsigned int index,
                       const TOOL_OUTPUT& output) {
    if (index < section.records.size())
        return index;
    if (index < kind.load().records.size())
        throw TOOL_ERROR(TOOL_EXIT_REFUSED,
                         "flash " + std::to_string(index) + " is built in; only the user's own can be removed");
    not_found("there is no flash " + std::to_string(index), kind, output);
}

size_t index_of_name(const TOOL_HPS_KIND& kind, const TOOL_HPS_SECTION& section, const std::string& name,
                     const TOOL_OUTPUT& output) {
    std::vector<std::string> found;
    size_t index = 0;
    for (size_t i = section.records.size(); i-- > 0;) {
        const std::string* const text = section.records[i].find_text(kind.params, "name");
        if (!text || !tool_equal_ignoring_case(*text, name))
            continue;
        index = i;
        found.insert(found.begin(), std::to_string(i));
    }
    if (found.empty())
        not_found("there is no user flash " + tool_quoted(name), kind, output);
    if (found.size() > 1)
        throw TOOL_ERROR(TOOL_EXIT_REFUSED, tool_quoted(name) + " is the name of several user flashes",
                         {"Give the index of one: " + tool_join(found, ", ")});
    return index;
}

int remove_flash(const TOOL_HPS_KIND& kind, const std::string& which, const TOOL_OUTPUT& output) {
    tool_read_section(kind.section); // says why where the file cannot be read
    const auto number = tool_number(which, INVALID_DWORD);
    TOOL_HPS_SECTION section;
    size_t index = 0;
    tool_change_section(kind.section, [&](TOOL_BYTES& bytes) {
        section = tool_hps_section(kind, bytes);
        require_own_layout(kind, section);
        index = number ? index_of_number(kind, section, *number, output) : index_of_name(kind, section, which, output);
        bytes.erase(bytes.begin() + static_cast<std::ptrdiff_t>(section.offsets[index]),
                    bytes.begin() + static_cast<std::ptrdiff_t>(section.offsets[index + 1]));
        if (bytes.size() == kind.md5.size())
            bytes.clear();
    });
    write_change(kind, "removed", index, section.records[index], output);
    return TOOL_EXIT_DONE;
}

void add_flash_group(TOOL_GROUP& hps, const TOOL_HPS_KIND& kind, const char* name, const char* help) {
    TOOL_GROUP group = hps.add_group(name, help);
    group
        .add_verb("list", "List the flashes, the user's own first",
                  [&kind](const TOOL_OUTPUT& output) { return list_flashes(kind, output); })
        .footer(("\nThe user's own are section " + tool_section_text(kind.section) +
                 " of pgm_flash.ini;\n`tovren params show --help` says where that file stands.\n")
                    .c_str());
    const auto pairs = std::make_shared<std::vector<std::string>>();
    group
        .add_verb("add", "Add a flash of the user's own, ahead of all others",
                  [&kind, pairs](const TOOL_OUTPUT& output) { return add_flash(kind, *pairs, output); })
        .arguments("NAME=VALUE", *pairs, "The parameters")
        .footer(tool_hps_help(kind.params).c_str());
    const auto which = std::make_shared<std::string>();
    group
        .add_verb("remove", "Remove a flash of the user's own",
                  [&kind, which](const TOOL_OUTPUT& output) { return remove_flash(kind, *which, output); })
        .argument("WHICH", *which, "Its index in the list, or its name where it has one");
}

// ---- systems ----

std::string address_text(unsigned int address) {
    return TOVREN_FLASH_INI::convert_dword_to_hex_string(address, 8, true);
}

nlohmann::ordered_json system_json(const TOVREN_HPS_INFO& hps) {
    return {{"id", hps.id},
            {"name", hps.name},
            {"core_count", hps.core_count},
            {"spi_address", hps.spi_address},
            {"nand_address", hps.nand_address},
            {"ram_address", hps.ram_address},
            {"ram_byte_size", hps.ram_byte_size},
            {"spi_chip_selects", hps.spi_chip_selects}};
}

TOOL_TABLE system_table() {
    return TOOL_TABLE({{"ID"},
                       {"Name"},
                       {"Cores", true, 2},
                       {"SPI", false, 1},
                       {"NAND", false, 1},
                       {"RAM", false, 1},
                       {"RAM size", true, 2},
                       {"Chip selects", true, 3}});
}

void add_system(TOOL_TABLE& table, const TOVREN_HPS_INFO& hps) {
    table.add_row({address_text(hps.id), hps.name, std::to_string(hps.core_count), address_text(hps.spi_address),
                   hps.nand_address == 0 ? "none" : address_text(hps.nand_address), address_text(hps.ram_address),
                   tool_bytes_text(hps.ram_byte_size), std::to_string(hps.spi_chip_selects)});
}

int list_systems(const TOOL_OUTPUT& output) {
    TOOL_JSON_LINES lines(output);
    TOOL_TABLE table = system_table();
    for (const TOVREN_HPS_INFO& hps : TOVREN_HPS_DATABASE) {
        lines.add(system_json(hps));
        add_system(table, hps);
    }
    if (output.is_json())
        lines.end();
    else
        table.write(output);
    return TOOL_EXIT_DONE;
}

int show_current(const std::string& text, const TOOL_OUTPUT& output) {
    unsigned long long id = 0;
    std::string error = "empty";
    if (text.empty() || !TOVREN_FLASH_INI::convert_string_to_qword(TOVREN_PARAM_DWORD, id, false, text, false, nullptr,
                                                                   nullptr, false, 1, error))
        throw tool_usage_error("hps current", "ID: " + tool_quoted(text) + ": " + error,
                               {"An ID is a decimal number, or a hexadecimal one behind 0x."});
    TOVREN_HPS_MGR& manager = *TOVREN_HPS_MGR::get_mgr();
    if (!manager.set_current_hps(static_cast<unsigned int>(id))) {
        if (output.is_json())
            output.write_json(nlohmann::ordered_json());
        throw TOOL_ERROR(TOOL_EXIT_NOT_FOUND,
                         "there is no hard processor system " + address_text(static_cast<unsigned int>(id)),
                         {"`tovren hps list` lists the known ones."});
    }
    const TOVREN_HPS_INFO& hps = *manager.get_current_hps();
    TOOL_TABLE table = system_table();
    add_system(table, hps);
    if (output.is_json())
        output.write_json(system_json(hps));
    else
        table.write(output);
    return TOOL_EXIT_DONE;
}

} // namespace

void tool_add_hps_group(TOOL_COMMAND_LINE& line) {
    TOOL_GROUP group = line.add_group("hps", "Hard processor systems and the flashes they boot from");
    group.add_verb("list", "List the known systems", list_systems);
    const auto id = std::make_shared<std::string>();
    group
        .add_verb("current", "Make a system the current one and show it",
                  [id](const TOOL_OUTPUT& output) { return show_current(*id, output); })
        .argument("ID", *id, "What its debug port answers, as in 0x1A5C20A9");
    add_flash_group(group, TOOL_HPS_SPI, "spi", "Serial (quad SPI) flashes");
    add_flash_group(group, TOOL_HPS_NAND, "nand", "NAND flashes");
}
