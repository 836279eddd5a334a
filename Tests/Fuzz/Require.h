#pragma once

#include <cstdio>
#include <cstdlib>

/// Stops the fuzzer at a broken promise.
inline void require(bool held, const char* promise) {
  if (held) return;
  std::fprintf(stderr, "broken promise: %s\n", promise);
  std::abort();
}
