// A plain model of the flash database: its members, its bytes and its CSV, spelled out from the format. It shares
// nothing with the library but the record's struct and the MD5 text that is compiled in.
#ifndef TESTS_SUPPORT_FLASH_MODEL_H
#define TESTS_SUPPORT_FLASH_MODEL_H

#include "bytes.h"
#include "tovren_flash_info.h"

#include <optional>
#include <string>
#include <vector>

inline constexpr unsigned char TAG_TEXT = 2;
inline constexpr unsigned char TAG_BOOL = 3;
inline constexpr unsigned char TAG_BYTE = 4;
inline constexpr unsigned char TAG_WORD = 5;
inline constexpr unsigned char TAG_DWORD = 6;

// One value of a record.
struct MEMBER {
    std::string name;
    unsigned char tag;
    std::string text;        // of a text
    unsigned int number = 0; // of anything else
};

std::vector<MEMBER> members_of(const TOVREN_SFL_FLASH_INFO& flash); // 33, in record order
BYTES member_bytes(const MEMBER& member);
BYTES record_bytes(const TOVREN_SFL_FLASH_INFO& flash); // with its "END1"
std::vector<std::string> csv_cells(const TOVREN_SFL_FLASH_INFO& flash);
std::string csv_row(const TOVREN_SFL_FLASH_INFO& flash);
std::string printed(unsigned int index, const TOVREN_SFL_FLASH_INFO& flash); // as print_database writes it

// "name=value" of all 33 members, for comparing two records in one statement.
std::string described(const TOVREN_SFL_FLASH_INFO& flash);

// A flash whose values differ from one another and from 0, so that no two can be mistaken; the default of its name.
TOVREN_SFL_FLASH_INFO make_flash(const std::string& device_name);
TOVREN_SFL_FLASH_INFO keyed(const std::string& device_name, const std::string& key, bool default_dev = true);
TOVREN_SFL_FLASH_INFO no_default(const std::string& device_name);

// A database file, field by field; a test sets the one that it wants wrong.
struct FLASH_FILE {
    std::string magic = "PGMIO_FM";
    std::string md5;                          // that of the library
    std::optional<unsigned int> payload_size; // else the true one
    unsigned int version = 1;
    std::optional<unsigned int> flash_count; // else the number of flashes
    unsigned int member_count = 33;
    std::vector<TOVREN_SFL_FLASH_INFO> flashes;
    std::string end = "END2";
    BYTES behind_end;
    BYTES check = {0, 0};

    FLASH_FILE();
    explicit FLASH_FILE(std::vector<TOVREN_SFL_FLASH_INFO> flashes);

    BYTES payload() const;
    BYTES bytes() const { return bytes_around(payload()); }
    BYTES bytes_around(const BYTES& payload) const;       // the file with this payload
    BYTES bytes_around_stream(const BYTES& stream) const; // the file with these bytes where the zlib stream stands
};

// The eight header rows of a CSV and the rows behind them.
struct FLASH_CSV {
    std::vector<std::string> header;
    std::vector<TOVREN_SFL_FLASH_INFO> flashes;

    FLASH_CSV();
    explicit FLASH_CSV(std::vector<TOVREN_SFL_FLASH_INFO> flashes);
    std::string text() const;
};

// `count` cells: "1,2,3".
std::string cells(unsigned int count);

#endif
