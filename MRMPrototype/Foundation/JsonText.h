#pragma once

#include <string_view>

namespace murmel {

/// Hands `text` (well-formed UTF-8) to `append(std::string_view)` as a JSON string with its quotes, in
/// pieces, without a copy of it.
template <class Append>
void appendJsonString(Append append, std::string_view text) {
  constexpr std::string_view digits = "0123456789abcdef";
  append(std::string_view("\""));
  std::size_t plainStart = 0;
  for (std::size_t index = 0; index < text.size(); ++index) {
    const auto byte = static_cast<unsigned char>(text[index]);
    if (byte >= 0x20 && byte != '"' && byte != '\\') continue;
    append(text.substr(plainStart, index - plainStart));
    plainStart = index + 1;
    if (byte >= 0x20) {
      const char escape[] = {'\\', text[index]};
      append(std::string_view(escape, 2));
    } else {
      const char escape[] = {'\\', 'u', '0', '0', digits[byte >> 4], digits[byte & 15]};
      append(std::string_view(escape, 6));
    }
  }
  append(text.substr(plainStart));
  append(std::string_view("\""));
}

}  // namespace murmel
