#pragma once

#include <cstdio>
#include <utility>

#include <fmt/core.h>

namespace murmel {

/// Like fmt::print, which throws where nothing can be written: a terminal that was closed, a log on a full
/// disk. Nobody shall lose what they said because of a line that nobody can read. What was not written
/// shows in `std::ferror`.
template <class... Values>
void print(std::FILE* stream, fmt::format_string<Values...> format, Values&&... values) {
  const auto text = fmt::format(format, std::forward<Values>(values)...);
  (void)std::fwrite(text.data(), 1, text.size(), stream);
}

}  // namespace murmel
