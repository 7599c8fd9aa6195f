#!/usr/bin/env python3
"""Runs the benchmarks and makes the table of figures. README.md describes runs, figures and results.

usage: report.py --native DIR --wine DIR --results DIR [--gate] [--no-run] [--only RUN...]
"""
import argparse
import contextlib
import datetime
import json
import os
import pathlib
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent
# Options for Google Benchmark; our own loops ignore them.
ARGUMENTS = ["--benchmark_enable_random_interleaving=true", "--benchmark_repetitions=21",
             "--benchmark_min_time=0.03", "--benchmark_report_aggregates_only=true", "--benchmark_out_format=json"]
NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def subjects():
    """All runs and all figures, in the order of their files."""
    files = [json.loads(path.read_text()) for path in sorted((HERE / "figures").glob("*.json"))]
    return ([run for file in files for run in file["runs"]],
            [figure for file in files for figure in file["figures"]])


def pin(run):
    return ["taskset", "--cpu-list", str(max(os.sched_getaffinity(0)))] if run.get("pinned") else []


@contextlib.contextmanager
def device(run, options):
    """Runs the device of the benchmarks, for a run that needs it."""
    if not run.get("device"):
        yield
        return
    with subprocess.Popen(pin(run) + [str(options.native / "bench" / "morquil-bench-device")]) as process:
        yield
        process.terminate()


def command(run, options, result):
    folder, suffix, starter = (options.native, "", []) if run["system"] == "native" else (options.wine, ".exe", ["wine"])
    if "script" in run:
        return pin(run) + [sys.executable, str(HERE / run["script"]), str(folder), f"--benchmark_out={result}"]
    program = folder / "bench" / f"morquil-bench-{run['program']}{suffix}"
    return pin(run) + starter + [str(program), f"--benchmark_out={result}"] + ARGUMENTS + run.get("arguments", [])


def start(run, options):
    """Runs a program; its output is kept next to its results."""
    result = options.results / f"{run['name']}.json"
    result.unlink(missing_ok=True)
    print(f"  {run['name']} ...", flush=True)
    with open(options.results / f"{run['name']}.log", "w") as log, device(run, options):
        code = subprocess.run(command(run, options, result), stdout=log, stderr=subprocess.STDOUT,
                              stdin=subprocess.DEVNULL).returncode
    if code != 0:
        print(f"  {run['name']} failed with exit status {code}; see {log.name}", file=sys.stderr)


def medians(run, options):
    """The medians of a run by name: nanoseconds, or plain numbers. Empty if it has not run."""
    result = options.results / f"{run['name']}.json"
    if not result.exists():
        return {}
    found = {}
    for entry in json.loads(result.read_text())["benchmarks"]:
        if entry.get("aggregate_name") == "median":
            unit = NANOSECONDS.get(entry["time_unit"], 1)
            found[entry["run_name"]] = {"real": entry["real_time"] * unit, "cpu": entry["cpu_time"] * unit}
    return found


def measure(figure, results):
    """The figure with its measured value, which is None if a result is missing."""
    of, per = results.get(figure["of"]), results.get(figure.get("per"))
    clock = figure.get("clock", "real")
    if of is None or ("per" in figure and per is None):
        return dict(figure, measured=None, met=False, passesGate=False)
    value = of[clock] / (per[clock] if per else NANOSECONDS[figure["unit"]] if figure.get("unit") in NANOSECONDS else 1)
    least = "atLeast" in figure
    reaches = (lambda limit: value >= limit) if least else (lambda limit: value <= limit)
    return dict(figure, measured=round(value, 3), met=reaches(figure["atLeast" if least else "atMost"]),
                passesGate=reaches(figure["gate"]))


def goal(figure):
    return f"at least {figure['atLeast']:g}" if "atLeast" in figure else f"at most {figure['atMost']:g}"


def table(figures):
    width = max(len(figure["what"]) for figure in figures)
    lines = [f"{'figure':{width}}  {'goal':>14}  {'measured':>12}  met"]
    for figure in figures:
        measured = "missing" if figure["measured"] is None else f"{figure['measured']:.4g} {figure.get('unit', 'x')}"
        verdict = "yes" if figure["met"] else "no" if figure["passesGate"] else "NO, misses its gate"
        lines.append(f"{figure['what']:{width}}  {goal(figure):>14}  {measured:>12}  {verdict}")
    return "\n".join(lines)


def page(figures):
    """The same for a README."""
    lines = ["| Figure | Goal | Measured | Met |", "|---|---|---|---|"]
    for figure in figures:
        unit = " " + figure["unit"] if figure.get("unit") else ""
        measured = "missing" if figure["measured"] is None else f"{figure['measured']:.3g}{unit}"
        lines.append(f"| {figure['what']} | {goal(figure)}{unit} | {measured} | {'yes' if figure['met'] else '**no**'} |")
    return "\n".join(lines) + "\n"


def parse_options():
    parser = argparse.ArgumentParser(description="Runs the benchmarks and makes the table of figures.")
    parser.add_argument("--native", type=pathlib.Path, required=True, help="the build folder of this system")
    parser.add_argument("--wine", type=pathlib.Path, required=True, help="the build folder for Wine")
    parser.add_argument("--results", type=pathlib.Path, required=True, help="where results are kept")
    parser.add_argument("--gate", action="store_true", help="fail if a gate is missed")
    parser.add_argument("--no-run", action="store_true", help="make the table from earlier results")
    parser.add_argument("--only", nargs="+", default=[], metavar="RUN", help="only these runs")
    return parser.parse_args()


def main():
    options = parse_options()
    options.results.mkdir(parents=True, exist_ok=True)
    runs, figures = subjects()
    if options.only:
        runs = [run for run in runs if run["name"] in options.only]
        figures = [figure for figure in figures if figure["run"] in options.only]
    for run in runs if not options.no_run else []:
        start(run, options)
    results = {run["name"]: medians(run, options) for run in runs}
    figures = [measure(figure, results[figure["run"]]) for figure in figures]
    print("\n" + table(figures))
    (options.results / "figures.json").write_text(json.dumps(
        {"date": datetime.date.today().isoformat(), "figures": figures}, indent=1) + "\n")
    (options.results / "figures.md").write_text(page(figures))
    print(f"\n{sum(figure['met'] for figure in figures)} of {len(figures)} goals met; "
          f"all results are in {options.results}")
    if any(figure["measured"] is None for figure in figures):
        return 1
    return 1 if options.gate and not all(figure["passesGate"] for figure in figures) else 0


if __name__ == "__main__":
    sys.exit(main())
