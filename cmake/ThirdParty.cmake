# zyr::jpeg, zyr::tiff and, for the tools, zyr::zlib: Debian's own on the host, static ones built from Debian's sources
# for Windows.
# GoogleTest from Debian's sources on every build.

if(WIN32)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(ZYR_ARCH x64)
  else()
    set(ZYR_ARCH x86)
  endif()
  message(STATUS "libjpeg-turbo, libtiff and zlib for ${ZYR_ARCH}")
  execute_process(COMMAND ${PROJECT_SOURCE_DIR}/scripts/build-third-party.sh ${ZYR_ARCH}
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "scripts/build-third-party.sh ${ZYR_ARCH} failed:\n${output}")
  endif()
  foreach(name jpeg tiff zlib)
    string(REPLACE zlib z file ${name})
    add_library(zyr::${name} STATIC IMPORTED)
    set_target_properties(zyr::${name} PROPERTIES
      IMPORTED_LOCATION ${PROJECT_SOURCE_DIR}/build/third_party/${ZYR_TRIPLET}/lib/lib${file}.a
      INTERFACE_INCLUDE_DIRECTORIES ${PROJECT_SOURCE_DIR}/build/third_party/${ZYR_TRIPLET}/include)
  endforeach()
else()
  set(ZYR_ARCH host)
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
