# The library behind the engines for Whisper and Parakeet models: whisper.cpp, parakeet.cpp and ggml, from the sources of
# an npm package that is pinned by its integrity hash; they stay in the build tree.
#
# Sets MURMEL_ENGINE_LEVELS to the levels of x86-64 that it is built for (the worker takes the highest that its processor
# has), or to nothing, and says which. A level's target is murmel_ggml_v<level>; its sources include whisper.h and
# parakeet.h.
#
# MURMEL_SPEECH_ENGINES: AUTO builds them where that is possible, REQUIRED fails where it is not, OFF leaves them out: the
# speech worker then knows PocketSphinx only.
set(MURMEL_SPEECH_ENGINES AUTO CACHE STRING "Build the engines for Whisper and Parakeet models: AUTO, REQUIRED or OFF")
set_property(CACHE MURMEL_SPEECH_ENGINES PROPERTY STRINGS AUTO REQUIRED OFF)
# v3 has AVX2 and is three times as fast as v2; v4 has AVX-512.
set(MURMEL_SPEECH_ENGINE_LEVELS "2;3;4" CACHE STRING "Levels of x86-64 that the engines are built for")
# The test run compiles more than it recognises: most of the time goes into our own product of matrices anyway.
option(MURMEL_SPEECH_ENGINES_LIGHT "Optimise the engines less, for a quicker build" OFF)

set(kernel "${CMAKE_SOURCE_DIR}/Workers/SpeechWorker/EngineKernel")
set(package "whisper.rn@0.7.4")
# The package's "integrity" of the registry, in hexadecimal.
set(packageSHA512
  "f4cc961684665161c31cb8639b8759819cf11b67c536e0a538f13f35ee4a5e59b4bd28b822de684b6c598bd59f3c47d41877203cc895be2bfdb75f330b805237")

# What the engines need of the package, relative to its folder cpp. Only the second part computes much.
set(commonSources
  ggml.c ggml.cpp ggml-alloc.c ggml-backend.cpp ggml-backend-meta.cpp ggml-backend-reg.cpp ggml-backend-dl.cpp
  ggml-opt.cpp ggml-threading.cpp ggml-quants.c gguf.cpp whisper.cpp parakeet.cpp)
set(computingSources
  ggml-cpu/ggml-cpu.c ggml-cpu/ggml-cpu.cpp ggml-cpu/quants.c ggml-cpu/traits.cpp ggml-cpu/repack.cpp
  ggml-cpu/unary-ops.cpp ggml-cpu/binary-ops.cpp ggml-cpu/vec.cpp ggml-cpu/ops.cpp
  ggml-cpu/amx/amx.cpp ggml-cpu/amx/mmq.cpp ggml-cpu/arch/x86/quants.c ggml-cpu/arch/x86/repack.cpp)

# Fetches and unpacks the package; sets `result` to its folder cpp, or to nothing with the reason in `reason`.
function(murmel_fetch_engine_sources result reason)
  set(${result} "" PARENT_SCOPE)
  find_program(MURMEL_NPM npm)
  set(folder "${CMAKE_BINARY_DIR}/speech-engines")
  set(archive "${folder}/whisper.rn-0.7.4.tgz")
  file(MAKE_DIRECTORY "${folder}")
  if(NOT EXISTS "${archive}")
    if(NOT MURMEL_NPM)
      set(${reason} "npm is not installed" PARENT_SCOPE)
      return()
    endif()
    execute_process(COMMAND "${MURMEL_NPM}" pack "${package}" --prefer-offline --silent
      WORKING_DIRECTORY "${folder}" TIMEOUT 120 RESULT_VARIABLE status OUTPUT_QUIET ERROR_QUIET)
    if(NOT status EQUAL 0 OR NOT EXISTS "${archive}")
      set(${reason} "the package ${package} could not be fetched" PARENT_SCOPE)
      return()
    endif()
  endif()
  file(SHA512 "${archive}" digest)
  if(NOT digest STREQUAL packageSHA512)
    file(REMOVE "${archive}")
    set(${reason} "the package ${package} is not the one that is pinned" PARENT_SCOPE)
    return()
  endif()
  if(NOT EXISTS "${folder}/package/cpp/whisper.cpp")
    file(ARCHIVE_EXTRACT INPUT "${archive}" DESTINATION "${folder}"
      PATTERNS "package/cpp/*" "package/LICENSE")
  endif()
  set(${result} "${folder}/package/cpp" PARENT_SCOPE)
