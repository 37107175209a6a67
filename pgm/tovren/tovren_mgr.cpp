// Name services: the device-name grammar and the ordering list, put together with the device catalogue.
//
// The catalogue's bounds are read at run time; nothing here counts on their values. No enumerator outside them is
// handed to the catalogue. Spellings that are answered are never handed to a grammar look-up, which would upper-case
// them.
#include "tovren_mgr.h"

#include "host_dev.h"
#include "host_pgm_common.h"
#include "host_text.h"
#include "tovren_check.h"
#include "tovren_ddb_mgr.h"
#include "tovren_device_grammar_mgr.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <fmt/printf.h>
#include <memory>
#include <vector>

namespace {

std::string upper(std::string text) {
    stl_toupper(text);
    return text;
}

// ---- the catalogue ----

bool is_named_part(DEV_PART_ENUM part) {
    return part != DEV_PART_INVALID && part != DEV_PART_GENERIC && part < DEV_PART_MAX;
}

DEV_PART_ENUM next_part(DEV_PART_ENUM part) {
    return DEV_PART_ENUM(part + 1U);
}

// The name of the first named part, in enumerator order, that `is_wanted` accepts; empty when none is. `is_wanted` gets
// the catalogue's spelling in a string of its own; what it leaves there is the result.
template <typename PREDICATE>
std::string find_part_name(PREDICATE is_wanted) {
    for (DEV_PART_ENUM part = next_part(DEV_PART_INVALID); part != DEV_PART_GENERIC && part < DEV_PART_MAX;
         part = next_part(part)) {
        std::string candidate = dstr_get_user_string(part);
        if (is_wanted(candidate))
            return candidate;
    }
    return "";
}

// Parts of a family ("ANY": of all) in production and with an ordering number first, then with fewer restrictions.
constexpr unsigned int PASS_COUNT = 4;

std::vector<DEV_PART_ENUM> parts_of_pass(const DEV_PART_MANAGER& catalogue, const std::string& family,
                                         unsigned int pass) {
    const bool flag1 = pass < 2;
    const bool flag2 = pass == 0 || pass == 2;
    std::vector<DEV_PART_ENUM> parts;
    if (!catalogue.filter_part_list(parts, family, "ANY", "ANY", "ANY", "ANY", flag1, flag2, false, "any"))
        parts.clear();
    return parts;
}

// ---- hash ----

constexpr unsigned int SHA_SIZE = 32;
constexpr size_t HASH_SIZE = 6; // bytes of the digest
constexpr unsigned long long HASH_MASK = 0x00FFFFFFFFFFFFFF;
constexpr unsigned long long INVALID_HASH = 0xFFFFFFFFFFFFFFFF;

using HASH_BYTES = std::array<unsigned char, HASH_SIZE>;

HASH_BYTES hash_bytes(const std::string& name) {
    const std::unique_ptr<unsigned char[]> digest(
        PGM_COMMON::get_block_sha(reinterpret_cast<const unsigned char*>(name.data()),
                                  static_cast<unsigned int>(name.size()), SHA_SIZE));
    HASH_BYTES bytes;
    std::copy_n(digest.get(), HASH_SIZE, bytes.begin());
    return bytes;
}

unsigned long long hash_number(const HASH_BYTES& bytes) {
    unsigned long long hash = 0;
    for (size_t place = 0; place < HASH_SIZE; ++place)
        hash |= QWORD{bytes[place]} << (8 * place);
    return hash & HASH_MASK;
}

} // namespace

// ---- ordering part numbers ----

unsigned int TOVREN_MGR::get_opn_enum(std::string part_name) {
    const DEV_PART_ENUM part = dstr_get_dev_part_enum_by_string(part_name);
    return is_named_part(part) ? TOVREN_DDB_OPN_MGR::get_opn_enum(part) : INVALID_DWORD;
}

std::string TOVREN_MGR::get_opn(unsigned int opn_enum) {
    const unsigned int dev = TOVREN_DDB_OPN_MGR::get_dev_opn_enum(opn_enum);
    if (dev == INVALID_DWORD || !is_named_part(DEV_PART_ENUM(dev)))
        return "";
    return upper(dstr_get_user_string(DEV_PART_ENUM(dev)));
}

unsigned long long TOVREN_MGR::get_opn_hash(std::string part_name) {
    if (!is_named_part(dstr_get_dev_part_enum_by_string(part_name)))
        return INVALID_HASH;
    stl_toupper(part_name);
    return hash_number(hash_bytes(part_name));
}

std::string TOVREN_MGR::get_opn_from_hash(unsigned long long hash) {
    HASH_BYTES wanted;
    for (size_t place = 0; place < HASH_SIZE; ++place)
        wanted[place] = BYTE(hash >> (8 * place));
    return find_part_name([&](std::string& candidate) {
        stl_toupper(candidate);
        return hash_bytes(candidate) == wanted;
    });
}

