# Cross build for 64-bit Windows with MinGW-w64 (the posix threads variant, whose libstdc++
# has std::thread and std::mutex). The executables link the C and C++ runtimes and winpthread
# statically, so they run under Wine or on Windows without extra DLLs beside them.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(_kx_mingw x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${_kx_mingw}-gcc-posix)
set(CMAKE_CXX_COMPILER ${_kx_mingw}-g++-posix)
set(CMAKE_RC_COMPILER ${_kx_mingw}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${_kx_mingw})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# GCC cannot align the Windows x64 stack to 32 or 64 bytes, yet spills AVX registers with
# aligned moves, which fault on a misaligned slot; the assembler rewrites them as unaligned
# moves (same speed on every processor with AVX).
set(CMAKE_C_FLAGS_INIT "-Wa,-muse-unaligned-vector-move")
set(CMAKE_CXX_FLAGS_INIT "-Wa,-muse-unaligned-vector-move")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static-libgcc -static-libstdc++ -Wl,-Bstatic,--whole-archive -lwinpthread -Wl,--no-whole-archive,-Bdynamic")
# Test programs run under Wine when CTest starts them from a Linux host.
find_program(_kx_wine NAMES wine wine64 PATHS /usr/lib/wine NO_CMAKE_FIND_ROOT_PATH)
if(_kx_wine)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${_kx_wine})
endif()
# The header-only libraries come from the build host (cmake/cross/).
set(nlohmann_json_DIR ${CMAKE_CURRENT_LIST_DIR}/../cross CACHE PATH "")
set(CLI11_DIR ${CMAKE_CURRENT_LIST_DIR}/../cross CACHE PATH "")
