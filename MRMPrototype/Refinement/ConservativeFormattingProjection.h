#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace murmel {

/// Carries the punctuation around words and the capitals at their beginnings from a refiner's text over to
/// the recognised one, and nothing else: every recognised word stays, as recognised and in its place, and no
/// other word appears. Stateless and pure.
class ConservativeFormattingProjection {
 public:
  /// The recognised text with the candidate's formatting, on one line. Nothing when there is nothing to go by
  /// (one of the texts has no words), when fewer than half of the words of the shorter text can be matched,
  /// when the candidate is over `longestCandidate` (it is not looked at), or when the texts are too large to
  /// compare (`maximumTableCells`). Words that differ only in the kind of apostrophe are the same word.
  static std::optional<std::string> project(std::string_view original, std::string_view candidate);

  /// In bytes: twenty minutes of speech. What answers a dictation with more is not formatting it.
  static constexpr std::size_t longestCandidate = std::size_t{16} << 10;

  /// Product of the two word counts up to which texts are compared: some 4,000 words against 4,000, half an
  /// hour of speech. The table takes a byte a cell while it is needed.
  static constexpr std::size_t maximumTableCells = std::size_t{16} << 20;

  /// A piece of text between white space: punctuation, what lies between, punctuation. Views into the text.
  /// A piece of nothing but punctuation is all `leading`. Signs such as "$", "+" or "%" belong to the core.
  struct Token {
    explicit Token(std::string_view piece);
    std::string_view leading;
    std::string_view core;
    std::string_view trailing;
    std::string
        key;  ///< the core with case folded: see `project` about apostrophes; equal keys are the same word
  };

  /// For each original the index of the candidate that stands in its place, if any: a shortest edit by words,
  /// traced from the end, substitutions before deletions before insertions.
  static std::vector<std::optional<std::size_t>> alignment(std::span<const Token> originals,
                                                           std::span<const Token> candidates);

  /// `word` with its first letter raised to upper case if that of `candidate` is upper case. Never lowers.
  static std::string capitalizedLikeCandidate(std::string_view word, std::string_view candidate);
};

}  // namespace murmel
