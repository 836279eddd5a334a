#pragma once

#include <string>
#include <string_view>

namespace murmel {

/// Takes common Russian and English fillers out of a text and tidies what they leave behind. Unlike
/// everything else that touches a transcript this deliberately removes spoken words. Stateless and pure.
struct FillerWordRemoval {
  /// The text on one line, trimmed. In time proportional to the text.
  static std::string apply(std::string_view text);

  /// The fillers as alternatives of a regular expression, longest first, so that none is cut short by another
  /// that it begins with.
  static std::string alternatives();
};

}  // namespace murmel
