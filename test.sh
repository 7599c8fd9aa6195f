#!/usr/bin/env bash
# Installs what is missing, builds every flavour and runs all tests; ends with the line "N passed, N failed".
#   ./test.sh [--long]
# --long also lives 20,000 simulated lives instead of 1,000, and connects 20,000 times (2,000 times under Wine).
set -euo pipefail
cd "$(dirname "$0")"
. scripts/flavours.sh

is_long=""
case "${1:-}" in
    "") ;;
    --long) is_long=yes ;;
    *)
        echo "usage: ./test.sh [--long]" >&2
        exit 2
        ;;
esac

passed=0
failed=0
timeout_per_program=900

# run_tests NAME COMMAND...: runs a test program; all that it says is kept.
run_tests() {
    local log=build/logs/test-$1.log
    shift
    timeout "$timeout_per_program" "$@" > "$log" 2>&1 < /dev/null || echo "exit status $?" >> "$log"
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

# replay_findings FLAVOUR: what the fuzz targets have learnt and found, input by input.
replay_findings() {
    local log=build/logs/test-$1-fuzz.log good bad=0
    ctest --test-dir "build/$1" -R morquil-fuzz-replay --verbose > "$log" 2>&1 || bad=1
    good=$(grep -oE '[0-9]+ inputs replayed' "$log" | awk '{ sum += $1 } END { print sum + 0 }')
    [ "$good" -gt 0 ] || bad=1
    passed=$((passed + good))
    failed=$((failed + bad))
    printf '  %-18s %5s passed, %s failed\n' "$1-fuzz" "$good" "$bad"
    [ "$bad" -eq 0 ] || tail -n 30 "$log"
}

# look_at_libraries: protection, exports and imports of what hosts load.
look_at_libraries() {
    local log=build/logs/test-hardening.log good bad
    scripts/check-hardening.sh > "$log" 2>&1 || true
    good=$(grep -c '^  ok ' "$log")
    bad=$(grep -c '^  FAILED ' "$log" || true)
    [ "$good" -gt 0 ] || bad=1
    passed=$((passed + good))
    failed=$((failed + bad))
    printf '  %-18s %5s passed, %s failed\n' hardening "$good" "$bad"
    [ "$bad" -eq 0 ] || grep -A1 'FAILED' "$log"
}

readonly programs="protocol unit allocation simulation library cpp simulator command"
# What one thread does by itself needs no look for races.
readonly threaded_programs="unit"
# What hosts load, and what foreign bytes reach first; the tools around it are tested without sanitizers as well.
readonly sanitized_programs="protocol unit allocation simulation library cpp"
targets_of() {
    printf 'morquil-%s-tests ' $1
}

if [ -n "$is_long" ]; then
    export MORQUIL_SEEDS=20000
    timeout_per_program=7200
fi

# cycles FLAVOUR COUNT COMMAND...: a host that connects and disconnects for weeks.
cycles() {
    [ -n "$is_long" ] || return 0
    MORQUIL_CYCLES=$2 run_tests "$1-cycles" "${@:3}" "build/$1/tests/morquil-library-tests$suffix" \
        --gtest_filter='Cycles.*'
    report "$1-cycles"
}

scripts/install-dependencies.sh

# Sanitizers slow down compilers as well; these flavours are for finding faults, not for speed.
readonly lightly=-DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O1 -g1 -DNDEBUG"

echo "Building for Linux, for Windows, and with sanitizers ..."
build native -DMORQUIL_TESTS=ON
# The time-outs in real time take minutes, and no processor: they run beside the other builds.
MORQUIL_SLOW_TESTS=1 run_tests native-slow build/native/tests/morquil-library-tests --gtest_filter='Slow.*' &
slow_tests=$!
build windows -DMORQUIL_TESTS=ON -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake
build windows-ubsan -DMORQUIL_TESTS=OFF -DMORQUIL_TOOLS=OFF -DMORQUIL_SANITIZE=undefined \
    -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake -- MorquilAPI
# shellcheck disable=SC2046  # one word per target
build asan "$lightly" -DMORQUIL_TESTS=ON -DMORQUIL_FUZZ=ON -DMORQUIL_SANITIZE=address,undefined \
    -- $(targets_of "$sanitized_programs") morquil-fuzz-replay
# shellcheck disable=SC2046
build tsan "$lightly" -DMORQUIL_TESTS=ON -DMORQUIL_SANITIZE=thread -- $(targets_of "$threaded_programs")

echo "Testing ..."
suffix=""
test_flavour native "$programs"
cycles native 20000
# Where every step takes longer, some of the splits are enough: the native run takes them all.
MORQUIL_SPLITS=7 test_flavour asan "$sanitized_programs"
replay_findings asan
test_flavour tsan "$threaded_programs"
look_at_libraries
suffix=.exe
start_wine
trap stop_wine EXIT
MORQUIL_SPLITS=29 test_flavour windows "$programs" wine
cycles windows 2000 wine
# The same tests, on a library that ends the program where something is undefined.
MORQUIL_TESTED_LIBRARY=$(winepath -w build/windows-ubsan/module/MorquilAPI.dll) \
    run_tests windows-ubsan wine build/windows/tests/morquil-library-tests.exe
report windows-ubsan
wait "$slow_tests"
report native-slow

echo
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
