// The names of the report page: families, their devices, the packages of each device, their ordering names.
//
// A package's device is that of its first ordering name that the catalogue lists. Ordering names are written by what
// follows their package-level name, a dot for nothing; those that are no part of the catalogue come last.
#include "tool_device_record.h"
#include "tool_report.h"
#include "tool_report_templates.h"
#include "tool_text.h"

#include "tovren_device_grammar_mgr.h"

#include <unordered_map>
#include <unordered_set>

namespace {

using KIND = TOOL_CATALOGUE_VALUE::KIND;
using GRAMMAR = TOVREN_DEVICE_GRAMMAR_MGR;

enum MAP : unsigned int { PACKAGE_MAP = 0, PROGRAMMER_MAP = 1 };

struct PACKAGE {
    std::string name; // empty for parts that the maps do not know
    std::string programmer_name;
    std::vector<std::string> parts; // of the catalogue
    std::vector<std::string> others;
};

struct WORLD {
    std::vector<std::vector<PACKAGE>> packages; // by device; the invalid one has those of no device
    size_t package_count = 0;
    size_t ordering_count = 0;
};

std::unordered_map<std::string, std::string> programmer_names() {
    std::unordered_map<std::string, std::string> names;
    GRAMMAR::visit_map(PROGRAMMER_MAP, [&names](const std::string& key, const std::vector<std::string>& packages) {
        for (const std::string& package : packages)
            names.emplace(package, key);
    });
    return names;
}

// Sorts the ordering names of a package. Returns its device.
DEV_DEVICE_ENUM take_names(const std::vector<std::string>& names, PACKAGE& package) {
    DEV_PART_ENUM first = DEV_PART_INVALID;
    for (const std::string& name : names) {
        const DEV_PART_ENUM part = dstr_get_dev_part_enum_by_string(name);
        (part == DEV_PART_INVALID ? package.others : package.parts).push_back(name);
        if (first == DEV_PART_INVALID)
            first = part;
    }
    return DEV_PART_MANAGER().get_device_of(first);
}

// Parts of the catalogue that no map knows.
void add_unmapped_parts(WORLD& world) {
    std::unordered_set<std::string> known;
    for (const auto& packages : world.packages)
        for (const PACKAGE& package : packages)
            known.insert(package.parts.begin(), package.parts.end());
    const DEV_PART_MANAGER catalogue;
    std::vector<PACKAGE> unmapped(world.packages.size());
    for (unsigned int part = 1; part < DEV_PART_GENERIC; ++part) {
        std::string name = dstr_get_user_string(DEV_PART_ENUM(part));
        std::string standardised = name;
        standardize_name(standardised);
        if (!known.contains(standardised))
            unmapped[catalogue.get_device_of(DEV_PART_ENUM(part))].parts.push_back(std::move(name));
    }
    for (size_t device = 0; device < unmapped.size(); ++device)
        if (!unmapped[device].parts.empty())
            world.packages[device].push_back(std::move(unmapped[device]));
}

WORLD read_world() {
    WORLD world;
    world.packages.resize(DEV_DEVICE_MAX);
    const auto programmer = programmer_names();
    GRAMMAR::visit_map(PACKAGE_MAP, [&](const std::string& key, const std::vector<std::string>& names) {
        const auto known = programmer.find(key);
        PACKAGE package = {key, known == programmer.end() ? "" : known->second, {}, {}};
        const DEV_DEVICE_ENUM device = take_names(names, package);
        world.packages[device].push_back(std::move(package));
        ++world.package_count;
        world.ordering_count += names.size();
    });
    add_unmapped_parts(world);
    return world;
}

// ---- markup ----

std::string suffixes_text(const PACKAGE& package, const std::vector<std::string>& names) {
    std::vector<std::string> suffixes;
    for (const std::string& name : names) {
        const bool is_longer = !package.name.empty() && name.starts_with(package.name);
        const std::string suffix = is_longer ? name.substr(package.name.size()) : name;
        suffixes.push_back(suffix.empty() ? "·" : suffix);
    }
    return tool_join(suffixes, " ");
}

TOOL_HTML package_markup(const PACKAGE& package, const std::string& part_file) {
    const bool is_named = !package.programmer_name.empty() && package.programmer_name != package.name;
    const std::string file = GRAMMAR::get_pgm_part_pcf(std::string(package.programmer_name));
    TOOL_HTML remark;
    if (is_named)
        remark += tool_fill(TOOL_PAGE_PROGRAMMER_NAME, {{"name", TOOL_HTML(package.programmer_name)}});
    if (file != part_file && !file.empty())
        remark += tool_fill(TOOL_PAGE_PROGRAMMER_FILE, {{"name", TOOL_HTML(file)}});
    const TOOL_HTML others =
        package.others.empty()
            ? TOOL_HTML()
            : tool_fill(TOOL_PAGE_OTHERS, {{"suffixes", TOOL_HTML(suffixes_text(package, package.others))}});
    return tool_fill(TOOL_PAGE_PACKAGE, {{"name", TOOL_HTML(package.name)},
                                         {"remark", remark},
                                         {"suffixes", TOOL_HTML(suffixes_text(package, package.parts))},
                                         {"others", others}});
}

TOOL_HTML record_markup(const TOVREN_DEV_INFO_MANAGER& manager, TOOL_CATALOGUE_VALUE value) {
    const unsigned int position = tool_position_of(manager, value);
    if (position >= manager.get_record_count())
        return tool_fill(TOOL_PAGE_NO_RECORD);
    return tool_fill(TOOL_PAGE_RECORD_LINK, {{"position", TOOL_HTML(std::to_string(position))},
                                             {"rule", TOOL_HTML(tool_served_by(manager, value))}});
}

std::string or_dash(const std::string& text) {
    return text.empty() ? "–" : text;
}

TOOL_HTML device_markup(const TOVREN_DEV_INFO_MANAGER& manager, DEV_DEVICE_ENUM device,
                        const std::vector<PACKAGE>& packages) {
    const std::string name = dstr_get_user_string(device);
    std::string part_file;
    std::string family_file;
    GRAMMAR::get_dev_pcfs(std::string(name), part_file, family_file);
    TOOL_HTML lines;
    for (const PACKAGE& package : packages)
        lines += package_markup(package, part_file);
    return tool_fill(TOOL_PAGE_DEVICE_NAMES,
                     {{"device", TOOL_HTML(or_dash(name))},
                      {"part_file", TOOL_HTML(or_dash(part_file))},
                      {"family_file", TOOL_HTML(or_dash(family_file))},
                      {"record", record_markup(manager, {KIND::DEVICE, device})},
                      {"packages",
                       lines.empty() ? TOOL_HTML("–") : tool_fill(TOOL_PAGE_PACKAGES, {{"lines", lines}})}});
}

struct FAMILY {
    std::vector<DEV_DEVICE_ENUM> devices;
    size_t part_count = 0;
    size_t ordering_count = 0; // parts that are no ordering names, if any, counted too
};

std::vector<FAMILY> families_of(const WORLD& world) {
    std::vector<FAMILY> families(DEV_FAMILY_MAX);
    const DEV_PART_MANAGER catalogue;
    for (unsigned int number = 0; number < DEV_DEVICE_MAX; ++number) {
        const auto device = DEV_DEVICE_ENUM(number);
        if (device == DEV_DEVICE_INVALID && world.packages[number].empty())
            continue;
        FAMILY& family = families[catalogue.get_family_of(device)];
        family.devices.push_back(device);
        for (const PACKAGE& package : world.packages[number]) {
            family.part_count += package.parts.size();
            family.ordering_count += package.parts.size() + package.others.size();
        }
    }
    return families;
}

TOOL_HTML family_markup(const TOVREN_DEV_INFO_MANAGER& manager, const WORLD& world, DEV_FAMILY_ENUM number,
                        const FAMILY& family) {
    TOOL_HTML rows;
    for (const DEV_DEVICE_ENUM device : family.devices)
        rows += device_markup(manager, device, world.packages[device]);
    const std::string name = dstr_get_user_string(number);
    return tool_fill(TOOL_PAGE_FAMILY, {{"number", TOOL_HTML(std::to_string(number))},
                                        {"name", TOOL_HTML(name.empty() ? "no family" : name)},
                                        {"devices", TOOL_HTML(tool_count_text(family.devices.size(), "device"))},
                                        {"parts", TOOL_HTML(tool_count_text(family.part_count, "part"))},
                                        {"names", TOOL_HTML(tool_count_text(family.ordering_count, "name"))},
                                        {"record", record_markup(manager, {KIND::FAMILY, number})},
                                        {"rows", rows}});
}

} // namespace

TOOL_NAME_SECTION tool_report_names(const TOVREN_DEV_INFO_MANAGER& manager) {
    const WORLD world = read_world();
    const std::vector<FAMILY> families = families_of(world);
    TOOL_NAME_SECTION section;
    for (unsigned int number = 0; number < DEV_FAMILY_MAX; ++number)
        if (number != DEV_FAMILY_INVALID || !families[number].devices.empty())
            section.families += family_markup(manager, world, DEV_FAMILY_ENUM(number), families[number]);
    section.family_count = DEV_FAMILY_GENERIC - 1;
    section.device_count = DEV_DEVICE_GENERIC - 1;
    section.part_count = DEV_PART_GENERIC - 1;
    section.package_count = world.package_count;
    section.ordering_count = world.ordering_count;
    return section;
}
