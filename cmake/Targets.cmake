# How the targets are made from folders. Sources are globbed: adding a file needs no edit here.

# zyr_sources(<variable> GLOBS <glob>... [EXCLUDE <regex>...] [ONLY <regex>]): the sources that match. Each is noted as
# known to the build, which scripts/check-structure.pl holds against the tree.
function(zyr_sources variable)
  cmake_parse_arguments(arg "" "ONLY" "GLOBS;EXCLUDE" ${ARGN})
  file(GLOB_RECURSE found CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR} ${arg_GLOBS})
  foreach(regex IN LISTS arg_EXCLUDE)
    list(FILTER found EXCLUDE REGEX ${regex})
  endforeach()
  if(arg_ONLY)
    list(FILTER found INCLUDE REGEX ${arg_ONLY})
  endif()
  set_property(GLOBAL APPEND PROPERTY ZYR_KNOWN_SOURCES ${found})
  list(TRANSFORM found PREPEND ${PROJECT_SOURCE_DIR}/)
  set(${variable} ${found} PARENT_SCOPE)
endfunction()

function(zyr_write_known_sources)
  get_property(known GLOBAL PROPERTY ZYR_KNOWN_SOURCES)
  list(JOIN known "\n" text)
  file(WRITE ${PROJECT_BINARY_DIR}/known-sources.txt "${text}\n")
endfunction()

# zyr_link(<target> <library>...): links what exists of these. A library whose folder has no sources is not made.
function(zyr_link target)
  foreach(library IN LISTS ARGN)
    if(TARGET ${library} OR NOT library MATCHES "^zyr_")
      target_link_libraries(${target} PUBLIC ${library})
    endif()
  endforeach()
endfunction()

# zyr_compile_kernels(<source>...): those named *_base.cpp and *_avx2.cpp hold loops for vector units; see
# foundation/support/cpu.h.
function(zyr_compile_kernels)
  foreach(source IN LISTS ARGN)
    if(source MATCHES "_base\\.cpp$")
      set_source_files_properties(${source} PROPERTIES COMPILE_OPTIONS "-O3")
    elseif(source MATCHES "_avx2\\.cpp$")
      # gcc keeps the stack of Windows programs aligned to 16 bytes only and yet moves 32 as if they were aligned (its
      # bug 54412): the assembler makes all such moves unaligned ones.
      set_source_files_properties(${source} PROPERTIES
        COMPILE_OPTIONS "-O3;-mavx2;$<$<BOOL:${WIN32}>:-Wa,-muse-unaligned-vector-move>")
    endif()
  endforeach()
endfunction()

# zyr_library(<name> [OBJECT] [WINDOWS_ONLY] FOLDERS <folder>... [WIN32_FOLDERS <folder>...] LINKS <library>...)
# takes the folders' sources without those in folders named win32/ (unless the folder itself is one) and host/, nor a
# driver or a tool that stands right below, and of WIN32_FOLDERS only those in folders named win32/.
function(zyr_library name)
  cmake_parse_arguments(arg "OBJECT;WINDOWS_ONLY" "" "FOLDERS;WIN32_FOLDERS;LINKS" ${ARGN})
  set(sources)
  foreach(folder IN LISTS arg_FOLDERS)
    zyr_sources(found GLOBS ${PROJECT_SOURCE_DIR}/${folder}/*.cpp ${PROJECT_SOURCE_DIR}/${folder}/*.c
      EXCLUDE "^${folder}/(.*/)?(win32|host)/" "^${folder}/(driver|tool)/" "/main\\.cpp$")
    list(APPEND sources ${found})
  endforeach()
  foreach(folder IN LISTS arg_WIN32_FOLDERS)
    zyr_sources(found GLOBS ${PROJECT_SOURCE_DIR}/${folder}/*.cpp ONLY "^${folder}/(.*/)?win32/")
    list(APPEND sources ${found})
  endforeach()
  if(NOT sources OR (arg_WINDOWS_ONLY AND NOT WIN32))
    return()
  endif()
  if(arg_OBJECT)
    add_library(${name} OBJECT ${sources})
  else()
    add_library(${name} STATIC ${sources})
  endif()
  zyr_own_code(${name})
  zyr_compile_kernels(${sources})
  zyr_link(${name} ${arg_LINKS})
endfunction()

# Every portable floor that stands; a program links these and one side of the seam.
set(ZYR_PORTABLE zyr_twain zyr_acquire zyr_hardware zyr_imaging zyr_settings zyr_foundation)

# zyr_program(<name> SOURCES <file>... LINKS <library>...)
function(zyr_program name)
  cmake_parse_arguments(arg "" "" "SOURCES;LINKS" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  zyr_own_code(${name})
  zyr_link(${name} ${arg_LINKS})
endfunction()

# zyr_add_resources(<target>): the dialogs and the rest of resources/, for the module and for tests that open windows.
function(zyr_add_resources target)
  # windres tells no dependencies: every part counts as one of every script.
  file(GLOB_RECURSE parts CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/resources/*)
  list(FILTER parts EXCLUDE REGEX "\\.rc$|/languages/")
  set_source_files_properties(${resource_scripts} PROPERTIES OBJECT_DEPENDS "${parts}")
  target_sources(${target} PRIVATE ${resource_scripts})
endfunction()
