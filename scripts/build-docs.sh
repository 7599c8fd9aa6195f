#!/usr/bin/env bash
# Builds the documentation into build/docs/html. Doxygen's warnings are errors.
#   scripts/build-docs.sh [BUILD-FOLDER]
# The description of the protocol is built in BUILD-FOLDER, by default build/native.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/flavours.sh

readonly native=${1:-build/native}
readonly targets=(MorquilDescriptionFile MorquilCppFiles)
readonly description=$native/tools/description/morquilapi.json

if [ $# -gt 0 ]; then
    run_logged build/logs/build-description.log cmake --build "$native" --target "${targets[@]}"
else
    build native -- --target "${targets[@]}"
fi

rm -rf build/docs
export PYTHONDONTWRITEBYTECODE=1
python3 docs/generator/pages.py "$description" build/docs/pages docs/reference/*.md
python3 docs/generator/headers.py "$description" api/MorquilAPI.idl "$native/bindings/cpp/morquil/interfaces.hpp" \
    build/docs/headers
MORQUIL_VERSION=$(sed -n 's/^project(MorquilAPI VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
export MORQUIL_VERSION
run_logged build/logs/docs.log doxygen docs/Doxyfile
echo "  ok      build/docs/html/index.html"
