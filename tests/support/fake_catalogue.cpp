#include "fake_catalogue.h"

#include "host_text.h"

#include <algorithm>

const DEV_PART_ENUM DEV_PART_INVALID = DEV_PART_ENUM(FAKE_PART_INVALID);
const DEV_PART_ENUM DEV_PART_GENERIC = DEV_PART_ENUM(FAKE_PART_GENERIC);
const DEV_PART_ENUM DEV_PART_MAX = DEV_PART_ENUM(FAKE_PART_MAX);

FAKE_CATALOGUE& fake_catalogue() {
    static FAKE_CATALOGUE catalogue;
    return catalogue;
}

namespace {

bool is_called(const std::string& name, const std::string& wanted) {
    return !wanted.empty() && gen_stricmp(name.c_str(), wanted.c_str()) == 0;
}

} // namespace

std::string dstr_get_user_string(DEV_FAMILY_ENUM family) {
    return fake_catalogue().families.at(family);
}

std::string dstr_get_user_string(DEV_DEVICE_ENUM device) {
    return fake_catalogue().devices.at(device).name;
}

std::string dstr_get_user_string(DEV_PART_ENUM part) {
    if (part < FAKE_PART_MAX)
        return fake_catalogue().parts[part].name;
    ++fake_catalogue().wrong_questions;
    return "";
}

DEV_FAMILY_ENUM dstr_get_dev_family_enum_by_string(const std::string& name) {
    const auto& families = fake_catalogue().families;
    for (unsigned int family = 1; family < families.size(); ++family)
        if (is_called(families[family], name))
            return DEV_FAMILY_ENUM(family);
    return DEV_FAMILY_INVALID;
}

DEV_DEVICE_ENUM dstr_get_dev_device_enum_by_string(const std::string& name) {
    const auto& devices = fake_catalogue().devices;
    for (unsigned int device = 1; device < devices.size(); ++device)
        if (is_called(devices[device].name, name))
            return DEV_DEVICE_ENUM(device);
    return DEV_DEVICE_INVALID;
}

DEV_PART_ENUM dstr_get_dev_part_enum_by_string(const std::string& name) {
    const auto& parts = fake_catalogue().parts;
    if (is_called("OUT_OF_RANGE", name))
        return DEV_PART_ENUM(FAKE_PART_MAX);
    if (is_called("NEGATIVE", name))
        return DEV_PART_ENUM(0x80000001);
    for (unsigned int part = 0; part < parts.size(); ++part)
        if (is_called(parts[part].name, name))
            return DEV_PART_ENUM(part);
    return DEV_PART_INVALID;
}

bool dstr_is_valid_dev_family_enum(DEV_FAMILY_ENUM family) {
    return family != DEV_FAMILY_INVALID && family < fake_catalogue().families.size();
}

bool dstr_is_valid_dev_device_enum(DEV_DEVICE_ENUM device) {
    return device != DEV_DEVICE_INVALID && device < fake_catalogue().devices.size();
}

DEV_DEVICE_ENUM DEV_PART_MANAGER::get_device_of(DEV_PART_ENUM part) const {
    return DEV_DEVICE_ENUM(fake_catalogue().parts.at(part).device);
}

DEV_FAMILY_ENUM DEV_PART_MANAGER::get_family_of(DEV_DEVICE_ENUM device) const {
    const auto& devices = fake_catalogue().devices;
    return DEV_FAMILY_ENUM(device < devices.size() ? devices[device].family : 0);
}

bool DEV_PART_MANAGER::filter_part_list(std::vector<DEV_PART_ENUM>& parts, const std::string& family,
                                        const std::string& package, const std::string& pin_count,
                                        const std::string& temperature_grade, const std::string& speed_grade,
                                        bool in_production, bool has_ordering_number, bool has_hard_processor,
                                        const std::string& name_part) const {
    FAKE_CATALOGUE& catalogue = fake_catalogue();
    const auto call = static_cast<unsigned int>(catalogue.filter_calls.size());
    catalogue.filter_calls.push_back(family + ' ' + package + ' ' + pin_count + ' ' + temperature_grade + ' ' +
                                     speed_grade + ' ' + std::to_string(in_production) + ' ' +
                                     std::to_string(has_ordering_number) + ' ' + std::to_string(has_hard_processor) +
                                     ' ' + name_part);
    parts.clear();
    for (unsigned int number = FAKE_PART_INVALID + 1; number < FAKE_PART_GENERIC; ++number) {
        const FAKE_PART& part = catalogue.parts[number];
        const std::string& part_family = catalogue.families.at(catalogue.devices.at(part.device).family);
        if (!part.name.empty() && (!in_production || part.in_production) &&
            (!has_ordering_number || part.has_ordering_number) && (family == "ANY" || family == part_family))
            parts.push_back(DEV_PART_ENUM(number));
    }
    return !catalogue.failing_filters.contains(call); // the list is filled all the same
}