// ---- parts ----

std::string TOVREN_MGR::get_part_name_from_pcf(std::string pcf) {
    stl_toupper(pcf);
    const DEV_PART_MANAGER catalogue;
    std::string result;
    for (unsigned int pass = 0; pass < PASS_COUNT; ++pass) {
        for (const DEV_PART_ENUM part : parts_of_pass(catalogue, "ANY", pass)) {
            const std::string part_pcf = TOVREN_DEVICE_GRAMMAR_MGR::get_pgm_part_pcf(dstr_get_user_string(part));
            if (PGM_COMMON::compare_string(part_pcf, pcf, false)) {
                result = dstr_get_user_string(part);
                break;
            }
        }
        if (result.empty())
            break;
    }
    return result;
}

std::string TOVREN_MGR::get_part_name_from_dev(std::string device) {
    const DEV_PART_MANAGER catalogue;
    const DEV_DEVICE_ENUM device_enum = dstr_get_dev_device_enum_by_string(device);
    const DEV_FAMILY_ENUM family = catalogue.get_family_of(device_enum);
    if (!dstr_is_valid_dev_device_enum(device_enum) || !dstr_is_valid_dev_family_enum(family))
        TOVREN_FAIL("Device is not valid in DEV database");

    const std::string family_name = dstr_get_user_string(family);
    for (unsigned int pass = 0; pass < PASS_COUNT; ++pass) {
        for (const DEV_PART_ENUM part : parts_of_pass(catalogue, family_name, pass))
            if (catalogue.get_device_of(part) == device_enum)
                return dstr_get_user_string(part);
    }
    return "";
}

namespace {

// How much of a name must agree before the maps are scanned, which costs more than the rest of the search.
constexpr size_t PREFIX_SIZE = 5;

// False for most pairs of names that differ in more than letter case, at the price of one comparison.
bool may_begin_alike(const std::string& left, const std::string& right) {
    constexpr int CASE_BIT = 'a' ^ 'A';
    return ((*left.c_str() ^ *right.c_str()) & ~CASE_BIT) == 0;
}

// Whether an upper-case name stands for an upper-case catalogue name, of which the look-ups need a copy of their own.
bool stands_for(const std::string& name, std::string candidate) {
    if (std::strcmp(name.c_str(), candidate.c_str()) == 0)
        return true;
    if (name.size() < PREFIX_SIZE || candidate.size() < PREFIX_SIZE ||
        name.compare(0, PREFIX_SIZE, candidate, 0, PREFIX_SIZE) != 0)
        return false;
    return PGM_COMMON::compare_string(name, TOVREN_DEVICE_GRAMMAR_MGR::get_package_name(candidate, false), false) ||
           PGM_COMMON::compare_string(name, TOVREN_DEVICE_GRAMMAR_MGR::get_pgm_name(candidate, false, false), false);
}

} // namespace

std::string TOVREN_MGR::find_possible_full_name(std::string name) {
    stl_toupper(name);
    return find_part_name([&](std::string& candidate) {
        if (!may_begin_alike(name, candidate))
            return false;
        stl_toupper(candidate);
        return stands_for(name, candidate);
    });
}

std::string TOVREN_MGR::get_possible_full_name(std::string name) {
    stl_toupper(name);
    std::string result = find_possible_full_name(name);
    if (result.empty()) {
        const std::string text = fmt::sprintf("Unable to retrieve full device name from database for %s", name);
        TOVREN_FAIL(text.c_str());
    }
    return result;
}

// ---- programming enumerations ----

bool TOVREN_MGR::pgm_check_type_name_supported(PGM_ENUM_TYPE pgm_enum_type, std::string name, unsigned int* value) {
    TOVREN_CHECK(pgm_enum_type < PGM_ENUM_TYPE_MAX);
    stl_toupper(name);
    const auto [count, names] = PGM_SUPPORTED_ENUM_TYPE_MAP[pgm_enum_type];
    const auto* const place = std::find(names, names + count, name);
    if (place == names + count)
        return false;
    if (value != nullptr)
        *value = static_cast<unsigned int>(place - names);
    return true;
}

bool TOVREN_MGR::pgm_check_type_enum_supported(PGM_ENUM_TYPE pgm_enum_type, unsigned int value, std::string* name) {
    TOVREN_CHECK(pgm_enum_type < PGM_ENUM_TYPE_MAX);
    const auto& [count, names] = PGM_SUPPORTED_ENUM_TYPE_MAP[pgm_enum_type];
    const bool is_supported = value != 0 && value < count;
    if (is_supported && name != nullptr)
        *name = names[value];
    return is_supported;
}
