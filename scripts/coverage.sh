#!/usr/bin/env bash
# Says how much of the library the native tests run, line by line in build/coverage/html. Fails below 95 % of the lines of
# protocol/, transport/ or device/.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/flavours.sh

readonly programs="protocol unit allocation library"
# What every test of one second runs; the time-outs in real time add nothing.
targets() { printf 'morquil-%s-tests ' $programs; }

command -v gcovr > /dev/null || scripts/install-dependencies.sh
# shellcheck disable=SC2046  # one word per target
build coverage -DMORQUIL_TESTS=ON -DCMAKE_BUILD_TYPE=Debug -DMORQUIL_COVERAGE=ON -- $(targets)
find build/coverage -name '*.gcda' -delete
for program in $programs; do
    "build/coverage/tests/morquil-$program-tests" > "build/logs/coverage-$program.log" 2>&1 < /dev/null
done

mkdir -p build/coverage/html
status=0
for folder in protocol transport device; do
    printf '%-10s' "$folder"
    gcovr --root . --filter "$folder/" --object-directory build/coverage --exclude-throw-branches \
        --fail-under-line 95 --html-details "build/coverage/html/$folder.html" --print-summary build/coverage \
        > "build/logs/coverage-$folder.txt" || status=1
    grep '^lines' "build/logs/coverage-$folder.txt"
done
exit $status
