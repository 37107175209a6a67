#!/usr/bin/env python3
"""Types lines into a real shell, presses the tab key and reads what the line has become.

    completion_test.py bash|zsh|fish TOVREN SOURCE_DIR

Ends with 77 where there is no such shell.
"""
import os
import pty
import re
import select
import shutil
import subprocess
import sys
import tempfile
import time
import zlib

SHELL, TOVREN, SOURCE = sys.argv[1], os.path.realpath(sys.argv[2]), os.path.realpath(sys.argv[3])
sys.path.insert(0, SOURCE + "/tests/command/support")
import flash_csv  # noqa: E402

# What is typed, and what the tab key makes of it. A bar in the result is the cursor's place where nothing was added
# behind the word.
LINES = [
    ("tovren fl", "tovren flash "),
    ("tovren flash sh", "tovren flash show "),
    ("tovren hps na", "tovren hps nand "),
    ("tovren --js", "tovren --json "),
    ("tovren device show --fam", "tovren device show --family "),
    ("tovren device list --by rec", "tovren device list --by record "),
    ("tovren device list --by=rec", "tovren device list --by=record "),
    # names of the loaded tables, in any letter case
    ("tovren flash show n25q032", "tovren flash show N25Q032 "),
    ("tovren device show --family quarn-1", "tovren device show --family QUARN-1 "),
    ("tovren device show --part QB55AF484C7", "tovren device show --part QB55AF484C7 "),
    ("tovren --db-root db flash show qxp", "tovren --db-root db flash show QXPLAIN "),
    ("tovren --db-root=db flash show qxp", "tovren --db-root=db flash show QXPLAIN "),
    ("tovren flash show qxp --db-root elsewhere", None),
    ("tovren flash show qxp", None),
    ("tovren --db-root 'with blank' flash show qxp", "tovren --db-root 'with blank' flash show QXPLAIN "),
    ("tovren --db-root with\\ blank flash show qxp", "tovren --db-root with\\ blank flash show QXPLAIN "),
    ("tovren --db-root ~/at_home flash show qxp", "tovren --db-root ~/at_home flash show QXPLAIN "),
    # settings hide and show
    ("tovren --db-root db flash show qxl", None),
    ("tovren --db-root db --set PGM_ALLOW_LAB=on flash show qxl",
     "tovren --db-root db --set PGM_ALLOW_LAB=on flash show QXLAB "),
    ("tovren --db-root db --settings lab.ini flash show qxl",
     "tovren --db-root db --settings lab.ini flash show QXLAB "),
    ("tovren --db-root db --set PGM_A", "tovren --db-root db --set PGM_ALLOW_LAB=|"),
    ("tovren --db-root db --set PGM_ALLOW_LAB=of", "tovren --db-root db --set PGM_ALLOW_LAB=off "),
    # names that a shell would take apart
    ("tovren --db-root db flash show qxb", "tovren --db-root db flash show QXB\\ LANK "),
    ("tovren --db-root db flash show qxd", "tovren --db-root db flash show QXD\\$HOME "),
    ("tovren --db-root db flash show qxq", "tovren --db-root db flash show QXQ\\'S "),
    ("tovren --db-root db flash show 'QXB", "tovren --db-root db flash show 'QXB LANK' "),
    ("tovren --db-root db flash show \"QXD", "tovren --db-root db flash show \"QXD\\$HOME\" "),
    ("tovren --db-root db flash show qxc", "tovren --db-root db flash show QXC:O=L "),
    ("tovren --db-root db flash show QXC:o", "tovren --db-root db flash show QXC:O=L "),
    ("tovren params show HPS\\ n", "tovren params show HPS\\ NAND "),
    # files where a file is asked
    ("tovren db inspect la", "tovren db inspect lab.ini "),
    ("tovren --settings=la", "tovren --settings=lab.ini "),
    ("tovren --db-root w", "tovren --db-root with\\ blank/|"),
    ("tovren --set TOVREN_MODULE_PATH=w", "tovren --set TOVREN_MODULE_PATH=with\\ blank/|"),
    # nothing can be said; nothing is complained about
    ("tovren nonsense sh", None),
    ("tovren flash show --all=x", None),
    ("tovren --db-root broken flash show Q", None),
    ("tovren flash show -- --al", None),
]


