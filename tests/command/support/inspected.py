#!/usr/bin/env python3
"""Prints the shape of what `tovren db inspect --json` says: inspected.py FILE ..."""
import json
import sys

for path in sys.argv[1:]:
    with open(path, encoding="utf-8") as file:
        told = json.load(file)
    print(path)
    for name, value in told.items():
        if name == "records":
            print(f"  {len(value)} records of {sorted({len(record) for record in value})} members")
            print(f"  {dict(list(value[0].items())[:6])}")
        elif "size" not in name:
            print(f"  {name}: {value}")
