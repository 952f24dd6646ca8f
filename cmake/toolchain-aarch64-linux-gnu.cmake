# Cross build for the switch's 64-bit ARM CPU with Debian's cross compiler.
# Target libraries come from two places: the cross toolchain's own tree
# (libc, libstdc++) and Debian's multiarch arm64 packages (libcjson-dev:arm64,
# libgtest-dev:arm64) under /usr/lib/aarch64-linux-gnu.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)

set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)

# "/" is a root for the multiarch packages; CMAKE_LIBRARY_ARCHITECTURE keeps
# the searches in their aarch64-linux-gnu folders, away from the host's.
set(CMAKE_FIND_ROOT_PATH /usr/aarch64-linux-gnu /)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# No binfmt registration is assumed: every aarch64 program the build or the
# tests start goes through qemu's user-mode emulator, which finds the target's
# loader and libstdc++ under the cross toolchain's tree.
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64 -L /usr/aarch64-linux-gnu)
