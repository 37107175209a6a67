// The flash memories that the programming tool knows, and the flash behind each device of one chain.
//
//     TOVREN_FLASH_MANAGER flashes(false, 2, false, false);            // a chain of two devices; loads the database
//     if (flashes.flash_id_database_mapping(false, 0, answer_bytes))   // what device 0's flash answered
//         program(*flashes.get_flash(flashes.get_flash_mapping_index(0, false)));
//
// Errors: a broken database file and a broken precondition end in MSG_INTERNAL_ERROR::report with the text of the
// condition, which does not return. Where the host leaves it by an exception, the manager releases what it owns and is
// only good for destruction. Everything else that can go wrong is a result.
//
// Threads: none. A manager is used by one thread at a time; managers do not share state.
//
// The data members are public for reading; only the manager writes them.
#ifndef TOVREN_FLASH_MANAGER_H
#define TOVREN_FLASH_MANAGER_H

#include "host_fio.h"
#include "tovren_dev_info_manager_auto_export.h"
#include "tovren_export.h"
#include "tovren_flash_definition.h"
#include "tovren_flash_info.h"
#include "tovren_types.h"

#include <memory>
#include <span>
#include <string>
#include <vector>

class TOVREN_API TOVREN_FLASH_MANAGER {
public:
    // ---- life ----

    // A manager for a chain of `device_count` devices. The first argument is accepted and has no effect.
    // With `skip_load` no file is read and there is no map: such a manager generates databases and converts
    // definitions. Otherwise it loads <device database root>/programmer/pgm_flash.pcf, requires "count > 0" and maps no
    // device yet. `debug` prints every loaded record on standard output.
    TOVREN_FLASH_MANAGER(bool, unsigned int device_count, bool skip_load, bool debug);
    ~TOVREN_FLASH_MANAGER();
    TOVREN_FLASH_MANAGER(const TOVREN_FLASH_MANAGER&) = delete;
    TOVREN_FLASH_MANAGER& operator=(const TOVREN_FLASH_MANAGER&) = delete;

    // ---- loading (docs/formats/pcf.md) ----

    // Reads and verifies the file and loads its records. Any fault of the file is reported.
    void initialize_flash_database(FIO_PATH flash_file);

    // Loads the records of a whole decompressed payload. Returns 0. The payload's end is not marked in the bytes: a
    // caller other than initialize_flash_database owes a payload that is complete. Replaces what was loaded before and
    // unmaps every device.
    unsigned int parse_database(unsigned char* data);

    // Reads the 33 members of one record at `index` into record `slot` and advances `index` past them. Returns whether
    // the record is enabled.
    bool get_database(unsigned char* data, unsigned int& index, unsigned int slot);

    // Whether record `index` is enabled: its key is "NONE" (letter case aside), or the setting "PGM_ALLOW_" + key, the
    // key as it is stored, is on.
    bool enable_device(unsigned int index);

    // Requires that each device_name of the records `first` to `first` + m_flash_count - 1 has exactly one default:
    // reports "one_default" for the first name without one, "!one_default" for the first with two. Those records must
    // be there: after a load `first` is 0.
    void confirm_default_value(unsigned int first);

    // Fills m_ext_flash_info from the first entry of the definition list that the host's settings hold, or clears it:
    // silently, unless the setting's "_DEBUG" companion is on. decode_ini prints its messages here too.
    void parse_ext_flash_info();

    // ---- the chain ----

    // Finds the first record that `id_bytes` identify and maps the device to it; true when there is one. Otherwise the
    // device is unmapped. `id_bytes` must reach to the highest index that a record of this kind compares: with
    // `by_silicon_id` memory_id_index, else also memory_type_index (unless 0xFF) and mfc_id_index.
    bool flash_id_database_mapping(bool by_silicon_id, unsigned int device_index, unsigned char* id_bytes);

    // The record index of a device, INVALID_DWORD for an unmapped one, which is reported unless `allow_invalid`.
    unsigned int get_flash_mapping_index(unsigned int device, bool allow_invalid);

    // Maps a device to a record.
    void set_flash_mapping_index(unsigned int device, unsigned int index);

    // The first default record of that name, letter case aside; null when there is none. It belongs to the manager and
    // lives as long.
    TOVREN_SFL_FLASH_INFO* get_default_flash(std::string device_name);

    // The longest page program time of the mapped flashes, microseconds. A chain without one is reported ("found").
    unsigned int sfl_get_chain_longest_program_utime();

    // ---- reading what is loaded ----

    // How many records there are; an external flash counts.
    unsigned int get_flash_count() const { return m_flash_count; }

