// `tovren db verify`: both databases of a root, held against this library.
#include "tool_command_line.h"
#include "tool_db_checks.h"
#include "tool_db_verbs.h"
#include "tool_error.h"
#include "tool_output.h"
#include "tool_table.h"
#include "tool_text.h"
#include "tovren_standalone_host.h"

#include "host_fio.h"

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

namespace {

using VERDICT = TOOL_DB_FINDING::VERDICT;

const char* verdict_text(VERDICT verdict) {
    return verdict == VERDICT::OK ? "ok" : verdict == VERDICT::NOTE ? "note" : "fault";
}

nlohmann::ordered_json as_json(const TOOL_DB_FINDING& finding) {
    return {{"database", finding.database},
            {"check", finding.check},
            {"verdict", verdict_text(finding.verdict)},
            {"text", finding.text}};
}

// The root, where `folder` is the one in it that holds the databases, or a database; else empty.
std::string folder_above(const std::string& folder) {
    std::error_code ignored;
    std::filesystem::path path = std::filesystem::absolute(folder, ignored).lexically_normal();
    while (path != path.parent_path() && (!path.has_filename() || path.extension() == ".pcf"))
        path = path.parent_path();
    return path.filename() == "programmer" ? path.parent_path().string() : "";
}

int verify(const std::optional<std::string>& root, const TOOL_OUTPUT& output) {
    if (root && root->empty())
        throw tool_usage_error("db verify", "the folder's name is empty");
    if (root)
        TOVREN_STANDALONE_HOST::set_device_db_root(*root);
    std::vector<TOOL_DB_FINDING> findings = tool_db_flash_findings();
    for (TOOL_DB_FINDING& finding : tool_db_device_findings())
        findings.push_back(std::move(finding));
    const auto faults =
        static_cast<size_t>(std::count_if(findings.begin(), findings.end(), [](const TOOL_DB_FINDING& finding) {
            return finding.verdict == VERDICT::FAULT;
        }));
    const std::string folder = gen_get_device_db_fullpath();
    if (output.is_json()) {
        nlohmann::ordered_json document = {{"root", folder}, {"faults", faults}};
        document["findings"] = nlohmann::ordered_json::array();
        for (const TOOL_DB_FINDING& finding : findings)
            document["findings"].push_back(as_json(finding));
        output.write_json(document);
    } else {
        TOOL_TABLE table({{"Database"}, {"Check"}, {"Verdict"}, {"Finding"}});
        for (const TOOL_DB_FINDING& finding : findings)
            table.add_row({finding.database, finding.check, verdict_text(finding.verdict), finding.text});
        table.write(output);
        output.write(tool_printable(folder) + ": " + tool_count_text(faults, "fault") + '\n');
    }
    if (const std::string root_above = folder_above(folder); faults != 0 && !root_above.empty())
        tool_note("next: the root is the folder above `programmer`: tovren db verify " + tool_printable(root_above));
    return faults == 0 ? TOOL_EXIT_DONE : TOOL_EXIT_REFUSED;
}

} // namespace

void tool_add_db_verify(TOOL_GROUP& group) {
    const auto root = std::make_shared<std::optional<std::string>>();
    group
        .add_verb("verify", "Hold both databases of a root against this library",
                  [root](const TOOL_OUTPUT& output) { return verify(*root, output); })
        .argument("ROOT", *root, "The device-database root; without it the configured one")
        .footer("\nExit code 0: no fault, whatever the notes say; 3: a fault.\n");
}
