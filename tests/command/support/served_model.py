#!/usr/bin/env python3
"""Holds `tovren device list --by` against a model: served_model.py PART_LIST.

The model knows data/devices.csv, the part list and what belongs to what in the catalogue; it spells out who is served
by which record, and by which rule.
"""
import json
import subprocess
import sys

import device_csv


def tovren(*arguments):
    return json.loads(subprocess.run(["tovren", *arguments, "--json"], check=True, capture_output=True).stdout)


def read_records():
    with open(device_csv.ROOT + "/data/devices.csv", encoding="utf-8") as file:
        rows = [line.rstrip("\n").split(",") for line in file]
    return rows[2:]


def read_part_list(path):
    pcf_of_device = {}
    with open(path, encoding="utf-8") as file:
        for line in file:
            if not line.startswith("//"):
                cells = line.rstrip("\n").replace(" ", ",").split(",")
                pcf_of_device.setdefault(cells[1], cells[6])
    return pcf_of_device


def first_with(records, column, value):
    positions = [i for i, cells in enumerate(records) if cells[column].upper() == value.upper()]
    return positions[0] if positions else None


def own_name(entry, count):
    return "GENERIC" if entry["number"] == count - 1 else "" if entry["number"] == 0 else None


def answers(records, pcf_of_device):
    families = tovren("device", "catalogue", "families")
    by_family = {}
    for entry in families:
        name = own_name(entry, len(families))
        own = first_with(records, 0, entry["name"] if name is None else name)
        by_family[entry["name"]] = (own, "family") if own is not None else (1, "generic")
    devices = tovren("device", "catalogue", "devices")
    by_device = {}
    for entry in devices:
        name = own_name(entry, len(devices))
        own = None if name is None else first_with(records, 2, name)
        pcf = first_with(records, 1, pcf_of_device[entry["name"]]) if pcf_of_device.get(entry["name"]) else None
        by_device[entry["name"]] = ((own, "device") if own is not None else (pcf, "part list") if pcf is not None
                                    else by_family[entry["family"]])
    parts = tovren("device", "catalogue", "parts")
    by_part = []
    for entry in parts:
        name = own_name(entry, len(parts))
        own = None if name is None else first_with(records, 3, name)
        by_part.append((own, "part") if own is not None else by_device[entry["device"]])
    return {"family": list(by_family.values()), "device": list(by_device.values()), "part": by_part}


def main():
    expected = answers(read_records(), read_part_list(sys.argv[1]))
    for kind, values in expected.items():
        listed = [(entry["position"], entry["served_by"]) for entry in tovren("device", "list", "--by", kind)]
        for number, (want, got) in enumerate(zip(values, listed)):
            if want != got:
                print(f"{kind} {number}: {got}, the model says {want}")
        rules = sorted(set(rule for _, rule in listed))
        print(f"{kind}: {len(listed)} of {len(values)}, by {', '.join(rules)}")


if __name__ == "__main__":
    main()
