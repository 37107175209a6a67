// The programming properties of every supported device: one record per row of the device description, and three index
// tables that say which record serves a family, a device or a part of the host's catalogue.
//
//     TOVREN_DEV_INFO_MANAGER devices(false, 0);                            // loads the database
//     std::unique_ptr<TOVREN_DEVICE_INFO> info(devices.get_db_by_part(part)); // a copy, the caller's
//     if (info) ...                                                         // null: no record serves the part
//
// Errors: a broken database file or description and a broken precondition end in MSG_INTERNAL_ERROR::report with the
// text of the condition, which does not return. Where the host leaves it by an exception, the manager releases what it
// owns and is only good for destruction.
//
// Threads: none. Lookups move m_index, so a manager is used by one thread at a time.
//
// The data members are public for reading; only the manager writes them.
#ifndef TOVREN_DEV_INFO_MANAGER_H
#define TOVREN_DEV_INFO_MANAGER_H

#include "host_dev.h"
#include "host_fio.h"
#include "tovren_dev_info_manager_auto_export.h"
#include "tovren_export.h"
#include "tovren_types.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

// One line of the part list: the PCF name that a part and its device are tied to.
struct TOVREN_DEVICE_INFO_PCF_MAP {
    DEV_PART_ENUM part;
    DEV_DEVICE_ENUM device;
    std::string pcf;
};

class TOVREN_API TOVREN_DEV_INFO_MANAGER {
public:
    // ---- life ----

    // With `skip_load` the tables are empty (every entry INVALID_DWORD) and there are no records: such a manager
    // generates a database. Otherwise it loads <device database root>/programmer/pgm_dev_info.pcf.
    // `debug_mode` prints records on standard output once the file is loaded: 1 every record, 2 the record of every
    // family, 3 of every device, 4 of every part; other values print nothing.
    TOVREN_DEV_INFO_MANAGER(bool skip_load, unsigned int debug_mode);
    ~TOVREN_DEV_INFO_MANAGER();
    TOVREN_DEV_INFO_MANAGER(const TOVREN_DEV_INFO_MANAGER&) = delete;
    TOVREN_DEV_INFO_MANAGER& operator=(const TOVREN_DEV_INFO_MANAGER&) = delete;

    // ---- lookup ----

    // A new copy of the record that serves the value (the caller's, to delete), null when none does. The tables decide;
    // nothing is searched.
    TOVREN_DEVICE_INFO* get_db_by_family(DEV_FAMILY_ENUM family);
    TOVREN_DEVICE_INFO* get_db_by_device(DEV_DEVICE_ENUM device);
    TOVREN_DEVICE_INFO* get_db_by_part(DEV_PART_ENUM part);

    // A new copy of record m_index.
    TOVREN_DEVICE_INFO* copy_database();

    // ---- searches (they walk the records of a database, always TOTAL_DATABASE_DEVICE of them) ----

    // The first record whose own member equals the value: true, with m_index at it; else false and INVALID_DWORD.
    // `allow_invalid` admits the INVALID value, which is searched like any other.
    bool search_family(DEV_FAMILY_ENUM family, bool allow_invalid);
    bool search_device(DEV_DEVICE_ENUM device, bool allow_invalid);
    bool search_part(DEV_PART_ENUM part, bool allow_invalid);

    // The first record that bears the PCF name which the part list's first entry for the value gives, letter case
    // aside. Always false on a loaded manager: only generating reads the part list.
    bool search_pcf_for_device(DEV_DEVICE_ENUM device);
    bool search_pcf_for_part(DEV_PART_ENUM part);

    // ---- loading (docs/formats/pcf.md) ----

    // Reads and verifies the file and loads records and tables.
    void initialize_device_database(FIO_PATH file);

    // Loads a complete decompressed payload; with `records_only` nothing behind the records is read. At most once in a
    // manager's life.
    void parse_database(unsigned char* data, bool records_only);

    // Reads the 86 members of one record at `index` into record `record`.
    void get_database(unsigned char* data, unsigned int& index, unsigned int record);

