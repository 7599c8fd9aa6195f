#!/usr/bin/env bash
# Installs what is missing, builds every flavour and runs all tests; ends with the line "N passed, N failed".
set -euo pipefail
cd "$(dirname "$0")"
. scripts/flavours.sh

passed=0
failed=0

# run_tests NAME COMMAND...: runs a test program; all that it says is kept.
run_tests() {
    local log=build/logs/test-$1.log
    shift
    timeout 900 "$@" > "$log" 2>&1 < /dev/null || echo "exit status $?" >> "$log"
}

# report NAME: adds the results of a test program to the sums. One that died, or that ran nothing, has failed, too.
report() {
    local log=build/logs/test-$1.log good bad
    good=$(grep -aoE '^\[  PASSED  \] [0-9]+' "$log" | grep -oE '[0-9]+' || echo 0)
    bad=$(grep -aoE '^\[  FAILED  \] [0-9]+ tests?, listed' "$log" | grep -oE '[0-9]+' || echo 0)
    if [ "$bad" -eq 0 ] && { [ "$good" -eq 0 ] || grep -q '^exit status' "$log"; }; then
        bad=1
    fi
    passed=$((passed + good))
    failed=$((failed + bad))
    printf '  %-18s %5s passed, %s failed\n' "$1" "$good" "$bad"
    if [ "$bad" -ne 0 ]; then
        grep -aE 'Failure|FAILED|Expected|Which is|Actual|ERROR|SUMMARY|error:|^exit status' "$log" | head -n 40 || true
        echo "  the whole log is $log"
    fi
}

# test_flavour FLAVOUR "PROGRAM..." COMMAND...: runs test programs of a flavour, through COMMAND where one is given.
test_flavour() {
    local program
    for program in $2; do
        run_tests "$1-$program" "${@:3}" "build/$1/tests/morquil-$program-tests$suffix"
        report "$1-$program"
    done
}

# What one thread does by itself needs no look for races.
readonly programs="protocol unit allocation library cpp simulator command"
readonly threaded_programs="unit library cpp"
threaded_targets() {
    printf 'morquil-%s-tests ' $threaded_programs
}

scripts/install-dependencies.sh

echo "Building for Linux, for Windows, and with sanitizers ..."
build native -DMORQUIL_TESTS=ON
# The time-outs in real time take minutes, and no processor: they run beside the other builds.
MORQUIL_SLOW_TESTS=1 run_tests native-slow build/native/tests/morquil-library-tests --gtest_filter='Slow.*' &
slow_tests=$!
build windows -DMORQUIL_TESTS=ON -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake
build asan -DMORQUIL_TESTS=ON -DMORQUIL_SANITIZE=address,undefined
# shellcheck disable=SC2046  # one word per target
build tsan -DMORQUIL_TESTS=ON -DMORQUIL_SANITIZE=thread -- $(threaded_targets)

echo "Testing ..."
suffix=""
test_flavour native "$programs"
test_flavour asan "$programs"
test_flavour tsan "$threaded_programs"
suffix=.exe
start_wine
trap stop_wine EXIT
test_flavour windows "$programs" wine
wait "$slow_tests"
report native-slow

echo
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
