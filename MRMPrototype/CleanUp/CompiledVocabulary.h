#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace murmel {

/// The user's replacements, made ready to be applied to many texts. Immutable, thread-safe.
///
/// One entry a line, "term = replacement", split at the first "=", both sides trimmed; both are literal text.
/// A line without "=", with an empty term or with ill-formed UTF-8 is left out. A term matches without regard
/// to case and to how accents are encoded, and only where no letter, digit or underscore stands before or
/// behind it. Entries apply in the order of their lines, each to what the ones before it have left.
///
/// An entry costs nothing unless all words of its term stand in the text; then one pass over the text.
class CompiledVocabulary {
 public:
  explicit CompiledVocabulary(std::string_view vocabulary);
  ~CompiledVocabulary();
  CompiledVocabulary(const CompiledVocabulary&) = delete;
  CompiledVocabulary& operator=(const CompiledVocabulary&) = delete;

  /// A text in which nothing matches comes back byte for byte.
  [[nodiscard]] std::string apply(std::string_view text) const;

  [[nodiscard]] std::size_t entryCount() const;

  /// Replacements that contain their own term double a text with every line: an entry that would make more of
  /// a text than this many bytes does nothing.
  static constexpr std::size_t maximumResultSize(std::size_t textSize) {
    return 8 * textSize + (std::size_t{64} << 10);
  }

 private:
  struct State;
  std::unique_ptr<const State> state_;
};

}  // namespace murmel
