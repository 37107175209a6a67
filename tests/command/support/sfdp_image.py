#!/usr/bin/env python3
"""Writes the parameter table of a chip as raw bytes on standard output: sfdp_image.py NAME [OFFSET=HEX]...

NAME is that of an image of tests/data/sfdp; OFFSET=HEX puts bytes in the place of those at OFFSET (decimal, or 0x1F).
"""
import json
import os
import sys

FOLDER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../data/sfdp")


def images(name):
    with open(os.path.join(FOLDER, name), encoding="utf-8") as file:
        return json.load(file)


def main():
    name, *changes = sys.argv[1:]
    found = [image for image in images("vectors.json") + images("hostile.json") if image["name"] == name]
    if len(found) != 1:
        sys.exit(f"{len(found)} images are named {name}")
    data = bytearray.fromhex(found[0]["sfdp_hex"])
    for change in changes:
        offset, text = change.split("=")
        new = bytes.fromhex(text)
        data[int(offset, 0) : int(offset, 0) + len(new)] = new
    sys.stdout.buffer.write(data)


if __name__ == "__main__":
    main()
