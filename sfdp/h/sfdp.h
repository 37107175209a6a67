// Serial flash discoverable parameters (JESD216, revisions 1.0 to F): the tables of its own geometry and times that a
// serial flash answers to command 5Ah.
//
// sfdp_decode turns an image (the bytes of that address space from its start) into values with units, or says why it is
// refused and at which byte. It never reads outside the image, whatever the image claims, and keeps nothing of it.
//
// Which fields exist is decided by a table's length in dwords, never by its revision: a field that the table does not
// reach is an empty optional. A value whose field is reserved is kept as its code.

#ifndef TOVREN_SFDP_H
#define TOVREN_SFDP_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <variant>
#include <vector>

// Header of one parameter table.
struct SFDP_TABLE_HEADER {
    std::uint16_t id = 0; // FF00 basic parameters, FF84 4-byte instructions, FF81 sector map
    unsigned major = 0;
    unsigned minor = 0;
    unsigned dwords = 0;    // length in 32-bit words
    std::size_t offset = 0; // of the table, in bytes from the start of the image
};

struct SFDP_FAST_READ {
    const char* mode = ""; // "1-1-2" and so on: lines of instruction, address, data
    unsigned opcode = 0;
    unsigned mode_clocks = 0;
    unsigned dummy_clocks = 0;
};

struct SFDP_ERASE_TYPE {
    unsigned index = 0;     // 1 to 4, as the table numbers them
    std::uint32_t size = 0; // bytes
    unsigned opcode = 0;
    std::optional<std::uint64_t> typ_ms;
    std::optional<std::uint64_t> max_ms;
};

struct SFDP_SUSPEND {
    bool supported = false; // the rest is only filled where it is
    unsigned suspend_opcode = 0;
    unsigned resume_opcode = 0;
    unsigned program_suspend_opcode = 0;
    unsigned program_resume_opcode = 0;
    std::uint64_t erase_suspend_latency_ns = 0;
    std::uint64_t erase_resume_to_suspend_us = 0;
    std::uint64_t program_suspend_latency_ns = 0;
    std::uint64_t program_resume_to_suspend_us = 0;
};

struct SFDP_DEEP_POWER_DOWN {
    unsigned enter_opcode = 0;
    unsigned exit_opcode = 0;
    std::uint64_t exit_delay_ns = 0;
};

struct SFDP_FOUR_BYTE_ERASE {
    unsigned index = 0; // of the erase type
    std::uint32_t size = 0;
    unsigned opcode = 0;
};

// Instructions that always take four address bytes (table FF84). Only what can be used stands here: an erase whose type
// exists and whose opcode is not 00h or FFh.
struct SFDP_FOUR_BYTE_TABLE {
    std::vector<std::pair<const char*, unsigned>> supported; // name ("read_1_1_1"), opcode; in the order of their bits
    std::vector<SFDP_FOUR_BYTE_ERASE> erase;
};

// dwords 18 to 20 of the basic table; each member is there when its dword is.
struct SFDP_OCTAL {
    std::optional<std::string> command_extension;
    std::optional<bool> dtr_byte_swap;
    std::optional<bool> reset_protocol;
    std::optional<unsigned> enable_code;
    // By mode, in the order of the field. Empty where the table is too short; no figure where none is stated or the
    // mode is not supported.
    std::vector<std::pair<const char*, std::optional<unsigned>>> max_speed_mhz;
};

enum class SFDP_ADDRESS_MODE { THREE, THREE_OR_FOUR, FOUR };

struct SFDP_TABLE {
    unsigned sfdp_major = 0;
    unsigned sfdp_minor = 0;
    unsigned access_protocol = 0;
    std::vector<SFDP_TABLE_HEADER> tables; // in the order of the image
    SFDP_TABLE_HEADER bfpt;                // the basic table that was chosen

    std::uint64_t density_bits = 0;
    bool density_is_power = false; // the power-of-two form of the field; else the linear one
    SFDP_ADDRESS_MODE address_mode = SFDP_ADDRESS_MODE::THREE;
    bool uniform_4k = false;
    unsigned opcode_4k = 0; // as stored; FF where there is none
    bool write_granularity_64plus = false;
    bool dtr = false;
    std::vector<SFDP_FAST_READ> fast_reads;

    std::uint32_t page_bytes = 256;
    bool page_is_default = true;              // the table is too short to hold it
    std::optional<unsigned> erase_max_factor; // maximum = typical * factor
    std::optional<unsigned> program_max_factor;
    std::vector<SFDP_ERASE_TYPE> erase_types; // those that exist, by index
    std::optional<std::uint64_t> page_program_typ_us;
    std::optional<std::uint64_t> page_program_max_us;
    std::optional<std::uint64_t> byte_program_first_typ_us;
    std::optional<std::uint64_t> byte_program_first_max_us;
    std::optional<std::uint64_t> byte_program_next_typ_us;
    std::optional<std::uint64_t> byte_program_next_max_us;
    // The factor that makes the longest chip erase of the typical one is worded two ways: both readings are kept, and
    // a time-out takes the larger.
    std::optional<std::uint64_t> chip_erase_typ_ms;
    std::optional<std::uint64_t> chip_erase_max_ms; // by erase_max_factor
    std::optional<std::uint64_t> chip_erase_max_ms_if_program_factor;

    std::optional<SFDP_SUSPEND> suspend;
    std::optional<bool> legacy_status_polling;
    std::optional<bool> flag_status_register;
    // Poll 70h bit 7 for ready; else 05h bit 0 for busy, which is taken too where neither way is declared.
    bool poll_flag_status = false;
    std::optional<SFDP_DEEP_POWER_DOWN> deep_power_down;
    std::optional<unsigned> quad_enable_code;
    std::optional<bool> read_044;
    std::optional<bool> hold_reset_disable;
    std::optional<unsigned> qpi_enable_bits;
    std::optional<unsigned> qpi_disable_bits;
    std::optional<std::vector<std::string>> enter_4byte;
    std::optional<std::vector<std::string>> exit_4byte;
    std::optional<std::vector<std::string>> soft_reset;
    std::optional<unsigned> sr1_write_enable_bits;
    SFDP_OCTAL octal;
    std::optional<SFDP_FOUR_BYTE_TABLE> four_byte_table;

    std::vector<std::string> warnings; // words such as "ff84_empty"; what follows ':' is the place
};

// Why an image is refused.
struct SFDP_REFUSAL {
    const char* kind = "";  // one word, such as "bad_signature"
    std::string reason;     // a sentence with the figures, without a full stop
    std::size_t offset = 0; // byte of the image that the reason is about
};

using SFDP_RESULT = std::variant<SFDP_TABLE, SFDP_REFUSAL>;

// Decodes an image. The image may be longer than the tables need, and may repeat.
SFDP_RESULT sfdp_decode(std::span<const std::uint8_t> image);

// The name of a quad-enable code (0 to 7), such as "sr2_bit1_read35_write31".
const char* sfdp_quad_enable_name(unsigned code);

// The bytes of an image as a person hands them over: a dump as xxd, xxd -p, hexdump -C or od prints it (addresses and
// the text column left away; "*" for repeated lines filled), or raw bytes where the input is none of these. The error
// names the line.
struct SFDP_INPUT_ERROR {
    std::string reason;
    std::size_t line = 0; // from 1
};
using SFDP_INPUT = std::variant<std::vector<std::uint8_t>, SFDP_INPUT_ERROR>;
SFDP_INPUT sfdp_read_dump(std::span<const char> text);

#endif
