#!/usr/bin/env bash
# Searches for inputs that break one of the library's promises: installs missing packages, builds, and runs every fuzz
# target, starting from its seeds.
#   fuzz/run.sh [--fast] [SECONDS [TARGET...]]
# Each target, or each named TARGET, runs for SECONDS (60), with a process per processor. --fast omits the sanitizers:
# many more inputs, but only the targets' own checks. Inputs that a run learns are kept in build/ for the next one. Ends
# with "no findings", or copies each finding into fuzz/findings/ and fails.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/flavours.sh

preset=fuzz
if [ "${1:-}" = --fast ]; then
    preset=fuzz-fast
    shift
fi
seconds=${1:-60}
if [[ ! $seconds =~ ^[1-9][0-9]*$ ]]; then
    echo "usage: fuzz/run.sh [--fast] [SECONDS [TARGET...]]" >&2
    exit 2
fi
shift $(($# > 0 ? 1 : 0))

root=$PWD
built=$root/build/$preset/fuzz
findings=0

# is_wanted NAME WANTED...: whether to run a target; without WANTED all run.
is_wanted() {
    local name=$1 wanted
    shift
    [ $# -eq 0 ] && return
    for wanted in "$@"; do
        [ "$wanted" = "$name" ] && return
    done
    return 1
}

# keep_findings NAME: copies a target's findings into the tree, under short names.
keep_findings() {
    local found kept
    for found in found/{crash,leak,timeout,oom}-*; do
        [ -e "$found" ] || continue
        kept=fuzz/findings/$1/$(basename "$found" | cut -c 1-16)
        mkdir -p "$root/fuzz/findings/$1"
        cp "$found" "$root/$kept"
        findings=$((findings + 1))
        echo "  FINDING: $kept"
    done
}

# run_target NAME LONGEST FOLDER...: searches from the seeds in the tree and the inputs that earlier runs have learnt.
run_target() {
    local name=$1 longest=$2 status=0 processes executions folder
    shift 2
    processes=$(nproc)
    mkdir -p "$built/run/$name/learnt"
    cd "$built/run/$name"
    rm -rf found fuzz-*.log
    mkdir found
    for folder in "$root/fuzz/corpus/$name" "$root/fuzz/findings/$name"; do
        [ -d "$folder" ] && set -- "$@" "$folder"
    done
    nice "$built/morquil-fuzz-$name" -jobs="$processes" -workers="$processes" -max_total_time="$seconds" \
        -max_len="$longest" -dict="$built/morquil.dict" -entropic=0 -timeout=60 -rss_limit_mb=1024 \
        -artifact_prefix=found/ -print_final_stats=1 learnt "$@" > all.log 2>&1 < /dev/null || status=$?
    executions=$(awk '/^stat::number_of_executed_units:/ { sum += $2 } END { printf "%.0f", sum }' fuzz-*.log)
    printf '  %-8s %12s executions in %s s\n' "$name" "$executions" "$seconds"
    local before=$findings
    keep_findings "$name"
    if [ "$findings" -ne "$before" ]; then
        grep -ahE '^broken promise|^SUMMARY|runtime error' fuzz-*.log | sort -u | sed 's/^/    /' || true
    elif [ "$status" -ne 0 ] || [ "$executions" -eq 0 ]; then
        echo "  $name could not run: see $built/run/$name/all.log" >&2
        exit 1
    fi
    cd "$root"
}

scripts/install-dependencies.sh fuzz
echo "Building ..."
build "$preset"
echo "Fuzzing ..."
ran=0
while read -r name longest folders; do
    if is_wanted "$name" "$@"; then
        # shellcheck disable=SC2086  # a folder per word
        run_target "$name" "$longest" $folders
        ran=$((ran + 1))
    fi
done < "$built/targets.txt"
if [ "$ran" -eq 0 ]; then
    echo "fuzz/run.sh: no such target: $*" >&2
    exit 2
fi

if [ "$findings" -ne 0 ]; then
    echo "$findings findings"
    exit 1
fi
echo "no findings"