    // Record `index`, null at or past the count. It belongs to the manager.
    const TOVREN_SFL_FLASH_INFO* get_flash(unsigned int index) const;

    // The indexes of all records that an answer of `id_size` bytes identifies, in scan order. A record that compares a
    // byte beyond the answer does not match.
    std::vector<unsigned int> get_matching_flashes(bool by_silicon_id, const unsigned char* id_bytes,
                                                   unsigned int id_size) const;

    // Every record of a database file in file order, whatever the switches say. The file is checked as at loading, the
    // one-default rule aside.
    static std::vector<TOVREN_SFL_FLASH_INFO> get_all_flashes(const FIO_PATH& flash_file);

    // Writes record `index` on standard output: "Flash Manager Debug ", the index, a line break, a tab, and the 33
    // values with a blank between two.
    void print_database(unsigned int index);

    // ---- generating (docs/formats/flash_csv.md) ----

    // Writes the database file `output` from the description `csv`. A fault of the description, and an output that
    // cannot be written, are reported; an older output stays whole until the new one is complete.
    void generate_flash_database(FIO_PATH csv, FIO_PATH output);

    // Checks the header rows and the shape of all others. Returns the payload's size in bytes; `device_count` receives
    // the number of flashes.
    unsigned int check_flash_file(FIO_PATH csv, unsigned int& device_count);

    // Encodes one data row at `index`. The writers below advance `index`; `*buffer` must have the room.
    void dump_to_database(unsigned char** buffer, unsigned int& index, std::vector<std::string> svec);
    void dump_dword_database(unsigned char** buffer, unsigned int& index, unsigned int value);
    void dump_string_to_database(unsigned char** buffer, unsigned int& index, std::string string);
    void dump_bool_to_database(unsigned char** buffer, unsigned int& index, std::string string);
    void dump_value_to_database(unsigned char** buffer, unsigned int& index, std::string string, unsigned int count);

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

    // A new array (the caller's, array delete): the first `offset` bytes of `data`, then the rest up to `count`
    // compressed. `new_memory_count` receives its size.
    unsigned char* compress_data(const unsigned char* data, unsigned int offset, unsigned int count,
                                 unsigned int& new_memory_count);

    // A new array (the caller's, array delete) of `original_count` bytes, decompressed from `data`.
    unsigned char* decompress_data(const unsigned char* data, unsigned int decompressed_count,
                                   unsigned int original_count);

    // 0 for every input: files carry a check field of two zero bytes that nothing compares.
    unsigned int calculate_crc16(const unsigned char* data, unsigned int length);

    // ---- small utilities ----

    // The number that a text writes, decimal or hexadecimal behind 0x. Without `ok` a bad text is an internal error.
    static unsigned int get_dword_from_string(std::string string, bool* ok);

    // Exactly one of the 32 bits is set.
    static bool is_power_of_two(unsigned int value);

    // "-1" for 0xFFFFFFFF and, with `byte_form`, for 0xFF; otherwise the value read as a signed number.
    static std::string to_string(unsigned int value, bool byte_form);

    // ---- a flash of the user's own: the stored text (docs/formats/flash_definition.md) ----

    // The encoded text of a definition list, ready for a setting. Empty on failure, for which a line on standard output
    // gives the reason: a list that zlib cannot bring below twice its length.
    static std::string encode_ini(std::string list);

    // The definition list behind an encoded text, up to its first zero byte. Empty on failure, for which a line on
    // standard output gives the reason: a character outside the alphabet, no zlib stream, a list of more than 20 times
    // its compressed size.
    static std::string decode_ini(std::string encoded);

    // The 16-letter tag that ties a definition to the running version. An empty definition is reported
    // ("total_size > 0").
    static std::string gen_ini_password(std::string definition);

    // Whether the tag is the one that gen_ini_password gives. A tag that has not 16 characters never is.
    static bool cmp_ini_password(std::string definition, std::string tag);

    // The next field at or after `position`, in upper case; `position` moves to the "@" that closes it. False, with an
    // empty field, when no whole field follows. The position may be of either type of 64 bits.
    static bool get_string_from_ini(std::string definition, std::string& field, size_t& position);
    static bool get_string_from_ini(std::string definition, std::string& field, QWORD& position);

    // "1" is true; only "1" and "0" are valid.
    static bool get_boolean_from_string(std::string field, bool& valid);

    // The decimal number that a field begins with, a sign included; 0 where it begins with none. Numbers past 64 bits
    // stay at the limit. Valid when its low 32 bits are at most `maximum`; it is returned in any case.
    static long long get_number_from_string(std::string field, unsigned int maximum, bool& valid);

