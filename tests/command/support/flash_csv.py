#!/usr/bin/env python3
"""Writes a flash description on standard output: flash_csv.py "MEMBER=VALUE ..." ...

One argument a flash; what it does not name has the value of the plain flash below. `+ROW` puts a raw line in its place.
As a module it gives the members in record order, with their type words.
"""
import sys

MEMBERS = [
    ("manufacturer_name", "STL_STRING", "ACME"),
    ("device_name", "STL_STRING", "QXA"),
    ("silicon_id", "bool", "FALSE"),
    ("memory_id", "BYTE", "0x18"),
    ("memory_id_index", "BYTE", "2"),
    ("memory_type", "BYTE", "0xBA"),
    ("memory_type_index", "BYTE", "1"),
    ("mfc_id", "BYTE", "0x20"),
    ("mfc_id_index", "BYTE", "0"),
    ("velkor_id", "BYTE", "24"),
    ("default_dev", "bool", "TRUE"),
    ("ini", "STL_STRING", "NONE"),
    ("extended_mode", "bool", "FALSE"),
    ("micron_flow", "bool", "FALSE"),
    ("spansion_flow", "bool", "FALSE"),
    ("startup_protected", "bool", "FALSE"),
    ("aai_mode", "bool", "FALSE"),
    ("flag_status", "bool", "FALSE"),
    ("die_count", "BYTE", "1"),
    ("device_bit_size", "DWORD", "134217728"),
    ("device_sector_byte", "DWORD", "65536"),
    ("half_size", "bool", "FALSE"),
    ("byte4_addressing", "bool", "FALSE"),
    ("bulk_erase_time", "DWORD", "240"),
    ("sec_erase_time", "DWORD", "3"),
    ("program_utime", "DWORD", "5000"),
    ("protection_mask", "BYTE", "0x1C"),
    ("protection_value", "BYTE", "0x1C"),
    ("unprotect_value", "BYTE", "0x00"),
    ("protection_division", "BYTE", "255"),
    ("bottom_value", "BYTE", "0x20"),
    ("sdm_support", "bool", "FALSE"),
    ("asc_voltage", "STL_STRING", "3.3V"),
]
NAMES = [name for name, _, _ in MEMBERS]
TYPES = [word for _, word, _ in MEMBERS]


def header():
    full = ",".join(["-"] * len(MEMBERS))
    return [",".join(TYPES), ",".join(NAMES), "# free", "# free", full, full, full, "# free"]


def row(text):
    cells = {name: plain for name, _, plain in MEMBERS}
    for word in text.split():
        name, _, value = word.partition("=")
        if name not in cells:
            sys.exit(f"there is no member {name}")
        cells[name] = value
    return ",".join(cells[name] for name in NAMES)


def description(flashes):
    rows = [flash[1:] if flash.startswith("+") else row(flash) for flash in flashes]
    return "\n".join(header() + rows) + "\n"


if __name__ == "__main__":
    sys.stdout.buffer.write(description(sys.argv[1:]).encode("utf-8", "surrogateescape"))
