"""What the page is held against: the shipped descriptions read by plain means, and pages of databases of our own."""
import csv
import json
import os
import subprocess
import sys

TOVREN, SOURCE = sys.argv[1], sys.argv[2]
sys.path.insert(0, f"{SOURCE}/tests/command/support")
import flash_csv  # noqa: E402

HOSTILE = [
    "<script>window.pwned=1</script>",
    "<img/src=x/onerror=window.pwned=2>",
    "A&lt;b&amp;'\"><svg/onload=window.pwned=3>",
    "</td></tr></table></details>",
    "{{name}}",
]


def shipped_flashes():
    with open(f"{SOURCE}/data/flash.csv", encoding="ascii") as text:
        rows = list(csv.reader(text))
    flashes = [dict(zip(rows[1], row, strict=True)) for row in rows[8:]]
    index = 0
    for flash in flashes:
        flash["hidden"] = flash["ini"] != "NONE"
        flash["index"] = "–" if flash["hidden"] else str(index)
        index += not flash["hidden"]
        flash["id"] = answer(flash)
        for member in ("device_bit_size", "device_sector_byte", "bulk_erase_time", "sec_erase_time", "program_utime",
                       "die_count", "protection_division"):
            flash[member] = int(flash[member])
    return flashes


def answer(flash):
    if flash["silicon_id"] == "TRUE":
        return flash["memory_id"][2:] + " (silicon)"
    return "".join(flash[member][2:] for member in ("mfc_id", "memory_type", "memory_id"))


def density(bits):
    return f"{bits >> 20} Mbit" if bits % (1 << 20) == 0 else f"{bits >> 10} Kbit"


def tovren(*arguments, **options):
    return subprocess.run([TOVREN, *arguments], check=True, capture_output=True, **options).stdout


def tovren_json(*arguments):
    return json.loads(tovren(*arguments, "--json"))


def hostile_root(folder):
    """A database root whose flashes bear the hostile texts; its device database is the shipped one."""
    plain = flash_csv.row("")
    rows = [plain.replace("QXA", name) for name in HOSTILE]
    rows += [flash_csv.row(text) for text in ("device_name=QXB manufacturer_name=<b>M</b>",
                                              "device_name=QXC asc_voltage=<i>3</i>", "device_name=QXD ini=<u>K</u>",
                                              "device_name=Q\udcff\x01X")]
    os.makedirs(f"{folder}/programmer", exist_ok=True)
    with open(f"{folder}/flash.csv", "w", encoding="utf-8", errors="surrogateescape") as out:
        out.write("\n".join([*flash_csv.header(), *rows]) + "\n")
    tovren("flash", "generate", f"{folder}/flash.csv", f"{folder}/programmer/pgm_flash.pcf")
    tovren("device", "generate", f"{SOURCE}/data/devices.csv", f"{folder}/programmer/pgm_dev_info.pcf")
    return folder
