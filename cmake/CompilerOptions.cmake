# What every translation unit of ours and of GoogleTest is compiled with. Warnings are errors in our own only: see
# zyr_own_code().

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)

# A fused multiply-add rounds once where the formulas round twice.
add_compile_options($<$<COMPILE_LANGUAGE:C,CXX>:-ffp-contract=off>)

if(ZYR_SANITIZE)
  add_compile_options(-fsanitize=${ZYR_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${ZYR_SANITIZE})
endif()

if(WIN32)
  # Windows 7 and later; printf formats as in standard C, so that all builds agree.
  add_compile_definitions(_WIN32_WINNT=0x0601 WINVER=0x0601 NOMINMAX __USE_MINGW_ANSI_STDIO=1)
endif()

find_program(ZYR_CCACHE ccache)
if(ZYR_CCACHE)
  # Another checkout elsewhere finds the same objects.
  set(launcher ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${ZYR_CCACHE})
  set(CMAKE_C_COMPILER_LAUNCHER ${launcher})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${launcher})
endif()

# zyr_own_code(<target>): the rules for code of this repository.
function(zyr_own_code target)
  target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:C,CXX>:-Wall;-Wextra;-Werror>)
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # At -O2 gcc 12 takes std::string's assignments for copies between overlapping blocks (its bug 105329).
    target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:-Wno-restrict>)
  endif()
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
endfunction()
