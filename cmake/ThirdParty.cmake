# zyr::jpeg, zyr::tiff and, for the tools, zyr::zlib: Debian's own on the host, static ones built from Debian's sources
# for Windows. zyr::math: musl's mathematical functions, built from Debian's sources everywhere.
# GoogleTest from Debian's sources on every build.

if(WIN32)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(ZYR_ARCH x64)
  else()
    set(ZYR_ARCH x86)
  endif()
  set(third_party ${PROJECT_SOURCE_DIR}/build/third_party/${ZYR_TRIPLET})
else()
  set(ZYR_ARCH host)
  set(third_party ${PROJECT_SOURCE_DIR}/build/third_party/host)
endif()

message(STATUS "Third-party libraries for ${ZYR_ARCH}")
execute_process(COMMAND ${PROJECT_SOURCE_DIR}/scripts/build-third-party.sh ${ZYR_ARCH}
  RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "scripts/build-third-party.sh ${ZYR_ARCH} failed:\n${output}")
endif()

add_library(zyr::math STATIC IMPORTED)
set_target_properties(zyr::math PROPERTIES IMPORTED_LOCATION ${third_party}/lib/libzyrmath.a)

if(WIN32)
  foreach(name jpeg tiff zlib)
    string(REPLACE zlib z file ${name})
    add_library(zyr::${name} STATIC IMPORTED)
    set_target_properties(zyr::${name} PROPERTIES
      IMPORTED_LOCATION ${third_party}/lib/lib${file}.a
      INTERFACE_INCLUDE_DIRECTORIES ${third_party}/include)
  endforeach()
else()
  find_package(JPEG REQUIRED)
  find_package(TIFF REQUIRED)
  find_package(ZLIB REQUIRED)
  add_library(zyr::jpeg ALIAS JPEG::JPEG)
  add_library(zyr::tiff ALIAS TIFF::TIFF)
  add_library(zyr::zlib ALIAS ZLIB::ZLIB)
endif()

if(NOT ZYR_FUZZ AND NOT ZYR_BENCH)
  add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
endif()
