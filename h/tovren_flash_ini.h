// The flash parameter file and the values in it (docs/formats/pgm_flash_ini.md).
//
// pgm_flash.ini stands in the module's own folder and holds up to three sections, one per kind of flash. A section is a
// sequence of typed values, which are not marked: who reads a section knows its types. To store one record:
//
//     unsigned int size = 0;
//     TOVREN_FLASH_INI::calculate_flash_ini_data_size(size, TOVREN_PARAM_DWORD, &id);         // ... and so on
//     auto section = std::make_unique<unsigned char[]>(size);
//     unsigned int index = 0;
//     TOVREN_FLASH_INI::fillup_flash_ini_data(section.get(), index, TOVREN_PARAM_DWORD, &id); // ... and so on
//     TOVREN_FLASH_INI::write_flash_ini_data(TOVREN_FLASH_INI_SFL, section.get(), size);
//
// The values of the two HPS sections stand behind 32 bare characters (tovren_hps_mgr.h), without which a section is
// ignored.
//
// `value` and the entries of `values` point to a std::string (type STRING), a bool (BOOL), or an unsigned char, short,
// int or long long (BYTE to QWORD). Any other type is the internal error "Unsupport param type".
//
// Nothing is kept between two calls. Processes may read and write at the same time.
#ifndef TOVREN_FLASH_INI_H
#define TOVREN_FLASH_INI_H

#include "tovren_export.h"

#include <functional>
#include <string>
#include <vector>

// The sections, in file order.
enum TOVREN_FLASH_INI_ENUM : unsigned int {
    TOVREN_FLASH_INI_SFL = 0,      // "SFL FLASH"
    TOVREN_FLASH_INI_HPS_SPI = 1,  // "HPS SPI": tovren_hps_mgr.h
    TOVREN_FLASH_INI_HPS_NAND = 2, // "HPS NAND": tovren_hps_mgr.h
    TOVREN_FLASH_INI_MAX = 3,
};

// What stands at the file's place.
enum TOVREN_FLASH_INI_FILE_ENUM : unsigned int {
    TOVREN_FLASH_INI_FILE_MISSING = 0,
    TOVREN_FLASH_INI_FILE_UNREADABLE = 1, // there is something, but it is no file, or may not be read
    TOVREN_FLASH_INI_FILE_DAMAGED = 2,    // it does not verify: for readers it has no section
    TOVREN_FLASH_INI_FILE_SOUND = 3,
    TOVREN_FLASH_INI_FILE_MAX = 4,
};

// What a value is, and how it stands in a section; numbers have their least significant byte first.
enum TOVREN_PARAM_TYPE : unsigned int {
    TOVREN_PARAM_STRING = 1, // the characters and a zero byte; a text with a zero byte in it is read up to that
    TOVREN_PARAM_BOOL = 2,   // 1 byte; true is written as 1, everything but 0 is read as true
    TOVREN_PARAM_BYTE = 3,   // 1 byte
    TOVREN_PARAM_WORD = 4,   // 2 bytes
    TOVREN_PARAM_DWORD = 5,  // 4 bytes
    TOVREN_PARAM_QWORD = 6,  // 8 bytes
    TOVREN_PARAM_TYPE_MAX = 7,
};

extern TOVREN_API const std::vector<std::string> TOVREN_FLASH_INI_STRING; // the names of the three sections
extern TOVREN_API const std::string TOVREN_FLASH_INI_CONST_STRING;        // the 16 characters that the file begins with

class TOVREN_API TOVREN_FLASH_INI {
public:
    // ---- the file ----

    // Where the file stands, and in what state. Neither reports.
    static std::string get_flash_ini_path();
    static TOVREN_FLASH_INI_FILE_ENUM get_flash_ini_file_state();

    // A copy of a section (the caller's, array delete) and its size in bytes; null and 0 where there is none. Any fault
    // anywhere in the file means that it has no section at all. Never reports; needs no right to write.
    static unsigned char* read_flash_ini_data(TOVREN_FLASH_INI_ENUM section, unsigned int& size);

