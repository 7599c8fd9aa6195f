#!/usr/bin/env bash
# Checks formatting and runs the linter; needs the native build that ./test.sh makes.
#   scripts/check-style.sh           all sources
#   scripts/check-style.sh FILE...   these
set -euo pipefail
cd "$(dirname "$0")/.."

if [ $# -gt 0 ]; then
    sources=("$@")
else
    mapfile -t sources < <(git ls-files '*.cpp' '*.h')
fi

clang-format --dry-run --Werror "${sources[@]}"

# The linter reads what the native build compiles.
mapfile -t compiled < <(printf '%s\n' "${sources[@]}" | grep -E '\.cpp$' | grep -vE '_windows(_test)?\.cpp$|wsa_comms|dll_main|registration|identifiers|type_library|^tests/')
printf '%s\n' "${compiled[@]}" | xargs -r -P "$(nproc)" -n 4 clang-tidy --quiet -p build/native
echo "Style is fine."
