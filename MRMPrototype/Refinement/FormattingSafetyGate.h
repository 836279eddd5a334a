#pragma once

#include <string_view>

namespace murmel {

/// The last look at a projected text before it may replace the recognised one. Stateless and pure.
struct FormattingSafetyGate {
  /// The projected text's length in characters, as a share of the recognised one's, lies between these.
  static constexpr double minimumLengthRatio = 0.6;
  static constexpr double maximumLengthRatio = 1.6;

  /// Whether length, number of words and the numbers in their order agree.
  static bool accepts(std::string_view recognized, std::string_view projected);
};

}  // namespace murmel
