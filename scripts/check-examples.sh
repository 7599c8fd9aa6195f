#!/usr/bin/env bash
# Runs the examples of a build against its simulated device, and compares what they print with their READMEs.
#   scripts/check-examples.sh native
#   scripts/check-examples.sh windows [BUILD]    under Wine, without a registration; the simulated device is the native
#                                                build's
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/flavours.sh
. scripts/example-checks.sh

check_native() {
    local example programs=build/native/examples
    export PATH=$PWD/build/native/tools/simulator:$PATH
    expect "examples and pages, dates: conversions of strftime that Windows knows" example-dates dates_work_everywhere
    for example in host raw_host c_host device_test; do
        expect_readme "$example" native morquil-sim "$programs/$(program_of "$example")"
    done
}

# Windows' C library does not know these conversions of strftime.
dates_work_everywhere() { ! grep -rnE '%[DFRT]' README.md docs examples bindings/cpp; }

# check_windows BUILD: programs, library and manifests in one folder, as a product would ship them.
check_windows() {
    local example program build=$1 folder=build/examples-${1##*/}
    rm -rf "$folder"
    mkdir -p "$folder"
    cp "$build/library/module/MorquilAPI.dll" "$build/tools/simulator/morquil-sim.exe" \
        "$build/packaging/MorquilAPI.assembly.manifest" "$folder"
    use_wine
    export WINEPATH
    WINEPATH=$(winepath -w "$folder")
    for example in host raw_host c_host type_library_host device_test; do
        program=$folder/$(program_of "$example").exe
        cp "$build/examples/${program##*/}" "$program"
        cp "$build/packaging/program.exe.manifest" "$program.manifest"
        expect_readme "$example" "${build##*/}" build/native/tools/simulator/morquil-sim wine "$program"
    done
}

case "${1:-}" in
    native) check_native ;;
    windows) check_windows "${2:-build/windows}" ;;
    *)
        echo "usage: scripts/check-examples.sh native|windows [BUILD]" >&2
        exit 2
        ;;
esac
[ "$failures" -eq 0 ]
