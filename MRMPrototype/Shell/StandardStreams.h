#pragma once

#include "Foundation/Print.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace murmel {

/// `text` as it is, at once: somebody may be watching a download.
inline void show(std::string_view text) {
  print(stdout, "{}", text);
  std::fflush(stdout);
}

/// One sentence about what went wrong. Gives the exit status that says so as well.
inline int complain(std::string_view sentence) {
  print(stderr, "murmel: {}{}", sentence, sentence.ends_with('\n') ? "" : "\n");
  return EXIT_FAILURE;
}

}  // namespace murmel
