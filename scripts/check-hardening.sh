#!/usr/bin/env bash
# Checks finished libraries: exports, dependencies, protections, and how much a host has to load.
#   scripts/check-hardening.sh BUILD...    for example build/native build/windows
set -euo pipefail
cd "$(dirname "$0")/.."

failures=0

# What differs between the DLLs: the tools that read it, what randomises its address, and how large it may be as it ships.
# 32-bit code saves its caller's registers on the stack, and describes where they are in tables of its own.
use_tools_of() {
    if grep -q 'i686-w64-mingw32' "$1/CMakeCache.txt"; then
        tools=i686-w64-mingw32 protections="DYNAMIC_BASE NX_COMPAT" most_bytes=1400000
    else
        tools=x86_64-w64-mingw32 protections="HIGH_ENTROPY_VA DYNAMIC_BASE NX_COMPAT" most_bytes=1200000
    fi
}

# expect WHAT COMMAND...: WHAT is true if the command succeeds.
expect() {
    local what=$1
    shift
    if "$@" > /dev/null 2>&1; then
        printf '  ok      %s\n' "$what"
    else
        printf '  FAILED  %s\n' "$what"
        failures=$((failures + 1))
    fi
}

# same WHAT EXPECTED FOUND: the two lists of words are equal.
same() {
    expect "$1: $(echo "$2" | tr '\n' ' ')" test "$2" = "$3"
    [ "$2" = "$3" ] || printf '          found: %s\n' "$(echo "$3" | tr '\n' ' ')"
}

# In a library of this size several hundred functions keep text or blocks on the stack.
readonly least_guarded=300

# guarded DISASSEMBLER LIBRARY: enough of its functions call the function that ends the process after a stack overflow.
guarded() {
    test "$("$1" --disassemble "$2" | grep -cE '(call|bl)[[:space:]].*<_*stack_chk_fail(@plt)?>')" -ge "$least_guarded"
}

# compiled_with OPTION BUILD: every file of the library was. Checks at compile time leave no trace in the library itself.
compiled_with() {
    python3 - "$@" << 'PYTHON'
import json, re, sys
option, build = sys.argv[1:]
own = re.compile(r"/(module|device|core|transport|protocol|features|settings|platform)/\S+\.c(pp|xx)$")
commands = [entry["command"] for entry in json.load(open(build + "/compile_commands.json")) if own.search(entry["file"])
            and "/tests/" not in entry["file"]]
sys.exit(0 if commands and all(option in command.split() for command in commands) else 1)
PYTHON
}

has() { grep -qE "$1" <<< "$2"; }
has_not() { ! grep -qE "$1" <<< "$2"; }

# check_elf BUILD
check_elf() {
    local elf=$1/library/module/libMorquilAPI.so objdump=objdump headers dynamic symbols
    echo "$elf"
    if grep -q 'aarch64-linux-gnu' "$1/CMakeCache.txt"; then
        objdump=aarch64-linux-gnu-objdump
    fi
    headers=$(readelf -lW "$elf")
    dynamic=$(readelf -dW "$elf")
    symbols=$(nm -D "$elf")
    expect "relocations are read-only" has 'GNU_RELRO' "$headers"
    expect "everything is bound before the first call" has 'BIND_NOW|FLAGS_1.*NOW' "$dynamic"
    expect "stack and data cannot be executed" has 'GNU_STACK.* RW ' "$headers"
    expect "no segment is both written and executed" has_not 'LOAD.* RWE ' "$headers"
    expect "no text relocations" has_not 'TEXTREL' "$dynamic"
    expect "stack protector" guarded "$objdump" "$elf"
    # Where the compiler knows a buffer's size it checks it; functions that it cannot check are not used.
    expect "checked functions" compiled_with -D_FORTIFY_SOURCE=2 "$1"
    expect "no function that writes text into a buffer of unknown size" has_not ' (v?sn?printf|st[pr]n?cpy|strn?cat|gets)@' "$symbols"
    expect "no search path of the build" has_not 'RPATH|RUNPATH' "$dynamic"
    same "exports" "$(sed -n '/global:/,/local:/s/^ *\([A-Za-z0-9_]*\);$/\1/p' library/module/MorquilAPI.map | sort)" \
        "$(awk 'NF == 3 { sub(/@.*/, "", $3); print $3 }' <<< "$symbols" | sort)"
}

# check_content DLL: it is small, uses no streams, and loading it sets nothing up.
check_content() {
    local dll=$1 stripped symbols
    stripped=$(mktemp)
    "$tools-strip" -o "$stripped" "$dll"
    expect "at most $most_bytes bytes stripped ($(stat -c %s "$stripped"))" \
        test "$(stat -c %s "$stripped")" -le "$most_bytes"
    expect "stripped sections can be mapped" has '^FileAlignment[[:space:]]+00001000' \
        "$("$tools-objdump" -p "$stripped")"
    rm "$stripped"
    symbols=$("$tools-nm" "$dll")
    expect "symbols to look at" has ' T _?DllGetClassObject(@12)?$' "$symbols"
    expect "no streams and no locales" has_not '_ZNK?St[0-9]*(basic_[io]*stream|basic_[a-z]*buf|ios_base|locale)' "$symbols"
    # One looks whether standard output is open; the other is the run time's own.
    same "constructors of static objects" \
        "_GLOBAL__sub_I__ZN7Morquil5PrintESt17basic_string_viewIcSt11char_traitsIcEE
_GLOBAL__sub_I__ZN9__gnu_cxx9__freeresEv" \
        "$(grep -oE '_GLOBAL__(sub_I|I)_[A-Za-z0-9_]*' <<< "$symbols" | sort -u)"
}

# check_dll BUILD
check_dll() {
    local dll=$1/library/module/MorquilAPI.dll headers protection
    echo "$dll"
    use_tools_of "$1"
    headers=$("$tools-objdump" -p "$dll")
    for protection in $protections; do
        expect "$protection" has "^[[:space:]]+$protection" "$headers"
    done
    expect "relocations, which address randomisation needs" has 'Base Relocation Directory|\.reloc' "$headers"
    expect "stack protector" guarded "$tools-objdump" "$dll"
    expect "checked functions" compiled_with -D_FORTIFY_SOURCE=2 "$1"
    expect "a random guard for it" has 'CryptGenRandom' "$headers"
    same "exports" "$(awk 'on { print $1 } /^EXPORTS/ { on = 1 }' library/module/MorquilAPI.def | sort)" \
        "$(awk '/\[Ordinal\/Name Pointer\] Table/ { on = 1; next } !NF { on = 0 } on { print $NF }' <<< "$headers" | sort)"
    check_content "$dll"
    same "needs" "$(printf '%s\n' ADVAPI32.dll KERNEL32.dll OLEAUT32.dll WS2_32.dll msvcrt.dll ole32.dll)" \
        "$(awk '/DLL Name:/ { print $3 }' <<< "$headers" | LC_ALL=C sort)"
}

for build in "$@"; do
    if [ -e "$build/library/module/MorquilAPI.dll" ]; then
        check_dll "$build"
    else
        check_elf "$build"
    fi
done
[ "$failures" -eq 0 ]
