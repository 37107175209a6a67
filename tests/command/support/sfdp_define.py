#!/usr/bin/env python3
"""Defines a flash from every real parameter table of tests/data/sfdp, and identifies it: sfdp_define.py

What the command must ask for and what the record must hold is reckoned here from the published decodings. For each chip:
without any --member the command must ask for exactly the missing members and those outside the limits; with these it
must store a definition, after which the chip's own identification is answered by record 0 with the table's figures.
"""
import json
import pathlib
import subprocess
import sys

VECTORS = pathlib.Path(__file__).resolve().parent.parent.parent / "data" / "sfdp" / "vectors.json"

# What no table tells, with a value to give.
ASKED = {
    "manufacturer_name": "NOVA",
    "device_name": "QXN",
    "micron_flow": "N",
    "spansion_flow": "N",
    "startup_protected": "N",
    "aai_mode": "N",
    "die_count": "1",
    "protection_mask": "3C",
    "protection_value": "3C",
    "unprotect_value": "0",
    "protection_division": "-1",
    "bottom_value": "6",
    "sdm_support": "N",
    "asc_voltage": "1.8V",
}


def up(value, unit):
    return -(-value // unit)


def model(table):
    """What the table tells of the record; None where it does not tell it, or nothing that a definition may hold."""
    sector = max(kind["size"] for kind in table["erase_types"] if 1024 <= kind["size"] <= 1 << 20)
    longest_sector = max((kind["max_ms"] or 0 for kind in table["erase_types"] if kind["size"] == sector))
    longest_chip = max(table["chip_erase_max_ms"] or 0, table["chip_erase_max_ms_if_program_factor"] or 0)
    four = table["four_byte_table"] or {"supported": {}, "erase": []}
    has_four = {"read_1_1_1", "program_1_1_1"} <= set(four["supported"]) and bool(four["erase"])

    def within(value, least, most):
        return value if least <= value <= most else None

    return {
        "extended_mode": True if has_four else None,
        "flag_status": table["flag_status_register"],
        "device_bit_size": table["density_bits"],
        "device_sector_byte": sector,
        "byte4_addressing": table["density_bits"] > 128 << 20,
        "bulk_erase_time": within(up(longest_chip, 1000), 1, 900),
        "sec_erase_time": within(up(longest_sector, 1000), 1, 60),
        "program_utime": within(table["page_program_max_us"] or 0, 1000, 1000000),
    }


# For what a table leaves open.
OPEN = {"extended_mode": "Y", "flag_status": "N", "bulk_erase_time": "900", "sec_erase_time": "9", "program_utime": "5000"}
GIVEN_AS = {"extended_mode": True, "flag_status": False, "bulk_erase_time": 900, "sec_erase_time": 9, "program_utime": 5000}


def tovren(*arguments):
    done = subprocess.run(["tovren", "--json", *arguments], capture_output=True, text=True)
    return done.returncode, json.loads(done.stdout)


def check(vector, expect):
    told = model(vector["expected"])
    with open("table.bin", "wb") as file:
        file.write(bytes.fromhex(vector["sfdp_hex"]))
    define = ["flash", "define", "--sfdp", "table.bin", "--id", vector["jedec_id"]]

    code, document = tovren(*define)
    missing = {entry["member"] for entry in document["missing"]}
    wanted = set(ASKED) | {member for member, value in told.items() if value is None}
    expect("exit without members", code, 3)
    expect("asked for", missing, wanted)
    expect("stops", [entry for entry in document["contradictions"] if entry["stops"]], [])

    given = [f"{member}={(ASKED | OPEN)[member]}" for member in wanted]
    options = [word for text in given for word in ("--member", text)]
    code, document = tovren("--settings", "settings.ini", *define, *options, "--store")
    expect("exit", code, 0)
    sources = {entry["member"]: entry["source"] for entry in document["members"]}
    expect("sources of what is given", {sources[member] for member in wanted}, {"--member"})
    code, document = tovren("--settings", "settings.ini", "flash", "identify", vector["jedec_id"])
    record = document["devices"][0]["flash"]
    expect("identified", (code, document["devices"][0]["index"], record["device_name"]), (0, 0, "QXN"))
    for member, value in told.items():
        expect(member, record[member], GIVEN_AS[member] if value is None else value)
    identification = bytes.fromhex(vector["jedec_id"])
    expect("identification", (record["mfc_id"], record["memory_type"], record["memory_id"]), tuple(identification[:3]))
    return sorted(wanted - set(ASKED))


def main():
    faults = []
    vectors = json.loads(VECTORS.read_text())
    for vector in vectors:
        def expect(what, found, wanted, name=vector["name"]):
            if found != wanted:
                faults.append(f"{name}: {what}: {found}, expected {wanted}")

        print(f"{vector['name']}: also asked for {', '.join(check(vector, expect)) or 'nothing'}")
    print(f"{len(vectors)} chips")
    print(*faults, sep="\n", end="\n" if faults else "")
    sys.exit(1 if faults else 0)


main()
