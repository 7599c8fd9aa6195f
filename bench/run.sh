#!/usr/bin/env bash
# Installs missing packages, builds the benchmarks for this system and for Wine, runs them in less than ten minutes and
# prints one table of figures and goals. All results are kept in build/bench.
#   bench/run.sh [--gate] [--only RUN...]
# --gate: fails if a figure misses its gate, which is looser than its goal. --only: only these runs of bench/figures.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/flavours.sh

scripts/install-dependencies.sh bench

echo "Building ..."
build bench-native
build bench-windows

echo "Measuring ..."
use_wine
bench/report.py --native build/bench-native --wine build/bench-windows --results build/bench "$@"
