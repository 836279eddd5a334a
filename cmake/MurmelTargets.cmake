# One folder is one target. The link dependencies declared here are the module graph: a module sees the
# headers of the source tree, but links only what it names, and the layering test reads its includes.

# What nearly every file includes, compiled once: one set for the product, one for the tests. Files keep their own
# includes; the preset `core-only` builds without. Templates that the headers' own functions use are made again in every
# file that has them, whether it calls them or not: JSON's parser takes nearly a second, so who wants it includes it.
option(MURMEL_PRECOMPILED_HEADERS "Compile the common headers once" ON)
set(MURMEL_COMMON_HEADERS
  <algorithm> <array> <atomic> <chrono> <coroutine> <cstddef> <cstdint> <cstring> <expected> <filesystem> <functional>
  <map> <memory> <mutex> <optional> <set> <span> <sstream> <string> <string_view> <thread> <utility> <variant> <vector>
  <fmt/core.h>)
# Nearly all tests have these through headers of ours. In the product, which is optimised, they cost more than they save.
set(MURMEL_TEST_HEADERS ${MURMEL_COMMON_HEADERS} <cmath> <deque> <numeric> <gtest/gtest.h>)

# The compiler never writes the same precompiled file twice. Beside it stands what it was made from, for a compiler cache
# that is told to compare that instead (ccache: pch_external_checksum), so that several checkouts share it.
function(murmel_name_headers target contents)
  string(TOUPPER "${CMAKE_BUILD_TYPE}" type)
  get_directory_property(options COMPILE_OPTIONS)
  file(CONFIGURE OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/CMakeFiles/${target}.dir/cmake_pch.hxx.gch.sum" CONTENT
    "${contents} ${CMAKE_CXX_COMPILER_VERSION} ${fmt_VERSION} ${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_${type}} ${options}\n")
endfunction()

# What files with windows include besides.
set(MURMEL_QT_HEADERS
  <QApplication> <QKeyEvent> <QLabel> <QLocale> <QPainter> <QPointer> <QPushButton> <QString> <QTimer> <QVBoxLayout> <QWidget>)

# murmel_use_common_headers(<target> [QT]): the product's precompiled headers; QT: with those of Qt's windows.
function(murmel_use_common_headers target)
  if(NOT MURMEL_PRECOMPILED_HEADERS)
    return()
  endif()
  set(headers murmel_common_headers)
  set(contents ${MURMEL_COMMON_HEADERS})
  set(libraries fmt::fmt)
  if("QT" IN_LIST ARGN)
    set(headers murmel_qt_headers)
    list(APPEND contents ${MURMEL_QT_HEADERS})
    list(APPEND libraries Qt6::Widgets)
  endif()
  if(NOT TARGET ${headers})
    file(WRITE "${CMAKE_BINARY_DIR}/common_headers.cpp" "")
    add_library(${headers} STATIC "${CMAKE_BINARY_DIR}/common_headers.cpp")
    target_link_libraries(${headers} PRIVATE murmel_options ${libraries})
    target_precompile_headers(${headers} PRIVATE ${contents})
    murmel_name_headers(${headers} "${contents}")
  endif()
  # The compiled headers fit only who says the same about their libraries.
  foreach(library IN LISTS libraries)
    target_compile_definitions(${target} PRIVATE $<TARGET_PROPERTY:${library},INTERFACE_COMPILE_DEFINITIONS>)
  endforeach()
  target_precompile_headers(${target} REUSE_FROM ${headers})
endfunction()

# Several sources are compiled as one where somebody builds everything: their headers are read and their templates made
# once. The names in their anonymous namespaces then have to differ. A batch names its sources relative to the source
# tree, so that checkouts share a compiler cache. CMake's own unity builds name them by their full paths.
set(MURMEL_BATCH 0 CACHE STRING "Compile so many sources of a target as one; tests three quarters as many; 0: each by itself")

# murmel_in_batches(<result> <size> <source> ...): the sources, or the batches that stand for them.
function(murmel_in_batches result size)
  set(sources ${ARGN})
  set(batchable)
  set(generated)
  foreach(source IN LISTS sources)
    cmake_path(ABSOLUTE_PATH source NORMALIZE OUTPUT_VARIABLE path)
    if(path MATCHES "\\.cpp$" AND EXISTS "${path}")
      # Those that are compiled in a way of their own or asked to stay alone, which has to be said before the module is.
      set(own)
      foreach(property COMPILE_DEFINITIONS COMPILE_OPTIONS MURMEL_ALONE)
        get_source_file_property(value "${source}" ${property})
        if(value)
          list(APPEND own ${property})
        endif()
      endforeach()
      if(NOT own)
        list(APPEND batchable "${source}")
        # Qt's generator looks for these sources, and for the headers of the same name, in the target itself.
        file(STRINGS "${path}" moc REGEX "\\.moc\"" LIMIT_COUNT 1)
        string(REGEX REPLACE "\\.cpp$" ".h" header "${path}")
        if(NOT moc AND EXISTS "${header}")
          file(STRINGS "${header}" moc REGEX "Q_OBJECT" LIMIT_COUNT 1)
        endif()
        if(moc)
          list(APPEND generated "${source}")
        endif()
      endif()
    endif()
  endforeach()
  list(LENGTH batchable count)
  if(size LESS 2 OR count LESS 2)
    set(${result} ${sources} PARENT_SCOPE)
    return()
  endif()
  list(REMOVE_ITEM sources ${batchable})
  list(APPEND sources ${generated})
  set_source_files_properties(${generated} PROPERTIES HEADER_FILE_ONLY ON)  # read, not compiled
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
    if("Qt6::Widgets" IN_LIST ARG_LIBRARIES)
      murmel_use_common_headers(${target} QT)
    else()
      murmel_use_common_headers(${target})
    endif()
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

