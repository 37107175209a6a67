// Waivers: a CSV of four columns, device_name,identification,rule,reason. Blank lines and those that begin with `#` do
// not count; the first of the others is the header. The reason takes the rest of its line, commas included.
#include "tool_flash_waivers.h"

#include "host_text.h"
#include "tool_file.h"
#include "tool_text.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

namespace {

constexpr size_t LARGEST_FILE = 1 << 20; // bytes

enum COLUMN : unsigned char { DEVICE_NAME, IDENTIFICATION, RULE, REASON, COLUMNS };
constexpr std::array<const char*, COLUMNS> COLUMN_NAMES = {"device_name", "identification", "rule", "reason"};

using SEVERITY = TOOL_CSV_FAULT::SEVERITY;

struct WAIVER {
    unsigned int line = 0;
    std::array<std::string, COLUMNS> cells;
    bool is_used = false;
    unsigned int line_ahead = 0; // of a waiver that took what this one would
};

TOOL_CSV_FAULT fault_at(const WAIVER& waiver, COLUMN column, const std::string& fault,
                        SEVERITY severity = SEVERITY::REFUSED) {
    return {waiver.line, column + 1U, COLUMN_NAMES[column], waiver.cells[column], fault, severity};
}

// The cells that the line has, four at most.
std::vector<std::string> cells_of(std::string line) {
    std::vector<std::string> cells;
    for (size_t comma = 0; cells.size() + 1 < COLUMNS && (comma = line.find(',')) != std::string::npos;) {
        cells.push_back(line.substr(0, comma));
        line.erase(0, comma + 1);
    }
    cells.push_back(std::move(line));
    for (std::string& cell : cells)
        gen_remove_leading_and_trailing_white_spaces(cell);
    return cells;
}

// The bytes that the row compares, the maker's first: "EF6119"; of a silicon ID the one, "10". Empty where a cell is no
// number.
std::string identification_of(const TOOL_CSV_ROW& row) {
    std::string text;
    for (const char* member : {"mfc_id", "memory_type", "memory_id"}) {
        const auto value = tool_flash_number(row, member);
        if (!value)
            return "";
        const auto byte = static_cast<unsigned char>(*value);
        text += tool_hex_text(&byte, 1);
    }
    return tool_flash_flag(row, "silicon_id") == true ? text.substr(4) : text;
}

bool is_named(const WAIVER& waiver, const TOOL_CSV_ROW& row) {
    const std::string& identification = waiver.cells[IDENTIFICATION];
    return tool_equal_ignoring_case(waiver.cells[DEVICE_NAME], tool_flash_cell(row, "device_name")) &&
           (identification.empty() || tool_equal_ignoring_case(identification, identification_of(row)));
}

// ---- the file ----

class WAIVER_READER {
public:
    std::vector<WAIVER> read(const std::string& file) {
        if (const std::string fault = tool_reading_fault(file); !fault.empty()) {
            m_faults.push_back({.fault = fault});
            return {};
        }
        std::ifstream input(file);
        std::istringstream lines(tool_read_all(input, tool_printable(file), LARGEST_FILE));
        for (std::string line; !m_is_foreign && std::getline(lines, line);) {
            ++m_line;
            gen_remove_leading_and_trailing_white_spaces(line);
            if (!line.empty() && line[0] != '#')
                add_line(cells_of(line));
        }
        return std::move(m_waivers);
    }

    const std::vector<TOOL_CSV_FAULT>& faults() const { return m_faults; }

private:
    void add_line(const std::vector<std::string>& cells) {
        if (!m_has_header) {
            m_has_header = true;
            m_is_foreign = !std::equal(cells.begin(), cells.end(), COLUMN_NAMES.begin(), COLUMN_NAMES.end());
            if (m_is_foreign)
                add_line_fault("the first row is not device_name,identification,rule,reason");
            return;
        }
        if (cells.size() != COLUMNS)
            return add_line_fault(tool_count_text(cells.size(), "cell") +
                                  ", expected 4: device_name,identification,rule,reason");
        WAIVER waiver{m_line, {}, false, 0};
        std::copy(cells.begin(), cells.end(), waiver.cells.begin());
        const size_t known = m_faults.size();
        check(waiver);
        if (m_faults.size() == known)
            m_waivers.push_back(std::move(waiver));
    }

    void check(const WAIVER& waiver) {
        if (waiver.cells[DEVICE_NAME].empty())
            m_faults.push_back(fault_at(waiver, DEVICE_NAME, "the cell is empty"));
        check_identification(waiver);
        check_rule(waiver);
        if (waiver.cells[REASON].empty())
            m_faults.push_back(fault_at(waiver, REASON, "there is no reason; without one nothing is waived"));
    }

