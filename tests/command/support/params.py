#!/usr/bin/env python3
"""The flash parameter file, written from its format: params.py FILE [SECTION ...]

Each section is a text with \\xNN escapes, empty for none. Without sections the file is taken apart instead.
"""
import struct
import sys

MAGIC = b"TOVREN_FLASH_INI"


def build(sections):
    offset = 20 + 8 * len(sections)
    table = b""
    for section in sections:
        table += struct.pack("<II", offset if section else 0, len(section))
        offset += len(section)
    return MAGIC + struct.pack("<I", len(sections)) + table + b"".join(sections)


def take_apart(data):
    assert data[:16] == MAGIC
    (count,) = struct.unpack_from("<I", data, 16)
    for i in range(count):
        offset, size = struct.unpack_from("<II", data, 20 + 8 * i)
        print(i, offset, size, data[offset:offset + size] if offset else b"")


path, *texts = sys.argv[1:]
if texts:
    sections = [text.encode().decode("unicode_escape").encode("latin-1") for text in texts]
    open(path, "wb").write(build(sections))
else:
    take_apart(open(path, "rb").read())
