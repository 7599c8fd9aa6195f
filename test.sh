#!/usr/bin/env bash
# Installs what is missing, builds every flavour and runs all tests; ends with the line "N passed, N failed".
#   ./test.sh [--long]
# --long also runs the tools' tests with sanitizers, lives 20,000 simulated lives instead of 1,000, connects 20,000
# times (2,000 times under Wine), makes the packages, installs them elsewhere and builds the examples against them, and
# follows the quick start.
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

# run_flavour FLAVOUR "PROGRAM..." COMMAND...: runs test programs of a flavour, through COMMAND where one is given.
run_flavour() {
    local program suffix=""
    [ $# -eq 2 ] || suffix=.exe
    for program in $2; do
        run_tests "$1-$program" "${@:3}" "build/$1/tests/morquil-$program-tests$suffix"
    done
}

# run_cycles FLAVOUR COUNT PROGRAM...: a host that connects and disconnects for weeks.
run_cycles() {
    [ -z "$is_long" ] || MORQUIL_CYCLES=$2 run_tests "$1-cycles" "${@:3}" --gtest_filter='Cycles.*'
}

# report_flavour FLAVOUR "PROGRAM..."
report_flavour() {
    local program
    for program in $2; do
        report "$1-$program"
    done
}

# report_replay FLAVOUR: what the fuzz targets have learnt and found, input by input.
report_replay() {
    local log=build/logs/test-$1-fuzz.log good bad=0
    good=$(grep -oE '[0-9]+ inputs replayed' "$log" | awk '{ sum += $1 } END { print sum + 0 }')
    if [ "$good" -eq 0 ] || grep -q '^exit status' "$log"; then
        bad=1
        tail -n 30 "$log"
    fi
    passed=$((passed + good))
    failed=$((failed + bad))
    printf '  %-18s %5s passed, %s failed\n' "$1-fuzz" "$good" "$bad"
}

# report_checks NAME: the same for a script that says "ok" or "FAILED" of each thing that it has looked at.
report_checks() {
    local log=build/logs/test-$1.log good bad
    good=$(grep -c '^  ok ' "$log" || true)
    bad=$(grep -c '^  FAILED ' "$log" || true)
    if [ "$bad" -eq 0 ] && { [ "$good" -eq 0 ] || grep -q '^exit status' "$log"; }; then
        bad=1
    fi
    passed=$((passed + good))
    failed=$((failed + bad))
    printf '  %-18s %5s passed, %s failed\n' "$1" "$good" "$bad"
    [ "$bad" -eq 0 ] || grep -A15 -E '^  FAILED|^exit status' "$log" || true
}

readonly programs="protocol feature unit allocation simulation library cpp simulator command"
# The documentation is made natively only.
readonly native_programs="$programs docs"
# What one thread does by itself needs no look for races; the simulation runs one thread at a time.
threaded_programs="unit allocation library cpp"
# What hosts load, and what foreign bytes reach first; the tools around it take too long to build every time.
sanitized_programs="protocol feature unit allocation simulation library cpp"
targets_of() {
    printf 'morquil-%s-tests ' $1
}

if [ -n "$is_long" ]; then
    threaded_programs="$threaded_programs protocol feature simulation"
    sanitized_programs=$programs
    export MORQUIL_SEEDS=20000
    timeout_per_program=7200
fi

scripts/install-dependencies.sh test

# Sanitizers slow down compilers as well; these flavours are for finding faults, not for speed.
readonly lightly=-DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O1 -g1 -DNDEBUG"
# The native flavour compiles every file by itself; that is enough.
readonly joined=-DMORQUIL_JOIN_TESTS=ON

echo "Building for Linux, for Windows, and with sanitizers ..."
build native -DMORQUIL_TESTS=ON
# The time-outs in real time take minutes, and no processor: they run beside the other builds.
MORQUIL_SLOW_TESTS=1 run_tests native-slow build/native/tests/morquil-library-tests --gtest_filter='Slow.*' &
slow_tests=$!
build windows -DMORQUIL_TESTS=ON $joined -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake
build windows-ubsan "$lightly" -DMORQUIL_TESTS=OFF -DMORQUIL_TOOLS=OFF -DMORQUIL_SANITIZE=undefined \
    -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake -- MorquilAPI
# The other compiler also proves that no guarded member is touched without its lock.
# shellcheck disable=SC2046  # one word per target
build asan -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ "$lightly" \
    -DMORQUIL_TESTS=ON $joined -DMORQUIL_FUZZ=ON -DMORQUIL_SANITIZE=address,undefined \
    -- $(targets_of "$sanitized_programs") morquil-fuzz-replay
# This sanitizer does not follow the fences of the simulated device's network library, which has locks beside them.
# shellcheck disable=SC2046
build tsan "$lightly" -DCMAKE_CXX_FLAGS=-Wno-tsan -DMORQUIL_TESTS=ON $joined -DMORQUIL_SANITIZE=thread \
    -- $(targets_of "$threaded_programs")

test_natively() {
    run_flavour native "$native_programs"
    run_tests native-examples scripts/check-examples.sh native
    run_tests documentation scripts/build-docs.sh build/native
    run_cycles native 20000 build/native/tests/morquil-library-tests
    # Where every step takes longer, some of the splits are enough: the native run takes them all.
    MORQUIL_SPLITS=7 run_flavour asan "$sanitized_programs"
    run_tests asan-fuzz ctest --test-dir build/asan -R morquil-fuzz-replay --verbose
    run_flavour tsan "$threaded_programs"
    run_tests hardening scripts/check-hardening.sh
    run_tests format scripts/check-style.sh format
}

test_under_wine() {
    MORQUIL_SPLITS=29 run_flavour windows "$programs" wine
    run_tests windows-examples scripts/check-examples.sh windows
    run_cycles windows 2000 wine build/windows/tests/morquil-library-tests.exe
    # The same tests, on a library that ends the program where something is undefined.
    MORQUIL_TESTED_LIBRARY=$(winepath -w build/windows-ubsan/library/module/MorquilAPI.dll) \
        run_tests windows-ubsan wine build/windows/tests/morquil-library-tests.exe
}

echo "Testing ..."
use_wine
# Wine waits more than it works: beside it there is a processor for the others.
test_natively &
native_tests=$!
test_under_wine
wait "$native_tests"

report_flavour native "$native_programs"
report_checks native-examples
report_checks documentation
[ -z "$is_long" ] || report native-cycles
report_flavour asan "$sanitized_programs"
report_replay asan
report_flavour tsan "$threaded_programs"
report_checks hardening
report_checks format
report_flavour windows "$programs"
report_checks windows-examples
[ -z "$is_long" ] || report windows-cycles
report windows-ubsan
wait "$slow_tests"
report native-slow
if [ -n "$is_long" ]; then
    run_tests packaging scripts/package.sh
    report_checks packaging
    for system in debian windows; do
        run_tests "$system-packages" scripts/check-packages.sh "$system"
        report_checks "$system-packages"
    done
    run_tests quick-start scripts/check-quick-start.py clone .
    report_checks quick-start
fi

echo
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
