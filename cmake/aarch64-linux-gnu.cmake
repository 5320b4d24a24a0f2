# Cross build for 64-bit ARM Linux with Debian's cross toolchain; the programs
# it builds (tests, CLI) run under qemu-user, so the whole suite runs on an x86-64 host.
# usage: cmake -S . -B build-aarch64 -DCMAKE_TOOLCHAIN_FILE=cmake/aarch64-linux-gnu.cmake
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)

set(CELLFORMULA_CROSS_ROOT /usr/aarch64-linux-gnu)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)

# Libraries and headers come from the target's root only; programs (bison,
# flex, qemu) are the host's.
set(CMAKE_FIND_ROOT_PATH ${CELLFORMULA_CROSS_ROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# -L lets qemu find the target's dynamic loader and C/C++ runtime.
find_program(CELLFORMULA_QEMU qemu-aarch64 REQUIRED)
set(CMAKE_CROSSCOMPILING_EMULATOR ${CELLFORMULA_QEMU} -L ${CELLFORMULA_CROSS_ROOT})
