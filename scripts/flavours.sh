# Shared by the scripts: builds presets, and runs Wine with a prefix in the build folder. Source it from the root folder.

# run_logged LOG COMMAND...: keeps a command's output in a file, and shows errors from it only if the command fails.
run_logged() {
    local log=$1
    shift
    mkdir -p "$(dirname "$log")"
    "$@" > "$log" 2>&1 && return
    grep -aE -A6 'error|FAILED|CMake Error' "$log" | head -n 60 >&2 || tail -n 40 "$log" >&2
    echo "\"$*\" failed; all of its output is in $log" >&2
    return 1
}

# build PRESET[:BUILD-PRESET] [-DNAME=VALUE...] [-- ARGUMENT...]: configures a preset of CMakePresets.json and builds the
# preset of the same name, or BUILD-PRESET. ARGUMENTs are passed to "cmake --build".
build() {
    local preset=${1%:*} built=${1#*:} settings=()
    shift
    while [ $# -gt 0 ] && [ "$1" != -- ]; do
        settings+=("$1")
        shift
    done
    echo "  $preset ..."
    run_logged "build/logs/configure-$preset.log" cmake --preset "$preset" "${settings[@]}"
    run_logged "build/logs/build-$preset.log" cmake --build --preset "$built" "${@:2}"
}

# Starts Wine without a desktop, without debug output, without the additions that it would offer to download, and with a
# UTF-8 locale for non-ASCII file names.
start_wine() {
    export WINEPREFIX="$PWD/build/wine" WINEDEBUG=-all LC_ALL=C.UTF-8
    export WINEDLLOVERRIDES="mscoree=;mshtml=;winemenubuilder.exe="
    unset DISPLAY
    run_logged build/logs/wine.log wineboot --init
    # Made before 32-bit Wine was installed, it cannot run 32-bit programs.
    if has_wine32 && [ ! -d "$WINEPREFIX/drive_c/windows/syswow64" ]; then
        run_logged build/logs/wine.log wineboot --update
    fi
}

# Debian's Wine runs 32-bit programs if this is installed.
has_wine32() { [ -x /usr/lib/wine/wine ]; }

has_wine() { [ "${WINEPREFIX:-}" = "$PWD/build/wine" ]; }

# Ends only the Wine of this prefix.
stop_wine() {
    if has_wine; then
        wineserver -k > /dev/null 2>&1 || true
    fi
}

# Starts Wine for the rest of a script, unless its caller has started it and will end it.
use_wine() {
    if ! has_wine; then
        trap stop_wine EXIT
        start_wine
    fi
}