    // Replaces one section, or removes it where `data` is null and `size` 0; the others keep their bytes. The file is
    // replaced in one step, and one writer waits for another. False when that cannot be done, for lack of a right or of
    // room: then the file is as it was. Also false for a section that there is not.
    //
    // Beside the file stand pgm_flash.ini.lock, by which writers wait for each other, and pgm_flash.ini.damaged where a
    // file did not verify when it was to be changed: that is a copy of the last such file.
    static bool write_flash_ini_data(TOVREN_FLASH_INI_ENUM section, unsigned char* data, unsigned int size);

    // The same for who makes the new section of the former one: `change` gets the section's bytes, none where there is
    // none, and leaves what is to stand there, none to remove it. No other writer comes in between. `change` must not
    // write the file itself; where it leaves by an exception, the file stays as it is.
    static bool change_flash_ini_data(TOVREN_FLASH_INI_ENUM section,
                                      const std::function<void(std::vector<unsigned char>& bytes)>& change);

    // ---- values of a section ----

    // Reads `count` values at `index`, which advances past each value that was read. False at the first that does not
    // lie before `size`; that value's object is left as it was.
    static bool assign_flash_ini_data(const unsigned char* data, unsigned int& index, unsigned int size,
                                      unsigned int count, const TOVREN_PARAM_TYPE* types, void** values);

    // Adds the bytes that the value takes to `size`.
    static void calculate_flash_ini_data_size(unsigned int& size, TOVREN_PARAM_TYPE type, void* value);

    // Writes the value at `index` and advances that. `buffer` must have the room.
    static void fillup_flash_ini_data(unsigned char* buffer, unsigned int& index, TOVREN_PARAM_TYPE type, void* value);

    // The value for people: a text as it is, "True" or "False", a number in decimal or, with `hex`, as "0x" and all the
    // digits that its type has.
    static std::string print_flash_ini_data(TOVREN_PARAM_TYPE type, bool hex, void* value);

    // ---- numbers and texts ----

    // The last `count` upper-case hexadecimal digits, behind "0x" with `prefix`; `count` is 1 to 16.
    static std::string convert_qword_to_hex_string(unsigned long long value, unsigned int count, bool prefix);

    // The same for 1 to 8 digits.
    static std::string convert_dword_to_hex_string(unsigned int value, unsigned int count, bool prefix);

    // The value in decimal.
    static std::string convert_qword_to_string(unsigned long long value);

    // The number that a text of decimal digits, or of hexadecimal digits behind "0x", stands for; without digits it
    // is 0, and more than 64 bits give 0xFFFFFFFFFFFFFFFF. `no_empty` forbids the empty text. Any other text gives 0
    // and clears `*ok`, which is set otherwise; without `ok` it is an internal error.
    static unsigned long long convert_string_to_qword(std::string text, bool no_empty, bool* ok);

    // Checks what a user typed for a number of this type. True: `value` is the number. False: `error` is the reason,
    // and `value` is 0. Texts and booleans are accepted as they are, with 0. What is asked, in this order:
    //   - a number within the type, hexadecimal also without "0x" if `hex`; "-1" stands for the type's largest value
    //   - `power_of_two`: exactly one bit of it is set
    //   - `ranges`, unless null: the number of pairs, then pairs (low, high); it must lie within one of them
    //   - `forbidden`, unless null: the number of pairs, then pairs (mask, pattern); under no mask may it be the
    //   pattern
    // Then it becomes a bit position's bit if `bit_position`, unless it is the type's largest value, and otherwise
    // is multiplied by `multiple`, which is not 0; the result must lie within the type.
    static bool convert_string_to_qword(TOVREN_PARAM_TYPE type, unsigned long long& value, bool hex, std::string text,
                                        bool power_of_two, const unsigned int* ranges, const unsigned int* forbidden,
                                        bool bit_position, unsigned int multiple, std::string& error);
};

#endif
