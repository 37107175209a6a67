// Device-name grammar: ordered compositions of look-ups in the naming maps, with an optional trace.
//
// Names that are handed on are never constant objects: every look-up standardises its argument in place.
#include "tovren_device_grammar_mgr.h"

#include "host_cfg.h"
#include "tovren_ddb_mgr.h"

#include <cstdio>

namespace {

// Asked anew for every call, so that the switch can be flipped while the program runs.
bool is_traced() {
    return cfg_is_on("TOVREN_ENABLE_GRAMMAR_DEBUG", false);
}

} // namespace

std::string TOVREN_DEVICE_GRAMMAR_MGR::get_package_name(const std::string& name, bool keep_empty) {
    std::string result = TOVREN_DDB_GRAMMAR_MGR::get_package_grammar(name, keep_empty);
    if (is_traced()) {
        std::printf("Map Flow   : Strip Speedgrade\n");
        std::printf("    Input  : %s\n", name.c_str());
        std::printf("    Output : %s\n", result.c_str());
    }
    return result;
}

std::string TOVREN_DEVICE_GRAMMAR_MGR::get_pgm_name(const std::string& name, bool skip_package_conversion,
                                                    bool keep_empty) {
    std::string result = TOVREN_DDB_GRAMMAR_MGR::get_pgm_grammar(name, true);
    std::string intermediate;
    if (result.empty() && !skip_package_conversion) {
        intermediate = TOVREN_DDB_GRAMMAR_MGR::get_package_grammar(name, true);
        if (!intermediate.empty())
            result = TOVREN_DDB_GRAMMAR_MGR::get_pgm_grammar(intermediate, true);
    }
    if (result.empty() && !keep_empty)
        result = name;
    if (is_traced()) {
        std::printf("Map Flow   : Strip Package (skip package conversion: %d)\n", skip_package_conversion ? 1 : 0);
        std::printf("    Input0 : %s\n", name.c_str());
        std::printf("    Input1 : %s\n", intermediate.c_str());
        std::printf("    Output : %s\n", result.c_str());
    }
    return result;
}

std::string TOVREN_DEVICE_GRAMMAR_MGR::get_family(const std::string& name) {
    std::string result = TOVREN_DDB_GRAMMAR_MGR::get_family(name);
    if (!result.empty())
        return result;
    std::string pcf = get_pgm_part_pcf(name);
    if (pcf.empty())
        pcf = get_dev_part_pcf(name);
    return pcf.empty() ? result : TOVREN_DDB_GRAMMAR_MGR::get_family(pcf);
}

bool TOVREN_DEVICE_GRAMMAR_MGR::use_package_name(const std::string& name) {
    std::string pkg = get_package_name(name, false);
    const std::string pgm = get_pgm_name(pkg, true, true);
    return pkg == pgm;
}

bool TOVREN_DEVICE_GRAMMAR_MGR::use_full_name(const std::string& name) {
    std::string pkg = get_package_name(name, true);
    const std::string pgm = pkg.empty() ? "" : get_pgm_name(pkg, false, true);
    return !name.empty() && name == pkg && pkg == pgm;
}

std::string TOVREN_DEVICE_GRAMMAR_MGR::get_pgm_part_pcf(const std::string& pgm_name) {
    return TOVREN_DDB_GRAMMAR_MGR::get_pgm_pcf(pgm_name);
}

std::string TOVREN_DEVICE_GRAMMAR_MGR::get_pgm_family_pcf(const std::string& pgm_name) {
    return TOVREN_DDB_GRAMMAR_MGR::get_pgm_family_pcf(pgm_name);
}

void TOVREN_DEVICE_GRAMMAR_MGR::get_pgm_pcfs(const std::string& name, std::string& part_pcf, std::string& family_pcf) {
    std::string pgm = get_pgm_name(name, false, false);
    part_pcf = get_pgm_part_pcf(pgm);
    family_pcf = get_pgm_family_pcf(pgm);
}

std::string TOVREN_DEVICE_GRAMMAR_MGR::get_dev_part_pcf(const std::string& device) {
    return TOVREN_DDB_GRAMMAR_MGR::get_dev_pcf(device);
}

std::string TOVREN_DEVICE_GRAMMAR_MGR::get_dev_family_pcf(const std::string& device) {
    return TOVREN_DDB_GRAMMAR_MGR::get_dev_family_pcf(device);
}

void TOVREN_DEVICE_GRAMMAR_MGR::get_dev_pcfs(const std::string& device, std::string& part_pcf,
                                             std::string& family_pcf) {
    part_pcf = get_dev_part_pcf(device);
    family_pcf = get_dev_family_pcf(device);
}

std::string TOVREN_DEVICE_GRAMMAR_MGR::get_pcf_family_pcf(const std::string& pcf) {
    return TOVREN_DDB_GRAMMAR_MGR::get_device_pcf_family_pcf(pcf);
}

std::string TOVREN_DEVICE_GRAMMAR_MGR::get_pcf_device(const std::string& pcf) {
    const std::vector<std::string> devices = TOVREN_DDB_GRAMMAR_MGR::get_dev_pcf_list(pcf);
    return devices.empty() ? "" : devices.front();
}

char get_grammar_character_type(char c) {
    if (c >= 'A' && c <= 'Z')
        return 'c';
    if (c >= '0' && c <= '9')
        return 'd';
    return c == '_' || c == '-' ? c : '?';
}

void standardize_name(std::string& name) {
    TOVREN_DDB_GRAMMAR_MGR::standardize_name(name);
}
