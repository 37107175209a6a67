"""Published parameter tables (SFDP) for cases.

sfdp.py image NAME            writes the image of an entry of tests/data/sfdp
sfdp.py agrees COMMAND...     runs COMMAND once for each image, which it gets on standard input, and holds the JSON
                              document that it prints against the entry's decoding, or its exit against a refusal
"""
import json
import pathlib
import subprocess
import sys

FOLDER = pathlib.Path(__file__).resolve().parent.parent.parent / "data" / "sfdp"


def entries():
    for name in ("vectors.json", "hostile.json"):
        yield from json.loads((FOLDER / name).read_text())


def image(entry):
    return bytes.fromhex(entry["sfdp_hex"])


def write_image(name):
    for entry in entries():
        if entry["name"] == name:
            sys.stdout.buffer.write(image(entry))
            return
    sys.exit(f"no image {name}")


def differs(entry, command):
    run = subprocess.run(command, input=image(entry), stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
    if entry["expected"] is None:
        kind = f": {entry['kind']}\n".encode()
        return run.returncode != 3 or run.stdout != b"" or kind not in run.stderr
    return run.returncode != 0 or run.stderr != b"" or json.loads(run.stdout) != entry["expected"]


def agree(command):
    count = 0
    for entry in entries():
        if differs(entry, command):
            print(f"differs: {entry['name']}")
        count += 1
    print(f"{count} images")


if sys.argv[1] == "image":
    write_image(sys.argv[2])
else:
    agree(sys.argv[2:])
