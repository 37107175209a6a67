// `tovren check`: faults of the CSV descriptions.
#include "tool_command_line.h"
#include "tool_csv.h"
#include "tool_error.h"
#include "tool_groups.h"
#include "tool_output.h"
#include "tool_text.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace {

using SEVERITY = TOOL_CSV_FAULT::SEVERITY;

bool is_fault(const TOOL_CSV_FAULT& fault) {
    return fault.severity != SEVERITY::REMARK;
}

nlohmann::ordered_json as_json(const TOOL_CSV_FAULT& fault, const std::string& file) {
    nlohmann::ordered_json object = {{"file", file},
                                     {"line", nullptr},
                                     {"column", nullptr},
                                     {"member", nullptr},
                                     {"text", nullptr},
                                     {"fault", fault.fault},
                                     {"severity", is_fault(fault) ? "fault" : "warning"}};
    if (fault.line != 0)
        object["line"] = fault.line;
    if (fault.column != 0) {
        object["column"] = fault.column;
        object["member"] = fault.member;
        object["text"] = fault.found;
    }
    return object;
}

int write_faults(const std::vector<TOOL_CSV_FAULT>& faults, const std::string& file, const TOOL_OUTPUT& output) {
    const auto count = static_cast<size_t>(std::count_if(faults.begin(), faults.end(), is_fault));
    if (output.is_json()) {
        TOOL_JSON_LINES lines(output);
        for (const TOOL_CSV_FAULT& fault : faults)
            lines.add(as_json(fault, file));
        lines.end();
    } else {
        std::string text;
        for (const TOOL_CSV_FAULT& fault : faults)
            text += fault.text(file) + (is_fault(fault) ? "\n" : " (warning)\n");
        text += tool_printable(file) + ": " + tool_count_text(count, "fault") + ", " +
                tool_count_text(faults.size() - count, "warning") + '\n';
        output.write(text);
    }
    return count == 0 ? TOOL_EXIT_DONE : TOOL_EXIT_REFUSED;
}

} // namespace

void tool_add_check_group(TOOL_COMMAND_LINE& line) {
    TOOL_GROUP group = line.add_group("check", "Faults of the CSV descriptions, all in one run");
    const auto flash_csv = std::make_shared<std::string>();
    group
        .add_verb("flash", "Check a flash description",
                  [flash_csv](const TOOL_OUTPUT& output) {
                      return write_faults(tool_flash_csv_faults(*flash_csv), *flash_csv, output);
                  })
        .argument("CSV", *flash_csv, "The description to check");
    const auto device_csv = std::make_shared<std::string>();
    group
        .add_verb("devices", "Check a device description",
                  [device_csv](const TOOL_OUTPUT& output) {
                      return write_faults(tool_device_csv_faults(*device_csv), *device_csv, output);
                  })
        .argument("CSV", *device_csv, "The description to check");
}
