# What both Windows targets share. ZYR_TRIPLET is set by toolchain-x64.cmake and toolchain-x86.cmake.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_VERSION 6.1)

# The posix thread model: std::thread and std::mutex, linked statically like all the rest.
set(CMAKE_C_COMPILER ${ZYR_TRIPLET}-gcc-posix)
set(CMAKE_CXX_COMPILER ${ZYR_TRIPLET}-g++-posix)
set(CMAKE_RC_COMPILER ${ZYR_TRIPLET}-windres)
set(CMAKE_OBJCOPY ${ZYR_TRIPLET}-objcopy CACHE FILEPATH "")
set(CMAKE_OBJDUMP ${ZYR_TRIPLET}-objdump CACHE FILEPATH "")

set(CMAKE_RC_FLAGS_INIT "-c 65001")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-static")

set(CMAKE_FIND_ROOT_PATH /usr/${ZYR_TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../scripts/run-under-wine)
