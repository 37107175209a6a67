// Stored flash definitions, from the setting's text to the external record. By its first character an input is
//     D   a definition, which gets the tag that it needs
//     L   a list with whatever tags it has; "7.1.0 SP2 Build 345" is the running version
// and anything else is the setting's text itself.
// Always: no report. Accepted: the record obeys every rule, and the entry's check says that it is applied. A list that
// can be encoded and decoded is the same afterwards, up to its first zero byte.
#include "fuzz_support.h"
#include "tovren_flash_manager.h"
#include "tovren_standalone_host.h"

#include <algorithm>
#include <iostream>

namespace {

using M = TOVREN_FLASH_MANAGER;

constexpr size_t LARGEST_INPUT = size_t{1} << 16;

// Lets nothing of what is printed out.
struct SILENCE {
    SILENCE() : former(std::cout.rdbuf(nullptr)) {}
    ~SILENCE() {
        std::cout.rdbuf(former);
        std::cout.clear();
    }
    SILENCE(const SILENCE&) = delete;
    SILENCE& operator=(const SILENCE&) = delete;

    std::streambuf* former;
};

std::string make_text(const std::string& input) {
    const char kind = input.empty() ? ' ' : input[0];
    if (kind != 'D' && kind != 'L')
        return input;
    std::string list = input.substr(1);
    if (kind == 'D' && !list.empty())
        list += "#" + M::gen_ini_password(list) + ";";
    const std::string text = M::encode_ini(list);
    const std::string decoded = M::decode_ini(text);
    FUZZ_REQUIRE(decoded.empty() || decoded == list.substr(0, list.find('\0')));
    return text;
}

void require_sound(const std::string& text, const TOVREN_SFL_FLASH_INFO& record) {
    const auto entries = M::get_ini_entries(M::decode_ini(text));
    const auto rules = M::get_flash_rules();
    if (record.device_name.empty()) {
        FUZZ_REQUIRE(entries.empty() || M::check_ini_entry(entries[0]).refusal != TOVREN_FLASH_INI_ACCEPTED);
        return;
    }
    FUZZ_REQUIRE(std::all_of(rules.begin(), rules.end(), [&](const auto& rule) { return rule.holds(record); }));
    FUZZ_REQUIRE(M::check_ini_entry(entries.at(0)).refusal == TOVREN_FLASH_INI_ACCEPTED);
    FUZZ_REQUIRE(M::cmp_ini_password(entries[0].definition, entries[0].tag));
}

void run(const std::string& input) {
    const SILENCE silence;
    const std::string setting = M::get_ext_flash_setting_name();
    const std::string text = make_text(input);
    TOVREN_STANDALONE_HOST::set_setting(setting, text);
    TOVREN_STANDALONE_HOST::set_setting(setting + "_DEBUG", "on");
    TOVREN_FLASH_MANAGER flashes(false, 1, true, false);
    flashes.parse_ext_flash_info();
    require_sound(text, flashes.m_ext_flash_info);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > LARGEST_INPUT)
        return 0;
    TOVREN_STANDALONE_HOST::set_version("7.1.0", 2, 345);
    FUZZ_REQUIRE(fuzz_is_accepted([&] { run({data, data + size}); }));
    return 0;
}
