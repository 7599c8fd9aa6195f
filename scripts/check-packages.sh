#!/usr/bin/env bash
# Installs the packages from scripts/package.sh, builds the examples against them as users would, runs them against the
# packaged simulated device, and compares what they print with their READMEs; follows the quick start.
#   scripts/check-packages.sh debian     with find_package and pkg-config, in a separate root; and with add_subdirectory,
#                                        from the sources. Needs root.
#   scripts/check-packages.sh windows    for 64-bit and 32-bit programs: with find_package, next to the library, with
#                                        manifests; and the registrations
# Port 9800 of 127.0.0.1 must be free.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/flavours.sh
. scripts/example-checks.sh

readonly work=$PWD/build/package-check

# build_with_cmake SOURCES FOLDER CMAKE-ARGUMENT...
build_with_cmake() {
    cmake -S "$1" -B "$2" -G Ninja "${@:3}" && cmake --build "$2"
}

# holds_no_path_of_the_build FOLDER
holds_no_path_of_the_build() { ! grep -rl -e "$PWD" "$1"; }

# ---- Debian --------------------------------------------------------------------------------------------------------

readonly package_names="libmorquilapi1 libmorquilapi-dev morquilapi-tools morquil-gateway morquilapi-doc python3-morquil"
package_files() { printf "$PWD/build/packages/%s_*.deb " $package_names; }

# in_own_root COMMAND...: runs in an overlay of this machine's root; changes are discarded, except those in build/.
in_own_root() {
    local layers status
    layers=$(mktemp --directory)
    mkdir "$layers/changed" "$layers/work" "$layers/root"
    # shellcheck disable=SC2016  # the inner shell expands these
    unshare --mount bash -euc '
        layers=$1
        tree=$2
        shift 2
        mount -t overlay overlay -o "lowerdir=/,upperdir=$layers/changed,workdir=$layers/work" "$layers/root"
        for folder in /dev /proc /sys "$tree/build"; do
            mount --rbind "$folder" "$layers/root$folder"
        done
        exec chroot "$layers/root" env --chdir="$tree" "$@"
    ' bash "$layers" "$PWD" "$@" && status=0 || status=$?
    rm -rf --one-file-system "$layers"
    return "$status"
}

check_debian() {
    local package root=$work/unpacked example
    mkdir -p "$root"
    # shellcheck disable=SC2046  # one word per file
    for package in $(package_files); do
        dpkg-deb --extract "$package" "$root"
    done
    expect "Debian: no path of the build in any file" debian-paths holds_no_path_of_the_build "$root"
    in_own_root scripts/check-packages.sh installed || failures=$((failures + 1))

    export PATH=$root/usr/bin:$PATH LD_LIBRARY_PATH=$root/usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)
    expect "sources: add_subdirectory" add-subdirectory \
        build_with_cmake tests/system/packages "$work/add_subdirectory" -DCMAKE_BUILD_TYPE=Debug
    for example in host raw_host c_host device_test; do
        expect_readme "$example" add_subdirectory morquil-sim \
            "$work/add_subdirectory/examples/$(program_of "$example")"
    done
    check_installed_with_a_project "$work/add_subdirectory" "$work/installed"
}

# check_installed_with_a_project BUILD-FOLDER PREFIX: the project's own installation is complete, or without the library.
check_installed_with_a_project() {
    expect "sources: cmake --install of the project" project-install cmake --install "$1" --prefix "$2"
    expect_readme host "installed with its project" morquil-sim env -u LD_LIBRARY_PATH "$2/bin/morquil-host"
    expect "sources: other projects find what was installed" project-find-package \
        build_with_cmake examples "$work/find_installed" -DCMAKE_PREFIX_PATH="$2"
    expect "sources: no documentation of the library is installed" project-documents test ! -e "$2/share/doc"
    expect "sources: MORQUIL_INSTALL=OFF" project-without-library installs_only_the_program "$1" "$2-without"
}

# installs_only_the_program BUILD-FOLDER PREFIX
installs_only_the_program() {
    cmake -DMORQUIL_INSTALL=OFF "$1" && cmake --install "$1" --prefix "$2" &&
        [ "$(cd "$2" && find . -type f)" = ./bin/morquil-host ]
}

files_of_packages() { dpkg --listfiles $package_names | sort -u | while read -r file; do [ -d "$file" ] || echo "$file"; done; }

# purges: no file of the packages is left.
purges() {
    local files
    files=$(files_of_packages)
    # shellcheck disable=SC2086  # one word per package
    dpkg --purge $package_names && [ -n "$files" ] && ! ls $files 2> /dev/null
}

