# Shared by the scripts of the root: build flavours and the Wine prefix. To be sourced from the root folder.

# build FLAVOUR CMAKE-ARGUMENT...: configures and builds build/FLAVOUR; prints only what is worth reading.
build() {
    local flavour=$1
    shift
    mkdir -p build
    if ! { cmake -S . -B "build/$flavour" -G Ninja "$@" && cmake --build "build/$flavour"; } > "build/$flavour.log" 2>&1; then
        grep -E -A6 'error|FAILED|CMake Error' "build/$flavour.log" | head -60 >&2
        echo "The $flavour build failed; the whole log is build/$flavour.log" >&2
        return 1
    fi
}

# Wine with a prefix of the build's own, a UTF-8 locale for file names with accents, and no chatter.
export WINEPREFIX=$PWD/build/wine WINEDEBUG=-all LC_ALL=C.UTF-8
# Neither a browser nor another run-time is wanted in the prefix.
export WINEDLLOVERRIDES="mscoree=;mshtml="

start_wine() {
    mkdir -p build
    wineboot --init > build/wineboot.log 2>&1 || { echo "Wine did not start; see build/wineboot.log" >&2; return 1; }
}

stop_wine() {
    wineserver -k > /dev/null 2>&1 || true
}