endfunction()

# Always optimised: unoptimised it recognises slower than people speak. Mostly not our code, so no warnings, no sanitizers.
function(murmel_engine_objects target folder level optimisation)
  add_library(${target} OBJECT ${ARGN})
  target_include_directories(${target} SYSTEM PRIVATE "${folder}" "${folder}/ggml-cpu")
  target_include_directories(${target} PRIVATE "${CMAKE_SOURCE_DIR}" "${kernel}")
  target_compile_definitions(${target} PRIVATE _GNU_SOURCE WSP_GGML_USE_CPU WSP_GGML_USE_CPU_REPACK NDEBUG)
  # So ggml asks for a product of matrices from elsewhere: it gets ours.
  target_compile_definitions(${target} PRIVATE WSP_GGML_USE_LLAMAFILE)
  # With OpenMP the threads can sleep while they wait for each other. The library's own only spin: on a machine that has
  # other work to do, 3 threads then take fifty times as long as one.
  target_compile_definitions(${target} PRIVATE WSP_GGML_USE_OPENMP)
  target_compile_options(${target} PRIVATE -w -O${optimisation} -g0 -march=x86-64-v${level} -fopenmp)
  if(MURMEL_SANITIZE)
    target_compile_options(${target} PRIVATE -fno-sanitize=all)
  endif()
  if(MURMEL_SANITIZE AND NOT MURMEL_SANITIZE STREQUAL "THREAD")
    # Ours is instrumented after all.
    set_source_files_properties("${kernel}/EngineProduct.cpp" "${kernel}/MatrixProduct.cpp" PROPERTIES
      COMPILE_OPTIONS "-fsanitize=address,undefined;-fno-sanitize=vptr;-fno-sanitize-recover=all;-g1")
  endif()
  set_target_properties(${target} PROPERTIES CXX_STANDARD 17 CXX_EXTENSIONS ON
    C_VISIBILITY_PRESET hidden CXX_VISIBILITY_PRESET hidden)
endfunction()

set(MURMEL_ENGINE_LEVELS "")
set(reason "MURMEL_SPEECH_ENGINES is OFF")
if(MURMEL_SPEECH_ENGINES)
  if(NOT CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64")
    set(reason "they are built for x86-64 only")
  else()
    murmel_fetch_engine_sources(sources reason)
    if(sources)
      set(MURMEL_ENGINE_LEVELS ${MURMEL_SPEECH_ENGINE_LEVELS})
    endif()
  endif()
endif()
if(NOT MURMEL_ENGINE_LEVELS AND MURMEL_SPEECH_ENGINES STREQUAL "REQUIRED")
  message(FATAL_ERROR "Whisper and Parakeet engines: ${reason}")
elseif(NOT MURMEL_ENGINE_LEVELS)
  message(STATUS "Whisper and Parakeet engines: left out (${reason}); the speech worker knows PocketSphinx only")
  return()
endif()
message(STATUS "Whisper and Parakeet engines: built from ${package} for x86-64 levels ${MURMEL_ENGINE_LEVELS}")
enable_language(C)
list(TRANSFORM commonSources PREPEND "${sources}/")
list(TRANSFORM computingSources PREPEND "${sources}/")
set(optimisations 3 3)
if(MURMEL_SPEECH_ENGINES_LIGHT)
  set(optimisations 0 1)
endif()
list(GET optimisations 0 common)
list(GET optimisations 1 computing)
murmel_engine_objects(murmel_ggml_common "${sources}" 2 ${common} ${commonSources})
foreach(level IN LISTS MURMEL_ENGINE_LEVELS)
  murmel_engine_objects(murmel_ggml_cpu_v${level} "${sources}" ${level} ${computing} ${computingSources}
    "${kernel}/EngineProduct.cpp" "${kernel}/MatrixProduct.cpp")
  add_library(murmel_ggml_v${level} INTERFACE)
  target_include_directories(murmel_ggml_v${level} SYSTEM INTERFACE "${sources}")
  target_link_libraries(murmel_ggml_v${level} INTERFACE Threads::Threads ${CMAKE_DL_LIBS} gomp)
  target_sources(murmel_ggml_v${level} INTERFACE
    $<TARGET_OBJECTS:murmel_ggml_common> $<TARGET_OBJECTS:murmel_ggml_cpu_v${level}>)
endforeach()