# documented DOCUMENTS CHANGELOG PAGES: the site with its search, the changelog and the manual pages.
documented() {
    test -s "$1/html/index.html" && test -s "$1/html/searchindex.js" && test -s "$1/html/_static/searchtools.js" &&
        test -s "$2" && ls "$3"/morquilctl.1* "$3"/morquil-sim.1*
}

every_package_has_the_changelog() {
    local package
    for package in $package_names; do
        test -s "/usr/share/doc/$package/CHANGELOG.md.gz" || return 1
    done
}

# Nothing answers there, so it fails, in the library's own words.
finds_the_library() { grep "no answer from a device" <<< "$("$@" /usr/bin/python3 -m morquil 127.250.250.250 2>&1)"; }

# Python imports from a wheel as it is.
wheel_works() { finds_the_library env PYTHONPATH="$(echo "$PWD"/build/packages/morquil-*.whl)"; }

completes() {
    test -s /usr/share/bash-completion/completions/morquilctl && test -s /usr/share/zsh/vendor-completions/_morquilctl &&
        test "$(fish --command 'complete -C "morquilctl stat"' | cut -f1)" = status
}

# Runs in the separate root; installed files are found in their standard places.
check_installed() {
    local example examples=/usr/share/doc/morquilapi-doc/examples
    unset PKG_CONFIG_PATH LD_LIBRARY_PATH CMAKE_PREFIX_PATH
    # shellcheck disable=SC2046  # one word per file
    expect "Debian: apt installs the packages" debian-apt apt-get install --yes $(package_files)
    expect "Debian: the quick start" debian-quick-start scripts/check-quick-start.py packages
    expect "Debian: site, changelog and manual pages" debian-documents documented \
        /usr/share/doc/morquilapi-doc /usr/share/doc/morquilapi-doc/CHANGELOG.md.gz /usr/share/man/man1
    expect "Debian: every package has the changelog" debian-changelog every_package_has_the_changelog
    expect "Debian: the Python package finds the library" debian-python finds_the_library env
    expect "Python: the wheel finds the library" wheel wheel_works
    expect "Debian: shells complete morquilctl" debian-completion completes
    expect "Debian: find_package" debian-find-package build_with_cmake "$examples" "$work/find_package"
    for example in host raw_host c_host device_test; do
        expect_readme "$example" find_package morquil-sim "$work/find_package/$(program_of "$example")"
        expect "Debian: pkg-config, $example" "debian-pkg-config-$example" \
            build_as_readme_says "$example" "$work/pkg-config-$example"
        expect_readme "$example" pkg-config morquil-sim "$work/pkg-config-$example/$(program_of "$example")"
    done
    expect "Debian: purging leaves no files" debian-purge purges
}

# ---- Windows -------------------------------------------------------------------------------------------------------

# registered HIVE: the library's entries in a hive, without the hive's name. The type library's flags are left out: Wine's
# regsvr32 also notes there that it was read from a file.
registered() {
    local class library
    class=$(grep -om1 'CLSID\\{[0-9A-F-]*}' "$bin/register.cmd")
    library=$(grep -om1 'TypeLib\\{[0-9A-F-]*}' "$bin/register.cmd")
    { wine reg query "$1\\Software\\Classes\\$class" /s "/reg:$view" &&
        wine reg query "$1\\Software\\Classes\\$library" /s; } > "$work/registered.txt" || return 1
    tr -d '\r' < "$work/registered.txt" | sed -e 's/^HKEY_[A-Z_]*//' -e '/^$/d' -e '/\\FLAGS$/{n;d}'
}

registers_what_regsvr32_does() {
    wine "$regsvr32" /s "$(winepath -w "$bin/MorquilAPI.dll")" && registered HKLM > "$work/regsvr32.txt"
    wine "$regsvr32" /s /u "$(winepath -w "$bin/MorquilAPI.dll")"
    registers && registered HKCU > "$work/register.txt" && diff "$work/regsvr32.txt" "$work/register.txt"
}

registers() { wine cmd /c "$(winepath -w "$bin/register.cmd")"; }

unregisters() { wine cmd /c "$(winepath -w "$bin/unregister.cmd")" && ! registered HKCU; }

# use_folder x64|x86: what differs between the zip's folders. Wine has a folder of programs for each kind.
use_folder() {
    kind=$1 bin=$root/$1/bin programs=$work/find_package_$1
    case "$kind" in
        x64) toolchain=mingw-w64 view=64 regsvr32='C:\windows\system32\regsvr32.exe' ;;
        x86) toolchain=mingw-w64-x86 view=32 regsvr32='C:\windows\syswow64\regsvr32.exe' ;;
    esac
}

simulator() { echo "wine '$bin/morquil-sim.exe'"; }

