#!/bin/sh
# Installs the packages that a purpose needs, on Debian 12. Run it as root or as a user who may use sudo.
# Installed packages are left alone: a second run needs neither the network nor a password.
#   scripts/install-dependencies.sh [PURPOSE...]
# Without a purpose it installs the packages for all of them:
#   build     the library, the tools and the examples for Linux
#   demo      ./demo.sh: the same, for Windows too, and Wine
#   gateway   morquil-gateway
#   test      ./test.sh: also what tests and the documentation need
#   metrics   promtool, which checks the gateway's metrics and alert rules; its package also starts a server
#   fuzz      fuzz/run.sh
#   bench     bench/run.sh: also what the benchmarks measure with, and against
#   coverage  scripts/measure-coverage.sh: also what counts lines
#   docs      scripts/build-docs.sh
#   package   scripts/package.sh and scripts/check-packages.sh
#   lint      scripts/check-style.sh
#   wine32    32-bit Wine, with which ./test.sh also tests the 32-bit DLL. It comes from Debian's i386 packages: that
#             architecture is added, and removed again if they cannot be installed.
set -eu

all_purposes=" build demo gateway test metrics fuzz bench coverage docs package lint wine32"

# Wine's interface definition compiler makes the header and the type library, for Linux as well.
compiling="g++ cmake ninja-build python3 mingw-w64-tools libwine-dev"
tools="libasio-dev libcli11-dev nlohmann-json3-dev"
gateway="libboost1.81-dev libssl-dev libtomlplusplus-dev libsqlitecpp-dev libsqlite3-dev prometheus-cpp-dev
    libsodium-dev libsystemd-dev pkg-config npm"
browsing="chromium chromium-driver python3-selenium python3-pil fonts-dejavu-core"
windows="g++-mingw-w64-x86-64-posix wine wine64"
windows_x86="g++-mingw-w64-i686-posix"
arm64="g++-aarch64-linux-gnu qemu-user"
testing="libgtest-dev libgmock-dev googletest"
shells="zsh fish"
transfer="curl"
python="python3-pytest python3-hypothesis python3-coverage mypy"
dotnet="mono-mcs mono-runtime unzip"
documenting="doxygen graphviz python3-sphinx python3-myst-parser furo python3-breathe"
proofreading="hunspell hunspell-en-gb"
clang="clang libclang-rt-14-dev"
formatting="clang-format"
linting="clang-tidy"
packaging="dpkg-dev debhelper dh-python lintian pkg-config python3-setuptools python3-wheel"
benchmarking="libbenchmark-dev libhttp-parser-dev libmpdclient-dev libhiredis-dev libfmt-dev"
counting="gcovr"

# packages_for PURPOSE
packages_for() {
    case "$1" in
        build) echo "$compiling $tools" ;;
        demo) echo "$compiling $tools $windows" ;;
        gateway) echo "$compiling $tools $gateway" ;;
        metrics) echo "prometheus" ;;
        test)
            echo "$compiling $tools $gateway $windows $windows_x86 $arm64 $testing $shells $python $dotnet" \
                "$browsing $documenting $proofreading $clang $formatting $transfer"
            ;;
        fuzz) echo "$compiling $tools $gateway $clang" ;;
        bench) echo "$compiling $tools $windows $dotnet $benchmarking" ;;
        coverage) echo "$compiling $tools $testing $counting" ;;
        docs) echo "$compiling $tools $documenting" ;;
        package) echo "$compiling $tools $gateway $windows $windows_x86 $testing $dotnet $documenting $packaging" ;;
        lint) echo "$compiling $tools $testing $clang $formatting $linting" ;;
        wine32) echo "wine wine64 wine32:i386" ;;
        *)
            echo "install-dependencies.sh: unknown purpose: $1; known are:$all_purposes" >&2
            return 2
            ;;
    esac
}

# shellcheck disable=SC2086  # one word per purpose
[ $# -gt 0 ] || set -- $all_purposes

# has PACKAGE: npm also comes with other packages of Node.
has() {
    [ "$(dpkg-query --show --showformat='${db:Status-Status}' "$1" 2>/dev/null)" = installed ] ||
        { [ "$1" = npm ] && command -v npm >/dev/null; }
}

missing=""
missing_i386=""
for purpose in "$@"; do
    packages=$(packages_for "$purpose")
    for package in $packages; do
        case " $missing $missing_i386 " in *" $package "*) continue ;; esac
        if has "$package"; then
            continue
        fi
        case "$package" in
            *:i386) missing_i386="$missing_i386 $package" ;;
            *) missing="$missing $package" ;;
        esac
    done
done
if [ -z "$missing$missing_i386" ]; then
    exit 0
fi

as_root=""
if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
        echo "install-dependencies.sh: run it as root to install:$missing$missing_i386" >&2
        exit 1
    fi
    as_root=sudo
fi

# install PACKAGE...
install() {
    echo "Installing: $*"
    $as_root apt-get -q update &&
        $as_root env DEBIAN_FRONTEND=noninteractive apt-get -q install --yes --no-install-recommends "$@"
}

# Debian's wine starts every program with this, once it is installed; a kernel may run no 32-bit programs.
wine32_runs() { /usr/lib/wine/wine --version >/dev/null 2>&1; }

# install_i386 PACKAGE...: removes nothing for it. If it fails, apt is left as it was, because an architecture whose lists
# a mirror does not have makes every later update fail.
install_i386() {
    added=""
    if ! dpkg --print-foreign-architectures | grep -qx i386; then
        $as_root dpkg --add-architecture i386
        added=yes
    fi
    if install --no-remove "$@"; then
        wine32_runs && return
        $as_root apt-get -q remove --yes "$@"
    elif [ -n "$added" ]; then
        $as_root dpkg --remove-architecture i386
        $as_root apt-get -q update
    fi
    echo "install-dependencies.sh: could not install: $*" >&2
    return 1
}

# shellcheck disable=SC2086  # one word per package
[ -z "$missing" ] || install $missing
# shellcheck disable=SC2086
[ -z "$missing_i386" ] || install_i386 $missing_i386
