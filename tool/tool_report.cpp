// `tovren report`: one page of all that is loaded, complete in itself.
#include "tool_report.h"

#include "tool_command_line.h"
#include "tool_database.h"
#include "tool_device_database.h"
#include "tool_error.h"
#include "tool_file.h"
#include "tool_groups.h"
#include "tool_output.h"
#include "tool_report_templates.h"
#include "tool_text.h"
#include "tovren_dev_info_manager_auto_export.h"
#include "tovren_standalone_host.h"

#include "host_fio.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace {

constexpr char STANDARD_OUTPUT[] = "-";

// What the page tells of itself, beside its sections.
struct SUMMARY {
    size_t flash_count; // loaded
    size_t hidden_count;
    size_t device_record_count;
};

struct PAGE {
    SUMMARY summary;
    TOOL_NAME_SECTION names;
    std::string text;
};

TOOL_HTML number(size_t value) {
    return TOOL_HTML(std::to_string(value));
}

TOOL_HTML source(const char* what, const std::string& where, const std::string& holds) {
    return tool_fill(TOOL_PAGE_SOURCE,
                     {{"what", TOOL_HTML(what)}, {"where", TOOL_HTML(where)}, {"holds", TOOL_HTML(holds)}});
}

// "12345 bytes, 438 records, of the description with MD5 ..."
std::string database_text(const TOOL_DATABASE& database, const std::string& records, const std::string& md5) {
    FIO_STATUS status;
    FIO_FILE_SYSTEM::status(tool_database_path(database).c_str(), &status);
    return std::to_string(status.size) + " bytes, " + records + ", of the description with MD5 " + md5;
}

TOOL_HTML sources(const SUMMARY& summary, size_t external_count, const TOOL_NAME_SECTION& names) {
    const size_t in_file = summary.flash_count + summary.hidden_count - external_count;
    const std::string settings = TOVREN_STANDALONE_HOST::get_settings_file();
    TOOL_HTML rows;
    rows += source("Library", "libtovren " TOVREN_VERSION,
                   "names compiled in: " + tool_count_text(names.ordering_count, "ordering name") + ", " +
                       tool_count_text(names.package_count, "package"));
    rows += source("Database root", gen_get_device_db_fullpath(), "");
    rows += source("Flash database", TOOL_FLASH_DATABASE.file,
                   database_text(TOOL_FLASH_DATABASE, tool_count_text(in_file, "record"), TOVREN_FLASH_INFO_CSV_MD5));
    rows += source("Device database", TOOL_DEVICE_DATABASE.file,
                   database_text(TOOL_DEVICE_DATABASE, tool_count_text(summary.device_record_count, "record"),
                                 TOVREN_DEV_INFO_CSV_MD5));
    rows += source("Settings", settings.empty() ? "none" : settings,
                   FIO_FILE_SYSTEM::exists(settings.c_str()) ? "" : "there is no such file");
    if (external_count > 0)
        rows += source("User's own flash", TOVREN_FLASH_MANAGER::get_ext_flash_setting_name(),
                       tool_count_text(external_count, "record"));
    return rows;
}

PAGE make_page() {
    const auto manager = tool_load_flashes(1);
    const auto records = tool_all_flashes();
    const auto devices = tool_load_devices();
    const std::vector<TOOL_LISTED_FLASH> listed = tool_listed_flashes(*manager, records);
    const size_t external_count = listed.size() - records.size();

    PAGE page;
    page.summary.flash_count = manager->get_flash_count();
    page.summary.hidden_count = listed.size() - page.summary.flash_count;
    page.summary.device_record_count = devices->get_record_count();
    page.names = tool_report_names(*devices);
    const TOOL_FLASH_SECTION flashes = tool_report_flashes(listed, external_count);
    page.text = tool_fill(TOOL_PAGE_PAGE, {{"style_digest", TOOL_HTML(TOOL_PAGE_STYLE_DIGEST)},
                                           {"script_digest", TOOL_HTML(TOOL_PAGE_SCRIPT_DIGEST)},
                                           {"style", tool_fill(TOOL_PAGE_STYLE)},
                                           {"script", tool_fill(TOOL_PAGE_SCRIPT)},
                                           {"version", TOOL_HTML(TOVREN_VERSION)},
                                           {"flash_count", number(page.summary.flash_count)},
                                           {"hidden_count", number(page.summary.hidden_count)},
                                           {"device_count", number(page.summary.device_record_count)},
                                           {"catalogue_families", number(page.names.family_count)},
                                           {"catalogue_devices", number(page.names.device_count)},
                                           {"catalogue_parts", number(page.names.part_count)},
                                           {"package_count", number(page.names.package_count)},
                                           {"ordering_count", number(page.names.ordering_count)},
                                           {"sources", sources(page.summary, external_count, page.names)},
                                           {"makers", flashes.makers},
                                           {"densities", flashes.densities},
                                           {"rulings", flashes.rulings},
                                           {"flashes", flashes.rows},
                                           {"devices", tool_report_devices(*devices, flashes.anchors)},
                                           {"names", page.names.families}})
                    .markup();
    return page;
}

void write_result(const std::string& file, const PAGE& page, const TOOL_OUTPUT& output) {
    if (!output.is_json()) {
        output.write("wrote " + tool_count_text(page.summary.flash_count + page.summary.hidden_count, "flash record") +
                     ", " + tool_count_text(page.summary.device_record_count, "device record") + " and " +
                     tool_count_text(page.names.ordering_count, "ordering name") + " to " + tool_printable(file) +
                     '\n');
        return;
    }
    output.write_json({{"output", file},
                       {"bytes", page.text.size()},
                       {"flashes", page.summary.flash_count},
                       {"hidden_flashes", page.summary.hidden_count},
                       {"device_records", page.summary.device_record_count},
                       {"devices", page.names.device_count},
                       {"parts", page.names.part_count},
                       {"ordering_names", page.names.ordering_count}});
}

int report(const std::string& file, const TOOL_OUTPUT& output) {
    const bool is_standard_output = file == STANDARD_OUTPUT;
    if (file.empty())
        throw tool_usage_error("report", "the file's name is empty");
    if (is_standard_output && output.is_json())
        throw tool_usage_error("report", "--json: standard output is the page's; name a file");
    const PAGE page = make_page();
    if (is_standard_output) {
        output.write(page.text);
    } else {
        tool_write_file(file, page.text);
        write_result(file, page, output);
    }
    return TOOL_EXIT_DONE;
}

} // namespace

void tool_add_report_verb(TOOL_COMMAND_LINE& line) {
    const auto file = std::make_shared<std::string>();
    line.add_verb("report", "Write a page of the loaded tables, to read and search in a browser",
                  [file](const TOOL_OUTPUT& output) { return report(*file, output); })
        .argument("FILE", *file, "The page to write; - for standard output")
        .footer("\nThe page is one file that asks for nothing else: flashes, those that a setting\n"
                "hides included, with their geometry drawn to scale; device records and whom\n"
                "they serve; the names of families, devices, packages and parts. It is read\n"
                "without scripts too; with them it has a search and filters, whose state\n"
                "stands in the address. An older page is replaced in one step.\n");
}
