#!/usr/bin/env bash
# Installs what is missing, builds every flavour and runs all tests; ends with the line "N passed, N failed".
#   ./test.sh          what every change must pass
#   ./test.sh --long   also the time-outs in real time
set -euo pipefail
cd "$(dirname "$0")"
. scripts/flavours.sh

[ "${1:-}" != --long ] || export MORQUIL_SLOW_TESTS=1

passed=0
failed=0

# count_tests NAME COMMAND...: runs a test program and adds its results to the sums.
count_tests() {
    local name=$1 log=build/$1.tests.log status=0
    shift
    timeout 900 "$@" > "$log" 2>&1 < /dev/null || status=$?
    local good bad
    good=$(grep -aoE '^\[  PASSED  \] [0-9]+' "$log" | grep -oE '[0-9]+' || true)
    bad=$(grep -aoE '^\[  FAILED  \] [0-9]+ tests?, listed' "$log" | grep -oE '[0-9]+' || echo 0)
    # A program that died, or that ran nothing, is a failure even if no test said so.
    if { [ "$status" -ne 0 ] && [ "$bad" -eq 0 ]; } || [ -z "$good" ]; then
        bad=$((bad + 1))
    fi
    passed=$((passed + ${good:-0}))
    failed=$((failed + bad))
    printf '%-28s %6s passed  %s failed\n' "$name" "${good:-0}" "$bad"
    if [ "$bad" -ne 0 ]; then
        grep -aE 'Failure|FAILED|Expected|Which is|Actual|ERROR|SUMMARY|error:' "$log" | head -40 || true
        echo "    exit status $status; the whole log is $log"
    fi
}

scripts/install-dependencies.sh

echo "Building (native, windows, address and thread sanitizers) ..."
build native
build windows -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake
build asan -DMORQUIL_SANITIZE=address,undefined -DMORQUIL_TOOLS=ON
build tsan -DMORQUIL_SANITIZE=thread -DMORQUIL_TOOLS=ON -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_C_COMPILER=clang

echo "Testing ..."
for flavour in native asan tsan; do
    count_tests "$flavour-unit" "build/$flavour/tests/morquil-unit-tests"
    count_tests "$flavour-library" "build/$flavour/tests/morquil-library-tests"
done
start_wine
trap stop_wine EXIT
count_tests windows-unit wine build/windows/tests/morquil-unit-tests.exe
count_tests windows-library wine build/windows/tests/morquil-library-tests.exe

echo
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
