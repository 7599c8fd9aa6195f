#!/usr/bin/env bash
# Reports how many lines of the library the native tests run; build/coverage/html shows which ones. Fails below 95 % of
# the lines of library/protocol/, library/transport/ or library/device/. Unreachable lines are marked in the code, with
# the reason. The few files for Windows only cannot be measured here; under Wine the same tests of the transport cover
# them.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/flavours.sh

readonly least=95

scripts/install-dependencies.sh coverage
build coverage
find build/coverage -name '*.gcda' -delete
run_logged build/logs/coverage.log ctest --preset coverage < /dev/null

mkdir -p build/coverage/html
status=0
for folder in protocol transport device; do
    log=build/logs/coverage-$folder.txt
    # Names() of keys runs only at compile time.
    gcovr --root . --filter "library/$folder/" --exclude-throw-branches \
        --exclude-lines-by-pattern '.*constexpr .* Names\(\) const.*' --fail-under-line "$least" --txt - \
        --html-details "build/coverage/html/$folder.html" --print-summary build/coverage > "$log" 2>&1 || status=1
    printf '%-10s %s\n' "$folder" "$(grep '^lines' "$log")"
done
exit "$status"
