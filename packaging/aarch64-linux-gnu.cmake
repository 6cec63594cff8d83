# Debian's cross compiler with its arm64 packages; what is built runs here in the emulator.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64)
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE arm64)
