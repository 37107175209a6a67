#!/usr/bin/env python3
"""Compares a description with the JSON of `tovren flash list`: compare_list.py CSV JSON.

Every row must be there, in order, each value as the row writes it, its type told by the type row.
"""
import json
import sys


def value(word, text):
    if word == "STL_STRING":
        return text
    if word == "bool":
        return text == "TRUE"
    return int(text, 0)


def main():
    with open(sys.argv[1]) as file:
        rows = [line.strip().split(",") for line in file if line.strip()]
    types, names, rows = rows[0], rows[1], rows[8:]
    expected = [
        {"index": i, **{name: value(word, cell) for name, word, cell in zip(names, types, row)}}
        for i, row in enumerate(rows)
    ]
    with open(sys.argv[2]) as file:
        # Pairs, so that the order of members counts and a doubled one is seen; the types count too: 1 is not true.
        found = json.load(file, object_pairs_hook=list)
    wanted = [list(record.items()) for record in expected]
    if repr([[tuple(pair) for pair in record] for record in found]) != repr(wanted):
        for i, (record, other) in enumerate(zip(found, wanted)):
            if repr([tuple(pair) for pair in record]) != repr(other):
                sys.exit(f"record {i} differs:\n{record}\n{other}")
        sys.exit(f"{len(found)} records, expected {len(wanted)}")
    print(f"{len(found)} records are the same")


if __name__ == "__main__":
    main()
