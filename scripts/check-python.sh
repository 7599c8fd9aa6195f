#!/usr/bin/env bash
# Tests the Python package with the library and the simulated device of a build: its tests, how many of its lines they
# run, and its types. It needs the package in the build folder (target MorquilPython).
#   scripts/check-python.sh [BUILD [--long]]    BUILD is build/native unless given
# --long connects 10,000 times, receives a million events, restarts a device and recovers 1,000 times each, and also
# checks the types with pyright if npm can install it.
set -euo pipefail
cd "$(dirname "$0")/.."

build=$(realpath "${1:-build/native}")
work=$build/results/python
mkdir -p "$work"
export PYTHONPATH=$build/bindings/python/package PYTHONDONTWRITEBYTECODE=1 COVERAGE_FILE=$work/coverage
export MORQUIL_LIBRARY=$build/library/module/libMorquilAPI.so.1 MORQUIL_SIM=$build/tools/simulator/morquil-sim
export MORQUIL_HEADERS=$build/api/MorquilAPI.h:$build/api/MorquilDelivery.h
export HYPOTHESIS_STORAGE_DIRECTORY=$work/hypothesis
python=/usr/bin/python3
failed=0

# check NAME COMMAND...: says whether a command succeeds, and what it prints if not.
check() {
    if "${@:2}" > "$work/$1.log" 2>&1; then
        echo "  ok      $1"
    else
        cat "$work/$1.log"
        echo "  FAILED  $1"
        failed=1
    fi
}

# The programs on the pages, as files.
extract_snippets() {
    rm -rf "$work/snippets"
    mkdir -p "$work/snippets"
    "$python" - "$work/snippets" docs/guides/python.md docs/getting-started/python.md <<'END'
import pathlib
import re
import sys

folder, *pages = map(pathlib.Path, sys.argv[1:])
for page in pages:
    for number, text in enumerate(re.findall(r"^```python\n(.*?)^```$", page.read_text(), re.M | re.S)):
        (folder / f"{page.parent.name}_{number}.py".replace("-", "_")).write_text('address = "127.0.0.1"\n' + text)
END
}

run_mypy() {
    local file
    "$python" -m mypy --strict --cache-dir="$work/mypy" "$PYTHONPATH/morquil" tests/python/*.py
    for file in "$work"/snippets/*.py; do
        "$python" -m mypy --strict --cache-dir="$work/mypy" "$file"
    done
}

run_pyright() {
    local folder=$work/pyright
    mkdir -p "$folder"
    npm install --silent --no-audit --no-fund --prefix "$folder/tool" pyright
    rm -rf "$folder/checked"
    mkdir "$folder/checked"
    cp -r "$PYTHONPATH/morquil" "$PYTHONPATH/pyproject.toml" tests/python "$work/snippets" "$folder/checked/"
    "$folder/tool/node_modules/.bin/pyright" --project "$folder/checked" --pythonpath "$python"
}

# Importing compiled files is what users do, and what is measured.
"$python" -m compileall -q "$PYTHONPATH/morquil"
tests=("$python" -m pytest -q -p no:cacheprovider --checks tests/python)
if [ "${2:-}" = --long ]; then
    export MORQUIL_LONG=1
fi
"$python" -m coverage run --source="$PYTHONPATH/morquil" -m pytest -q -p no:cacheprovider --checks -m "not cost and not long" \
    tests/python || failed=1
"${tests[@]}" -m "cost or long" || failed=1
check lines "$python" -m coverage report -m --rcfile=tests/python/coverage.ini
extract_snippets
check types run_mypy
if [ "${2:-}" = --long ]; then
    if command -v npm > /dev/null; then
        check types-pyright run_pyright
    else
        echo "  skipped types-pyright: npm is not installed"
    fi
fi
exit "$failed"
