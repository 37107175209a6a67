// Writes the catalogue tables and the plain lists. Every table begins with the INVALID row and, where the host's
// enumeration has one, ends with the GENERIC row.
#include "world_tables.h"

#include <algorithm>
#include <cstdint>
#include <numeric>

namespace {

constexpr const char* GENERIC_NAME = "GENERIC";
constexpr std::size_t LINE_WIDTH = 110;

// Appends `items`, separated by commas, in lines of at most LINE_WIDTH characters.
class LINE_FILLER {
public:
    explicit LINE_FILLER(std::string& text) : m_text(text) {}
    void add(const std::string& item) {
        if (m_used == 0 || m_used + item.size() > LINE_WIDTH) {
            m_text += "\n   ";
            m_used = 3;
        }
        m_text += " " + item + ",";
        m_used += item.size() + 2;
    }

private:
    std::string& m_text;
    std::size_t m_used = 0;
};

class TABLE_WRITER {
public:
    TABLE_WRITER(const WORLD& world, WORLD_FAULTS& faults) : m_world(world), m_faults(faults) {}
    std::string text();

private:
    std::string name(const std::string& text);
    std::string families();
    std::string devices();
    std::string parts();
    std::string part_row(const WORLD_PART& part);
    std::string packages();
    std::string pool() const;
    unsigned int package_number(const std::string& type);

    const WORLD& m_world;
    WORLD_FAULTS& m_faults;
    std::string m_pool;
    std::vector<std::string> m_packages = {""};
};

// A name's initialiser; the name and a zero byte go to the pool.
std::string TABLE_WRITER::name(const std::string& text) {
    const std::size_t offset = m_pool.size();
    if (text.size() > 0xFF || offset > 0xFFFFFF)
        m_faults.add({"catalogue tables", 0}, "the name \"" + text + "\" or the pool before it is too long");
    m_pool += text;
    m_pool += '\0';
    return "{" + std::to_string(offset) + ", " + std::to_string(text.size()) + "}";
}

std::string TABLE_WRITER::families() {
    std::string text = "const TOVREN_CATALOGUE_FAMILY TOVREN_CATALOGUE_FAMILIES[] = {";
    LINE_FILLER filler(text);
    filler.add("{" + name("") + "}");
    for (const WORLD_FAMILY& family : m_world.families)
        filler.add("{" + name(family.name) + "}");
    filler.add("{" + name(GENERIC_NAME) + "}");
    return text + "\n};\n\n";
}

std::string TABLE_WRITER::devices() {
    std::string text = "const TOVREN_CATALOGUE_DEVICE TOVREN_CATALOGUE_DEVICES[] = {";
    LINE_FILLER filler(text);
    filler.add("{" + name("") + ", 0}");
    for (const WORLD_DEVICE& device : m_world.devices)
        filler.add("{" + name(device.name) + ", " + std::to_string(device.family) + "}");
    filler.add("{" + name(GENERIC_NAME) + ", " + std::to_string(m_world.families.size() + 1) + "}");
    return text + "\n};\n\n";
}

unsigned int TABLE_WRITER::package_number(const std::string& type) {
    const auto found = std::find(m_packages.begin(), m_packages.end(), type);
    const auto number = static_cast<unsigned int>(found - m_packages.begin());
    if (found == m_packages.end())
        m_packages.push_back(type);
    return number;
}

std::string grade_literal(const std::string& grade) {
    return "'" + (grade.empty() ? std::string("-") : grade) + "'";
}

std::string bool_literal(bool value) {
    return value ? "true" : "false";
}

std::string TABLE_WRITER::part_row(const WORLD_PART& part) {
    return "{" + name(part.name) + ", " + std::to_string(part.device) + ", " + std::to_string(part.package.pin_count) +
           ", " + std::to_string(package_number(part.package.type)) + ", " + grade_literal(part.temperature) + ", " +
           grade_literal(part.speed) + ", " + bool_literal(part.in_production) + ", " +
           bool_literal(part.has_ordering_number) + ", " + bool_literal(part.has_hard_processor) + "}";
}

std::string TABLE_WRITER::parts() {
    WORLD_PART generic;
    generic.name = GENERIC_NAME;
    generic.device = static_cast<unsigned int>(m_world.devices.size() + 1);
    std::string text = "const TOVREN_CATALOGUE_PART TOVREN_CATALOGUE_PARTS[] = {";
    LINE_FILLER filler(text);
    filler.add(part_row(WORLD_PART()));
    for (const WORLD_PART& part : m_world.parts)
        filler.add(part_row(part));
    filler.add(part_row(generic));
    text += "\n};\n\nconst unsigned int TOVREN_CATALOGUE_PART_COUNT = ";
    const std::size_t count = m_world.parts.size() + 2;
    text += std::to_string(count) + ";\n\n";
    text += "// The bounds of the host's enumeration; constants, so that they are there before any code runs.\n"
            "extern constexpr DEV_PART_ENUM DEV_PART_INVALID = DEV_PART_ENUM(0);\n";
    text += "extern constexpr DEV_PART_ENUM DEV_PART_GENERIC = DEV_PART_ENUM(" + std::to_string(count - 1) + ");\n";
    return text + "extern constexpr DEV_PART_ENUM DEV_PART_MAX = DEV_PART_ENUM(" + std::to_string(count) + ");\n\n";
}

std::string TABLE_WRITER::packages() {
    std::string text = "const TOVREN_CATALOGUE_NAME TOVREN_CATALOGUE_PACKAGES[] = {";
    LINE_FILLER filler(text);
    for (const std::string& package : m_packages)
        filler.add(name(package));
    text += "\n};\n\nconst unsigned int TOVREN_CATALOGUE_PACKAGE_COUNT = ";
    return text + std::to_string(m_packages.size()) + ";\n\n";
}

// Characters one by one: the pool is longer than a string literal may be.
std::string TABLE_WRITER::pool() const {
    std::string text = "const char TOVREN_CATALOGUE_POOL[] = {";
    LINE_FILLER filler(text);
    for (const char c : m_pool)
        filler.add(c == '\0' ? "0" : "'" + std::string(1, c) + "'");
    return text + "\n};\n";
}

template <typename ROW>
std::string index_text(const std::string& table, const std::vector<ROW>& rows) {
    std::vector<std::string> names;
    names.reserve(rows.size() + 1);
    for (const ROW& row : rows)
        names.push_back(row.name);
    names.emplace_back(GENERIC_NAME);
    std::vector<std::size_t> order(names.size());
    std::iota(order.begin(), order.end(), 0U);
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return names[a] < names[b]; });
    std::string text = "const std::uint16_t TOVREN_CATALOGUE_" + table + "_BY_NAME[] = {";
    LINE_FILLER filler(text);
    for (const std::size_t position : order)
        filler.add(std::to_string(position + 1));
    return text + "\n};\n\n";
}

