#!/usr/bin/env bash
# Runs the examples of a build against its simulated device, and compares what they print with their READMEs.
# Builds the host in C to the letter of its page.
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
    check_c_host_page_native build/c-host-page
}

# check_c_host_page_native FOLDER
check_c_host_page_native() {
    rm -rf "$1"
    mkdir -p "$1"
    expect "c_host: an installation" c-host-install \
        install_components native "$PWD/$1/prefix" Runtime Development Documentation
    export PKG_CONFIG_PATH
    PKG_CONFIG_PATH=$(dirname "$(find "$PWD/$1/prefix" -name morquilapi.pc)")
    expect "c_host: builds to the letter of its page" c-host-page build_as_readme_says c_host "$1/c_host"
    expect_readme c_host "by its page" morquil-sim env LD_LIBRARY_PATH="${PKG_CONFIG_PATH%/*}" "$1/c_host/morquil-c-host"
}

# The same on Windows, with the manifest inside the program.
check_c_host_page_windows() {
    rm -rf "$1"
    expect "c_host: an unpacked zip" c-host-install-windows install_as_in_the_zip "$PWD/$1"
    expect "c_host: builds to the letter of its page, Windows" c-host-page-windows \
        build_as_readme_says_on_windows c_host "$1"
    expect "c_host: no manifest lies beside the program" c-host-manifest test ! -e "$1/x64/bin/morquil-c-host.exe.manifest"
    expect_readme c_host "by its page, windows" build/native/tools/simulator/morquil-sim \
        env -u WINEPATH wine "$1/x64/bin/morquil-c-host.exe"
}

# install_components PRESET PREFIX COMPONENT...
install_components() {
    local component
    for component in "${@:3}"; do
        cmake --install "build/$1" --prefix "$2" --component "$component" || return 1
    done
}

# install_as_in_the_zip FOLDER
install_as_in_the_zip() {
    install_components windows "$1" Documentation && install_components windows "$1/x64" Runtime Development
}

# Windows' C library does not know these conversions of strftime.
dates_work_everywhere() { ! grep -IrnE '%[DFRT]' README.md docs examples bindings/cpp; }

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
    check_c_host_page_windows build/c-host-page-windows
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
