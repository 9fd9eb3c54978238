# How targets of this project are made: one static library a folder of src/, one test program a
# folder of tests/, and the warnings and sanitizers that all of them share.

# The Dev build type is the project's own: project() has made its variables already, but empty, so
# a default put into the cache would not take.
if(NOT CMAKE_CXX_FLAGS_DEV)
  set(CMAKE_CXX_FLAGS_DEV "-O2 -g1") # assertions stay on
endif()

add_library(velarc_options INTERFACE)
target_compile_options(velarc_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow=local -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align
  -Wconversion -Wno-sign-conversion -Wimplicit-fallthrough -Wswitch-enum
  -Wno-maybe-uninitialized) # g++ 12 sees it in every std::optional of a QString that is copied
target_compile_definitions(velarc_options INTERFACE
  QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH
  QT_DISABLE_DEPRECATED_BEFORE=0x060400 $<$<CONFIG:Dev>:QT_FORCE_ASSERTS>)

function(velarc_apply_options target)
  target_link_libraries(${target} PRIVATE velarc_options)
  if(VELARC_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(VELARC_SANITIZE)
    target_compile_options(${target} PRIVATE
      -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=address,undefined)
  endif()
  if(VELARC_FUZZ)
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
endfunction()

# The outside headers that nearly every file reads are compiled once for src/ (by velarc_base) and
# once for the tests (by velarc_test_support); the other targets reuse them. A file still includes
# what it uses.
set(velarc_common_headers <QByteArray> <QList> <QString> <QStringView> <QUuid>
  <algorithm> <array> <chrono> <functional> <memory> <optional> <stop_token> <variant> <vector>)

function(velarc_precompile target owner)
  if(target STREQUAL owner)
    target_precompile_headers(${target} PRIVATE ${velarc_common_headers} ${ARGN})
  else()
    target_precompile_headers(${target} REUSE_FROM ${owner})
  endif()
endfunction()

# velarc_library(FOLDER SOURCES file... LINKS target...): the library velarc_FOLDER.
function(velarc_library folder)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_library(velarc_${folder} STATIC ${ARG_SOURCES})
  target_include_directories(velarc_${folder} PUBLIC "${PROJECT_SOURCE_DIR}/src")
  target_link_libraries(velarc_${folder} PUBLIC ${ARG_LINKS})
  velarc_apply_options(velarc_${folder})
  velarc_precompile(velarc_${folder} velarc_base)
endfunction()

# velarc_program(NAME SOURCES file... LINKS target...): a program in bin/.
function(velarc_program name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LINKS})
  velarc_apply_options(${name})
  velarc_precompile(${name} velarc_base)
endfunction()

# velarc_test_program(FOLDER SOURCES file... LINKS target...): the program velarc_FOLDER_tests, for
# tests that run it in their own way.
function(velarc_test_program folder)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  set(target velarc_${folder}_tests)
  add_executable(${target} ${ARG_SOURCES})
  target_link_libraries(${target} PRIVATE ${ARG_LINKS} velarc_test_support)
  velarc_apply_options(${target})
  velarc_precompile(${target} velarc_test_support)
endfunction()

# velarc_tests(FOLDER SOURCES file... LINKS target... [UNDER command]): one test program for a folder
# of src/, which the command runs if one is given.
function(velarc_tests folder)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS;UNDER" ${ARGN})
  velarc_test_program(${folder} SOURCES ${ARG_SOURCES} LINKS ${ARG_LINKS})
  add_test(NAME ${folder} COMMAND ${ARG_UNDER} $<TARGET_FILE:velarc_${folder}_tests>)
  set_tests_properties(${folder} PROPERTIES TIMEOUT 600)
endfunction()
