// A flash's own parameter table (SFDP) beside the records that its identification leads to.
#include "tool_flash_why_sfdp.h"

#include "tool_output.h"
#include "tool_sfdp_file.h"
#include "tool_table.h"
#include "tool_text.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string_view>

namespace {

constexpr std::string_view TWO_WAYS[] = {"extended_mode", "bulk_erase_time", "sec_erase_time", "program_utime"};

bool is_against(const SFDP_DIFFERENCE& difference) {
    return std::find(std::begin(TWO_WAYS), std::end(TWO_WAYS), difference.member) == std::end(TWO_WAYS);
}

std::string name_and_index(const TOOL_FLASH_WHY& why, const TOOL_SFDP_FIT& fit) {
    const TOOL_LISTED_FLASH& flash = *why.candidate(fit.candidate).flash;
    return tool_printable(flash.flash->device_name) + " [" + std::to_string(flash.index) + ']';
}

std::string verdict(const TOOL_FLASH_WHY& why, const TOOL_SFDP_FIT& fit) {
    if (fit.fits())
        return "It fits " + name_and_index(why, fit) +
               (fit.differences.empty() ? ", which says the same.\n" : "; other times are other limits.\n");
    std::vector<std::string> members;
    for (const SFDP_DIFFERENCE& difference : fit.differences)
        if (is_against(difference))
            members.push_back(difference.member);
    return "It does not fit " + name_and_index(why, fit) + ": " + tool_join(members, ", ") + ".\n";
}

} // namespace

bool TOOL_SFDP_FIT::fits() const {
    return std::none_of(differences.begin(), differences.end(), is_against);
}

std::vector<TOOL_SFDP_FIT> tool_sfdp_fits(const TOOL_FLASH_WHY& why, const SFDP_TABLE& table) {
    std::vector<TOOL_SFDP_FIT> fits;
    for (size_t i = 0; i < why.candidates.size(); ++i)
        fits.push_back({i, sfdp_differences(*why.candidate(i).flash->flash, table)});
    return fits;
}

void tool_write_why_sfdp(const TOOL_FLASH_WHY& why, const std::string& file, const SFDP_TABLE& table,
                         const TOOL_OUTPUT& output) {
    output.write("\nThe parameter table of " + tool_sfdp_file_text(file) + ":\n");
    if (why.candidates.empty())
        output.write("There is no record to hold it against.\n");
    TOOL_TABLE differences({{"Flash"}, {"Member"}, {"Record"}, {"Table"}});
    std::string verdicts;
    bool is_different = false;
    for (const TOOL_SFDP_FIT& fit : tool_sfdp_fits(why, table)) {
        for (const SFDP_DIFFERENCE& difference : fit.differences) {
            differences.add_row(
                {name_and_index(why, fit), difference.member, difference.record_value, difference.table_value});
            is_different = true;
        }
        verdicts += verdict(why, fit);
    }
    if (is_different)
        differences.write(output);
    output.write(verdicts);
}

nlohmann::ordered_json tool_why_sfdp_json(const TOOL_FLASH_WHY& why, const std::string& file, const SFDP_TABLE& table) {
    using JSON = nlohmann::ordered_json;
    JSON candidates = JSON::array();
    for (const TOOL_SFDP_FIT& fit : tool_sfdp_fits(why, table)) {
        const TOOL_LISTED_FLASH& flash = *why.candidate(fit.candidate).flash;
        JSON object = {{"index", flash.index}, {"device_name", flash.flash->device_name}, {"fits", fit.fits()}};
        object["differences"] = JSON::array();
        for (const SFDP_DIFFERENCE& difference : fit.differences)
            object["differences"].push_back({{"member", difference.member},
                                             {"record", difference.record_value},
                                             {"table", difference.table_value}});
        candidates.push_back(std::move(object));
    }
    return {{"file", file}, {"candidates", candidates}};
}
