#!/bin/sh
# Installs cellformula into scratch prefixes and uses it from outside: a
# shared build through find_package (with clang when there is one, whose
# default standard is older than C++17) and through pkg-config, a static build
# through find_package, and the installed command-line program from a moved
# prefix. No consumer sets a C++ standard; no installed text names the machine.
# usage: check.sh SOURCE_DIR WORK_DIR
set -eu

if [ $# -ne 2 ]; then
    echo "usage: $0 SOURCE_DIR WORK_DIR" >&2
    exit 2
fi
source_dir=$(cd "$1" && pwd)
mkdir -p "$2"
work_dir=$(cd "$2" && pwd)
jobs=${JOBS:-2}

fail() {
    echo "install check: $*" >&2
    exit 1
}

# install_library NAME CMAKE_ARGS...: builds and installs into $work_dir/NAME-prefix.
install_library() {
    name=$1
    shift
    rm -rf "$work_dir/$name" "$work_dir/$name-prefix"
    # The prefix is chosen only at install time, so every package file must be relocatable.
    cmake -S "$source_dir" -B "$work_dir/$name" -DCMAKE_BUILD_TYPE=Release -DCELLFORMULA_BUILD_TESTS=OFF "$@"
    cmake --build "$work_dir/$name" -j "$jobs"
    cmake --install "$work_dir/$name" --prefix "$work_dir/$name-prefix"
}

# expect_six PROGRAM: runs it and checks that it succeeded and printed 6.
expect_six() {
    output=$("$1") || fail "$1 failed"
    [ "$output" = 6 ] || fail "$1 printed '$output', expected 6"
}

# build_cmake_consumer PREFIX DIR CMAKE_ARGS...
build_cmake_consumer() {
    prefix=$1 dir=$2
    shift 2
    rm -rf "$dir"
    cmake -S "$source_dir/tests/install" -B "$dir" -DCMAKE_PREFIX_PATH="$prefix" "$@"
    cmake --build "$dir"
}

install_library shared -DBUILD_SHARED_LIBS=ON -DCELLFORMULA_BUILD_TOOLS=ON
shared=$work_dir/shared-prefix

# Nothing installed may carry a path of this machine, and only the include
# root goes on a consumer's path.
if grep -rIl -e "$source_dir" -e "$work_dir" "$shared"; then
    fail "the files above name a build or source path"
fi
[ -f "$shared/include/cellformula/cellformula.h" ] || fail "no include/cellformula/cellformula.h"
[ -f "$shared/include/cellformula/version.h" ] || fail "no include/cellformula/version.h"
grep -q 'INTERFACE_INCLUDE_DIRECTORIES "${_IMPORT_PREFIX}/include"$' \
    "$(find "$shared" -name cellformulaTargets.cmake)" || fail "the exported include path is not the include root"

compiler=""
if command -v clang++ >/dev/null 2>&1; then compiler=-DCMAKE_CXX_COMPILER=clang++; fi
build_cmake_consumer "$shared" "$work_dir/consumer-cmake" ${compiler:+"$compiler"}
expect_six "$work_dir/consumer-cmake/consumer"
echo "install check: find_package(cellformula) consumer printed 6"

pc_file=$(find "$shared" -name cellformula.pc | head -n 1)
[ -n "$pc_file" ] || fail "no cellformula.pc under $shared"
PKG_CONFIG_PATH=$(dirname "$pc_file")
export PKG_CONFIG_PATH
cflags=$(pkg-config --cflags cellformula)
include_dir=$(echo "${cflags#-I}" | sed 's/ *$//')
[ "$(cd "$include_dir" && pwd)" = "$shared/include" ] || fail "pkg-config --cflags is $cflags, not the include root"
mkdir -p "$work_dir/consumer-pkgconfig"
# shellcheck disable=SC2046 # the flags are meant to split into words
${CXX:-c++} "$source_dir/tests/install/consumer.cpp" -o "$work_dir/consumer-pkgconfig/consumer" \
    $(pkg-config --cflags --libs cellformula)
LD_LIBRARY_PATH=$(pkg-config --variable=libdir cellformula) expect_six "$work_dir/consumer-pkgconfig/consumer"
echo "install check: pkg-config consumer printed 6"

# The installed program finds its library through its run path, also after
# the whole prefix has moved.
rm -rf "$work_dir/moved-prefix"
cp -a "$shared" "$work_dir/moved-prefix"
rm -rf "$shared"
cli_output=$(env -u LD_LIBRARY_PATH "$work_dir/moved-prefix/bin/cellformula" '=SUM(1;2)*2') ||
    fail "the installed cellformula did not run from a moved prefix"
[ "$cli_output" = "$(printf '6\tnumber\t0 ErrNone')" ] || fail "the installed cellformula printed '$cli_output'"
echo "install check: installed cellformula ran from a moved prefix"

install_library static -DBUILD_SHARED_LIBS=OFF -DCELLFORMULA_BUILD_TOOLS=OFF
[ -f "$work_dir/static-prefix/lib/libcellformula.a" ] ||
    [ -n "$(find "$work_dir/static-prefix" -name libcellformula.a)" ] || fail "no static library installed"
build_cmake_consumer "$work_dir/static-prefix" "$work_dir/consumer-static"
if command -v readelf >/dev/null 2>&1 && readelf -d "$work_dir/consumer-static/consumer" | grep -q libcellformula; then
    fail "the static consumer still needs libcellformula at run time"
fi
expect_six "$work_dir/consumer-static/consumer"
echo "install check: static find_package(cellformula) consumer printed 6"
