#!/usr/bin/env bash
# Tests the C# package with Mono, and the library and the simulated device of a build: its tests, the programs on its
# pages, and the NuGet package. It needs the assembly in the build folder (target MorquilDotnetAssembly).
#   scripts/check-dotnet.sh [BUILD [--long]]    BUILD is build/native unless given
# --long connects and recovers 1,000 times through the layer, not only through the interfaces.
set -euo pipefail
cd "$(dirname "$0")/.."

build=$(realpath "${1:-build/native}")
binding=$build/bindings/dotnet
work=$build/results/dotnet
rm -rf "$work"
mkdir -p "$work"
export MORQUIL_LIBRARY=$build/library/module/libMorquilAPI.so.1 MORQUIL_SIM=$build/tools/simulator/morquil-sim
export MORQUIL_IDL=$PWD/api MORQUIL_SOURCE_GENERATED=$work/Morquil.SourceGenerated.dll
export PYTHONPATH=$build/bindings/python/package:$PWD/scripts PYTHONDONTWRITEBYTECODE=1
python=/usr/bin/python3
if [ "${2:-}" = --long ]; then
    export MORQUIL_LONG=1
fi

# compile ARGUMENT...
compile() { mcs -nologo -langversion:7.2 -warn:4 -warnaserror -r:System.dll -r:System.Core.dll "$@"; }

if [ ! -f "$binding/Morquil.dll" ]; then
    echo "  FAILED  Morquil.dll has not been built: scripts/install-dependencies.sh test; cmake $build; cmake --build $build"
    exit 1
fi
cp "$binding/Morquil.dll" "$work"
compile -r:"$work/Morquil.dll" -out:"$work/Morquil.Tests.exe" tests/dotnet/*.cs
# What a compiler for .NET 8 reads of the same sources.
compile -define:NET8_0_OR_GREATER -target:library -out:"$MORQUIL_SOURCE_GENERATED" "$binding"/package/Morquil/*.cs \
    tests/dotnet/stand_ins/*.cs

failed=0
(cd "$work" && mono Morquil.Tests.exe) || failed=1
"$python" tests/dotnet/check_pages.py "$build" "$work" || failed=1
"$python" tests/dotnet/check_package.py "$build" "$work" || failed=1
exit "$failed"
