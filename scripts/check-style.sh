#!/usr/bin/env bash
# Checks the formatting, and runs the linter on every file that a build for Linux compiles.
#   scripts/check-style.sh                  both; the linter takes an hour of processor time
#   scripts/check-style.sh format           formatting only
#   scripts/check-style.sh lint [FILE...]   the linter only, on these files
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/flavours.sh

check_format() {
    find . \( -path './build*' -o -path ./.git \) -prune -o -regex '.*\.\(cpp\|h\|hpp\|c\)' -print0 |
        xargs -0 clang-format --dry-run --Werror
    echo "  ok      formatting"
}

check_lint() {
    build lint
    local compiled
    compiled=$(sed -n "s,^ *\"file\": \"$PWD/\(.*\.cpp\)\",\1,p" build/lint/compile_commands.json | grep -v '^build/' | sort -u)
    [ $# -eq 0 ] || compiled=$(grep -xFf <(printf '%s\n' "$@") <<< "$compiled")
    xargs -P "$(nproc)" -n 1 clang-tidy --quiet -p build/lint <<< "$compiled"
    echo "  ok      linter, $(wc -l <<< "$compiled") files"
}

case "${1:-both}" in
    both)
        check_format
        check_lint
        ;;
    format) check_format ;;
    lint) check_lint "${@:2}" ;;
    *)
        echo "usage: scripts/check-style.sh [format | lint [FILE...]]" >&2
        exit 2
        ;;
esac
