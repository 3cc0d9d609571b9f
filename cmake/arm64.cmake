# 64-bit ARM, as phones have it, built on any other machine: with Debian's cross compiler against build/arm64-root
# (tools/arm64-root), and run under qemu (tools/arm64-run).
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
cmake_path(ABSOLUTE_PATH CMAKE_CURRENT_LIST_DIR NORMALIZE OUTPUT_VARIABLE here)
cmake_path(GET here PARENT_PATH top)
set(CMAKE_SYSROOT ${top}/build/arm64-root)
set(CMAKE_CROSSCOMPILING_EMULATOR ${top}/tools/arm64-run)
# Everything but programs comes from there.
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${CMAKE_SYSROOT})
set(ENV{PKG_CONFIG_LIBDIR} ${CMAKE_SYSROOT}/usr/lib/aarch64-linux-gnu/pkgconfig:${CMAKE_SYSROOT}/usr/share/pkgconfig)
# Qt's tools (moc, qmlcachegen and others) are this machine's.
execute_process(COMMAND gcc -print-multiarch OUTPUT_VARIABLE machine OUTPUT_STRIP_TRAILING_WHITESPACE)
set(QT_HOST_PATH /usr)
set(QT_HOST_PATH_CMAKE_DIR /usr/lib/${machine}/cmake)
