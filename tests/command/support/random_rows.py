#!/usr/bin/env python3
"""Writes a description of many flashes with values over the whole range of each type: random_rows.py COUNT SEED."""
import random
import sys

import flash_csv

LIMITS = {"BYTE": 0xFF, "WORD": 0xFFFF, "DWORD": 0xFFFFFFFF}


def number(source, limit):
    drawn = source.choice([0, 1, limit - 1, limit, source.randint(0, limit), source.randint(0, limit)])
    return source.choice(["{}", "0x{:X}", "0X{:x}"]).format(drawn)


def cell(source, name, word, i):
    if name == "device_name":
        return f"QX{i}"
    if name == "ini":
        return source.choice(["NONE", "none", "None"])
    if name == "default_dev":
        return "TRUE"
    if word == "bool":
        return source.choice(["TRUE", "FALSE"])
    if word == "STL_STRING":
        return "".join(source.choice("ABCxyz019-_./\"\\&<'") for _ in range(source.choice([1, 2, 9, 40, 255])))
    return number(source, LIMITS[word])


def main():
    source = random.Random(int(sys.argv[2]))
    print("\n".join(flash_csv.header()))
    for i in range(int(sys.argv[1])):
        print(",".join(cell(source, name, word, i) for name, word, _ in flash_csv.MEMBERS))


if __name__ == "__main__":
    main()
