#!/usr/bin/env bash
# Sets up a Debian 12 machine for OrvantaContest, builds it, and then either
# starts the program (default) or runs every test:
#   scripts/setup.sh run [program arguments]
#   scripts/setup.sh test
#   scripts/setup.sh package   (the Debian package, in build/package/)
# Safe to run again at any time: it installs only what is missing and builds
# only what changed.
set -euo pipefail
mode=${1:-run}
[ $# -gt 0 ] && shift
cd "$(dirname "$0")/.."
root=$PWD
jobs=$(nproc 2>/dev/null || echo 2)

packages=(
    build-essential cmake ninja-build pkg-config git
    qt6-base-dev qt6-multimedia-dev qt6-serialport-dev qt6-svg-dev libqt6opengl6-dev libgl-dev
    libsqlite3-dev libcurl4-openssl-dev libsecret-1-dev
    libgtest-dev libgmock-dev libbenchmark-dev
    hamradio-files python3 python3-pyftpdlib clang-format clang libclang-rt-14-dev
    librsvg2-bin desktop-file-utils appstream lintian dpkg-dev file man-db bash-completion
    pulseaudio pulseaudio-utils sox poppler-utils gnome-keyring
    libhamlib-dev libhamlib-utils gmt-gshhg-low libnetcdf-dev
    libpq-dev postgresql
)
# Node.js may come from elsewhere than Debian; only a missing one is installed.
command -v node >/dev/null 2>&1 || packages+=(nodejs)
command -v npm >/dev/null 2>&1 || packages+=(npm)

install_missing() {
    local missing=()
    for p in "${packages[@]}"; do
        dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    local sudo=""
    [ "$(id -u)" -ne 0 ] && sudo=sudo
    echo "Installing: ${missing[*]}"
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

build() { # build DIR [cmake options...]
    local dir=$1
    shift
    cmake -S "$root" -B "$dir" -G Ninja "$@" >/dev/null
    cmake --build "$dir" -j"$jobs"
}

install_missing

case "$mode" in
run)
    build "$root/build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DORVANTA_TESTS=OFF
    exec "$root/build/src/ui/orvanta-contest" "$@"
    ;;
package)
    build "$root/build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DORVANTA_TESTS=OFF
    rm -f "$root"/build/package/*.deb
    cpack -G DEB -B "$root/build/package" --config "$root/build/CPackConfig.cmake" >/dev/null
    ls "$root"/build/package/*.deb
    ;;
test)
    # Node packages used by the tests that check our files with other readers.
    if [ -f tests/node/package.json ]; then
        (cd tests/node && npm install --no-audit --no-fund --silent)
    fi
    export QT_QPA_PLATFORM=offscreen
    # 1. The whole program with warnings as errors, benchmarks compiled too.
    build "$root/build-test" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DORVANTA_WERROR=ON -DORVANTA_BENCH=ON
    ctest --test-dir "$root/build-test" --output-on-failure -j"$jobs" --timeout 600
    # 2. Core and command-line tool alone, without Qt, under AddressSanitizer
    #    and UndefinedBehaviorSanitizer: proves core does not depend on Qt.
    build "$root/build-asan" -DCMAKE_BUILD_TYPE=Debug -DORVANTA_GUI=OFF -DORVANTA_WERROR=ON \
        -DORVANTA_SANITIZE=ON
    #    libhamlib's own losses are known (tests/lsan.supp).
    ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
        LSAN_OPTIONS=suppressions="$root/tests/lsan.supp" \
        ctest --test-dir "$root/build-asan" --output-on-failure -j"$jobs" --timeout 900
    # 3. Every reader of outside input under libFuzzer (clang): its seeds and
    #    saved corpus replayed, then 20 seconds of fuzzing (tests/fuzz/README.md).
    CC=clang CXX=clang++ build "$root/build-fuzz" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DORVANTA_FUZZ=ON \
        -DORVANTA_WERROR=ON
    ctest --test-dir "$root/build-fuzz" --output-on-failure -j"$jobs" --timeout 600
    ;;
*)
    echo "usage: scripts/setup.sh run|test|package" >&2
    exit 2
    ;;
esac