    void check_identification(const WAIVER& waiver) {
        const std::string& text = waiver.cells[IDENTIFICATION];
        const bool is_hex = text.find_first_not_of("0123456789ABCDEFabcdef") == std::string::npos;
        const bool is_whole = text.empty() || text.size() == 2 || text.size() == 6;
        if (!is_hex || !is_whole)
            m_faults.push_back(fault_at(waiver, IDENTIFICATION,
                                        tool_quoted(text) + " is not an identification, as EF6119 (of a silicon ID "
                                                            "two digits), nor empty for all of the name"));
    }

    void check_rule(const WAIVER& waiver) {
        std::vector<std::string> names;
        for (const TOOL_PHYSICS_RULE& rule : tool_physics_rules())
            names.emplace_back(rule.name);
        const std::string& rule = waiver.cells[RULE];
        if (std::find(names.begin(), names.end(), rule) == names.end())
            m_faults.push_back(
                fault_at(waiver, RULE,
                         tool_quoted(rule) + " is not a rule (there are: " + tool_join(names, ", ") + ')'));
    }

    void add_line_fault(const std::string& fault) { m_faults.push_back({.line = m_line, .fault = fault}); }

    std::vector<WAIVER> m_waivers;
    std::vector<TOOL_CSV_FAULT> m_faults;
    unsigned int m_line = 0;
    bool m_has_header = false;
    bool m_is_foreign = false; // another header: what follows is not read
};

// ---- what they waive ----

std::string unknown_name(const WAIVER& waiver, const std::vector<TOOL_CSV_ROW>& rows) {
    std::vector<std::string> names;
    names.reserve(rows.size());
    for (const TOOL_CSV_ROW& row : rows)
        names.push_back(tool_flash_cell(row, "device_name"));
    const std::string guess = tool_did_you_mean(tool_nearest_names(waiver.cells[DEVICE_NAME], names));
    return "no flash is called " + tool_quoted(waiver.cells[DEVICE_NAME]) + (guess.empty() ? "" : ". " + guess);
}

TOOL_CSV_FAULT unused(const WAIVER& waiver, const std::vector<TOOL_CSV_ROW>& rows) {
    const std::string name = tool_quoted(waiver.cells[DEVICE_NAME]);
    if (waiver.line_ahead != 0)
        return fault_at(waiver, RULE,
                        "unused: line " + std::to_string(waiver.line_ahead) + " waives it already; take one line out",
                        SEVERITY::REMARK);
    if (std::any_of(rows.begin(), rows.end(), [&](const TOOL_CSV_ROW& row) { return is_named(waiver, row); }))
        return fault_at(waiver, RULE, "unused: " + name + " keeps to " + waiver.cells[RULE] + "; take the line out",
                        SEVERITY::REMARK);
    std::set<std::string> identifications;
    for (const TOOL_CSV_ROW& row : rows)
        if (tool_equal_ignoring_case(waiver.cells[DEVICE_NAME], tool_flash_cell(row, "device_name")))
            identifications.insert(identification_of(row));
    if (identifications.empty())
        return fault_at(waiver, DEVICE_NAME, "unused: " + unknown_name(waiver, rows), SEVERITY::REMARK);
    return fault_at(waiver, IDENTIFICATION,
                    "unused: " + name + " does not answer " + waiver.cells[IDENTIFICATION] + " but " +
                        tool_join({identifications.begin(), identifications.end()}, ", "),
                    SEVERITY::REMARK);
}

// Marks the first waiver that covers the finding, and those that would too.
bool is_waived(const TOOL_PHYSICS_FINDING& finding, std::vector<WAIVER>& waivers) {
    unsigned int line = 0; // of the first that covers it
    for (WAIVER& waiver : waivers) {
        if (waiver.cells[RULE] != finding.fault.rule || !is_named(waiver, *finding.row))
            continue;
        if (line != 0) {
            waiver.line_ahead = line;
            continue;
        }
        waiver.is_used = true;
        line = waiver.line;
    }
    return line != 0;
}

} // namespace

std::string tool_waivers_beside(const std::string& csv) {
    std::filesystem::path path(csv);
    return path.replace_filename(path.stem().string() + "_waivers.csv").string();
}

TOOL_WAIVED tool_waive(std::vector<TOOL_PHYSICS_FINDING> findings, const std::vector<TOOL_CSV_ROW>& rows,
                       const std::string& waiver_file) {
    WAIVER_READER reader;
    std::vector<WAIVER> waivers = reader.read(waiver_file);
    TOOL_WAIVED waived{std::move(findings), reader.faults()};
    waived.count = std::erase_if(waived.standing, [&waivers](const TOOL_PHYSICS_FINDING& finding) {
        return is_waived(finding, waivers);
    });
    for (const WAIVER& waiver : waivers)
        if (!waiver.is_used)
            waived.faults.push_back(unused(waiver, rows));
    waived.faults = tool_sorted_faults(std::move(waived.faults));
    return waived;
}
