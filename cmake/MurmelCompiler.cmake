# Warnings and instrumentation for our own targets. Libraries found on the system are SYSTEM includes.
add_library(murmel_options INTERFACE)
target_compile_options(murmel_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual
  -Wimplicit-fallthrough -Wundef)
if(MURMEL_WARNINGS_ARE_ERRORS)
  target_compile_options(murmel_options INTERFACE -Werror)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(murmel_options INTERFACE -Wduplicated-cond -Wlogical-op
    # g++ 12 reports impossible paths through std::expected, coroutine frames and inlined std::string copies.
    -Wno-maybe-uninitialized -Wno-array-bounds -Wno-stringop-overflow -Wno-stringop-overread -Wno-restrict)
endif()

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # The compiler collects garbage from 128 MB on, which took a twelfth of its time; half a gigabyte is there for each of
  # four. A file that nearly reaches it is a batch of windows.
  add_compile_options("$<$<COMPILE_LANGUAGE:CXX>:SHELL:--param ggc-min-heapsize=524288>")
endif()

if(MURMEL_BATCH AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # In a batch a source is an included file, of whose anonymous namespaces nobody else would know.
  target_compile_options(murmel_options INTERFACE -Wno-subobject-linkage)
endif()

# The same code generation everywhere, so that all targets can share precompiled headers: Qt asks for -fPIC, some
# libraries for threads.
add_compile_options(-pthread -fPIC -fno-semantic-interposition)
# All symbols are bound at the start: nothing is left to be written afterwards, and the lazy way saves vector registers,
# with pieces of what was copied last, on the stack, where they stay.
add_link_options(-Wl,-z,relro,-z,now)
# What is not shipped is linked by whoever is quickest.
find_program(MURMEL_MOLD mold)
if(MURMEL_MOLD AND CMAKE_BUILD_TYPE STREQUAL "Debug" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  add_link_options(-fuse-ld=mold)
endif()

if(CMAKE_BUILD_TYPE MATCHES "^Rel" AND NOT MURMEL_SANITIZE)
  # What is shipped: an overwritten stack or return address ends the process, and so does a copy beyond its target.
  add_compile_options(-fstack-protector-strong -fstack-clash-protection -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
    add_compile_options(-fcf-protection)
  endif()
endif()

if(MURMEL_SANITIZE STREQUAL "THREAD")
  add_compile_options(-fsanitize=thread)
  add_link_options(-fsanitize=thread)
elseif(MURMEL_SANITIZE)
  # To look at an object's type it opens a pipe, which no confined worker may: there every object looks wrong.
  add_compile_options(-fsanitize=address,undefined -fno-sanitize=vptr -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
if(MURMEL_SANITIZE)
  # Instrumented programs look at themselves while they run: their sandbox is wider.
  add_compile_definitions(MURMEL_SANITIZED)
endif()
if(MURMEL_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
if(MURMEL_COVERAGE)
  # Several processes of one program write their counts into the same files.
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()

option(MURMEL_LIBRARY_ASSERTIONS "Check bounds and other preconditions of the standard library" OFF)
if(MURMEL_LIBRARY_ASSERTIONS)
  add_compile_definitions(_GLIBCXX_ASSERTIONS)
endif()

find_program(MURMEL_CCACHE ccache)
if(MURMEL_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # Without these a file that uses precompiled headers is never taken from the cache.
  set(CMAKE_CXX_COMPILER_LAUNCHER
    "${CMAKE_COMMAND}" -E env CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime "${MURMEL_CCACHE}")
endif()
