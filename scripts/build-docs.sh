#!/usr/bin/env bash
# Builds the documentation. Warnings of Doxygen and Sphinx are errors.
#   scripts/build-docs.sh [BUILD-FOLDER]   the site, in build/docs/html, and the man pages, in build/docs/man. The
#                                          description of the protocol is built in BUILD-FOLDER, by default build/native.
#   scripts/build-docs.sh --man            the man pages only, which need no build
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/flavours.sh

export PYTHONDONTWRITEBYTECODE=1
readonly docs=build/docs

# run_sphinx BUILDER SOURCES RESULT
run_sphinx() {
    run_logged "build/logs/docs-$1.log" \
        sphinx-build -q -W --keep-going -j 2 -c docs -b "$1" -d "$docs/cache/$1" "$2" "$3"
    rm -f "$3/.buildinfo" "$3/objects.inv"
}

build_man_pages() {
    rm -rf "$docs/man" "$docs/man-source"
    python3 docs/generator/sources.py "$docs/man-source"
    run_sphinx man "$docs/man-source" "$docs/man"
    echo "  ok      $docs/man"
}

# build_description [BUILD-FOLDER]: what the generated pages are made from.
build_description() {
    local targets=(MorquilDescriptionFile MorquilCppFiles)
    if [ $# -gt 0 ]; then
        run_logged build/logs/build-description.log cmake --build "$1" --target "${targets[@]}"
    else
        build native -- --target "${targets[@]}"
    fi
}

build_site() {
    local native=${1:-build/native}
    build_description "$@"
    rm -rf "$docs/source" "$docs/doxygen" "$docs/html"
    mkdir -p "$docs/doxygen"
    run_logged build/logs/docs-doxygen.log doxygen docs/Doxyfile
    python3 docs/generator/sources.py "$native/tools/description/morquilapi.json" \
        "$native/bindings/cpp/morquil/interfaces.hpp" "$docs/doxygen/xml" "$docs/source"
    run_sphinx html "$docs/source" "$docs/html"
    python3 docs/generator/check_site.py "$docs/html"
    echo "  ok      $docs/html/index.html"
}

case "${1:-}" in
    --man) build_man_pages ;;
    *)
        build_man_pages
        build_site "$@"
        ;;
esac
