#!/usr/bin/env python3
"""Holds the manual pages against what they describe: man_test.py CHECK TOVREN SOURCE_DIR

    commands    tovren(1) has a subsection for each verb that --help knows, with its options and arguments, and no other
    tables      the columns and fields of the pages are those of the shipped tables, in their order; so are the settings
    lint        mandoc and man have nothing to say; ends with 77 where neither is installed
"""
import os
import re
import shutil
import subprocess
import sys

CHECK, TOVREN, SOURCE = sys.argv[1], sys.argv[2], sys.argv[3]
MAN = SOURCE + "/docs/man/"
PAGES = ["tovren.1", "tovren-definition.5", "tovren-devices-csv.5", "tovren-devices-pcf.5", "tovren-flash-csv.5",
         "tovren-flash-pcf.5", "tovren-settings.5"]
faults = []


def page(name):
    return open(MAN + name, encoding="ascii").read()


def expect(is_right, fault):
    if not is_right:
        faults.append(fault)


# ---- commands ----


def help_of(words):
    return subprocess.run([TOVREN, *words, "--help"], check=True, capture_output=True, text=True).stdout


def entries(text, title):
    """The first words of a paragraph of the help: "  --by KIND      ..."."""
    part = re.search(rf"^{title}:\n((?:  .*\n)+)", text, re.M)
    return re.findall(r"^  (\S+)", part[1], re.M) if part else []


def verbs(words=()):
    """Each verb with its options and arguments."""
    text = help_of(words)
    children = entries(text, "Subcommands")
    if children:
        for child in children:
            yield from verbs((*words, child))
        return
    options = [name for group in entries(text, "Options") for name in group.split(",") if name.startswith("--")]
    yield " ".join(words), options, entries(text, "Positionals")


def flags(mdoc):
    return {"--" + name for name in re.findall(r"\bFl -([a-z][a-z0-9-]*)", mdoc)}


def words_of(mdoc):
    return set(re.findall(r"[A-Z][A-Z0-9_=]*", " ".join(re.findall(r"\bAr ([^\n]*)", mdoc))))


def check_verb(verb, options, arguments, mdoc):
    known = flags(mdoc)
    for option in options:
        expect(option == "--help" or option in known, f"{verb}: {option} is missing")
    for option in known:
        expect(option == "--help" or option in options, f"{verb}: {option} is no option")
    for argument in arguments:
        expect(argument in words_of(mdoc), f"{verb}: the argument {argument} is missing")
    expect(mdoc.startswith(f".Ic {verb}"), f"{verb}: its synopsis is missing")


def check_commands():
    text = page("tovren.1")
    commands = re.search(r"^\.Sh COMMANDS\n(.*?)^\.Sh ", text, re.M | re.S)[1]
    told = dict(part.split("\n", 1) for part in re.split(r"^\.Ss ", commands, flags=re.M)[1:])
    found = list(verbs())
    expect(len(found) > 20, f"only {len(found)} verbs were found")
    for verb, options, arguments in found:
        if verb in told:
            check_verb(verb, options, arguments, told.pop(verb))
        else:
            faults.append(f"{verb} is missing")
    for verb in told:
        faults.append(f"{verb} is no verb")
    general = re.search(r"^\.Sh OPTIONS\n(.*?)^\.Sh ", text, re.M | re.S)[1]
    wanted = {name for group in entries(help_of(()), "Options") for name in group.split(",") if name.startswith("--")}
    expect(flags(general) == wanted, f"OPTIONS: {sorted(flags(general) ^ wanted)}")
    for name in re.findall(r"TOVREN_\w+|NO_COLOR", help_of(())):
        expect(f".It Ev {name}\n" in text, f"ENVIRONMENT: {name} is missing")


# ---- tables ----


def csv_columns(name):
    types, names = open(f"{SOURCE}/data/{name}", encoding="ascii").read().splitlines()[:2]
    return list(zip(names.split(","), types.split(","), strict=True))


def told_columns(name):
    return re.findall(r"^\.It Va (\w+) No \((\w+)\)\n", page(name), re.M)


def check_tables():
    flash, devices = csv_columns("flash.csv"), csv_columns("devices.csv")
    expect((len(flash), len(devices)) == (33, 86), "the tables have other widths than 33 and 86")
    expect(told_columns("tovren-flash-csv.5") == flash, "tovren-flash-csv.5: other columns than data/flash.csv")
    expect(told_columns("tovren-devices-csv.5") == devices, "tovren-devices-csv.5: other columns than data/devices.csv")
    meanings = re.findall(r"^\.It Va (\w+) No \(\w+\)\n(.*)\n", page("tovren-devices-csv.5"), re.M)
    kept = [tuple(line.split(", ", 1)) for line in open(SOURCE + "/data/device_members.csv").read().splitlines()]
    expect(meanings == kept, "tovren-devices-csv.5: other meanings than data/device_members.csv")
    fields = re.findall(r"^\.It (\w+) Ta .* Ta .* Ta ", page("tovren-definition.5"), re.M)
    expect(fields == [name for name, _ in flash], "tovren-definition.5: other fields than data/flash.csv")
    settings = re.findall(r"^\| `(\w+)` \|", open(SOURCE + "/docs/formats/settings.md").read(), re.M)
    told = re.findall(r"^\.It Va (\w+)\n", page("tovren-settings.5"), re.M)
    expect(len(told) > 5 and told == settings, "tovren-settings.5: other settings than docs/formats/settings.md")


# ---- lint ----


def complaints(command, name):
    run = subprocess.run([*command, MAN + name], env=os.environ | {"LC_ALL": "C.UTF-8", "MANWIDTH": "80"},
                         stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
    return run.stdout if command[0] == "mandoc" else run.stderr


def check_lint():
    expect(sorted(PAGES) == sorted(name for name in os.listdir(MAN) if name != "CMakeLists.txt"), "other pages")
    commands = [command for command in (["mandoc", "-Tlint", "-Wwarning"], ["man", "--warnings", "-Tutf8", "-l"])
                if shutil.which(command[0])]
    if not commands:
        print("there is neither mandoc nor man here")
        sys.exit(77)
    for name in PAGES:
        for command in commands:
            text = complaints(command, name)
            expect(not text, f"{name}: {command[0]}: {text}")


{"commands": check_commands, "tables": check_tables, "lint": check_lint}[CHECK]()
print("\n".join("docs/man/" + fault if fault.startswith("tovren-") else "docs/man/tovren.1: " + fault
                for fault in faults))
sys.exit(1 if faults else 0)
