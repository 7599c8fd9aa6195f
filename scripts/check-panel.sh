#!/usr/bin/env bash
# Tests the gateway's web panel: its types, and itself in a browser, with the gateway and simulated devices of a build.
#   scripts/check-panel.sh [BUILD [--long]]    BUILD is build/native unless given
# --long also lets 200 devices change for minutes. MORQUIL_PICTURES=1 makes the documentation's pictures anew.
set -euo pipefail
cd "$(dirname "$0")/.."

build=$(realpath "${1:-build/native}")
panel=tools/gateway/panel
work=$build/results/panel
mkdir -p "$work"
export PYTHONDONTWRITEBYTECODE=1 LD_LIBRARY_PATH=$build/library/module
failed=0

# The compiler that checks the types, and axe-core; installed again only when the lock file has changed.
if ! cmp -s "$panel/package-lock.json" "$work/installed-lock.json"; then
    cp "$panel"/{package.json,package-lock.json,.npmrc} "$work/"
    npm ci --prefix "$work" --prefer-offline --ignore-scripts --no-audit --no-fund --loglevel=error
    cp "$panel/package-lock.json" "$work/installed-lock.json"
fi

if "$work/node_modules/.bin/tsc" --noEmit --project "$panel" > "$work/types.log" 2>&1; then
    echo "  ok      types"
else
    cat "$work/types.log"
    echo "  FAILED  types"
    failed=1
fi
if [ "${2:-}" = --long ]; then
    export MORQUIL_LONG=1
fi
/usr/bin/python3 -m pytest -q -p no:cacheprovider --checks --build="$build" --npm="$work" tests/panel || failed=1
exit "$failed"
