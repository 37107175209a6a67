// `tovren flash mtd`: the serial flashes that a Linux system has found, beside what the database and the flashes' own
// tables say of them.
#include "tool_flash_mtd.h"

#include "tool_command_line.h"
#include "tool_error.h"
#include "tool_flash_database.h"
#include "tool_mtd_sysfs.h"
#include "tool_output.h"
#include "tool_sfdp_record.h"
#include "tool_table.h"
#include "tool_text.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace {

using JSON = nlohmann::ordered_json;

struct DIFFERENCE {
    std::string what;
    std::string database; // all three for people; empty where nothing is known
    std::string kernel;
    std::string sfdp;
};

struct FOUND {
    const TOOL_SYSTEM_FLASH* system = nullptr;
    std::vector<unsigned int> candidates; // in scan order
    const TOVREN_SFL_FLASH_INFO* flash = nullptr;
    std::vector<DIFFERENCE> differences;
};

std::string id_text(const TOOL_SYSTEM_FLASH& system) {
    return tool_hex_text(system.id.data(), system.id.size());
}

// ---- comparison ----

// Where only partitions are known the flash may be larger than these.
bool fits(const std::optional<TOOL_MTD_SIZE>& kernel, std::uint64_t bytes) {
    return !kernel || (kernel->is_whole ? kernel->bytes == bytes : kernel->bytes <= bytes);
}

std::string kernel_size_text(const std::optional<TOOL_MTD_SIZE>& size) {
    if (!size)
        return "";
    return (size->is_whole ? "" : "at least ") + tool_bytes_text(size->bytes);
}

void compare_size(FOUND& found) {
    const std::optional<TOOL_MTD_SIZE> kernel = tool_mtd_size(found.system->mtds);
    std::vector<std::uint64_t> sizes;
    DIFFERENCE difference = {"size", "", kernel_size_text(kernel), ""};
    if (found.flash) {
        sizes.push_back(found.flash->device_bit_size / 8);
        difference.database = tool_bytes_text(sizes.back());
    }
    if (found.system->sfdp) {
        sizes.push_back(found.system->sfdp->density_bits / 8);
        difference.sfdp = tool_bytes_text(sizes.back());
    }
    const bool are_equal = std::all_of(sizes.begin(), sizes.end(), [&sizes](auto size) { return size == sizes[0]; });
    const bool do_fit = std::all_of(sizes.begin(), sizes.end(), [&kernel](auto size) { return fits(kernel, size); });
    if (!are_equal || !do_fit)
        found.differences.push_back(std::move(difference));
}

std::string erase_sizes_text(const std::vector<std::uint64_t>& sizes) {
    std::vector<std::string> texts;
    texts.reserve(sizes.size());
    for (const std::uint64_t size : sizes)
        texts.push_back(tool_bytes_text(size));
    return tool_join(texts, ", ");
}

// The kernel may use any erase type of the flash; the record names one.
void compare_erase_size(FOUND& found) {
    std::vector<std::uint64_t> kernel;
    for (const TOOL_MTD& mtd : found.system->mtds)
        if (std::find(kernel.begin(), kernel.end(), mtd.erase_size) == kernel.end())
            kernel.push_back(mtd.erase_size);
    std::vector<std::uint64_t> own;
    if (found.system->sfdp)
        for (const SFDP_ERASE_TYPE& type : found.system->sfdp->erase_types)
            own.push_back(type.size);
    const std::uint64_t sector = found.flash ? found.flash->device_sector_byte : 0;
    const auto is_strange = [&](std::uint64_t size) {
        if (!own.empty())
            return std::find(own.begin(), own.end(), size) == own.end();
        return found.flash != nullptr && size != sector;
    };
    if (std::any_of(kernel.begin(), kernel.end(), is_strange))
        found.differences.push_back({"erase size", found.flash ? tool_bytes_text(sector) : "", erase_sizes_text(kernel),
                                     erase_sizes_text(own)});
}

void compare(FOUND& found) {
    compare_size(found);
    compare_erase_size(found);
    if (!found.flash || !found.system->sfdp)
        return;
    for (SFDP_DIFFERENCE& each : sfdp_differences(*found.flash, *found.system->sfdp))
        if (each.member != "device_bit_size") // stands there as the size
            found.differences.push_back({each.member, each.record_value, "", each.table_value});
}

