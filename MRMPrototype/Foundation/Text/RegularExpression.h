#pragma once

#include <cstddef>
#include <expected>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace murmel::text {

enum class RegularExpressionError {
  invalidPattern,
  limitExceeded,  ///< matching would take more than a fixed number of steps for each unit of the text
};

/// A compiled regular expression over Unicode text: case-insensitive matching with "(?i)", look-arounds,
/// properties such as "\p{L}". Immutable and thread-safe; copies share the compiled form.
///
/// Matching gives up with `limitExceeded` when it needs more steps than a linear pattern could, so a
/// pathological pattern or text costs a bounded multiple of the text's length and never the stack.
class RegularExpression {
 public:
  static std::expected<RegularExpression, RegularExpressionError> compile(std::string_view pattern);

  /// `literal` with every character that means something to a pattern escaped.
  static std::string escaped(std::string_view literal);

  enum class Replacement {
    literal,         ///< inserted as it stands
    withReferences,  ///< "$1" is the first group, "\" escapes
  };

  /// `text` with every match replaced. A text without a match comes back byte for byte; in others, ill-formed
  /// UTF-8 is repaired.
  [[nodiscard]] std::expected<std::string, RegularExpressionError> replacingMatches(
      std::string_view text, std::string_view replacement, Replacement kind = Replacement::literal) const;

  /// What the pattern matches in `text`, in order.
  [[nodiscard]] std::expected<std::vector<std::string>, RegularExpressionError> matches(
      std::string_view text) const;

 private:
  struct Compiled;
  explicit RegularExpression(std::shared_ptr<const Compiled> compiled) : compiled_(std::move(compiled)) {}

  std::shared_ptr<const Compiled> compiled_;
};

}  // namespace murmel::text
