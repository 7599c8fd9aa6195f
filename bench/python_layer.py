#!/usr/bin/env python3
"""Measures the Python package: its getters, and setting a value until the device has confirmed it, in turn with the C++
layer (morquil-bench-apply) on the same device.

    python_layer.py BUILD --benchmark_out=FILE

BUILD has the library, the package and the benchmarks. morquil-bench-device is running. README.md describes the results.
"""
import json
import os
import pathlib
import statistics
import subprocess
import sys
import time

ROUNDS, SETS, GETS = 40, 100, 20_000
ADDRESS = "127.98.0.1"  # one of those of morquil-bench-device


def seconds_of(function):
    start = time.perf_counter()
    function()
    return time.perf_counter() - start


def getter(get):
    """The nanoseconds of one call, for each round. The loop itself is taken off."""
    def repeat(call):
        for _ in range(GETS):
            call()

    def nothing():
        pass

    return [(seconds_of(lambda: repeat(get)) - seconds_of(lambda: repeat(nothing))) / GETS * 1e9 for _ in range(ROUNDS)]


def sets(device, program):
    """The microseconds of each set, in Python and in C++."""
    own, other = [], []
    for number in range(ROUNDS):
        for value in range(SETS):
            own.append(1e6 * seconds_of(lambda: device.set("proc-amp.gain", (value + number) % 50)))
        program.stdin.write(f"{SETS}\n")
        program.stdin.flush()
        other += map(float, program.stdout.readline().split())
    return own, other


def entry(name, values, unit):
    median = statistics.median(values)
    return {"name": f"{name}_median", "run_name": name, "run_type": "aggregate", "aggregate_name": "median",
            "real_time": median, "cpu_time": median, "time_unit": unit}


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    result = next(argument.partition("=")[2] for argument in sys.argv if argument.startswith("--benchmark_out="))
    os.environ["MORQUIL_LIBRARY"] = str(build / "library/module/libMorquilAPI.so.1")
    sys.path.insert(0, str(build / "bindings/python/package"))
    import morquil

    pipe = subprocess.PIPE
    with morquil.Device.connect(ADDRESS) as device, \
            subprocess.Popen([build / "bench/morquil-bench-apply", ADDRESS], stdin=pipe, stdout=pipe, text=True) as program:
        amp = device.video_proc_amp
        typed, named = getter(amp.get_gain), getter(lambda: device.get("proc-amp.gain"))
        own, other = sets(device, program)
        program.stdin.close()
    entries = [entry("Get/Typed", typed, "ns"), entry("Get/Named", named, "ns"),
               entry("Set/Python", own, "us"), entry("Set/Cpp", other, "us")]
    pathlib.Path(result).write_text(json.dumps({"benchmarks": entries}))


if __name__ == "__main__":
    main()
