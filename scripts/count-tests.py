#!/usr/bin/env python3
"""Adds up the results of ctest runs, case by case.

    scripts/count-tests.py [--more PASSED FAILED] RUN...

RUN is ctest's result file, for example build/native/results/ctest.xml; --more adds results counted elsewhere. Prints a
line per test program, the failures that it printed, and finally "N passed, N failed". A GoogleTest program writes its
cases to NAME.xml next to RUN; any other test prints "ok" or "FAILED" for each of its checks, or how many inputs it has
replayed. A run that crashed, or that counted nothing, has failed, too. The exit status is 0 only if nothing has failed.
"""
import argparse
import pathlib
import re
import sys
import xml.etree.ElementTree as xml


def count_cases(path):
    suites = xml.parse(path).getroot()
    bad = int(suites.get("failures")) + int(suites.get("errors", 0))
    skipped = sum(1 for case in suites.iter("testcase") if case.get("result") == "skipped")
    return sum(1 for case in suites.iter("testcase") if case.get("status") == "run") - bad - skipped, bad


def count_lines(text):
    replayed = sum(int(number) for number in re.findall(r"(\d+) inputs replayed", text))
    good = len(re.findall(r"^  ok ", text, re.MULTILINE))
    return replayed + good, len(re.findall(r"^  FAILED ", text, re.MULTILINE))


def count_test(test, folder):
    """(passed, failed) of a test that ctest has run."""
    cases = folder / f"{test.get('name')}.xml"
    try:
        good, bad = count_cases(cases) if cases.exists() else count_lines(test.findtext("system-out") or "")
    except xml.ParseError:
        good = bad = 0
    died = test.get("status") != "run" or good + bad == 0
    return good, max(bad, 1 if died else 0)


def print_failures(output):
    """Prints the lines that describe failures, or else the last lines."""
    relevant = [line for line in output.splitlines()
                if re.search(r"Failure|FAILED|Expected|Which is|Actual|ERROR|SUMMARY|error:", line)]
    for line in (relevant or output.splitlines()[-15:])[:40]:
        print(f"    {line}")


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("--more", nargs=2, type=int, default=(0, 0))
    arguments.add_argument("runs", nargs="+")
    options = arguments.parse_args()
    passed, failed = options.more
    for name in options.runs:
        run = pathlib.Path(name)
        tests = list(xml.parse(run).getroot().iter("testcase")) if run.exists() else []
        if not tests:
            print(f"  {name}: nothing has run")
            failed += 1
        for test in tests:
            good, bad = count_test(test, run.parent)
            label = f"{run.parent.parent.name} {test.get('name')}"
            print(f"  {label:34} {good:5} passed, {bad} failed")
            if bad:
                print_failures(test.findtext("system-out") or "")
            passed += good
            failed += bad
    print(f"\n{passed} passed, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
