#!/usr/bin/env bash
# Says how many lines of the library the native tests run; build/coverage/html shows which ones. Fails below 95 % of
# the lines of library/protocol/, library/transport/ or library/device/. What cannot be reached is marked in the code,
# with its reason. The few files for Windows alone cannot be counted here; the tests of the transport that run on Linux
# run on them under Wine.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/flavours.sh

readonly programs="protocol feature unit allocation simulation library"
readonly least=95
targets() { printf 'morquil-%s-tests ' $programs; }

scripts/install-dependencies.sh coverage
# The counters of several threads are added atomically; without optimisation every line stands for itself.
# shellcheck disable=SC2046  # one word per target
build coverage -DMORQUIL_TESTS=ON -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS="--coverage -fprofile-update=atomic" \
    -- $(targets)
find build/coverage -name '*.gcda' -delete
for program in $programs; do
    # Every split says the same of the lines.
    MORQUIL_SPLITS=29 run_logged "build/logs/coverage-$program.log" "build/coverage/tests/morquil-$program-tests" < /dev/null
done

mkdir -p build/coverage/html
status=0
for folder in protocol transport device; do
    log=build/logs/coverage-$folder.txt
    # Keys are asked for their names while compiling only.
    gcovr --root . --filter "library/$folder/" --exclude-throw-branches \
        --exclude-lines-by-pattern '.*constexpr .* Names\(\) const.*' --fail-under-line "$least" --txt - \
        --html-details "build/coverage/html/$folder.html" --print-summary build/coverage > "$log" 2>&1 || status=1
    printf '%-10s %s\n' "$folder" "$(grep '^lines' "$log")"
done
exit "$status"
