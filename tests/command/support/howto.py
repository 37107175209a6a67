#!/usr/bin/env python3
"""Runs the commands of a how-to and prints the page with what they print now: howto.py PAGE

The commands are the lines behind "$ " of the console blocks, their continuations those behind "> "; they run one after
the other in one shell. The home folder is shown as /home/you. Where the page is right, it comes out as it is.
"""
import os
import re
import subprocess
import sys

MARK = "-- end of the output --"


def parts(page):
    """The page in order: ("text", lines that are no output) and ("command", what to run)."""
    command, is_inside = [], False
    for line in page.splitlines():
        if line.startswith("```"):
            is_inside = line == "```console"
        if is_inside and line.startswith("$ "):
            if command:
                yield "command", command
            command = [line[2:]]
            yield "text", line
        elif is_inside and line.startswith("> "):
            command.append(line[2:])
            yield "text", line
        elif not is_inside:
            if command:
                yield "command", command
            command = []
            yield "text", line
        elif not command:
            yield "text", line


def main():
    shell = subprocess.Popen(["bash"], stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    for kind, content in parts(open(sys.argv[1]).read()):
        if kind == "text":
            print(content)
            continue
        shell.stdin.write("\n".join(content) + f"\necho '{MARK}'\n")
        shell.stdin.flush()
        for line in iter(shell.stdout.readline, MARK + "\n"):
            print(re.sub(re.escape(os.environ["HOME"]), "/home/you", line), end="")
    shell.stdin.close()
    sys.exit(shell.wait())


main()
