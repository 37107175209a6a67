// Holding a database against this library.
#include "tool_db_checks.h"

#include "tool_csv_table.h"
#include "tool_db_csv.h"
#include "tool_db_file.h"
#include "tool_db_tables.h"
#include "tool_error.h"
#include "tool_output.h"
#include "tool_text.h"
#include "tovren_dev_info_manager.h"
#include "tovren_flash_manager.h"

#include <algorithm>
#include <cstring>

namespace {

using VERDICT = TOOL_DB_FINDING::VERDICT;
using FINDINGS = std::vector<TOOL_DB_FINDING>;

class CHECKER {
public:
    explicit CHECKER(const TOOL_DATABASE& database)
        : m_database(database), m_file(tool_read_db_file(tool_database_path(database), true)) {}

    FINDINGS check() {
        check_envelope();
        if (is_expected_kind() && m_file.version) {
            check_payload();
            if (!has_all_records())
                add(is_flash() ? "defaults" : "keys", VERDICT::NOTE, "not checked: not every record can be read");
            else if (is_flash())
                check_flash_rows();
            else
                check_device_rows();
        }
        if (!m_file.magic.empty()) // the file is there
            check_load();
        return std::move(m_findings);
    }

private:
    bool is_flash() const { return std::strcmp(m_database.kind, "flash") == 0; }
    bool is_expected_kind() const { return m_file.kind == m_database.kind; }

    void add(const char* check, VERDICT verdict, std::string text) {
        m_findings.push_back({m_database.kind, check, verdict, std::move(text)});
    }

    // The line of a check that found nothing.
    void add_ok(const char* check, std::string text) {
        const auto is_told = [check](const TOOL_DB_FINDING& finding) {
            return !std::strcmp(finding.check, check) && finding.verdict == VERDICT::FAULT;
        };
        if (std::none_of(m_findings.begin(), m_findings.end(), is_told))
            add(check, VERDICT::OK, std::move(text));
    }

    void check_envelope() {
        for (const TOOL_DB_FAULT& fault : m_file.faults)
            if (!std::strcmp(fault.area, "file"))
                add("envelope", VERDICT::FAULT,
                    m_file.magic.empty() ? tool_printable(tool_database_path(m_database)) + ": " + fault.reason
                    : fault.offset == 0  ? fault.reason
                                         : "offset " + std::to_string(fault.offset) + ": " + fault.reason);
        if (m_file.kind.empty())
            return;
        if (!is_expected_kind())
            return add("envelope", VERDICT::FAULT,
                       "it is a " + m_file.kind + " database where a " + m_database.kind + " database belongs");
        if (!m_file.is_of_this_build && m_file.payload_size)
            add("envelope", VERDICT::FAULT,
                "the MD5 text " + tool_quoted(m_file.md5) + " is not this build's, " +
                    (is_flash() ? TOVREN_FLASH_INFO_CSV_MD5 : TOVREN_DEV_INFO_CSV_MD5));
        if (!m_file.check_field.empty() && m_file.check_field != "0000")
            add("envelope", VERDICT::NOTE, "the check field is " + m_file.check_field + ", which nothing looks at");
        add_ok("envelope", tool_count_text(m_file.file_size, "byte") + ", of this build");
    }

    void check_payload() {
        for (const TOOL_DB_FAULT& fault : m_file.faults)
            if (!std::strcmp(fault.area, "payload"))
                add("payload", VERDICT::FAULT, "offset " + std::to_string(fault.offset) + ": " + fault.reason);
        const size_t expected = tool_db_member_names(m_file.kind).size();
        if (m_file.member_count && *m_file.member_count != expected)
            add("payload", VERDICT::FAULT,
                "records of " + tool_count_text(*m_file.member_count, "member") + "; this build's have " +
                    std::to_string(expected));
        if (!is_flash() && m_file.record_count && *m_file.record_count != TOTAL_DATABASE_DEVICE)
            add("payload", VERDICT::FAULT,
                tool_count_text(*m_file.record_count, "record") + "; searches walk " +
                    std::to_string(TOTAL_DATABASE_DEVICE));
        if (m_file.trailing_size != 0)
            add("payload", VERDICT::NOTE,
                tool_count_text(m_file.trailing_size, "byte") + " behind the last record, which a load does not read");
        add_ok("payload", tool_count_text(m_file.records.size(), "record") + " of " +
                              tool_count_text(m_file.member_count.value_or(0), "member"));
    }