std::vector<FOUND> identify(const TOOL_SYSTEM_FLASHES& system, TOVREN_FLASH_MANAGER& manager) {
    std::vector<FOUND> list;
    for (const TOOL_SYSTEM_FLASH& flash : system.flashes) {
        FOUND found;
        found.system = &flash;
        if (!flash.id.empty())
            found.candidates =
                manager.get_matching_flashes(false, flash.id.data(), static_cast<unsigned int>(flash.id.size()));
        if (!found.candidates.empty())
            found.flash = manager.get_flash(found.candidates.front());
        compare(found);
        list.push_back(std::move(found));
    }
    return list;
}

// ---- the offer for an unknown one ----

std::string shell_word(const std::string& text) {
    const auto is_plain = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               std::string_view("/._-:+").find(c) != std::string_view::npos;
    };
    if (std::all_of(text.begin(), text.end(), is_plain))
        return text;
    std::string word = "'";
    for (const char c : text)
        word += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return word + '\'';
}

// Empty where the flash is known or has no table that could be read.
std::string define_line(const FOUND& found) {
    if (found.flash || found.system->id.empty() || !found.system->sfdp)
        return "";
    return "tovren flash define --sfdp " + shell_word(found.system->sfdp_path) + " --id " + id_text(*found.system);
}

void note_unmatched(const FOUND& found) {
    const std::string device = tool_printable(found.system->device);
    if (found.system->id.empty()) {
        tool_complain(device + ": its identification cannot be read");
        return;
    }
    tool_complain(device + ": no flash answers " + id_text(*found.system));
    const std::string line = define_line(found);
    if (line.empty())
        tool_note("  It publishes no table of its own that can be read; `tovren flash define` asks for its values.");
    else
        tool_note("  next: " + line);
}

// ---- JSON ----

JSON text_or_null(const std::string& text) {
    return text.empty() ? JSON(nullptr) : JSON(text);
}

JSON mtds_json(const std::vector<TOOL_MTD>& mtds) {
    JSON list = JSON::array();
    for (const TOOL_MTD& mtd : mtds)
        list.push_back({{"device", mtd.device},
                        {"name", mtd.name},
                        {"size", mtd.size},
                        {"erase_size", mtd.erase_size},
                        {"offset", mtd.offset ? JSON(*mtd.offset) : JSON(nullptr)}});
    return list;
}

JSON differences_json(const std::vector<DIFFERENCE>& differences) {
    JSON list = JSON::array();
    for (const DIFFERENCE& each : differences)
        list.push_back({{"what", each.what},
                        {"database", text_or_null(each.database)},
                        {"kernel", text_or_null(each.kernel)},
                        {"sfdp", text_or_null(each.sfdp)}});
    return list;
}

JSON found_json(const FOUND& found) {
    const TOOL_SYSTEM_FLASH& system = *found.system;
    JSON object = {{"device", system.device},
                   {"id", text_or_null(id_text(system))},
                   {"manufacturer", text_or_null(system.maker)},
                   {"partname", text_or_null(system.name)},
                   {"index", nullptr},
                   {"flash", nullptr},
                   {"candidates", found.candidates},
                   {"mtd", mtds_json(system.mtds)},
                   {"sfdp", text_or_null(system.sfdp_path)},
                   {"sfdp_is_sound", system.sfdp.has_value()},
                   {"differences", differences_json(found.differences)},
                   {"define", text_or_null(define_line(found))}};
    if (found.flash) {
        object["index"] = found.candidates.front();
        object["flash"] = found.flash->device_name;
    }
    return object;
}

void write_json(const std::vector<FOUND>& list, const TOOL_SYSTEM_FLASHES& system, const TOOL_OUTPUT& output) {
    JSON document = {{"flashes", JSON::array()}, {"unlinked", system.unlinked}, {"faults", system.faults}};
    for (const FOUND& found : list)
        document["flashes"].push_back(found_json(found));
    output.write_json(document);
}

// ---- for people ----

std::string or_dash(const std::string& text) {
    return text.empty() ? "-" : text;
}

