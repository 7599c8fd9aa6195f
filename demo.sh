#!/usr/bin/env bash
# Demonstrates the library: builds it for Linux and for Windows, starts a simulated device, and runs one example host
# against it twice, natively and under Wine. The exit status is 0 only if every step of both runs succeeded.
set -euo pipefail
cd "$(dirname "$0")"
. scripts/flavours.sh

readonly logs=build/demo
readonly device_port=9800

say() { printf '\n== %s\n' "$*"; }

die() {
    printf 'demo.sh: %s\n' "$*" >&2
    exit 1
}

# ---- Cleaning up: nothing is left running or registered, even after a failure --------------------------------------

simulator_pid=""
host_pid=""
registered=""

clean_up() {
    set +e
    [ -n "$host_pid" ] && kill "$host_pid" 2>/dev/null
    [ -n "$simulator_pid" ] && kill "$simulator_pid" 2>/dev/null && wait "$simulator_pid" 2>/dev/null
    [ -n "$registered" ] && unregister
    stop_wine
}
trap clean_up EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

# ---- The simulated device ------------------------------------------------------------------------------------------

# Its standard input, a named pipe, is the front panel.
start_simulator() {
    local line=""
    rm -f "$logs/panel"
    mkfifo "$logs/panel"
    exec {panel}<>"$logs/panel"
    exec {panel_says}< <(exec build/native/tools/simulator/morquil-sim --address "$1" --port "$device_port" \
        <&"$panel" 2>"$logs/simulator.log")
    simulator_pid=$!
    # It prints a line when it listens: from then on hosts may connect.
    if read -r line <&"$panel_says"; then
        echo "$line"
        return
    fi
    exec {panel}>&- {panel_says}<&-
    simulator_pid=""
    return 1
}

turn_gain_knob() {
    local line=""
    echo "set VIDEO PROC AMP Gain $1" >&"$panel"
    read -r -t 10 line <&"$panel_says" || die "the simulated device does not react to its front panel"
    echo "    ($line)"
}

# ---- Running the host ----------------------------------------------------------------------------------------------

# run_host LOG GAIN COMMAND...: runs the host, shows its output, and turns the knob when the host waits for that.
run_host() {
    local log=$1 gain=$2 line
    shift 2
    exec {host_says}< <(exec timeout 200 "$@" 2>"$log")
    host_pid=$!
    while IFS= read -r line || [ -n "$line" ]; do
        line=${line%$'\r'}
        echo "    $line"
        case $line in "waiting for someone to turn"*) turn_gain_knob "$gain" ;; esac
    done <&"$host_says"
    exec {host_says}<&-
    local status=0
    wait "$host_pid" || status=$?
    host_pid=""
    [ "$status" -eq 0 ] || die "the host failed with exit status $status; what it wrote to standard error: $log"
}

# ---- Wine ----------------------------------------------------------------------------------------------------------

windows_library() { winepath -w build/windows/library/module/MorquilAPI.dll; }

register() {
    wine regsvr32 /s "$(windows_library)" || die "regsvr32 could not register the library"
    registered=yes
}

unregister() {
    registered=""
    wine regsvr32 /s /u "$(windows_library)" || echo "demo.sh: regsvr32 could not unregister the library" >&2
}

# ---- The demo ------------------------------------------------------------------------------------------------------

mkdir -p "$logs"

say "Installing what is missing"
scripts/install-dependencies.sh demo

say "Building for Linux and for Windows (this takes a minute or two the first time)"
build native -DMORQUIL_TESTS=OFF -DMORQUIL_GATEWAY=OFF -DCMAKE_UNITY_BUILD=ON -- --target MorquilAPI morquil-sim morquilctl morquil-host
build windows -DMORQUIL_TESTS=OFF -- --target MorquilAPI morquil-host

say "Starting a simulated device"
address=127.0.0.1
if ! start_simulator "$address"; then
    address=127.0.0.9
    echo "Port $device_port of 127.0.0.1 is taken; trying $address instead."
    start_simulator "$address" || die "$(cat "$logs/simulator.log")"
fi

say "The example host on Linux, linked with libMorquilAPI.so"
run_host "$logs/host-native.log" 25 build/native/examples/morquil-host "$address"

say "The same device from the command line"
build/native/tools/command/morquilctl -d "$address" status

say "Preparing Wine and registering MorquilAPI.dll"
start_wine
register

say "The same host on Windows (Wine), which gets the library from COM"
run_host "$logs/host-windows.log" 40 wine build/windows/examples/morquil-host.exe "$address"

unregister

say "Both runs succeeded"
cat <<'END'
A web panel shows a whole fleet in a browser. It is part of morquil-gateway (docs/guides/web-panel.md):
    scripts/install-dependencies.sh gateway
    cmake -S . -B build/gateway -G Ninja -DMORQUIL_GATEWAY=ON -DMORQUIL_TESTS=OFF
    cmake --build build/gateway --target morquil-gateway morquil-sim
    build/gateway/tools/gateway/morquil-gateway --demo
END
