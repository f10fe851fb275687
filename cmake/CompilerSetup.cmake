# Flags that every target of this build shares.

find_program(VELDMARK_CCACHE ccache)
mark_as_advanced(VELDMARK_CCACHE)
if(VELDMARK_CCACHE)
  # Precompiled headers are only cached when their defines and dates may be taken on trust.
  set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${VELDMARK_CCACHE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    add_compile_options("SHELL:-Xclang -fno-pch-timestamp")
  else()
    add_compile_options(-fpch-preprocess)
  endif()
endif()

add_library(veldmark_options INTERFACE)
target_compile_options(veldmark_options INTERFACE -Wall -Wextra -Werror)
target_include_directories(veldmark_options INTERFACE ${PROJECT_SOURCE_DIR}/src)

set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 14)
  # Inlining makes these see overflows in the standard library's texts that can't happen.
  target_compile_options(
    veldmark_options INTERFACE -Wno-stringop-overflow -Wno-stringop-overread -Wno-restrict
                               -Wno-array-bounds)
endif()

if(VELDMARK_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
if(VELDMARK_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "Fuzz targets need Clang; use the preset 'fuzz'.")
  endif()
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

if(WIN32)
  # One file without companions: nothing of the tool chain has to be installed beside the server.
  add_link_options(-static)
  add_compile_definitions(WINVER=0x0601 _WIN32_WINNT=0x0601 NOMINMAX WIN32_LEAN_AND_MEAN)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    # Callers enter with the stack aligned to four bytes only.
    add_compile_options(-mstackrealign)
    add_link_options(-Wl,--enable-stdcall-fixup)
  endif()
endif()
