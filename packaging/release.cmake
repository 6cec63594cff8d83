# How the delivered programs are compiled: hardened as Debian's are (dpkg-buildflags), and without a trace of the folder.
# Not with CMake's own switch for position-independent programs: its -fPIE lets the link-time optimiser copy Qt's data
# into the program, which Qt does not bear. Debian's compilers make such programs by themselves, with Qt's -fPIC.

add_compile_options(
    -ffile-prefix-map=${PROJECT_BINARY_DIR}=. -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.
    -fstack-protector-strong -fstack-clash-protection)
add_compile_definitions(_FORTIFY_SOURCE=2)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|amd64")
    add_compile_options(-fcf-protection)
elseif(CMAKE_SYSTEM_PROCESSOR STREQUAL "aarch64")
    add_compile_options(-mbranch-protection=standard)
endif()
add_link_options(-Wl,-z,relro,-z,now)

# The compiled-in files without the times of their sources.
set(CMAKE_AUTORCC_OPTIONS --format-version 1)
