#!/bin/sh
# Installs what building, testing and running need, on Debian 12. Run it as root or as somebody who may use sudo.
# What is there already is left alone: a second run asks nobody for anything.
#   scripts/install-dependencies.sh [bench|coverage]
# bench: also what the benchmarks measure with, and against. coverage: also what counts lines.
set -eu

packages="
    g++ cmake ninja-build pkg-config python3
    g++-mingw-w64-x86-64-posix mingw-w64-tools
    wine wine64 libwine-dev
    libgtest-dev libgmock-dev googletest
    libasio-dev libcli11-dev nlohmann-json3-dev
    zsh fish
    doxygen graphviz
    dpkg-dev debhelper lintian
    clang clang-tidy clang-format libclang-rt-14-dev"

case "${1:-}" in
    "") ;;
    bench) packages="$packages libbenchmark-dev libhttp-parser-dev libmpdclient-dev libhiredis-dev libfmt-dev" ;;
    coverage) packages="$packages gcovr" ;;
    *)
        echo "usage: scripts/install-dependencies.sh [bench|coverage]" >&2
        exit 2
        ;;
esac

missing=""
for package in $packages; do
    if [ "$(dpkg-query --show --showformat='${db:Status-Status}' "$package" 2>/dev/null)" != installed ]; then
        missing="$missing $package"
    fi
done
if [ -z "$missing" ]; then
    exit 0
fi

as_root=""
if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
        echo "install-dependencies.sh: root is needed to install:$missing" >&2
        exit 1
    fi
    as_root=sudo
fi

echo "Installing:$missing"
$as_root apt-get -q update
# shellcheck disable=SC2086  # one word per package
$as_root env DEBIAN_FRONTEND=noninteractive apt-get -q install --yes --no-install-recommends $missing
