# The distribution's cross compiler against its arm64 packages, which .ci/arm64 unpacks into a folder
# of the build. Programs run under qemu.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)

cmake_path(ABSOLUTE_PATH CMAKE_CURRENT_LIST_DIR NORMALIZE OUTPUT_VARIABLE tavo_arm64_root)
cmake_path(GET tavo_arm64_root PARENT_PATH tavo_arm64_root)
set(tavo_arm64_root "${tavo_arm64_root}/build/arm64-root")
set(CMAKE_SYSROOT "${tavo_arm64_root}")
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_DIR} "")
set(ENV{PKG_CONFIG_SYSROOT_DIR} "${tavo_arm64_root}")
set(ENV{PKG_CONFIG_LIBDIR}
    "${tavo_arm64_root}/usr/lib/aarch64-linux-gnu/pkgconfig:${tavo_arm64_root}/usr/share/pkgconfig")
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64-static -L "${tavo_arm64_root}")
