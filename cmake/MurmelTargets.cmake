# One folder is one target. The link dependencies declared here are the module graph: a module sees the
# headers of the source tree, but links only what it names, and the layering test reads its includes.

# What nearly every file includes, compiled once: one set for the product, one for the tests. Files keep their own
# includes; the preset `core-only` builds without.
option(MURMEL_PRECOMPILED_HEADERS "Compile the common headers once" ON)
set(MURMEL_COMMON_HEADERS
  <algorithm> <array> <atomic> <chrono> <coroutine> <cstddef> <cstdint> <cstring> <expected> <filesystem> <functional>
  <map> <memory> <mutex> <optional> <set> <span> <sstream> <string> <string_view> <thread> <utility> <variant> <vector>
  <fmt/format.h>)

# The compiler never writes the same precompiled file twice. Beside it stands what it was made from, for a compiler cache
# that is told to compare that instead (ccache: pch_external_checksum), so that several checkouts share it.
function(murmel_name_headers target contents)
  string(TOUPPER "${CMAKE_BUILD_TYPE}" type)
  get_directory_property(options COMPILE_OPTIONS)
  file(CONFIGURE OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/CMakeFiles/${target}.dir/cmake_pch.hxx.gch.sum" CONTENT
    "${contents} ${CMAKE_CXX_COMPILER_VERSION} ${fmt_VERSION} ${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_${type}} ${options}\n")
endfunction()

# murmel_use_common_headers(<target>): the product's precompiled headers.
function(murmel_use_common_headers target)
  if(NOT MURMEL_PRECOMPILED_HEADERS)
    return()
  endif()
  if(NOT TARGET murmel_common_headers)
    file(WRITE "${CMAKE_BINARY_DIR}/common_headers.cpp" "")
    add_library(murmel_common_headers STATIC "${CMAKE_BINARY_DIR}/common_headers.cpp")
    target_link_libraries(murmel_common_headers PRIVATE murmel_options fmt::fmt)
    target_precompile_headers(murmel_common_headers PRIVATE ${MURMEL_COMMON_HEADERS})
    murmel_name_headers(murmel_common_headers "${MURMEL_COMMON_HEADERS}")
  endif()
  # The compiled headers fit only who says the same about their libraries.
  target_compile_definitions(${target} PRIVATE $<TARGET_PROPERTY:fmt::fmt,INTERFACE_COMPILE_DEFINITIONS>)
  target_precompile_headers(${target} REUSE_FROM murmel_common_headers)
endfunction()

# Several sources are compiled as one where somebody builds everything: their headers are read and their templates made
# once. The names in their anonymous namespaces then have to differ. A batch names its sources relative to the source
# tree, so that checkouts share a compiler cache. CMake's own unity builds name them by their full paths.
set(MURMEL_BATCH 0 CACHE STRING "Compile so many sources of a target as one; tests half as many; 0: each by itself")

# murmel_in_batches(<result> <size> <source> ...): the sources, or the batches that stand for them.
function(murmel_in_batches result size)
  set(sources ${ARGN})
  set(batchable)
  foreach(source IN LISTS sources)
    cmake_path(ABSOLUTE_PATH source NORMALIZE OUTPUT_VARIABLE path)
    if(path MATCHES "\\.cpp$" AND EXISTS "${path}")
      file(STRINGS "${path}" moc REGEX "\\.moc\"" LIMIT_COUNT 1)  # Qt's generator looks for these sources
      if(NOT moc)
        list(APPEND batchable "${source}")
      endif()
    endif()
  endforeach()
  list(LENGTH batchable count)
  if(size LESS 2 OR count LESS 2)
    set(${result} ${sources} PARENT_SCOPE)
    return()
  endif()
  list(REMOVE_ITEM sources ${batchable})
  math(EXPR batches "(${count} + ${size} - 1) / ${size}")
  math(EXPR length "(${count} + ${batches} - 1) / ${batches}")
  list(GET batchable 0 first)
  get_filename_component(name "${first}" NAME_WE)
  foreach(batch RANGE 1 ${batches})
    math(EXPR begin "(${batch} - 1) * ${length}")
    list(SUBLIST batchable ${begin} ${length} part)
    set(contents "")
    foreach(source IN LISTS part)
      cmake_path(ABSOLUTE_PATH source NORMALIZE OUTPUT_VARIABLE path)
      cmake_path(RELATIVE_PATH path BASE_DIRECTORY "${CMAKE_SOURCE_DIR}")
      string(APPEND contents "#include \"${path}\"\n")
    endforeach()
    set(file "${CMAKE_CURRENT_BINARY_DIR}/batches/${name}_${batch}.cpp")
    file(CONFIGURE OUTPUT "${file}" CONTENT "${contents}" @ONLY)
    list(APPEND sources "${file}")
  endforeach()
  set(${result} ${sources} PARENT_SCOPE)
endfunction()

# murmel_module(NAME <Folder> [SOURCES ...] [DEPENDS <Folder> ...] [LIBRARIES <system target> ...])
# Creates the static library murmel_<folder>, or an interface library when it has no sources.
function(murmel_module)
  cmake_parse_arguments(ARG "" "NAME" "SOURCES;DEPENDS;LIBRARIES" ${ARGN})
  string(TOLOWER "murmel_${ARG_NAME}" target)
  murmel_targets_of(dependencies ${ARG_DEPENDS})
  if(ARG_SOURCES)
    murmel_in_batches(sources ${MURMEL_BATCH} ${ARG_SOURCES})
    add_library(${target} STATIC ${sources})
    target_include_directories(${target} PUBLIC "${CMAKE_SOURCE_DIR}/MRMPrototype" "${CMAKE_SOURCE_DIR}")
    target_link_libraries(${target} PUBLIC ${dependencies} PRIVATE murmel_options ${ARG_LIBRARIES})
    murmel_use_common_headers(${target})
  else()
    add_library(${target} INTERFACE)
    target_include_directories(${target} INTERFACE "${CMAKE_SOURCE_DIR}/MRMPrototype" "${CMAKE_SOURCE_DIR}")
    target_link_libraries(${target} INTERFACE ${dependencies})
  endif()