    // ---- a flash of the user's own: the dialogue ----

    // Asks on standard input and output for up to three flashes and prints the encoded text to be stored. The end of
    // the input counts as an empty answer.
    void gen_flash_ini();

    // The same dialogue. Returns the encoded text that it printed, empty where it ended without one.
    std::string prompt_flash_ini();

    // Asks for one flash. False, with an empty definition, at the first answer that is refused.
    bool prompt_flash_info(std::string& definition);

    // Converts 33 fields into m_ext_flash_info. False at the first that does not fit; the record is half filled then.
    // Behind the pointer lie TOTAL_DATABASE_MEMBER texts.
    bool assign_ini(std::span<const std::string, TOTAL_DATABASE_MEMBER> fields);
    bool assign_ini(const std::string* fields);

    // ---- a flash of the user's own: what the dialogue and a load go by; nothing here prints ----

    // The setting that a load reads the encoded text from.
    static std::string get_ext_flash_setting_name();

    // The text of the running version that the tags are made from.
    static std::string get_ini_version_text();

    // The questions, 33 in record order.
    static std::span<const TOVREN_FLASH_PROMPT> get_flash_prompts();

    // Checks one answer as a person types it. `field` receives the text that the definition holds for it, empty when
    // the answer is refused.
    static TOVREN_FLASH_ANSWER_ENUM check_flash_answer(const TOVREN_FLASH_PROMPT& prompt, std::string answer,
                                                       std::string& field);

    // Makes a definition of 33 fields; those of members that are not asked for are filled in. False, with an empty
    // definition, when two of memory_id_index, memory_type_index and mfc_id_index are equal.
    static bool gen_flash_definition(std::span<std::string, TOTAL_DATABASE_MEMBER> fields, std::string& definition);

    // Appends a definition with its tag to a list.
    static void add_ini_entry(std::string& list, const std::string& definition);

    // The entries of a list in order. A load looks at the first only.
    static std::vector<TOVREN_FLASH_INI_ENTRY> get_ini_entries(const std::string& list);

    // What a load makes of an entry.
    static TOVREN_FLASH_INI_CHECK check_ini_entry(const TOVREN_FLASH_INI_ENTRY& entry);

    // The rules behind TOVREN_FLASH_INI_INVALID_RECORD.
    static std::span<const TOVREN_FLASH_RULE> get_flash_rules();

    // ---- state ----

    static const std::vector<std::string> m_name_list;         // the 33 member names
    static const std::vector<TOVREN_MANAGER_TYPE> m_type_list; // and their tags

    unsigned int m_debug;                                      // 1: print every record after loading
    unsigned int m_version;                                    // of the loaded payload; 0 before
    unsigned int m_device_count;                               // devices of the chain
    unsigned int m_flash_count;                                // live records
    unsigned int m_ini_count;                                  // external records while loading, 0 or 1; 0 afterwards
    unsigned int m_type_count;                                 // members of a record, as the payload says
    std::unique_ptr<unsigned int[]> m_device_to_flash_map;     // per device a record index or INVALID_DWORD
    std::unique_ptr<TOVREN_SFL_FLASH_INFO[]> m_flash_database; // m_flash_count live records, empty ones behind
    TOVREN_SFL_FLASH_INFO m_ext_flash_info; // the user's own flash; an empty device_name means there is none

private:
    struct TOVREN_LOCAL ID_INDEX;

    TOVREN_LOCAL unsigned int read_payload_header(const unsigned char* data, unsigned int& index);
    TOVREN_LOCAL void read_record(const unsigned char* data, unsigned int& index, TOVREN_SFL_FLASH_INFO& record);
    TOVREN_LOCAL void confirm_records(const unsigned char* data, unsigned int index);
    TOVREN_LOCAL void read_enabled_records(unsigned char* data, unsigned int& index);
    TOVREN_LOCAL DWORD find_flash(bool by_silicon_id, const unsigned char* id_bytes);
    TOVREN_LOCAL bool is_matching(const TOVREN_SFL_FLASH_INFO& record, bool by_silicon_id,
                                  const unsigned char* id_bytes) const;
    TOVREN_LOCAL static bool read_ini_field(const std::string& definition, std::string& field, size_t& position);
    TOVREN_LOCAL static TOVREN_FLASH_INI_ENTRY read_ini_entry(const std::string& list, size_t begin);

    std::unique_ptr<ID_INDEX> m_id_index; // null until a flash is looked for
    unsigned int m_payload_size;          // bytes; bounds the record count that a payload may claim
};

#endif
