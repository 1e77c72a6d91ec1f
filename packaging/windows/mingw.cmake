# Cross-compiles for Windows with Debian's MinGW-w64. QUORVANE_WINDOWS_PREFIX is the folder of
# libraries that packaging/windows/toolchain fills.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES QUORVANE_WINDOWS_PREFIX)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 ${QUORVANE_WINDOWS_PREFIX})
set(CMAKE_PREFIX_PATH ${QUORVANE_WINDOWS_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ZLIB_LIBRARY /usr/x86_64-w64-mingw32/lib/libz.a)  # not the import library of a DLL
set(ENV{PKG_CONFIG_LIBDIR} ${QUORVANE_WINDOWS_PREFIX}/lib/pkgconfig)

# GCC takes a stack for aligned to 32 and 64 bytes that Windows aligns to 16 (GCC bug 54412): wide
# registers are kept there by unaligned moves instead.
set(CMAKE_C_FLAGS_INIT "-Wa,-muse-unaligned-vector-move")
set(CMAKE_CXX_FLAGS_INIT "-Wa,-muse-unaligned-vector-move")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