endfunction()

# murmel_targets_of(<result> <Folder> ...): the targets of the modules.
function(murmel_targets_of result)
  set(targets)
  foreach(module IN LISTS ARGN)
    string(TOLOWER "murmel_${module}" target)
    list(APPEND targets ${target})
  endforeach()
  set(${result} ${targets} PARENT_SCOPE)
endfunction()

# What every test program has.
function(murmel_test_program target)
  target_include_directories(${target} PRIVATE "${CMAKE_SOURCE_DIR}/Tests")
  if(MURMEL_BATCH)
    target_include_directories(${target} PRIVATE "${CMAKE_SOURCE_DIR}")
  endif()
  target_link_libraries(${target} PRIVATE murmel_options murmel_test_support GTest::gmock GTest::gtest_main)
  set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
  if(NOT MURMEL_PRECOMPILED_HEADERS)
    return()
  endif()
  if(NOT TARGET murmel_test_headers)
    file(WRITE "${CMAKE_BINARY_DIR}/test_headers.cpp" "")
    add_library(murmel_test_headers STATIC "${CMAKE_BINARY_DIR}/test_headers.cpp")
    target_link_libraries(murmel_test_headers PRIVATE murmel_options fmt::fmt GTest::gmock)
    target_precompile_headers(murmel_test_headers PRIVATE ${MURMEL_COMMON_HEADERS} <gmock/gmock.h> <gtest/gtest.h>)
    murmel_name_headers(murmel_test_headers "${MURMEL_COMMON_HEADERS} test ${GTest_VERSION}")
  endif()
  target_precompile_headers(${target} REUSE_FROM murmel_test_headers)
endfunction()

# murmel_unit_tests(core|desktop SOURCES ... [DEPENDS <Folder> ...] [LIBRARIES ...])
# Adds to the one unit-test program of the core, or to that of the desktop and the workers, which the core-only build
# leaves out. Each runs in a few parts side by side.
function(murmel_unit_tests group)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS;LIBRARIES" ${ARGN})
  if(group STREQUAL "desktop" AND MURMEL_CORE_ONLY)
    return()
  endif()
  set(target unit_${group})
  if(NOT TARGET ${target})
    add_executable(${target})
    murmel_test_program(${target})
    set(parts 4)
    foreach(part RANGE 1 ${parts})
      math(EXPR index "${part} - 1")
      add_test(NAME ${target}_${part} COMMAND ${target})
      set_tests_properties(${target}_${part} PROPERTIES LABELS unit TIMEOUT 120
        ENVIRONMENT "GTEST_TOTAL_SHARDS=${parts};GTEST_SHARD_INDEX=${index}")
    endforeach()
  endif()
  list(TRANSFORM ARG_SOURCES PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
  math(EXPR size "${MURMEL_BATCH} / 2")
  murmel_in_batches(sources ${size} ${ARG_SOURCES})
  target_sources(${target} PRIVATE ${sources})
  murmel_targets_of(dependencies ${ARG_DEPENDS})
  target_link_libraries(${target} PRIVATE ${dependencies} ${ARG_LIBRARIES})
endfunction()

# murmel_test(NAME <name> LABEL unit|contract|integration|endtoend SOURCES ... [DEPENDS <Folder> ...]
#             [LIBRARIES ...] [WRAPPER command...] [TIMEOUT seconds] [PARTS n])
# One executable, one CTest entry, or PARTS entries that share its tests out and run side by side. WRAPPER runs the
# executable inside a private session.
function(murmel_test)
  cmake_parse_arguments(ARG "" "NAME;LABEL;TIMEOUT;PARTS" "SOURCES;DEPENDS;LIBRARIES;WRAPPER" ${ARGN})
  set(target "${ARG_LABEL}_${ARG_NAME}")
  math(EXPR size "${MURMEL_BATCH} / 2")
  murmel_in_batches(sources ${size} ${ARG_SOURCES})
  add_executable(${target} ${sources})
  murmel_test_program(${target})
  murmel_targets_of(dependencies ${ARG_DEPENDS})
  target_link_libraries(${target} PRIVATE ${dependencies} ${ARG_LIBRARIES})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  if(NOT ARG_PARTS)
    add_test(NAME ${target} COMMAND ${ARG_WRAPPER} $<TARGET_FILE:${target}>)
    set_tests_properties(${target} PROPERTIES LABELS ${ARG_LABEL} TIMEOUT ${ARG_TIMEOUT})
    return()
  endif()
  foreach(part RANGE 1 ${ARG_PARTS})
    math(EXPR index "${part} - 1")
    add_test(NAME ${target}_${part} COMMAND ${ARG_WRAPPER} $<TARGET_FILE:${target}>)
    set_tests_properties(${target}_${part} PROPERTIES LABELS ${ARG_LABEL} TIMEOUT ${ARG_TIMEOUT}
      ENVIRONMENT "GTEST_TOTAL_SHARDS=${ARG_PARTS};GTEST_SHARD_INDEX=${index}")
  endforeach()
endfunction()
