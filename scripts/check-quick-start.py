#!/usr/bin/env python3
"""Follows docs/getting-started/quick-start.md to the letter, and compares what is printed with what the page shows.

    scripts/check-quick-start.py packages          the installed packages, as the environment finds them
    scripts/check-quick-start.py clone FOLDER      a clone in FOLDER; it is built there
    scripts/check-quick-start.py windows FOLDER    the folder x64 or x86 of the unpacked zip, under Wine

Port 9800 of 127.0.0.1 must be free. Exit status 0: every block was run and printed the output shown after it.
"""
import os
import re
import sys
import tempfile

sys.dont_write_bytecode = True

from page_follower import Follower, Mismatch, blocks_of  # noqa: E402

PAGE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "docs", "getting-started", "quick-start.md")


def section(heading):
    page = open(PAGE, encoding="utf-8").read()
    return blocks_of(re.search(rf"^## {re.escape(heading)}\n(.*?)(?=^## |\Z)", page, re.M | re.S)[1])


def follow_all(folder, command, blocks):
    follower = Follower(folder, command)
    follower.follow_all(blocks)
    print(f"  ok      the quick start: {follower.done} blocks")


def in_shell(beginning=""):
    return lambda text: ["bash", "-e", "-o", "pipefail", "-c", beginning + text]


def packages():
    with tempfile.TemporaryDirectory() as folder:
        follow_all(folder, in_shell(), section("Linux, from packages"))


def clone(root):
    own = section("Linux, from a clone")
    in_clone = [block for block in own if block.note == "in the clone"]
    exports = "".join(line + "\n" for block in in_clone for line in block.text.splitlines() if line.startswith("export"))
    lists = next(block for block in own if block.note.startswith("file: CMakeLists.txt"))
    follow_all(root, in_shell(), in_clone)
    with tempfile.TemporaryDirectory() as folder:
        os.symlink(root, os.path.join(folder, "MorquilAPI"))
        blocks = [lists if block.note.startswith("file: CMakeLists.txt") else block
                  for block in section("Linux, from packages")
                  if block.note != "installed packages only"]
        follow_all(folder, in_shell(f"cd '{root}'; {exports}cd '{folder}'\n"), blocks)


def windows(root):
    """Uses this system's MinGW-w64 compiler; the programs run under Wine."""
    processor = {"x64": "x86_64", "x86": "i686"}[os.path.basename(root)]

    def command(text):
        if text.startswith("g++ "):
            return ["bash", "-c", f"{processor}-w64-mingw32-" + text.replace("\\", "/")]
        lines = " && ".join(f"wine cmd /c '{line}'" for line in text.splitlines())
        return ["bash", "-c", lines]
    program = [block for block in section("Linux, from packages") if block.note == "file: hello.cpp"]
    follow_all(root, command, program + section("Windows"))


def main():
    ways = {("packages", 0): packages, ("clone", 1): clone, ("windows", 1): windows}
    way = ways.get((sys.argv[1] if len(sys.argv) > 1 else "", len(sys.argv) - 2))
    if way is None:
        sys.exit(__doc__)
    try:
        way(*(os.path.abspath(argument) for argument in sys.argv[2:]))
    except Mismatch as mismatch:
        sys.exit(str(mismatch))


if __name__ == "__main__":
    main()