# The tests' own code is compiled once for every time that it runs: optimising it takes longer than it saves.
set(MURMEL_TEST_FLAGS "" CACHE STRING "Further compiler flags of the test programs")

# What every test program has. OPTIMISED: without MURMEL_TEST_FLAGS.
function(murmel_test_program target)
  target_include_directories(${target} PRIVATE "${CMAKE_SOURCE_DIR}/Tests")
  if(MURMEL_BATCH)
    target_include_directories(${target} PRIVATE "${CMAKE_SOURCE_DIR}")
  endif()
  target_link_libraries(${target} PRIVATE murmel_options murmel_test_support GTest::gtest_main)
  if("OPTIMISED" IN_LIST ARGN)
    set(flags "")
  else()
    set(flags ${MURMEL_TEST_FLAGS})
  endif()
  target_compile_options(${target} PRIVATE ${flags})
  set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
  if(NOT MURMEL_PRECOMPILED_HEADERS OR NOT "${flags}" STREQUAL "${MURMEL_TEST_FLAGS}")
    return()  # the precompiled headers are not optimised either
  endif()
  if(NOT TARGET murmel_test_headers)
    file(WRITE "${CMAKE_BINARY_DIR}/test_headers.cpp" "")
    add_library(murmel_test_headers STATIC "${CMAKE_BINARY_DIR}/test_headers.cpp")
    target_link_libraries(murmel_test_headers PRIVATE murmel_options fmt::fmt GTest::gtest)
    target_compile_options(murmel_test_headers PRIVATE ${MURMEL_TEST_FLAGS})
    target_precompile_headers(murmel_test_headers PRIVATE ${MURMEL_TEST_HEADERS})
    murmel_name_headers(murmel_test_headers "${MURMEL_TEST_HEADERS} ${MURMEL_TEST_FLAGS} ${GTest_VERSION}")
  endif()
  target_precompile_headers(${target} REUSE_FROM murmel_test_headers)
endfunction()

# The tests' sources are collected until all folders have named theirs: a program compiles them in common batches.
function(murmel_add_to_test_program target)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS;LIBRARIES;DEFINITIONS;PROGRAMS" ${ARGN})
  get_property(sources GLOBAL PROPERTY MURMEL_SOURCES_${target})
  foreach(source IN LISTS ARG_SOURCES)
    cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}" NORMALIZE)
    list(APPEND sources "${source}")
  endforeach()
  list(REMOVE_DUPLICATES sources)
  set_property(GLOBAL PROPERTY MURMEL_SOURCES_${target} ${sources})
  set_property(GLOBAL APPEND PROPERTY MURMEL_TEST_PROGRAMS ${target})
  murmel_targets_of(dependencies ${ARG_DEPENDS})
  target_link_libraries(${target} PRIVATE ${dependencies} ${ARG_LIBRARIES})
  target_compile_definitions(${target} PRIVATE ${ARG_DEFINITIONS})
  if(ARG_PROGRAMS)
    add_dependencies(${target} ${ARG_PROGRAMS})
  endif()
endfunction()

# Called once, after the last folder of tests.
function(murmel_finish_test_programs)
  get_property(programs GLOBAL PROPERTY MURMEL_TEST_PROGRAMS)
  list(REMOVE_DUPLICATES programs)
  math(EXPR size "${MURMEL_BATCH} * 3 / 4")
  foreach(target IN LISTS programs)
    get_property(sources GLOBAL PROPERTY MURMEL_SOURCES_${target})
    if(NOT target MATCHES "^unit_")
      list(APPEND sources "${CMAKE_SOURCE_DIR}/Tests/Support/SelectedTests.cpp")
    endif()
    murmel_in_batches(sources ${size} ${sources})
    target_sources(${target} PRIVATE ${sources})
  endforeach()
endfunction()

