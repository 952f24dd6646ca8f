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
# tests start goes through qemu's user-mode emulator. It runs them on Debian's
# multiarch arm64 runtime (libc6:arm64, libstdc++6:arm64). Not with -L on the
# cross tree: its loader is an older glibc build than the multiarch libc.so.6
# that libcjson1:arm64 pulls in, and that pair hangs in pthread_create.
find_program(IF_QEMU_AARCH64 qemu-aarch64 REQUIRED)
set(CMAKE_CROSSCOMPILING_EMULATOR ${IF_QEMU_AARCH64})
