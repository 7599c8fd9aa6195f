#!/usr/bin/env python3
"""Runs an example as its README says, against its own simulated device, and compares what it prints with the README.

    scripts/run-example.py README SIMULATOR PROGRAM...

SIMULATOR and PROGRAM... are commands; the program gets the arguments of the README's command. Lines of the README's
console blocks must appear in their order, and nothing else, unless the README's command picks lines with a filter. "Type
`...` where morquil-sim runs" is typed there once all lines before it have appeared. Exit status 0: everything appeared.
"""
import os
import random
import re
import shlex
import subprocess
import sys
import threading

LONGEST_SECONDS = 120
README_ADDRESS = "127.0.0.1"


def steps_of(readme):
    """The arguments of the command, whether its output is filtered, and the steps in order: ("expect", line) and
    ("type", command)."""
    arguments, is_filtered, steps, in_console = None, False, [], False
    for line in readme.splitlines():
        if line.startswith("```"):
            in_console = line == "```console"
        elif in_console and re.match(r"[$>] ", line):
            command, is_filtered, _ = line[2:].partition("|")
            arguments = shlex.split(command, posix=False)[1:]
        elif in_console:
            steps.append(("expect", line))
        elif typed := re.match(r"Type `(.+)` where morquil-sim runs", line):
            steps.append(("type", typed[1]))
    if arguments is None or not steps:
        sys.exit("the README holds no console block with a command and its output")
    return arguments, bool(is_filtered), steps


def start_simulator(command):
    """A simulated device at an address that is not in use."""
    for _ in range(20):
        address = "127." + ".".join(str(random.randint(2, 251)) for _ in range(3))
        process = subprocess.Popen([*shlex.split(command), "--address", address], stdin=subprocess.PIPE,
                                   stdout=subprocess.PIPE, text=True)
        if process.stdout.readline().startswith("listening on"):
            # Discard the front panel's answers; a full pipe would block the device.
            threading.Thread(target=process.stdout.read, daemon=True).start()
            return process, address
        process.wait()
    sys.exit(f"{command} does not listen")


def normalised(line):
    return re.sub(r"\(\d+ ms\)", "(N ms)", line.rstrip("\r\n"))


def run(steps, is_filtered, program, simulator):
    """Goes through the steps; returns the problem, or None."""
    remaining = list(steps)
    seen = []

    def type_pending_commands():
        while remaining and remaining[0][0] == "type":
            simulator.stdin.write(remaining.pop(0)[1] + "\n")
            simulator.stdin.flush()

    prefixes = tuple({re.match(r"\S+", line)[0] for kind, line in steps if kind == "expect"}) if is_filtered else ("",)
    for raw in program.stdout:
        line = normalised(raw.decode("utf-8", "replace"))
        if not line.startswith(prefixes):
            continue
        seen.append(line)
        if remaining and line == normalised(remaining[0][1]):
            remaining.pop(0)
            type_pending_commands()
        elif not is_filtered or line.startswith("host:"):
            return f"not in the README at this place: {line}"
    if program.wait() != 0:
        return f"exit status {program.returncode}, after: {seen[-1:]}"
    return f"did not appear: {remaining[0][1]}" if remaining else None


def main():
    readme, simulator_command, *program_command = sys.argv[1:]
    with open(readme, encoding="utf-8") as file:
        arguments, is_filtered, steps = steps_of(file.read())
    simulator, address = start_simulator(simulator_command)
    try:
        arguments = [argument.replace(README_ADDRESS, address) for argument in arguments]
        steps = [(kind, text.replace(README_ADDRESS, address)) for kind, text in steps]
        program = subprocess.Popen([*program_command, *arguments], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE)
        watchdog = threading.Timer(LONGEST_SECONDS, program.kill)
        watchdog.start()
        problem = run(steps, is_filtered, program, simulator)
        watchdog.cancel()
        program.kill()
        program.wait()
    finally:
        simulator.terminate()
        simulator.wait()
    if problem:
        sys.exit(f"{os.path.relpath(readme)}: {problem}")


if __name__ == "__main__":
    main()