std::string flash_text(const FOUND& found) {
    if (!found.flash)
        return "no match";
    const size_t others = found.candidates.size() - 1;
    return found.flash->device_name + (others == 0 ? "" : " or " + tool_count_text(others, "other"));
}

std::string mtds_text(const std::vector<TOOL_MTD>& mtds) {
    std::vector<std::string> texts;
    texts.reserve(mtds.size());
    for (const TOOL_MTD& mtd : mtds)
        texts.push_back(mtd.device);
    return or_dash(tool_join(texts, ", "));
}

void write_table(const std::vector<FOUND>& list, const TOOL_OUTPUT& output) {
    TOOL_TABLE table({{"Device"},
                      {"ID"},
                      {"Flash"},
                      {"Kernel's name", false, 3},
                      {"Density", true, 1},
                      {"Kernel's size", true, 1},
                      {"SFDP", true, 2},
                      {"MTD", false, 2}});
    for (const FOUND& found : list) {
        const TOOL_SYSTEM_FLASH& system = *found.system;
        table.add_row({system.device, or_dash(id_text(system)), flash_text(found), or_dash(system.name),
                       found.flash ? tool_bits_text(found.flash->device_bit_size) : "-",
                       or_dash(kernel_size_text(tool_mtd_size(system.mtds))),
                       system.sfdp ? tool_bits_text(system.sfdp->density_bits) : "-", mtds_text(system.mtds)});
    }
    table.write(output);
}

void write_differences(const std::vector<FOUND>& list, const TOOL_OUTPUT& output) {
    TOOL_TABLE table({{"Device"}, {"Differs in"}, {"Database"}, {"Kernel"}, {"SFDP"}});
    bool has_rows = false;
    for (const FOUND& found : list)
        for (const DIFFERENCE& each : found.differences) {
            table.add_row(
                {found.system->device, each.what, or_dash(each.database), or_dash(each.kernel), or_dash(each.sfdp)});
            has_rows = true;
        }
    if (!has_rows)
        return;
    output.write("\n");
    table.write(output);
}

TOOL_EXIT verdict(const std::vector<FOUND>& list, const TOOL_SYSTEM_FLASHES& system) {
    if (list.empty() || std::any_of(list.begin(), list.end(), [](const FOUND& found) { return !found.flash; }))
        return TOOL_EXIT_NOT_FOUND;
    return system.faults.empty() ? TOOL_EXIT_DONE : TOOL_EXIT_REFUSED;
}

void note_all(const std::vector<FOUND>& list, const TOOL_SYSTEM_FLASHES& system, const std::string& folder) {
    for (const std::string& fault : system.faults)
        tool_complain(fault);
    if (list.empty())
        tool_complain("the system publishes no serial flash below " + tool_printable(folder));
    if (!system.unlinked.empty())
        tool_note("note: no identification is published for " + tool_printable(tool_join(system.unlinked, ", ")) +
                  ", as Linux does since 5.14 for flashes on SPI");
    for (const FOUND& found : list)
        if (!found.flash)
            note_unmatched(found);
}

int list_system_flashes(const std::string& folder, const TOOL_OUTPUT& output) {
    const TOOL_SYSTEM_FLASHES system = tool_read_system_flashes(folder);
    const auto manager = tool_load_flashes(1);
    const std::vector<FOUND> list = identify(system, *manager);
    if (output.is_json()) {
        write_json(list, system, output);
    } else if (!list.empty()) {
        write_table(list, output);
        write_differences(list, output);
    }
    note_all(list, system, folder);
    return verdict(list, system);
}

} // namespace

void tool_add_mtd_verb(TOOL_GROUP& group) {
    const auto folder = std::make_shared<std::optional<std::string>>();
    group
        .add_verb("mtd", "Identify the serial flashes that this Linux system has found",
                  [folder](const TOOL_OUTPUT& output) { return list_system_flashes(folder->value_or("/sys"), output); })
        .option("--sysfs", "DIR", *folder, "Where the kernel publishes them; /sys where not given")
        .footer("\nCompares size and erase size of the database, of the kernel and of each flash's\n"
                "own table (SFDP). Nothing is written, and no privilege is needed. Exit code 1:\n"
                "there is no serial flash, or one is unknown; 3: a file cannot be read.\n");
}
