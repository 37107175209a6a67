// The device catalogue, over the tables that the build expands from data/catalogue; DEV_PART_INVALID, DEV_PART_GENERIC
// and DEV_PART_MAX stand among them.
#include "host_dev.h"
#include "host_text.h"
#include "tovren_catalogue_tables.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <optional>

static_assert(TOVREN_CATALOGUE_FAMILY_COUNT == DEV_FAMILY_MAX);
static_assert(TOVREN_CATALOGUE_DEVICE_COUNT == DEV_DEVICE_MAX);

namespace {

// Apart, so that the compiler does not see the few bits of a length and copy by an instruction that is slow to start.
[[gnu::noinline]] std::string make_name(std::string_view text) {
    return std::string(text);
}

template <typename ROW>
std::string name_at(std::span<const ROW> rows, size_t number) {
    return number < rows.size() ? make_name(tovren_catalogue_text(rows[number].name)) : std::string();
}

// The number of the row called `name`, letter case aside; 0 for none.
template <typename ROW>
unsigned int search_name(std::span<const ROW> rows, std::span<const std::uint16_t> by_name, std::string name) {
    stl_toupper(name);
    const auto text_of = [&](std::uint16_t number) { return tovren_catalogue_text(rows[number].name); };
    const auto place =
        std::lower_bound(by_name.begin(), by_name.end(), std::string_view(name),
                         [&](std::uint16_t number, std::string_view key) { return text_of(number) < key; });
    return place != by_name.end() && text_of(*place) == name ? *place : 0;
}

// The same. Lists of names follow the catalogue's order, so the last answer and the row behind it are tried first;
// `last` belongs to the rows.
template <typename ROW>
unsigned int find_name(std::span<const ROW> rows, std::span<const std::uint16_t> by_name, const std::string& name,
                       std::atomic<unsigned int>& last) {
    const auto is_at = [&](unsigned int number) {
        return number != 0 && number < rows.size() && tovren_catalogue_text(rows[number].name) == name;
    };
    const unsigned int hint = last.load(std::memory_order_relaxed);
    const unsigned int number = is_at(hint) ? hint : is_at(hint + 1) ? hint + 1 : search_name(rows, by_name, name);
    if (number != 0)
        last.store(number, std::memory_order_relaxed);
    return number;
}

std::span<const TOVREN_CATALOGUE_FAMILY> families() {
    return TOVREN_CATALOGUE_FAMILIES;
}
std::span<const TOVREN_CATALOGUE_DEVICE> devices() {
    return TOVREN_CATALOGUE_DEVICES;
}

// A text that passes everything, or the one that must be met.
class TEXT_FILTER {
public:
    explicit TEXT_FILTER(std::string text) : m_text(std::move(text)) {
        stl_toupper(m_text);
        m_is_any = m_text == "ANY";
    }

    bool passes(std::string_view text) const { return m_is_any || text == m_text; }
    bool passes(char letter) const { return passes(std::string_view(&letter, 1)); }
    bool passes_within(std::string_view text) const { return m_is_any || text.find(m_text) != text.npos; }

    bool passes(unsigned int number) const {
        char digits[16];
        return passes(std::string_view(digits, std::to_chars(digits, digits + sizeof digits, number).ptr));
    }

private:
    std::string m_text;
    bool m_is_any = false;
};

// The family that a part filter names: nothing for any, INVALID for one that is not known.
std::optional<DEV_FAMILY_ENUM> family_filter(const std::string& family) {
    if (gen_stricmp(family.c_str(), "ANY") == 0)
        return std::nullopt;
    return dstr_get_dev_family_enum_by_string(family);
}

} // namespace

std::string dstr_get_user_string(DEV_FAMILY_ENUM family) {
    return name_at(families(), family);
}
std::string dstr_get_user_string(DEV_DEVICE_ENUM device) {
    return name_at(devices(), device);
}
std::string dstr_get_user_string(DEV_PART_ENUM part) {
    return name_at(tovren_catalogue_parts(), part);
}

DEV_FAMILY_ENUM dstr_get_dev_family_enum_by_string(const std::string& name) {
    static std::atomic<unsigned int> last;
    return DEV_FAMILY_ENUM(find_name(families(), TOVREN_CATALOGUE_FAMILIES_BY_NAME, name, last));
}

DEV_DEVICE_ENUM dstr_get_dev_device_enum_by_string(const std::string& name) {
    static std::atomic<unsigned int> last;
    return DEV_DEVICE_ENUM(find_name(devices(), TOVREN_CATALOGUE_DEVICES_BY_NAME, name, last));
}

DEV_PART_ENUM dstr_get_dev_part_enum_by_string(const std::string& name) {
    static std::atomic<unsigned int> last;
    return DEV_PART_ENUM(find_name(tovren_catalogue_parts(), tovren_catalogue_parts_by_name(), name, last));
}

bool dstr_is_valid_dev_family_enum(DEV_FAMILY_ENUM family) {
    return family != DEV_FAMILY_INVALID && family < DEV_FAMILY_MAX;
}

bool dstr_is_valid_dev_device_enum(DEV_DEVICE_ENUM device) {
    return device != DEV_DEVICE_INVALID && device < DEV_DEVICE_MAX;
}

DEV_DEVICE_ENUM DEV_PART_MANAGER::get_device_of(DEV_PART_ENUM part) const {
    const auto parts = tovren_catalogue_parts();
    return part < parts.size() ? DEV_DEVICE_ENUM(parts[part].device) : DEV_DEVICE_INVALID;
}

DEV_FAMILY_ENUM DEV_PART_MANAGER::get_family_of(DEV_DEVICE_ENUM device) const {
    return device < devices().size() ? DEV_FAMILY_ENUM(devices()[device].family) : DEV_FAMILY_INVALID;
}

bool DEV_PART_MANAGER::filter_part_list(std::vector<DEV_PART_ENUM>& parts, const std::string& family,
                                        const std::string& package, const std::string& pin_count,
                                        const std::string& temperature_grade, const std::string& speed_grade,
                                        bool in_production, bool has_ordering_number, bool has_hard_processor,
                                        const std::string& name_part) const {
    parts.clear();
    const auto wanted_family = family_filter(family);
    if (wanted_family == DEV_FAMILY_INVALID)
        return false;
    const TEXT_FILTER package_filter(package);
    const TEXT_FILTER pin_filter(pin_count);
    const TEXT_FILTER temperature_filter(temperature_grade);
    const TEXT_FILTER speed_filter(speed_grade);
    const TEXT_FILTER name_filter(name_part);

    const auto rows = tovren_catalogue_parts();
    for (unsigned int number = DEV_PART_INVALID + 1; number < DEV_PART_GENERIC; ++number) {
        const TOVREN_CATALOGUE_PART& part = rows[number];
        const bool passes_flags = (!in_production || part.in_production) &&
                                  (!has_ordering_number || part.has_ordering_number) &&
                                  (!has_hard_processor || part.has_hard_processor);
        if (passes_flags && (!wanted_family || get_family_of(DEV_DEVICE_ENUM(part.device)) == *wanted_family) &&
            package_filter.passes(tovren_catalogue_text(TOVREN_CATALOGUE_PACKAGES[part.package])) &&
            pin_filter.passes(unsigned{part.pin_count}) && temperature_filter.passes(part.temperature_grade) &&
            speed_filter.passes(part.speed_grade) && name_filter.passes_within(tovren_catalogue_text(part.name)))
            parts.push_back(DEV_PART_ENUM(number));
    }
    return true;
}