def database(root):
    """One flash of each kind of name; blanks, which no description can hold, are put into the file afterwards."""
    os.makedirs(root + "/programmer")
    names = ["QXPLAIN", "QXB_LANK", "QXD$HOME", "QXQ'S", "QXC:O=L"]
    rows = [flash_csv.row(f"device_name={name}") for name in names] + [flash_csv.row("device_name=QXLAB ini=LAB")]
    with open("flash.csv", "w", encoding="ascii") as csv:
        csv.write("\n".join(flash_csv.header() + rows) + "\n")
    file = root + "/programmer/pgm_flash.pcf"
    subprocess.run([TOVREN, "flash", "generate", "flash.csv", file], check=True, stdout=subprocess.DEVNULL)
    whole = open(file, "rb").read()
    payload = zlib.decompress(whole[44:-2]).replace(b"QXB_LANK", b"QXB LANK")
    with open(file, "wb") as output:
        output.write(whole[:44] + zlib.compress(payload) + whole[-2:])


def make_folder():
    os.makedirs("bin")
    os.symlink(TOVREN, "bin/tovren")
    database("db")
    for place in ("with blank", "home/at_home"):
        shutil.copytree("db", place)
    os.makedirs("broken/programmer")
    with open("broken/programmer/pgm_flash.pcf", "w", encoding="ascii") as file:
        file.write("PGMIO_FM and nothing of use")
    with open("lab.ini", "w", encoding="ascii") as file:
        file.write("PGM_ALLOW_LAB = on\na malformed line\n")


# ---- a shell on a terminal ----

BASH_START = f"""
PS1='READY> '; bind 'set enable-bracketed-paste off'; bind 'set bell-style none'
source '{SOURCE}/completions/tovren.bash'
show() {{ printf '\\n<<%s|%s>>\\n' "${{READLINE_LINE:0:READLINE_POINT}}" "${{READLINE_LINE:READLINE_POINT}}"; }}
bind -x '"\\C-xd": show'
""".strip()

ZSH_START = f"""
PS1='READY> '; unsetopt zle_bracketed_paste 2>/dev/null; unset zle_bracketed_paste; setopt no_beep
fpath=('{SOURCE}/completions' $fpath); autoload -Uz compinit; compinit -u -D
show() {{ print -r -- $'\\n<<'"$LBUFFER|$RBUFFER>>" }}
zle -N show; bindkey '^Xd' show; bindkey '^I' complete-word
""".strip()


class Terminal:
    def __init__(self, arguments, start):
        environment = {"PATH": os.getcwd() + "/bin:" + os.environ["PATH"], "HOME": os.getcwd() + "/home",
                       "TERM": "dumb", "LC_ALL": "C.UTF-8", "HISTFILE": "/dev/null"}
        for name in ("ASAN_OPTIONS", "UBSAN_OPTIONS"):
            if name in os.environ:
                environment[name] = os.environ[name]
        self.pid, self.file = pty.fork()
        if self.pid == 0:
            os.execvpe(arguments[0], arguments, environment)
        self.text = ""
        with open("start", "w", encoding="utf-8") as file:
            file.write(start + "\necho STARTED\n")
        self.send(". ./start\n")
        self.wait_for(r"STARTED\r")

    def send(self, text):
        os.write(self.file, text.encode())

    def wait_for(self, pattern):
        end = time.monotonic() + 60
        while not (match := re.search(pattern, self.text)):
            if not select.select([self.file], [], [], max(0, end - time.monotonic()))[0]:
                sys.exit(f"{SHELL}: no {pattern!r} in {self.text!r}")
            self.text += os.read(self.file, 65536).decode(errors="replace")
        self.text = self.text[match.end():]
        return match

    def complete(self, line):
        self.send("\x15" + line + "\t\x18d")  # clear, type, tab, show
        match = self.wait_for(r"<<(.*?)\|(.*?)>>")
        if match[2]:
            sys.exit(f"{SHELL}: the cursor is inside {match[0]}")
        self.send("\x15")
        return match[1]


