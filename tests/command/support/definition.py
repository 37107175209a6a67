#!/usr/bin/env python3
"""Definition lists, written from their format (docs/formats/flash_definition.md).

    definition.py json MEMBER=JSON ...          one flash as JSON; what is not named has the value below, MEMBER= is left out
    definition.py list VERSION MEMBER=TEXT ...  an encoded list of one flash; its fields as they stand in a definition
    definition.py encode LIST                   the encoded text of a list
    definition.py decode TEXT                   the list behind an encoded text
    definition.py tag VERSION DEFINITION        the tag under a version text
"""
import json
import sys
import zlib

ALPHABET = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz@-"

# The answers, and what a definition holds for them; None is not asked for.
MEMBERS = [
    ("manufacturer_name", "Nova", "NOVA"),
    ("device_name", "QXN256", "QXN256"),
    ("silicon_id", None, "0"),
    ("memory_id", 0x19, "25"),
    ("memory_id_index", 2, "2"),
    ("memory_type", "60", "96"),
    ("memory_type_index", 1, "1"),
    ("mfc_id", "EF", "239"),
    ("mfc_id_index", 0, "0"),
    ("velkor_id", None, "32"),
    ("default_dev", None, "1"),
    ("ini", None, "NONE"),
    ("extended_mode", False, "0"),
    ("micron_flow", False, "0"),
    ("spansion_flow", False, "0"),
    ("startup_protected", True, "1"),
    ("aai_mode", False, "0"),
    ("flag_status", "n", "0"),
    ("die_count", 1, "1"),
    ("device_bit_size", 256, "268435456"),
    ("device_sector_byte", "64", "65536"),
    ("half_size", None, "0"),
    ("byte4_addressing", None, "1"),
    ("bulk_erase_time", 100, "100"),
    ("sec_erase_time", 2, "2"),
    ("program_utime", 3000, "3000"),
    ("protection_mask", "1C", "28"),
    ("protection_value", 28, "28"),
    ("unprotect_value", 0, "0"),
    ("protection_division", -1, "255"),
    ("bottom_value", 5, "32"),
    ("sdm_support", True, "1"),
    ("asc_voltage", "3.3v", "3.3V"),
]


def flash(arguments):
    members = {name: answer for name, answer, _ in MEMBERS if answer is not None}
    for argument in arguments:
        name, value = argument.split("=", 1)
        if value:
            members[name] = json.loads(value)
        else:
            del members[name]
    return members


def crc16(data):
    crc = 0
    for byte in data:
        for bit in range(7, -1, -1):
            carry = crc >> 15 ^ byte >> bit & 1
            crc = crc << 1 & 0xFFFF
            if carry:
                crc ^= 0x1021
    return crc


def letter(byte):
    return chr(byte if 65 <= byte <= 90 else 65 + byte % 26)


def tag(version, definition):
    key = crc16(version.encode())
    data = definition.encode()
    size = (len(data) + 7) // 8
    text = ""
    for lane in range(8):
        part = bytes(byte ^ (key >> 8 if lane % 2 else key & 0xFF) for byte in data[lane::8])
        crc = crc16(part.ljust(size, b"\0"))
        text += letter(crc & 0xFF) + letter(crc >> 8)
    return text


def encode(text):
    data = zlib.compress(text.encode())
    bits = int.from_bytes(data, "little")
    return "".join(ALPHABET[bits >> 6 * i & 63] for i in range((8 * len(data) + 5) // 6))


def decode(text):
    bits = sum(ALPHABET.index(character) << 6 * i for i, character in enumerate(text))
    data = bits.to_bytes((6 * len(text) + 7) // 8, "little")
    return zlib.decompressobj().decompress(data).decode()


def entry(version, arguments):
    fields = {name: field for name, _, field in MEMBERS}
    for argument in arguments:
        name, field = argument.split("=", 1)
        fields[name] = field
    definition = "@" + "@".join(fields.values()) + "@"
    return definition + "#" + tag(version, definition) + ";"


def main():
    verb, *arguments = sys.argv[1:]
    if verb == "json":
        print(json.dumps(flash(arguments)))
    elif verb == "list":
        print(encode(entry(arguments[0], arguments[1:])))
    else:
        print({"encode": encode, "decode": decode, "tag": tag, "entry": entry}[verb](*arguments))


main()
