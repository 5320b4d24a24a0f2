#!/usr/bin/env bash
# Fresh-machine entry point: installs missing build tools, builds, and then
# either runs the command-line program on an example (run) or the whole test
# suite twice, plain and under AddressSanitizer + UndefinedBehaviorSanitizer (test),
# and once more cross-built for aarch64 under qemu-user.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")"

readonly PACKAGES=(flex libfl-dev bison cmake g++ make pkg-config libgtest-dev libbenchmark-dev libmuparser-dev clang libclang-rt-14-dev locales g++-aarch64-linux-gnu libc6-dev-arm64-cross qemu-user googletest)
JOBS="$(nproc 2>/dev/null || echo 2)"
readonly JOBS

usage() {
    echo "usage: $0 run|test" >&2
    exit 2
}

# The command a package provides, for packages that are usable when the
# command is on PATH even if dpkg does not know them (e.g. a newer cmake).
package_command() {
    case "$1" in
        flex | bison | cmake | g++ | make | pkg-config) echo "$1" ;;
        clang) echo clang++ ;;
        g++-aarch64-linux-gnu) echo aarch64-linux-gnu-g++ ;;
        qemu-user) echo qemu-aarch64 ;;
        *) echo "" ;;
    esac
}

is_installed() {
    local package="$1" command
    command="$(package_command "$package")"
    if [[ -n "$command" ]] && command -v "$command" >/dev/null 2>&1; then
        return 0
    fi
    command -v dpkg-query >/dev/null 2>&1 || return 1
    local status
    status="$(dpkg-query -W -f='${Status}' "$package" 2>/dev/null)" || return 1
    [[ "$status" == "install ok installed" ]]
}

install_missing_packages() {
    local missing=() package
    for package in "${PACKAGES[@]}"; do
        is_installed "$package" || missing+=("$package")
    done
    ((${#missing[@]} == 0)) && return 0

    local -a apt=(env DEBIAN_FRONTEND=noninteractive apt-get)
    if ! command -v apt-get >/dev/null 2>&1; then
        echo "setup: missing packages: ${missing[*]}" >&2
        echo "setup: this script installs them with apt-get (Debian/Ubuntu); install them with your package manager" >&2
        exit 1
    elif ((EUID != 0)); then
        if ! command -v sudo >/dev/null 2>&1; then
            echo "setup: missing packages: ${missing[*]}" >&2
            echo "setup: run as root, or install them first:" >&2
            echo "  sudo apt-get update && sudo apt-get install -y ${missing[*]}" >&2
            exit 1
        fi
        apt=(sudo "${apt[@]}")
    fi
    echo "setup: installing ${missing[*]}"
    "${apt[@]}" update
    "${apt[@]}" install -y --no-install-recommends "${missing[@]}"
}

# configure_and_build DIR [TARGET] [CMAKE_ARGS...]
configure_and_build() {
    local dir="$1" target="$2"
    shift 2
    cmake -S . -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@"
    if [[ -n "$target" ]]; then
        cmake --build "$dir" --target "$target" -j "$JOBS"
    else
        cmake --build "$dir" -j "$JOBS"
    fi
}

run_example() {
    configure_and_build build cellformula_cli
    local formula='=SUM(A1:B2)*2'
    local -a cells=(--cell A1=1 --cell B1=2.5 --cell A2=4 --cell B2=0.5)
    echo "\$ cellformula --tree ${cells[*]} '$formula'"
    build/tools/cellformula --tree "${cells[@]}" "$formula"
}

run_tests() {
    configure_and_build build "" -DCELLFORMULA_WARNINGS_AS_ERRORS=ON
    ctest --test-dir build --output-on-failure -j "$JOBS"

    export ASAN_OPTIONS=detect_leaks=1
    export UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
    configure_and_build build-asan "" -DCELLFORMULA_WARNINGS_AS_ERRORS=ON \
        -DCELLFORMULA_SANITIZE=address,undefined
    ctest --test-dir build-asan --output-on-failure -j "$JOBS"

    # Threads that share a tree or use drivers side by side, and the deep
    # shapes on a small stack, under ThreadSanitizer.
    configure_and_build build-tsan cellformula_tests -DCELLFORMULA_SANITIZE=thread \
        -DCELLFORMULA_BUILD_TOOLS=OFF
    ctest --test-dir build-tsan --output-on-failure -j "$JOBS" -R "Threads|DeepTrees"

    # Both fuzz targets for a bounded time; any finding fails the run.
    CXX=clang++ configure_and_build build-fuzz "" -DCMAKE_CXX_COMPILER=clang++ \
        -DCELLFORMULA_SANITIZE=address,undefined -DCELLFORMULA_BUILD_FUZZERS=ON \
        -DCELLFORMULA_BUILD_TESTS=OFF -DCELLFORMULA_BUILD_TOOLS=OFF
    fuzz/run.sh build-fuzz "${FUZZ_SECONDS:-60}"

    # The installed package, used from outside through CMake and pkg-config.
    env JOBS="$JOBS" sh tests/install/check.sh . build-install

    run_aarch64_tests
}

# The whole suite, the command-line and documentation scripts included, built
# for aarch64 and run under qemu-user (GoogleTest is built from its sources).
run_aarch64_tests() {
    configure_and_build build-aarch64 "" -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/aarch64-linux-gnu.cmake" \
        -DCELLFORMULA_WARNINGS_AS_ERRORS=ON -DCELLFORMULA_BUILD_BENCHMARKS=OFF -DCELLFORMULA_BUILD_FUZZERS=OFF
    ctest --test-dir build-aarch64 --output-on-failure -j "$JOBS"
}

(($# == 1)) || usage
case "$1" in
    run | test) ;;
    *) usage ;;
esac

install_missing_packages
if [[ "$1" == run ]]; then
    run_example
else
    run_tests
fi