# murmel_unit_tests(core|desktop|computing SOURCES ... [DEPENDS <Folder> ...] [LIBRARIES ...])
# Adds to the one unit-test program of the core, or to that of the desktop and the workers, which the core-only build
# leaves out, or to that of the tests that compute for seconds. Each runs in a few parts side by side.
function(murmel_unit_tests group)
  if(group STREQUAL "desktop" AND MURMEL_CORE_ONLY)
    return()
  endif()
  set(target unit_${group})
  if(NOT TARGET ${target})
    add_executable(${target})
    if(group STREQUAL "computing")
      # A program of its own, in which no function is another test's, unoptimised. Who builds the core's gets it too.
      murmel_test_program(${target} OPTIMISED)
      add_dependencies(unit_core ${target})
    else()
      murmel_test_program(${target})
    endif()
    set(parts 4)
    foreach(part RANGE 1 ${parts})
      math(EXPR index "${part} - 1")
      add_test(NAME ${target}_${part} COMMAND ${target})
      set_tests_properties(${target}_${part} PROPERTIES LABELS unit TIMEOUT 120
        ENVIRONMENT "GTEST_TOTAL_SHARDS=${parts};GTEST_SHARD_INDEX=${index}")
    endforeach()
  endif()
  murmel_add_to_test_program(${target} ${ARGN})
endfunction()

# murmel_test(NAME <name> LABEL contract|integration|endtoend|desktop SOURCES ... [DEPENDS <Folder> ...] [LIBRARIES ...]
#             [DEFINITIONS ...] [PROGRAMS target...] [WRAPPER command...] [TIMEOUT seconds] [PARTS n])
# Adds the sources to the one program of their label, and one CTest entry that runs their tests, or PARTS entries that share
# them out and run side by side. WRAPPER runs the program inside a private session. PROGRAMS are what the tests start.
function(murmel_test)
  cmake_parse_arguments(ARG "" "NAME;LABEL;TIMEOUT;PARTS" "SOURCES;DEPENDS;LIBRARIES;DEFINITIONS;PROGRAMS;WRAPPER" ${ARGN})
  set(target ${ARG_LABEL}_tests)
  if(NOT TARGET ${target})
    add_executable(${target})
    murmel_test_program(${target})
  endif()
  murmel_add_to_test_program(${target} SOURCES ${ARG_SOURCES} DEPENDS ${ARG_DEPENDS} LIBRARIES ${ARG_LIBRARIES}
    DEFINITIONS ${ARG_DEFINITIONS} PROGRAMS ${ARG_PROGRAMS})
  set(files ${ARG_SOURCES})
  list(FILTER files INCLUDE REGEX "Tests\\.cpp$")
  list(TRANSFORM files REPLACE "\\.cpp$" "")
  set(command ${ARG_WRAPPER} $<TARGET_FILE:${target}> ${files})
  set(test ${ARG_LABEL}_${ARG_NAME})
  set(${test}_FILES ${files} PARENT_SCOPE)
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  if(NOT ARG_PARTS)
    add_test(NAME ${test} COMMAND ${command})
    set_tests_properties(${test} PROPERTIES LABELS ${ARG_LABEL} TIMEOUT ${ARG_TIMEOUT})
    return()
  endif()
  foreach(part RANGE 1 ${ARG_PARTS})
    math(EXPR index "${part} - 1")
    add_test(NAME ${test}_${part} COMMAND ${command})
    set_tests_properties(${test}_${part} PROPERTIES LABELS ${ARG_LABEL} TIMEOUT ${ARG_TIMEOUT}
      ENVIRONMENT "GTEST_TOTAL_SHARDS=${ARG_PARTS};GTEST_SHARD_INDEX=${index}")
  endforeach()
endfunction()

option(MURMEL_ALL_DESKTOPS "Test on all headless Wayland desktops" OFF)

# murmel_wayland_desk(<test> [<compositor>...]): the typed tests of a contract whose third desk is that of Wayland run on
# sway, the others where they ran; where no sway can run they are left out. With MURMEL_ALL_DESKTOPS they run on the other
# compositors, too.
function(murmel_wayland_desk test)
  set_property(TEST ${test} APPEND PROPERTY ENVIRONMENT "GTEST_FILTER=-*/2.*")
  set(compositors sway)
  if(MURMEL_ALL_DESKTOPS)
    list(APPEND compositors ${ARGN})
  endif()
  foreach(compositor IN LISTS compositors)
    set(name ${test}_${compositor})
    add_test(NAME ${name}
      COMMAND "${CMAKE_SOURCE_DIR}/Tests/Support/private-session" --${compositor} -- $<TARGET_FILE:contract_tests> ${${test}_FILES})
    set_tests_properties(${name} PROPERTIES LABELS desktop TIMEOUT 120
      ENVIRONMENT "GTEST_FILTER=*/2.*;MURMEL_TEST_PROGRAMS=${CMAKE_BINARY_DIR}/tests")
  endforeach()
  set_tests_properties(${test}_sway PROPERTIES LABELS contract SKIP_RETURN_CODE 77)
  add_dependencies(contract_tests users-keyboard wayland-target)
endfunction()
