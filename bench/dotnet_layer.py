#!/usr/bin/env python3
"""Measures setting a value until the device has confirmed it, through the C# layer under Mono (apply.cs), in turn with the
C++ layer (apply.cpp) on the same device.

    dotnet_layer.py BUILD --benchmark_out=FILE

BUILD has the library, the assembly and the benchmarks. morquil-bench-device is running. README.md describes the results.
"""
import contextlib
import json
import os
import pathlib
import socket
import statistics
import subprocess
import sys
import time

ROUNDS, SETS = 40, 100
ADDRESS = "127.98.0.1"  # one of those of morquil-bench-device
WARM_UP = 500  # until Mono has compiled what runs


def wait_for_device():
    deadline = time.monotonic() + 30
    while True:
        try:
            socket.create_connection((ADDRESS, 9800)).close()
            return
        except ConnectionRefusedError:
            if time.monotonic() > deadline:
                raise
            time.sleep(0.05)


@contextlib.contextmanager
def setter(*command):
    """Starts a program that sets a value. Gives what has it set so many times, and returns the microseconds of each."""
    pipe = subprocess.PIPE
    with subprocess.Popen(command, stdin=pipe, stdout=pipe, text=True) as program:
        def set_values(count):
            program.stdin.write(f"{count}\n")
            program.stdin.flush()
            return list(map(float, program.stdout.readline().split()))

        set_values(WARM_UP)
        yield set_values
        program.stdin.close()


def entry(name, values):
    median = statistics.median(values)
    return {"name": f"{name}_median", "run_name": name, "run_type": "aggregate", "aggregate_name": "median",
            "real_time": median, "cpu_time": median, "time_unit": "us"}


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    result = next(argument.partition("=")[2] for argument in sys.argv if argument.startswith("--benchmark_out="))
    os.environ["MORQUIL_LIBRARY"] = str(build / "library/module/libMorquilAPI.so.1")
    times = {"Set/Dotnet": [], "Set/DotnetAsync": [], "Set/Cpp": []}
    wait_for_device()
    program = str(build / "bench/dotnet/apply.exe")
    with setter("mono", program, ADDRESS) as blocking, setter("mono", program, ADDRESS, "async") as awaiting, \
            setter(str(build / "bench/morquil-bench-apply"), ADDRESS) as other:
        for _ in range(ROUNDS):
            for name, set_values in zip(times, (blocking, awaiting, other)):
                times[name] += set_values(SETS)
    pathlib.Path(result).write_text(json.dumps({"benchmarks": [entry(*each) for each in times.items()]}))


if __name__ == "__main__":
    main()