    // Reads the three index tables at `index`.
    void get_table(unsigned char* data, unsigned int& index);

    // Bytes that the index tables take in a payload.
    unsigned int get_table_size();

    // ---- reading what is loaded ----

    // How many records there are, and record `index` of them (null at or past the count; it belongs to the manager).
    unsigned int get_record_count() const { return m_device_count; }
    const TOVREN_DEVICE_INFO* get_record(unsigned int index) const;

    // The position of the record that serves the value, INVALID_DWORD for none and for a value out of range.
    unsigned int get_position_of(DEV_FAMILY_ENUM family) const;
    unsigned int get_position_of(DEV_DEVICE_ENUM device) const;
    unsigned int get_position_of(DEV_PART_ENUM part) const;

    // Writes record `index` on standard output: with an empty label headed by the one key that identifies it, otherwise
    // by the label.
    void print_database(unsigned int index, std::string label);

    // ---- generating (docs/formats/devices_csv.md) ----

    // Writes the database file `output` from the description `csv` and the host's part list. Faults are reported; an
    // older output stays whole until the new one is complete. Afterwards this manager holds what the file holds.
    void generate_device_database(FIO_PATH csv, FIO_PATH output);

    // Checks the header rows and the shape of all others. Returns the size in bytes of the payload's record part;
    // `device_count` receives the number of records.
    unsigned int check_device_file(FIO_PATH csv, unsigned int& device_count);

    // Encodes one data row at `index`. The writers below advance `index`; `*buffer` must have the room.
    void dump_to_database(unsigned char** buffer, unsigned int& index, std::vector<std::string> svec);
    void dump_dword_database(unsigned char** buffer, unsigned int& index, unsigned int value);
    void dump_string_to_database(unsigned char** buffer, unsigned int& index, bool allow_empty, std::string string,
                                 TOVREN_MANAGER_TYPE type);
    void dump_bool_to_database(unsigned char** buffer, unsigned int& index, std::string string);
    void dump_value_to_database(unsigned char** buffer, unsigned int& index, std::string string, unsigned int count);
    void dump_enum_to_database(unsigned char** buffer, unsigned int& index, std::string value, std::string type_name);

    // Computes the three index tables from the records and the part list and encodes them.
    void print_table(unsigned char** buffer, unsigned int& index);

    // Appends the entries of <product root>/h/pgm_parts.txt to m_pcf_map (docs/formats/pgm_parts.md). A missing file
    // has none; a line with too few cells ends in the standard library's out-of-range error.
    void parse_pgm_parts();

    // The name that a value bears in the "family", "device" or "part" list.
    std::string convert_id_enum_to_string(std::string type_name, unsigned int id);

    // ---- the typed stream ----

    // Each reads one value at `index` and advances it; a wrong tag or marker is reported. `data` must reach past the
    // value, or past the 257 bytes that a text may take.
    unsigned int get_dword(const unsigned char* data, unsigned int& index); // four bytes, no tag
    void get_string_data(const unsigned char* data, unsigned int& index, bool allow_empty, std::string* string);
    void get_bool_data(const unsigned char* data, unsigned int& index, bool* value);
    void get_byte_data(const unsigned char* data, unsigned int& index, unsigned char* value);
    void get_word_data(const unsigned char* data, unsigned int& index, unsigned short* value);
    void get_dword_data(const unsigned char* data, unsigned int& index, unsigned int* value);
    void confirm_data_type_end(const unsigned char* data, unsigned int& index); // "END1"
    void confirm_database_end(const unsigned char* data, unsigned int& index);  // "END2"

    // As in TOVREN_FLASH_MANAGER.
    unsigned int get_dword_from_string(std::string string);
    unsigned char* compress_data(const unsigned char* data, unsigned int offset, unsigned int count,
                                 unsigned int& new_memory_count);
    unsigned char* decompress_data(const unsigned char* data, unsigned int decompressed_count,
                                   unsigned int original_count);
    unsigned int calculate_crc16(const unsigned char* data, unsigned int length);

