#include "Refinement/FormattingSafetyGate.h"

#include "Foundation/Text/RegularExpression.h"
#include "Foundation/Text/Text.h"

#include <algorithm>

namespace murmel {

namespace {

const text::RegularExpression& numberPattern() {
  static const auto pattern = text::RegularExpression::compile(R"(\d+(?:[.,]\d+)*)").value();
  return pattern;
}

}  // namespace

bool FormattingSafetyGate::accepts(std::string_view recognized, std::string_view projected) {
  const auto recognizedLength = std::max<std::size_t>(text::characterCount(recognized), 1);
  const double ratio =
      static_cast<double>(text::characterCount(projected)) / static_cast<double>(recognizedLength);
  if (ratio < minimumLengthRatio || ratio > maximumLengthRatio) return false;
  if (text::words(recognized).size() != text::words(projected).size()) return false;
  // A text whose numbers cannot be listed within the limits is not shown to be safe.
  const auto expected = numberPattern().matches(recognized);
  const auto found = numberPattern().matches(projected);
  return expected && found && *expected == *found;
}

}  // namespace murmel
