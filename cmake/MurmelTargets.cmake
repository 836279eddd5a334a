# One folder is one target. The link dependencies declared here are the module graph: a module sees the
# headers of the source tree, but links only what it names, and the layering test reads its includes.

# murmel_module(NAME <Folder> [SOURCES ...] [DEPENDS <Folder> ...] [LIBRARIES <system target> ...])
# Creates the static library murmel_<folder>, or an interface library when it has no sources.
function(murmel_module)
  cmake_parse_arguments(ARG "" "NAME" "SOURCES;DEPENDS;LIBRARIES" ${ARGN})
  string(TOLOWER "murmel_${ARG_NAME}" target)
  set(dependencies)
  foreach(module IN LISTS ARG_DEPENDS)
    string(TOLOWER "murmel_${module}" dependency)
    list(APPEND dependencies ${dependency})
  endforeach()
  if(ARG_SOURCES)
    add_library(${target} STATIC ${ARG_SOURCES})
    target_include_directories(${target} PUBLIC "${CMAKE_SOURCE_DIR}/MRMPrototype" "${CMAKE_SOURCE_DIR}")
    target_link_libraries(${target} PUBLIC ${dependencies} PRIVATE murmel_options ${ARG_LIBRARIES})
  else()
    add_library(${target} INTERFACE)
    target_include_directories(${target} INTERFACE "${CMAKE_SOURCE_DIR}/MRMPrototype" "${CMAKE_SOURCE_DIR}")
    target_link_libraries(${target} INTERFACE ${dependencies})
  endif()
endfunction()

# murmel_test(NAME <name> LABEL unit|contract|integration|endtoend SOURCES ... [DEPENDS <Folder> ...]
#             [LIBRARIES ...] [WRAPPER command...] [TIMEOUT seconds])
# One executable, one CTest entry. WRAPPER runs the executable inside a private session.
function(murmel_test)
  cmake_parse_arguments(ARG "" "NAME;LABEL;TIMEOUT" "SOURCES;DEPENDS;LIBRARIES;WRAPPER" ${ARGN})
  set(target "${ARG_LABEL}_${ARG_NAME}")
  add_executable(${target} ${ARG_SOURCES})
  target_include_directories(${target} PRIVATE "${CMAKE_SOURCE_DIR}/Tests")
  target_compile_definitions(${target} PRIVATE
    MURMEL_SOURCE_DIR="${CMAKE_SOURCE_DIR}" MURMEL_BUILD_DIR="${CMAKE_BINARY_DIR}"
    MURMEL_RESOURCES_DIR="${CMAKE_BINARY_DIR}/lib/murmel")
  set(dependencies)
  foreach(module IN LISTS ARG_DEPENDS)
    string(TOLOWER "murmel_${module}" dependency)
    list(APPEND dependencies ${dependency})
  endforeach()
  target_link_libraries(${target} PRIVATE ${dependencies} ${ARG_LIBRARIES} murmel_options
    murmel_test_support GTest::gmock GTest::gtest_main)
  set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
  add_test(NAME ${target} COMMAND ${ARG_WRAPPER} $<TARGET_FILE:${target}>)
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  set_tests_properties(${target} PROPERTIES LABELS ${ARG_LABEL} TIMEOUT ${ARG_TIMEOUT})
endfunction()
