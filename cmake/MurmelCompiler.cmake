# Warnings and instrumentation for our own targets. Libraries found on the system are SYSTEM includes.
add_library(murmel_options INTERFACE)
target_compile_options(murmel_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual
  -Wimplicit-fallthrough -Wundef -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(murmel_options INTERFACE -Wduplicated-cond -Wlogical-op
    # g++ 12 reports impossible paths through std::expected and coroutine frames.
    -Wno-maybe-uninitialized)
endif()

if(MURMEL_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

find_program(MURMEL_CCACHE ccache)
if(MURMEL_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${MURMEL_CCACHE}")
endif()