# embeds_manifest PROGRAM RESULT: a raw host with the manifest as its resource, linked like the one that CMake has linked.
embeds_manifest() {
    local compiler=x86_64-w64-mingw32
    [ "$kind" = x64 ] || compiler=i686-w64-mingw32
    printf '1 24 "%s"\n' "$bin/program.exe.manifest" > "$work/manifest-$kind.rc"
    $compiler-windres "$work/manifest-$kind.rc" "$work/manifest-$kind.o" &&
        $compiler-g++ -std=c++17 -static -I "$root/$kind/include/morquilapi" -o "$1" \
            "$root"/share/doc/MorquilAPI/examples/raw_host/{main,property_watcher,receipt_watcher,text,video_mode_names,discovery_windows}.cpp \
            "$work/manifest-$kind.o" -L "$root/$kind/lib" -lMorquilIdentifiers -lole32 -loleaut32 -luuid
}

check_programs() {
    local example program shipped=$work/shipped-$kind
    expect "$kind: the quick start" "quick-start-$kind" scripts/check-quick-start.py windows "$root/$kind"
    expect "$kind: find_package" "find-package-$kind" \
        build_with_cmake "$root/share/doc/MorquilAPI/examples" "$programs" \
        -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/$toolchain.cmake" -DCMAKE_PREFIX_PATH="$root/x64;$root/x86"
    mkdir -p "$shipped"
    cp "$bin/MorquilAPI.dll" "$bin/MorquilAPI.assembly.manifest" "$shipped"
    for example in host raw_host c_host type_library_host; do
        program=$shipped/$(program_of "$example").exe
        cp "$programs/${program##*/}" "$program"
        # The C++ layer finds the library by itself.
        [ "$example" = host ] || cp "$bin/program.exe.manifest" "$program.manifest"
        expect_readme "$example" "$kind, beside the library" "$(simulator)" wine "$program"
    done
    expect "$kind: a manifest as a resource" "embed-$kind" embeds_manifest "$shipped/embedded.exe"
    expect_readme raw_host "$kind, manifest in the program" "$(simulator)" wine "$shipped/embedded.exe"
    expect "$kind: register.cmd writes what regsvr32 writes" "register-$kind" registers_what_regsvr32_does
    expect "$kind: unregister.cmd leaves nothing" "unregister-$kind" unregisters
}

# regsvr32 [/u]: registers the library for all users, or undoes that.
regsvr32() { wine "$regsvr32" /s "$@" "$(winepath -w "$bin/MorquilAPI.dll")"; }

# Both libraries are registered, and each program gets the one of its kind; removing one leaves the other. For all users:
# Wine looks for no class that is registered for one user.
check_both_registrations() {
    local folder
    for folder in x64 x86; do
        use_folder "$folder"
        expect "$kind: regsvr32" "both-register-$kind" regsvr32
    done
    for folder in x64 x86; do
        use_folder "$folder"
        expect_readme raw_host "$kind, both registered" "$(simulator)" wine "$programs/morquil-raw-host.exe"
    done
    expect "x86: regsvr32 /u" both-unregister-x86 regsvr32 /u
    use_folder x64
    expect_readme raw_host "x64, the other one unregistered" "$(simulator)" wine "$programs/morquil-raw-host.exe"
    expect "x64: regsvr32 /u" both-unregister-x64 regsvr32 /u
    expect "x64 and x86: nothing is left" both-unregister not_registered
}

not_registered() { ! registered HKLM; }

check_windows() {
    # With spaces in the name, as in many users' folders.
    mkdir -p "$work/of a user"
    cmake -E chdir "$work/of a user" cmake -E tar xf "$(echo "$PWD"/build/packages/MorquilAPI-*-windows.zip)"
    root=$(echo "$work/of a user"/MorquilAPI-*)
    use_wine
    expect "Windows: no path of the build in any file" windows-paths holds_no_path_of_the_build "$root"
    expect "Windows: site, changelog and manual pages" windows-documents documented \
        "$root/share/doc/MorquilAPI" "$root/share/doc/MorquilAPI/CHANGELOG.md" "$root/x64/share/man/man1"
    use_folder x64
    check_programs
    expect "x64: the host in C, to the letter of its page" c-host build_as_readme_says_on_windows c_host "$root"
    expect_readme c_host "x64, by its page" "$(simulator)" wine "$bin/morquil-c-host.exe"
    if ! has_wine32; then
        echo "  x86 not checked: 32-bit Wine is not installed (scripts/install-dependencies.sh wine32)"
        return
    fi
    use_folder x86
    check_programs
    check_both_registrations
}

# ---------------------------------------------------------------------------------------------------------------------

case "${1:-}" in
    debian)
        rm -rf "$work"
        check_debian
        ;;
    installed) check_installed ;;
    windows)
        rm -rf "$work"
        check_windows
        ;;
    *)
        echo "usage: scripts/check-packages.sh debian|windows" >&2
        exit 2
        ;;
esac
[ "$failures" -eq 0 ]
