# The library behind the Parakeet engine. Sets MURMEL_PARAKEET_TARGET to what the engine links, or to nothing, and says
# which it is.
#
# 1. An installed libparakeet (find_package).
# 2. The same sources from an npm package, pinned by its integrity hash and built with the engine; they stay in the
#    build tree.
# 3. Nothing: the speech worker then knows its packaged model only.
#
# MURMEL_PARAKEET: AUTO tries them in this order, OFF leaves the engine out.
set(MURMEL_PARAKEET AUTO CACHE STRING "Build the Parakeet speech engine: AUTO or OFF")
set_property(CACHE MURMEL_PARAKEET PROPERTY STRINGS AUTO OFF)

set(MURMEL_PARAKEET_PACKAGE "whisper.rn@0.7.4")
# The package's "integrity" of the registry, in hexadecimal.
set(MURMEL_PARAKEET_SHA512
  "f4cc961684665161c31cb8639b8759819cf11b67c536e0a538f13f35ee4a5e59b4bd28b822de684b6c598bd59f3c47d41877203cc895be2bfdb75f330b805237")

# The sources of the package that the engine needs, relative to its folder cpp.
set(MURMEL_PARAKEET_SOURCES
  ggml.c ggml.cpp ggml-alloc.c ggml-backend.cpp ggml-backend-meta.cpp ggml-backend-reg.cpp ggml-backend-dl.cpp
  ggml-opt.cpp ggml-threading.cpp ggml-quants.c gguf.cpp
  ggml-cpu/ggml-cpu.c ggml-cpu/ggml-cpu.cpp ggml-cpu/quants.c ggml-cpu/traits.cpp ggml-cpu/repack.cpp
  ggml-cpu/unary-ops.cpp ggml-cpu/binary-ops.cpp ggml-cpu/vec.cpp ggml-cpu/ops.cpp
  ggml-cpu/amx/amx.cpp ggml-cpu/amx/mmq.cpp ggml-cpu/arch/x86/quants.c ggml-cpu/arch/x86/repack.cpp
  parakeet.cpp)

# Fetches and unpacks the package; sets `result` to its folder cpp, or to nothing with the reason in `reason`.
function(murmel_fetch_parakeet result reason)
  set(${result} "" PARENT_SCOPE)
  find_program(MURMEL_NPM npm)
  if(NOT MURMEL_NPM)
    set(${reason} "npm is not installed" PARENT_SCOPE)
    return()
  endif()
  set(folder "${CMAKE_BINARY_DIR}/parakeet")
  set(archive "${folder}/whisper.rn-0.7.4.tgz")
  file(MAKE_DIRECTORY "${folder}")
  if(NOT EXISTS "${archive}")
    execute_process(COMMAND "${MURMEL_NPM}" pack "${MURMEL_PARAKEET_PACKAGE}" --prefer-offline --silent
      WORKING_DIRECTORY "${folder}" TIMEOUT 120 RESULT_VARIABLE status OUTPUT_QUIET ERROR_QUIET)
    if(NOT status EQUAL 0 OR NOT EXISTS "${archive}")
      set(${reason} "the package ${MURMEL_PARAKEET_PACKAGE} could not be fetched" PARENT_SCOPE)
      return()
    endif()
  endif()
  file(SHA512 "${archive}" digest)
  if(NOT digest STREQUAL MURMEL_PARAKEET_SHA512)
    file(REMOVE "${archive}")
    set(${reason} "the package ${MURMEL_PARAKEET_PACKAGE} is not the one that is pinned" PARENT_SCOPE)
    return()
  endif()
  if(NOT EXISTS "${folder}/package/cpp/parakeet.cpp")
    file(ARCHIVE_EXTRACT INPUT "${archive}" DESTINATION "${folder}"
      PATTERNS "package/cpp/*" "package/LICENSE")
  endif()
  set(${result} "${folder}/package/cpp" PARENT_SCOPE)
endfunction()

set(MURMEL_PARAKEET_TARGET "")
set(reason "MURMEL_PARAKEET is OFF")
if(MURMEL_PARAKEET)
  find_package(parakeet QUIET CONFIG)
  foreach(candidate IN ITEMS parakeet::parakeet parakeet)
    if(TARGET ${candidate})
      set(MURMEL_PARAKEET_TARGET ${candidate})
      message(STATUS "Parakeet engine: the installed library")
      return()
    endif()
  endforeach()
  if(NOT CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64")
    set(reason "there is no installed library, and the package is built for x86-64 only")
  else()
    murmel_fetch_parakeet(sources reason)
    if(sources)
      enable_language(C)
      list(TRANSFORM MURMEL_PARAKEET_SOURCES PREPEND "${sources}/")
      add_library(murmel_parakeet STATIC ${MURMEL_PARAKEET_SOURCES})
      target_include_directories(murmel_parakeet SYSTEM PUBLIC "${sources}" PRIVATE "${sources}/ggml-cpu")
      target_compile_definitions(murmel_parakeet PRIVATE _GNU_SOURCE WSP_GGML_USE_CPU WSP_GGML_USE_CPU_REPACK NDEBUG)
      # Always optimised: unoptimised it recognises slower than people speak. v3 (AVX2, FMA) is three times as fast as
      # v2; whoever loads the engine asks the processor first. Not our code, so no warnings and no sanitizers.
      target_compile_options(murmel_parakeet PRIVATE -w -O3 -g0 -march=x86-64-v3)
      if(MURMEL_SANITIZE)
        target_compile_options(murmel_parakeet PRIVATE -fno-sanitize=all)
      endif()
      set_target_properties(murmel_parakeet PROPERTIES
        CXX_STANDARD 17 CXX_EXTENSIONS ON POSITION_INDEPENDENT_CODE ON
        C_VISIBILITY_PRESET hidden CXX_VISIBILITY_PRESET hidden)
      target_link_libraries(murmel_parakeet PRIVATE Threads::Threads ${CMAKE_DL_LIBS})
      set(MURMEL_PARAKEET_TARGET murmel_parakeet)
      message(STATUS "Parakeet engine: built from ${MURMEL_PARAKEET_PACKAGE}")
      return()
    endif()
  endif()
endif()
message(STATUS "Parakeet engine: left out (${reason}); the speech worker knows the packaged model only")
