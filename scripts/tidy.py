#!/usr/bin/env python3
"""Runs clang-tidy on sources that are built, many of them at once, so that the headers they share are read once.

    scripts/tidy.py COMPILE_COMMANDS JOBS SOURCE...

Up to LARGEST_UNIT sources become one file, a unit, when they lie in the same folder, can be built with the same flags and
declare no name of their own twice. The units lie in the folder `lint` beside COMPILE_COMMANDS, each at its sources' place
in the tree so that the same .clang-tidy (copied there) rules it. What clang-tidy says of a line of a unit is printed as
said of the line of the source. Where a unit turns out not to compile, its sources are looked at one by one.
Paths are relative to the working folder, the top of the tree. Ends with 1 after a finding.
"""
import json
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor

LARGEST_UNIT = 12
DROPPED = {"-c", "-fPIC", "-fPIE"}
DROPPED_WITH_VALUE = {"-o", "-include"}  # the object; a precompiled header of the build's compiler

# What a line without indentation declares: a type or alias, a function, a variable, a macro. Tests are named apart anyway.
NAMES = (
    re.compile(r"^(?:template <.*> )?(?:struct|class|enum(?: class)?|using) (\w+)"),
    re.compile(r"^(?!TEST|using|namespace|#|//)[\w\[].*?\b(\w+)\("),
    re.compile(r"^(?!TEST|using|namespace|#|//)[\w\[].*?[\w>&*\]] [&*]?(\w+)(?:\[.*\])*(?: =|\{|;)"),
    re.compile(r"^#define (\w+)"),
)
INCLUDE = re.compile(r"^#include\s+\S+")


class Flags:
    """Flags of a command. Two can be joined when they differ in include folders and in macros that only one defines."""

    def __init__(self, command):
        self.macros, self.folders, self.others = {}, {}, []
        words = iter(shlex.split(command)[1:])
        for word in words:
            if word in DROPPED_WITH_VALUE:
                next(words)
            elif word.startswith("-D"):
                name, _, value = word[2:].partition("=")
                self.macros[name] = value
            elif word == "-isystem":
                self.folders[word + next(words)] = None
            elif word.startswith("-I"):
                self.folders[word] = None
            # Warnings are the compilers' part: between sources of a unit some (-Wshadow) have no meaning.
            elif word not in DROPPED and not word.startswith("-W") and not word.endswith((".cpp", "++", "ccache")):
                self.others.append(word)

    def fits(self, other):
        return self.others == other.others and all(
            other.macros.get(name, value) == value for name, value in self.macros.items())

    def join(self, other):
        self.macros |= other.macros
        self.folders |= other.folders

    def words(self):
        macros = [f"-D{name}={value}" if value else f"-D{name}" for name, value in self.macros.items()]
        return [*macros, *self.folders, *self.others]


class Unit:
    def __init__(self, source, flags, names):
        self.sources, self.flags, self.names, self.path = [source], flags, set(names), source
        self.place_of = []  # of each line of the unit: its source, its number there

    def take(self, source, flags, names):
        if len(self.sources) == LARGEST_UNIT or self.sources[0].parent != source.parent:
            return False
        if self.names & names or not self.flags.fits(flags):
            return False
        self.sources.append(source)
        self.flags.join(flags)
        self.names |= names
        return True

    def size(self):
        return sum(source.stat().st_size for source in self.sources)

    def write(self, path):
        """A header is included by the first source that does; what a source includes twice stays, as a finding."""
        self.path, earlier, text = path, set(), []
        for source in self.sources:
            own = set()
            for number, line in enumerate(source.read_text().splitlines(), 1):
                is_include = INCLUDE.match(line) is not None
                text.append("" if is_include and line in earlier and line not in own else line)
                self.place_of.append((source, number))
                if is_include:
                    own.add(line)
            earlier |= own
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text("\n".join(text) + "\n")

    def in_sources(self, output):
        """OUTPUT with the places in the unit replaced by those in its sources."""
        def replace(match):
            source, number = self.place_of[int(match[1]) - 1]
            return f"{source.resolve()}:{number}:"

        return re.sub(re.escape(str(self.path)) + r":(\d+):", replace, output) if self.place_of else output


def own_names(source):
    names = set()
    for line in source.read_text().splitlines():
        names.update(match[1] for pattern in NAMES if (match := pattern.match(line)))
    return names


def pack(commands, sources):
    """The units, the largest first."""
    units = []
    for source in sources:
        part = (source, Flags(commands[source.resolve()]), own_names(source))
        if not any(unit.take(*part) for unit in units):
            units.append(Unit(*part))
    return sorted(units, key=Unit.size, reverse=True)


def write(units, folder):
    shutil.rmtree(folder, ignore_errors=True)
    entries = []

    def add_entry(path, flags, place):
        words = ["clang++", *flags.words(), f"-I{place.resolve()}", "-c", str(path)]
        entries.append({"directory": str(folder.parent), "file": str(path), "arguments": words})

    for unit in units:
        place = unit.sources[0].parent
        for source in unit.sources:
            add_entry(source.resolve(), unit.flags, place)
        if len(unit.sources) > 1:
            unit.write(folder / place / f"unit_{len(entries)}.cpp")
            add_entry(unit.path, unit.flags, place)
    for settings in pathlib.Path(".").glob("*/**/.clang-tidy"):
        if (folder / settings).parent.is_dir() and not settings.is_relative_to("build"):
            shutil.copy(settings, folder / settings)
    folder.mkdir(parents=True, exist_ok=True)
    (folder / "compile_commands.json").write_text(json.dumps(entries, indent=1))


def tidy(folder, paths):
    run = subprocess.run(["clang-tidy", "--quiet", "-p", folder, *paths], text=True,
                         stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    return run.returncode == 0, re.sub(r"^(?:\d+ warnings?.* generated\.)?\n", "", run.stdout, flags=re.MULTILINE)


def tidy_unit(folder, unit):
    is_clean, output = tidy(folder, [unit.path])
    if len(unit.sources) > 1 and "[clang-diagnostic-error]" in output:
        is_clean, output = tidy(folder, unit.sources)
        output += f"one by one, since they make no unit: {' '.join(map(str, unit.sources))}\n"
    print(unit.in_sources(output), end="", flush=True)
    return is_clean


def main():
    database = pathlib.Path(sys.argv[1]).resolve()
    folder = database.parent / "lint"
    commands = {pathlib.Path(entry["file"]): entry["command"] for entry in json.loads(database.read_text())}
    units = pack(commands, [pathlib.Path(argument) for argument in sys.argv[3:]])
    write(units, folder)
    with ThreadPoolExecutor(int(sys.argv[2])) as pool:
        results = list(pool.map(lambda unit: tidy_unit(folder, unit), units))
    return 0 if all(results) else 1


sys.exit(main())
