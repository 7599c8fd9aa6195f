#!/usr/bin/env bash
# Installs what is missing, builds every preset and runs all tests; ends with the line "N passed, N failed".
#   ./test.sh [--long]
# --long also runs the tools' tests with sanitizers, all tests on 32-bit Windows, more on ARM, lives 20,000 simulated lives
# instead of 1,000, connects 20,000 times (2,000 times under Wine), makes the packages, installs them elsewhere and builds
# the examples against them, follows the quick start, and lets the Python and the C# package connect, restart and recover
# for long. What single presets do: cmake --list-presets=all
set -euo pipefail
cd "$(dirname "$0")"
. scripts/flavours.sh

long=""
case "${1:-}" in
    "") ;;
    --long)
        long=-long
        export MORQUIL_SEEDS=20000
        ;;
    *)
        echo "usage: ./test.sh [--long]" >&2
        exit 2
        ;;
esac

# run_tests PRESET...: runs test presets one after the other; scripts/count-tests.py finds what has failed.
run_tests() {
    local preset
    for preset in "$@"; do
        ctest --preset "$preset" ${long:+--timeout 7200} > "build/logs/test-$preset.log" 2>&1 < /dev/null || true
    done
}

# check NAME COMMAND...: a script that says "ok" or "FAILED" of each thing that it looks at.
check() {
    local log=build/logs/test-$1.log good bad
    timeout 7200 "${@:2}" > "$log" 2>&1 < /dev/null || echo "  FAILED  exit status $?" >> "$log"
    good=$(grep -c '^  ok ' "$log" || true)
    bad=$(grep -c '^  FAILED ' "$log" || true)
    checks_passed=$((checks_passed + good))
    checks_failed=$((checks_failed + bad))
    printf '  %-34s %5s passed, %s failed\n' "$1" "$good" "$bad"
    [ "$bad" -eq 0 ] || grep -A15 '^  FAILED' "$log"
}

scripts/install-dependencies.sh test
mkdir -p build/logs
has_wine32 || scripts/install-dependencies.sh wine32 > build/logs/wine32.log 2>&1 || true
rm -rf build/*/results
runs=(build/{native,asan,tsan,windows,arm64}/results/ctest.xml build/native/results/ctest-slow.xml)

echo "Building for Linux, for Windows, and with sanitizers ..."
build native
# The time-outs in real time take minutes, and no processor: they run beside the other builds.
run_tests slow &
slow_tests=$!
build windows
build windows-ubsan
build "asan:asan$long"
build "tsan:tsan$long"
build "windows-x86:windows-x86$long"
build "arm64:arm64$long"

echo "Testing ..."
use_wine
# Wine waits more than it works: beside it there is a processor for the others.
run_tests native "asan$long" "tsan$long" "arm64$long" ${long:+cycles} &
native_tests=$!
run_tests windows ${long:+windows-cycles}
if has_wine32; then
    run_tests "windows-x86$long"
    runs+=(build/windows-x86/results/ctest.xml)
else
    echo "  windows-x86 built, not run: 32-bit Wine could not be installed; see build/logs/wine32.log"
fi
wait "$native_tests" "$slow_tests"

checks_passed=0
checks_failed=0
if [ -n "$long" ]; then
    runs+=(build/{native,windows}/results/ctest-cycles.xml)
    check packaging scripts/package.sh
    check debian-packages scripts/check-packages.sh debian
    check windows-packages scripts/check-packages.sh windows
    check quick-start scripts/check-quick-start.py clone .
    check python scripts/check-python.sh build/native --long
    check dotnet scripts/check-dotnet.sh build/native --long
fi

scripts/count-tests.py --more "$checks_passed" "$checks_failed" "${runs[@]}"
