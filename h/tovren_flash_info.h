// The record of one configuration flash memory.
#ifndef TOVREN_FLASH_INFO_H
#define TOVREN_FLASH_INFO_H

#include "tovren_types.h"

#include <string>

// 33 members. Their order here is the order of the CSV columns, of the database file and of every report.
// Identification bytes are those that the chip answers to its read-identification command; an index is a position in
// that answer, counted from 0.
struct TOVREN_SFL_FLASH_INFO {
    std::string manufacturer_name; // maker of the part
    std::string device_name;       // key of the default selection, letter case aside; several records may share it
    bool silicon_id = false;       // recognised by one silicon-ID byte, not by its device-ID bytes
    BYTE memory_id = 0;            // expected memory-ID (or silicon-ID) byte
    BYTE memory_id_index = 0;
    BYTE memory_type = 0;       // expected memory-type byte
    BYTE memory_type_index = 0; // 0xFF: no memory-type byte is compared
    BYTE mfc_id = 0;            // expected manufacturer-ID byte
    BYTE mfc_id_index = 0;
    BYTE velkor_id = 0;       // the tool maker's own code for the flash; carried, not interpreted
    bool default_dev = false; // the default among the records of the same device_name
    std::string ini;          // "NONE": always enabled; X: enabled while the setting PGM_ALLOW_X is on; never empty
    bool extended_mode = false;
    bool micron_flow = false;       // the Micron programming flow applies
    bool spansion_flow = false;     // the Spansion programming flow applies
    bool startup_protected = false; // write-protected after power-up
    bool aai_mode = false;          // programmed by auto-address-increment
    bool flag_status = false;       // has a flag status register, which is read
    BYTE die_count = 0;
    DWORD device_bit_size = 0;     // density, bits
    DWORD device_sector_byte = 0;  // erase sector, bytes
    bool half_size = false;        // carried, not interpreted
    bool byte4_addressing = false; // needs 4-byte addresses
    DWORD bulk_erase_time = 0;     // seconds
    DWORD sec_erase_time = 0;      // seconds
    DWORD program_utime = 0;       // page program, microseconds
    BYTE protection_mask = 0;      // the protection bits of the status register
    BYTE protection_value = 0;     // value that protects
    BYTE unprotect_value = 0;      // value that lifts the protection
    BYTE protection_division = 0;  // protection divisor; 0xFF: none
    BYTE bottom_value = 0;         // top/bottom bit of the status register as a one-bit mask; 0: none
    bool sdm_support = false;      // carried, not interpreted
    std::string asc_voltage;       // configuration voltage, for people
};

#endif