    // ---- constant tables ----

    static const std::vector<std::string> m_db_name_list;         // the 86 member names
    static const std::vector<TOVREN_MANAGER_TYPE> m_db_type_list; // and their tags
    static const std::vector<TOVREN_NAME_VALUE> m_supported_family_list;
    static const std::vector<TOVREN_NAME_VALUE> m_supported_device_list;
    static const std::vector<TOVREN_NAME_VALUE> m_supported_part_list;
    static const std::vector<TOVREN_NAME_VALUE> m_supported_enum_list;
    static const std::vector<std::string> m_supported_pcf_list;

    // ---- state ----

    unsigned int m_version;                                  // of the loaded payload; 0 before
    unsigned int m_device_count;                             // records
    unsigned int m_type_count;                               // members of a record, as the payload says
    unsigned int m_index;                                    // the record that was found last, INVALID_DWORD for none
    unsigned int m_csv_memory_size;                          // bytes of the payload ahead of the index tables
    std::unique_ptr<TOVREN_DEVICE_INFO[]> m_device_database; // m_device_count records, at least 79 of them allocated
    unsigned int m_debug;
    std::unique_ptr<unsigned int[]> m_family_table; // per value the position of its record or INVALID_DWORD
    std::unique_ptr<unsigned int[]> m_device_table;
    std::unique_ptr<unsigned int[]> m_part_table;
    std::vector<std::unique_ptr<TOVREN_DEVICE_INFO_PCF_MAP>> m_pcf_map; // the part list, in file order

private:
    // One enumeration of the records that searches walk, and what spares most searches the walk. A record that is read
    // anew leaves its former value in `hashes` and `largest`, which only costs a walk.
    struct TOVREN_LOCAL RECORD_IDS {
        std::array<unsigned int, TOTAL_DATABASE_DEVICE> ids = {};
        unsigned long long hashes = 1; // bit `id % 64` of every id; 0 is one until all records are read
        unsigned int largest = 0;

        void set(unsigned int record, unsigned int id);
        bool may_have(unsigned int id) const { return (hashes >> id % 64 & 1) != 0; }
    };

    // By value: the part list's first entry for it, null for none. Empty without a part list.
    using PCF_INDEX = std::vector<const TOVREN_DEVICE_INFO_PCF_MAP*>;

    TOVREN_LOCAL void read_payload_header(const unsigned char* data, unsigned int& index);
    TOVREN_LOCAL void confirm_records(const unsigned char* data, unsigned int index);
    TOVREN_LOCAL TOVREN_DEVICE_INFO* copy_record_at(unsigned int position);
    TOVREN_LOCAL bool search_ids(const RECORD_IDS& records, unsigned int value, unsigned int bound,
                                 const char* bound_text);
    TOVREN_LOCAL bool search_pcf(const PCF_INDEX& first_entries, unsigned int value);
    TOVREN_LOCAL void dump_rows(const FIO_PATH& csv, unsigned char** buffer, unsigned int& index, unsigned int end);
    TOVREN_LOCAL void print_family_table(unsigned char** buffer, unsigned int& index);
    TOVREN_LOCAL void print_device_table(unsigned char** buffer, unsigned int& index, const DEV_PART_MANAGER& parts);
    TOVREN_LOCAL void print_part_table(unsigned char** buffer, unsigned int& index, const DEV_PART_MANAGER& parts);
    TOVREN_LOCAL unsigned int serve_missing_family(DEV_FAMILY_ENUM family);
    TOVREN_LOCAL void print_debug_report();

    RECORD_IDS m_family_ids;
    RECORD_IDS m_device_ids;
    RECORD_IDS m_part_ids;
    unsigned long long m_pcf_lengths; // bit `length` of every record's PCF name; longer ones share the last bit

    PCF_INDEX m_pcf_of_device;
    PCF_INDEX m_pcf_of_part;
    unsigned int m_payload_size; // bytes; bounds the record count that a payload may claim
};

#endif
