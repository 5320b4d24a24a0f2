#!/bin/sh
# Installs cellformula into a scratch prefix and builds a small outside
# program against it twice, through find_package and through pkg-config.
# usage: check.sh SOURCE_DIR WORK_DIR
set -eu

if [ $# -ne 2 ]; then
    echo "usage: $0 SOURCE_DIR WORK_DIR" >&2
    exit 2
fi
source_dir=$(cd "$1" && pwd)
mkdir -p "$2"
work_dir=$(cd "$2" && pwd)
prefix=$work_dir/prefix
jobs=${JOBS:-2}

rm -rf "$prefix" "$work_dir/consumer-cmake" "$work_dir/consumer-pkgconfig"
# The prefix is chosen only at install time, so both package files must be relocatable.
cmake -S "$source_dir" -B "$work_dir/library" -DCMAKE_BUILD_TYPE=Release \
    -DCELLFORMULA_BUILD_TESTS=OFF -DCELLFORMULA_BUILD_TOOLS=OFF
cmake --build "$work_dir/library" -j "$jobs"
cmake --install "$work_dir/library" --prefix "$prefix"

# expect_six PROGRAM: runs it and checks that it succeeded and printed 6.
expect_six() {
    if ! output=$("$1"); then
        echo "install check: $1 failed" >&2
        exit 1
    fi
    if [ "$output" != 6 ]; then
        echo "install check: $1 printed '$output', expected 6" >&2
        exit 1
    fi
}

cmake -S "$source_dir/tests/install" -B "$work_dir/consumer-cmake" -DCMAKE_PREFIX_PATH="$prefix"
cmake --build "$work_dir/consumer-cmake"
expect_six "$work_dir/consumer-cmake/consumer"
echo "install check: find_package(cellformula) consumer printed 6"

pc_file=$(find "$prefix" -name cellformula.pc | head -n 1)
if [ -z "$pc_file" ]; then
    echo "install check: no cellformula.pc under $prefix" >&2
    exit 1
fi
PKG_CONFIG_PATH=$(dirname "$pc_file")
export PKG_CONFIG_PATH
mkdir -p "$work_dir/consumer-pkgconfig"
# shellcheck disable=SC2046 # the flags are meant to split into words
${CXX:-c++} -std=c++17 "$source_dir/tests/install/consumer.cpp" -o "$work_dir/consumer-pkgconfig/consumer" \
    $(pkg-config --cflags --libs cellformula)
LD_LIBRARY_PATH=$(pkg-config --variable=libdir cellformula)${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}
export LD_LIBRARY_PATH
expect_six "$work_dir/consumer-pkgconfig/consumer"
echo "install check: pkg-config consumer printed 6"
