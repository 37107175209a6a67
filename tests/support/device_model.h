// A plain model of the device database: its members, its bytes, its CSV and its report, spelled out from the format. It
// shares nothing with the library but the record's struct and the MD5 text that is compiled in.
#ifndef TESTS_SUPPORT_DEVICE_MODEL_H
#define TESTS_SUPPORT_DEVICE_MODEL_H

#include "bytes.h"
#include "tovren_dev_info_manager_auto_export.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

struct DEVICE_MEMBER {
    const char* name;
    const char* type;                                          // type word of the CSV
    std::string (*value_of)(const TOVREN_DEVICE_INFO& record); // a number in decimal, a flag as 0 or 1
};

// The 86 members in record order.
std::span<const DEVICE_MEMBER> device_members();
size_t device_member_position(const std::string& name);

// A record as the cells of its CSV row. In the model a cell with a number stands for itself in the enumeration columns
// too, so that a row can hold what no CSV can.
struct DEVICE_ROW {
    std::vector<std::string> cells = std::vector<std::string>(86);

    // The same row with one cell replaced.
    DEVICE_ROW with(const std::string& member, const std::string& cell) const;

    const std::string& cell(const std::string& member) const { return cells[device_member_position(member)]; }
    std::string text() const; // separated by commas
    BYTES bytes() const;      // with its "END1"

    // What each member holds once it is read, "name=value" joined; and the same of a record.
    std::string described() const;
    static std::string described(const TOVREN_DEVICE_INFO& record);

    // The report of the record, with its line breaks.
    std::string printed(unsigned int index, const std::string& label) const;
};

// A row whose values differ from member to member, without a key; and one of nothing but what may not be empty.
DEVICE_ROW make_device_row();
DEVICE_ROW plain_device_row();

// The CSV's two header rows and the rows behind them.
struct DEVICE_CSV {
    DEVICE_ROW types;
    DEVICE_ROW names;
    std::vector<DEVICE_ROW> rows;

    explicit DEVICE_CSV(std::vector<DEVICE_ROW> rows);
    std::string text() const;
};

// 79 rows: QUARN-1 with values of its own, GENERIC, and behind them plain ones of PCF names SPARE_2 to SPARE_78.
std::vector<DEVICE_ROW> make_device_rows();

// A database file, field by field; a test sets the one that it wants wrong. No value is served at first.
struct DEVICE_DATABASE {
    std::string magic = "PGMIO_DM";
    std::string md5;                          // that of the library
    std::optional<unsigned int> payload_size; // else the true one
    unsigned int version = 1;
    std::optional<unsigned int> device_count; // else the number of rows
    unsigned int member_count = 86;
    std::vector<DEVICE_ROW> rows;
    std::vector<unsigned int> family_table;
    std::vector<unsigned int> device_table;
    std::vector<unsigned int> part_table;
    BYTES check = {0, 0};

    explicit DEVICE_DATABASE(std::vector<DEVICE_ROW> rows);

    BYTES record_part() const; // of the payload
    BYTES tables() const;
    BYTES payload() const { return join({record_part(), tables()}); }
    BYTES bytes() const { return bytes_around(payload()); }
    BYTES bytes_around(const BYTES& payload) const;
};

#endif
