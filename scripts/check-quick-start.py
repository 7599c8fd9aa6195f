#!/usr/bin/env python3
"""Follows docs/quick-start.md to the letter, and compares what is printed with what the page shows.

    scripts/check-quick-start.py packages          the installed packages, as the environment finds them
    scripts/check-quick-start.py clone FOLDER      a clone in FOLDER; it is built there
    scripts/check-quick-start.py windows FOLDER    the unpacked zip in FOLDER, under Wine

Port 9800 of 127.0.0.1 must be free. Exit status 0: every block was run and printed the output shown after it.
"""
import os
import re
import subprocess
import sys
import tempfile

LONGEST_SECONDS = 1800
PAGE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "docs", "quick-start.md")
BLOCK = re.compile(r"(?:^<!-- (?P<note>[^\n]*) -->\n)?^```(?P<language>\w*)\n(?P<text>.*?)^```$", re.M | re.S)


class Block:
    def __init__(self, match):
        self.note, self.language, self.text = match["note"] or "", match["language"], match["text"]
        self.expected = []


def section(heading):
    """The blocks of a section; one without a language is the output of the one before it."""
    page = open(PAGE, encoding="utf-8").read()
    body = re.search(rf"^## {re.escape(heading)}\n(.*?)(?=^## |\Z)", page, re.M | re.S)[1]
    blocks = []
    for match in BLOCK.finditer(body):
        if match["language"]:
            blocks.append(Block(match))
        else:
            blocks[-1].expected = match["text"].splitlines()
    return blocks


class Follower:
    """Carries out blocks, in one folder."""

    def __init__(self, folder, command):
        self.folder, self.command = folder, command
        self.running, self.done = [], 0

    def follow(self, block):
        file = re.match(r"file: ([\w.]+)", block.note)
        if file:
            with open(os.path.join(self.folder, file[1]), "w", encoding="utf-8") as target:
                target.write(block.text)
        elif block.note.startswith("in the background until: "):
            self.start(block, block.note.partition(": ")[2])
        else:
            self.run(block)
        self.done += 1

    def start(self, block, awaited):
        process = subprocess.Popen(self.command(block.text), cwd=self.folder, stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE, text=True)
        self.running.append(process)
        line = process.stdout.readline().strip()
        if not line.startswith(awaited) or [line] != block.expected:
            sys.exit(f"{block.text.strip()}\nprinted: {line}\ninstead of: {block.expected}")

    def run(self, block):
        result = subprocess.run(self.command(block.text), cwd=self.folder, stdin=subprocess.DEVNULL, text=True,
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=LONGEST_SECONDS)
        printed = [line.rstrip() for line in result.stdout.splitlines()]
        # Build tools print their progress, too: only the end of the output is compared.
        if result.returncode != 0 or printed[len(printed) - len(block.expected):] != block.expected:
            sys.exit("\n".join([block.text.strip(), f"exit status {result.returncode}, printed:", *printed[-40:],
                                "instead of:", *block.expected]))

    def stop(self):
        """Ends the simulated device by a command on its standard input."""
        for process in self.running:
            try:
                process.communicate("quit\n", timeout=20)
            except subprocess.TimeoutExpired:
                process.kill()


def follow_all(folder, command, blocks):
    follower = Follower(folder, command)
    try:
        for block in blocks:
            follower.follow(block)
    finally:
        follower.stop()
    print(f"  ok      the quick start: {follower.done} blocks")


def in_shell(beginning=""):
    return lambda text: ["bash", "-e", "-o", "pipefail", "-c", beginning + text]


def packages():
    with tempfile.TemporaryDirectory() as folder:
        blocks = [block for block in section("Linux, from packages") if not block.note.startswith("by hand")]
        follow_all(folder, in_shell(), blocks)


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
                  if not block.note.startswith(("by hand", "installed packages only"))]
        follow_all(folder, in_shell(f"cd '{root}'; {exports}cd '{folder}'\n"), blocks)


def windows(root):
    """Uses this system's MinGW-w64 compiler; the programs run under Wine."""
    def command(text):
        if text.startswith("g++ "):
            return ["bash", "-c", "x86_64-w64-mingw32-" + text.replace("\\", "/")]
        lines = " && ".join(f"wine cmd /c '{line}'" for line in text.splitlines())
        return ["bash", "-c", lines]
    program = [block for block in section("Linux, from packages") if block.note == "file: hello.cpp"]
    follow_all(root, command, program + section("Windows"))


def main():
    ways = {("packages", 0): packages, ("clone", 1): clone, ("windows", 1): windows}
    way = ways.get((sys.argv[1] if len(sys.argv) > 1 else "", len(sys.argv) - 2))
    if way is None:
        sys.exit(__doc__)
    way(*(os.path.abspath(argument) for argument in sys.argv[2:]))


if __name__ == "__main__":
    main()