std::string TABLE_WRITER::text() {
    if (m_world.parts.size() + 2 > UINT16_MAX)
        m_faults.add({"catalogue tables", 0}, "more parts than a 16-bit number counts");
    std::string text = "// Generated by tovren_world_gen from data/catalogue and data/naming. Do not edit.\n"
                       "#include \"host_dev.h\"\n#include \"tovren_catalogue_tables.h\"\n\n";
    text += families(); // each adds to the pool: the order is that of the pool
    text += devices();
    text += parts();
    text += packages();
    text += index_text("FAMILIES", m_world.families);
    text += index_text("DEVICES", m_world.devices);
    text += index_text("PARTS", m_world.parts);
    return text + pool();
}

// A cell of the part list is never empty: two separators side by side may count as one.
std::string cell(const std::string& text) {
    return text.empty() ? "-" : text;
}

} // namespace

std::string catalogue_tables_text(const WORLD& world, WORLD_FAULTS& faults) {
    return TABLE_WRITER(world, faults).text();
}

std::string part_list_text(const WORLD& world) {
    std::string text = "// Generated by tovren_world_gen from data/catalogue and data/naming. Do not edit.\n"
                       "// part,device,package,pins,temperature,speed PCF; \"-\" where a part has no such grade\n";
    for (const WORLD_PART& part : world.parts) {
        const WORLD_DEVICE& device = world.devices[part.device - 1];
        text += part.name + "," + device.name + "," + part.package.type + "," + std::to_string(part.package.pin_count) +
                "," + cell(part.temperature) + "," + cell(part.speed) + " " + device.pcf + "\n";
    }
    return text;
}

std::string family_list_text(const WORLD& world) {
    std::string text;
    unsigned int number = 0;
    for (const WORLD_FAMILY& family : world.families)
        text += std::to_string(++number) + " " + family.name + (family.own_record ? " own\n" : " none\n");
    return text;
}

std::string pcf_record_list_text(const WORLD& world) {
    std::string text;
    for (const std::string& name : world.pcf_records)
        text += name + "\n";
    return text;
}