def is_expected(line, result, expected):
    """A shell may close a word at once or leave it open until another key is pressed."""
    if expected is None:
        return result.rstrip() == line.rstrip()
    if expected.endswith("|"):
        return result == expected[:-1]
    return result == expected


def check_lines(complete):
    faults = 0
    for line, expected in LINES:
        result = complete(line)
        if not is_expected(line, result, expected):
            faults += 1
            print(f"{SHELL}: {line!r}\n  expected {expected!r}\n  got      {result!r}")
    return faults


def in_bash():
    return check_lines(Terminal(["bash", "--norc", "--noprofile", "-i"], BASH_START).complete)


def in_zsh():
    return check_lines(Terminal(["zsh", "-f", "-i"], ZSH_START).complete)


# Fish quotes what it puts in, and closes a word unless it ends in "=" or "/": it is asked for what it would offer.
FISH_ANSWERS = {
    "tovren --db-root db flash show qxb": ["QXB LANK"],
    "tovren --db-root db flash show qxd": ["QXD$HOME"],
    "tovren --db-root db flash show qxq": ["QXQ'S"],
    "tovren --db-root db flash show 'QXB": ["QXB LANK"],
    "tovren --db-root db flash show \"QXD": ["QXD$HOME"],
    "tovren params show HPS\\ n": ["HPS NAND"],
    "tovren --db-root w": ["with blank/"],
    "tovren --set TOVREN_MODULE_PATH=w": ["TOVREN_MODULE_PATH=with blank/"],
}


def in_fish():
    environment = {"PATH": os.getcwd() + "/bin:" + os.environ["PATH"], "HOME": os.getcwd() + "/home",
                   "LC_ALL": "C.UTF-8"} | {name: os.environ[name] for name in ("ASAN_OPTIONS",) if name in os.environ}
    with open("start", "w", encoding="utf-8") as file:
        file.write(f"source '{SOURCE}/completions/tovren.fish'\n")
        for line, _ in LINES:
            quoted = line.replace("\\", "\\\\").replace("'", "\\'")
            file.write(f"complete -C '{quoted}'\necho '<<end>>'\n")
    run = subprocess.run(["fish", "--no-config", "start"], env=environment, capture_output=True, text=True, check=True)
    if run.stderr:
        sys.exit("fish complains: " + run.stderr)
    faults = 0
    answers = run.stdout.split("<<end>>\n")[:-1]
    for (line, expected), answer in zip(LINES, answers, strict=True):
        typed = line.rsplit(" ", 1)[1]
        wanted = [] if expected is None else FISH_ANSWERS.get(line, [expected.rstrip(" |").rsplit(" ", 1)[1]])
        words = [offered.split("\t")[0] for offered in answer.splitlines()]
        if words != wanted and not (expected is None and words == [typed]):
            faults += 1
            print(f"fish: {line!r}\n  expected {wanted!r}\n  got      {words!r}")
    return faults


def main():
    if not shutil.which(SHELL):
        print(f"there is no {SHELL} here")
        return 77
    with tempfile.TemporaryDirectory() as folder:
        os.chdir(folder)
        make_folder()
        faults = {"bash": in_bash, "zsh": in_zsh, "fish": in_fish}[SHELL]()
    print(f"{len(LINES)} lines, {faults} wrong")
    return 1 if faults else 0


sys.exit(main())
