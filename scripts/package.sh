#!/usr/bin/env bash
# Makes the release packages, in build/packages: Debian packages, Python packages, a NuGet package and a Windows zip.
#   scripts/package.sh            all of them
#   scripts/package.sh debian     libmorquilapi1, libmorquilapi-dev, morquilapi-tools, morquil-gateway, morquilapi-doc,
#                                 python3-morquil
#   scripts/package.sh python     a wheel and a source distribution for Python
#   scripts/package.sh dotnet     a NuGet package for C#
#   scripts/package.sh windows    MorquilAPI-VERSION-windows.zip, for 64-bit and for 32-bit programs
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/flavours.sh

readonly packages=$PWD/build/packages
version=$(sed -n 's/^project(MorquilAPI VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
# Two runs on the same sources produce the same dates.
SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct 2> /dev/null || stat -c %Y CHANGELOG.md)}
export SOURCE_DATE_EPOCH

write_debian_changelog() {
    printf 'morquilapi (%s) unstable; urgency=medium\n\n  * Release %s; see CHANGELOG.md.\n\n -- %s  %s\n' \
        "$version" "$version" "$(sed -n 's/^Maintainer: //p' packaging/debian/control)" \
        "$(LC_ALL=C date --utc --date="@$SOURCE_DATE_EPOCH" '+%a, %d %b %Y %H:%M:%S +0000')"
}

# Builds in a copy of the sources, which can have debian/ at its root. Earlier build results there are reused.
package_debian() {
    local tree=build/debian/morquilapi-$version
    mkdir -p "$tree" "$packages"
    find "$tree" -mindepth 1 -maxdepth 1 ! -name 'obj-*' -exec rm -rf {} +
    tar --create --exclude=./build --exclude='./build-*' --exclude=./.git . | tar --extract --directory "$tree"
    cp -r packaging/debian "$tree/debian"
    write_debian_changelog > "$tree/debian/changelog"
    rm -f build/debian/*.{deb,changes,buildinfo} "$packages"/*.deb
    run_logged build/logs/package-debian.log \
        env --chdir="$tree" DEB_BUILD_OPTIONS="terse ${DEB_BUILD_OPTIONS:-}" \
        dpkg-buildpackage --build=binary --no-sign --no-pre-clean
    run_logged build/logs/lintian.log lintian --allow-root --fail-on=warning build/debian/*.changes
    cp build/debian/*.deb "$packages"
}

# install_windows PRESET FOLDER COMPONENT...
install_windows() {
    local component
    for component in "${@:3}"; do
        run_logged "build/logs/install-$component.log" \
            cmake --install "build/$1" --prefix "$2" --strip --component "$component"
    done
}

package_windows() {
    local name=MorquilAPI-$version-windows
    local tree=$packages/$name
    rm -rf "$tree" "$tree.zip"
    build windows -- --target MorquilAPI morquilctl morquil-sim
    build windows-x86 -- --target MorquilAPI morquilctl morquil-sim
    scripts/build-docs.sh
    install_windows windows "$tree" Documentation
    install_windows windows "$tree/x64" Runtime Development Tools
    install_windows windows-x86 "$tree/x86" Runtime Development Tools
    cp build/native/tools/description/morquilapi.json "$tree/x64/share/morquilapi/"
    cp build/native/tools/description/morquilapi.json "$tree/x86/share/morquilapi/"
    cp -r build/docs/html CHANGELOG.md "$tree/share/doc/MorquilAPI/"
    cmake -E chdir "$packages" cmake -E tar cf "$name.zip" --format=zip \
        --mtime="$(date --utc --date="@$SOURCE_DATE_EPOCH" '+%Y-%m-%d %H:%M:%S UTC')" "$name"
    rm -r "$tree"
}

# Without the network: what it needs is installed.
package_python() {
    local tree=build/python
    build native -- --target MorquilPython
    rm -rf "$tree" "$packages"/morquil-*
    mkdir -p "$packages"
    cp -r build/native/bindings/python/package "$tree"
    rm -rf "$tree/morquil/__pycache__"
    run_logged build/logs/package-python.log env --chdir="$tree" /usr/bin/python3 -c "
from setuptools import build_meta
build_meta.build_sdist('$packages')
build_meta.build_wheel('$packages')"
}

package_dotnet() {
    build native -- --target MorquilDotnetAssembly
    rm -f "$packages"/Morquil.*.nupkg
    run_logged build/logs/package-dotnet.log bindings/dotnet/pack.py build/native "$packages"
}

scripts/install-dependencies.sh package
case "${1:-all}" in
    debian) package_debian ;;
    windows) package_windows ;;
    python) package_python ;;
    dotnet) package_dotnet ;;
    all)
        package_debian
        package_python
        package_dotnet
        package_windows
        ;;
    *)
        echo "usage: scripts/package.sh [debian|python|dotnet|windows]" >&2
        exit 2
        ;;
esac
for file in "$packages"/*; do
    printf '  ok      %s\n' "build/packages/${file##*/}"
done
