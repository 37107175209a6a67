#!/usr/bin/env python3
"""Rewrites a database file with something wrong: pcf.py FILE CHANGE ...

Changes, in the order given:
    magic=TEXT          the eight characters at its beginning
    md5=TEXT            the 32 characters behind them
    size=N              the payload's size as the header tells it
    dword:OFFSET=N      four bytes of the payload
    byte:OFFSET=N       one byte of the payload
    replace:OLD=NEW     bytes of the payload, in hexadecimal, of equal length, the first place
    cut=N               keeps N bytes of the payload; the header's size stays
    end                 bytes behind the payload's end
    file-cut=N          keeps N bytes of the file
    garbage             the compressed payload is none

File: magic 8, MD5 text 32, payload size 4, zlib stream, two zero bytes; numbers have the low byte first.
"""
import struct
import sys
import zlib


def change(parts, text):
    name, _, value = text.partition("=")
    name, _, place = name.partition(":")
    payload = parts["payload"]
    if name in ("magic", "md5"):
        parts[name] = value.encode()
    elif name == "size":
        parts["size"] = int(value, 0)
    elif name == "dword":
        struct.pack_into("<I", payload, int(place, 0), int(value, 0))
    elif name == "byte":
        payload[int(place, 0)] = int(value, 0)
    elif name == "replace":
        old, new = bytes.fromhex(place), bytes.fromhex(value)
        if len(old) != len(new) or old not in payload:
            sys.exit(f"cannot {text}")
        parts["payload"] = bytearray(bytes(payload).replace(old, new, 1))
    elif name == "cut":
        del payload[int(value, 0):]
    elif name == "end":
        payload += b"more"
        parts["size"] = len(payload)
    elif name == "garbage":
        parts["garbage"] = True
    elif name == "file-cut":
        parts["file-cut"] = int(value, 0)
    else:
        sys.exit(f"unknown change {text}")


def main():
    path = sys.argv[1]
    with open(path, "rb") as file:
        image = file.read()
    parts = {
        "magic": image[:8],
        "md5": image[8:40],
        "size": struct.unpack_from("<I", image, 40)[0],
        "payload": bytearray(zlib.decompress(image[44:-2])),
    }
    for text in sys.argv[2:]:
        change(parts, text)
    stream = b"no zlib stream at all" if "garbage" in parts else zlib.compress(bytes(parts["payload"]))
    image = parts["magic"] + parts["md5"] + struct.pack("<I", parts["size"]) + stream + b"\0\0"
    with open(path, "wb") as file:
        file.write(image[: parts.get("file-cut", len(image))])


if __name__ == "__main__":
    main()
