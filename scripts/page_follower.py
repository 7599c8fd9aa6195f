"""Carries out what a page of the documentation tells its reader to do, and compares what is printed with the page.

A block with a language is a step; a block without one is what the step before it prints. A comment above a block says
what else is to be done with it:

    file: NAME                          it is the content of a file
    in the background until: TEXT       the command goes on; the page goes on when it prints a line that begins with TEXT
    typed into: COMMAND                 lines for the standard input of the command in the background that begins so
    printed by: COMMAND                 the next lines of the command in the background that begins so
    the end of the output               lines before these may have been printed, too
    not run: WHY, by hand: WHY          the reader's own affair

Times of day may differ. Each command runs in a shell of its own, after the exports of the commands before it.
"""
import os
import queue
import re
import subprocess
import threading

LONGEST_SECONDS = 1800
LONGEST_WAIT = 60
BLOCK = re.compile(r"(?:^<!-- (?P<note>[^\n]*) -->\n)?^```(?P<language>\w*)\n(?P<text>.*?)^```$", re.M | re.S)
TIME = re.compile(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d+")


class Mismatch(Exception):
    """What was printed is not what the page shows."""


class Block:
    def __init__(self, match):
        self.note, self.language, self.text = match["note"] or "", match["language"], match["text"]
        self.expected, self.only_end = [], False

    def argument(self, note):
        """What follows the words `note` in the comment, or None if the comment is another."""
        return self.note.removeprefix(note).strip() if self.note.startswith(note) else None


def blocks_of(markdown):
    blocks = []
    for match in BLOCK.finditer(markdown):
        block = Block(match)
        if block.language or block.argument("printed by:"):
            blocks.append(block)
        elif blocks:
            blocks[-1].expected = block.text.splitlines()
            blocks[-1].only_end = block.note == "the end of the output"
    return blocks


def without_times(lines):
    return [TIME.sub("TIME", line.rstrip()) for line in lines]


class Background:
    """A command that goes on while the page does."""

    def __init__(self, command, text, folder):
        self.text, self.lines = text, queue.Queue()
        self.process = subprocess.Popen(command, cwd=folder, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=subprocess.STDOUT, text=True, start_new_session=True)
        threading.Thread(target=self.read, daemon=True).start()

    def read(self):
        for line in self.process.stdout:
            self.lines.put(line.rstrip())

    def next_line(self):
        try:
            return self.lines.get(timeout=LONGEST_WAIT)
        except queue.Empty:
            raise Mismatch(f"{self.text.strip()}\nprinted nothing more within {LONGEST_WAIT} seconds") from None

    def wait_for(self, beginning):
        line = self.next_line()
        while not line.startswith(beginning):
            line = self.next_line()
        return line

    def type(self, text):
        self.process.stdin.write(text)
        self.process.stdin.flush()

    def stop(self):
        """The simulated device ends by a command; everything else, together with what it has started, by a signal."""
        if self.process.poll() is None and not self.text.lstrip().startswith(("morquil-sim", "bin\\morquil-sim")):
            os.killpg(self.process.pid, 15)
        try:
            self.process.communicate("quit\n", timeout=20)
        except (subprocess.TimeoutExpired, BrokenPipeError, ValueError):
            self.process.kill()


class Follower:
    """Carries out blocks, in one folder. `command` makes the arguments of a process from a block's text."""

    def __init__(self, folder, command):
        self.folder, self.command = folder, command
        self.running, self.exports, self.done = [], "", 0

    def follow_all(self, blocks):
        try:
            for block in blocks:
                self.follow(block)
        finally:
            for background in reversed(self.running):
                background.stop()

    def follow(self, block):
        if block.argument("not run:") or block.argument("by hand:"):
            return
        file = re.match(r"file: ([\w.-]+)", block.note)
        if file:
            with open(os.path.join(self.folder, file[1]), "w", encoding="utf-8") as target:
                target.write(block.text)
        elif block.argument("in the background until:"):
            self.start(block, block.argument("in the background until:"))
        elif block.argument("typed into:"):
            self.background(block.argument("typed into:")).type(block.text)
        elif block.argument("printed by:"):
            printed_by = self.background(block.argument("printed by:"))
            lines = block.text.splitlines()
            self.compare(block.note, lines, [printed_by.next_line() for _ in lines], False)
        else:
            self.run(block)
        self.done += 1

    def background(self, beginning):
        """The latest command in the background that begins so."""
        return next(found for found in reversed(self.running) if found.text.lstrip().startswith(beginning))

    def start(self, block, awaited):
        background = Background(self.command(self.exports + block.text), block.text, self.folder)
        self.running.append(background)
        line = background.wait_for(awaited)
        if block.expected:
            self.compare(block.text, block.expected, [line], False)

    def run(self, block):
        result = subprocess.run(self.command(self.exports + block.text), cwd=self.folder, stdin=subprocess.DEVNULL,
                                text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=LONGEST_SECONDS)
        printed = result.stdout.splitlines()
        if result.returncode != 0:
            raise Mismatch("\n".join([block.text.strip(), f"exit status {result.returncode}, printed:", *printed[-40:]]))
        if block.expected:
            self.compare(block.text, block.expected, printed, block.only_end)
        self.exports += "".join(line + "\n" for line in block.text.splitlines() if line.startswith("export "))

    @staticmethod
    def compare(what, expected, printed, only_end):
        shown = printed[len(printed) - len(expected):] if only_end and len(printed) > len(expected) else printed
        if without_times(shown) != without_times(expected):
            raise Mismatch("\n".join([what.strip(), "printed:", *printed[-40:], "instead of:", *expected]))
