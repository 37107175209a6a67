#!/usr/bin/env python3
"""Runs a command with its standard output and error on a terminal of its own: terminal.py COLUMNS COMMAND ...

Prints what the terminal received, with its line ends made plain, and ends with the command's exit code.
"""
import fcntl
import os
import pty
import struct
import sys
import termios


def main():
    columns, command = int(sys.argv[1]), sys.argv[2:]
    child, terminal = pty.fork()
    if child == 0:
        fcntl.ioctl(1, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
        os.execvp(command[0], command)
    received = b""
    while True:
        try:
            part = os.read(terminal, 65536)
        except OSError:  # the terminal's other end is closed
            break
        if not part:
            break
        received += part
    sys.stdout.buffer.write(received.replace(b"\r\n", b"\n"))
    return os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])


if __name__ == "__main__":
    sys.exit(main())