    bool has_all_records() const {
        return m_file.has_known_members() && m_file.records.size() == m_file.record_count &&
               std::none_of(m_file.records.begin(), m_file.records.end(),
                            [](const TOOL_DB_RECORD& record) { return record.empty(); });
    }

    std::vector<TOOL_CSV_ROW> rows() const {
        std::vector<TOOL_CSV_ROW> rows;
        rows.reserve(m_file.records.size());
        for (const TOOL_DB_RECORD& record : m_file.records)
            rows.push_back({static_cast<unsigned int>(rows.size() + 1), tool_db_cells(m_file.kind, record)});
        return rows;
    }

    void add_row_fault(const char* check, const TOOL_CSV_FAULT& fault) {
        const std::string place = fault.line == 0 ? "" : RECORDS.text(fault.line) + ": ";
        add(check, VERDICT::FAULT, place + (fault.member.empty() ? "" : fault.member + ": ") + fault.fault);
    }

    void check_flash_rows() {
        const auto table = rows();
        check_switches(table);
        size_t shadows = 0;
        for (const TOOL_CSV_FAULT& fault : tool_sorted_faults(tool_flash_row_faults(table, RECORDS))) {
            if (fault.severity == TOOL_CSV_FAULT::SEVERITY::REMARK)
                ++shadows;
            else
                add_row_fault("defaults", fault);
        }
        add_ok("defaults", "each name has one");
        if (shadows == 0)
            add_ok("identifications", "each record has its own");
        else
            add("identifications", VERDICT::NOTE,
                "never identified, as a record ahead answers alike: " + std::to_string(shadows) + " of " +
                    tool_count_text(table.size(), "record") + "; their names find them");
    }

    // Loads refuse a record without an enabling key.
    void check_switches(const std::vector<TOOL_CSV_ROW>& table) {
        const auto& names = tool_db_member_names("flash");
        const auto ini = static_cast<size_t>(std::find(names.begin(), names.end(), "ini") - names.begin());
        for (const TOOL_CSV_ROW& row : table)
            if (row.cells[ini].empty())
                add("payload", VERDICT::FAULT, RECORDS.text(row.line) + ": ini: the text is empty");
    }

    void check_device_rows() {
        for (const TOOL_CSV_FAULT& fault : tool_sorted_faults(tool_device_row_faults(rows(), RECORDS)))
            add_row_fault("keys", fault);
        add_ok("keys", "each record has one, and each key one record");
        if (m_file.tables.size() != TOOL_DB_TABLE_COUNT)
            return add("tables", VERDICT::NOTE, "not checked: they cannot be read");
        for (std::string& fault : tool_db_table_faults(m_file))
            add("tables", VERDICT::FAULT, std::move(fault));
        add_ok("tables", tool_db_tables_text(m_file));
    }

    // The last word is the library's, with the settings as they are.
    void check_load() {
        std::string condition;
        try {
            const TOOL_CAPTURE capture;
            if (is_flash())
                TOVREN_FLASH_MANAGER(false, 1, false, false);
            else
                TOVREN_DEV_INFO_MANAGER(false, 0);
        } catch (const TOOL_REPORT& report) {
            condition = report.condition();
        } catch (const std::bad_alloc&) {
            condition = "std::bad_alloc";
        }
        if (condition.empty())
            add("load", VERDICT::OK, "the library takes it");
        else
            add("load", VERDICT::FAULT, "the library refuses it; condition: " + condition);
    }

    static constexpr TOOL_CSV_PLACES RECORDS = {"record", 0};

    const TOOL_DATABASE& m_database;
    const TOOL_DB_FILE m_file;
    FINDINGS m_findings;
};

} // namespace

std::vector<TOOL_DB_FINDING> tool_db_flash_findings() {
    return CHECKER(TOOL_FLASH_DATABASE).check();
}

std::vector<TOOL_DB_FINDING> tool_db_device_findings() {
    return CHECKER(TOOL_DEVICE_DATABASE).check();
}
