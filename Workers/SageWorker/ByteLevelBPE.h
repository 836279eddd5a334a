#pragma once

#include <array>
#include <cstdint>
#include <expected>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace murmel::worker {

/// Byte-level byte-pair encoding: text to the tokens of a model and back. Every byte stands for a visible
/// character in the model's files; words are cut out first, then their characters are joined pair by pair in
/// the order of the merges. Immutable.
class ByteLevelBPE {
 public:
  /// `vocabulary` is the content of vocab.json (token to number), `merges` that of merges.txt (a pair a line,
  /// the most important first). The error is a short reason.
  static std::expected<ByteLevelBPE, std::string> create(std::string_view vocabulary,
                                                         std::string_view merges);

  /// Nothing when the vocabulary lacks a part of the text. Ill-formed UTF-8 reads as U+FFFD.
  [[nodiscard]] std::optional<std::vector<std::int64_t>> encode(std::string_view text) const;
  /// Tokens that stand for no bytes ("</s>") are left out; ill-formed UTF-8 is repaired.
  [[nodiscard]] std::string decode(std::span<const std::int64_t> tokens) const;
  /// The number of a token as it is written in the vocabulary.
  [[nodiscard]] std::optional<std::int64_t> token(const std::string& text) const;
  [[nodiscard]] std::size_t size() const { return tokens_.size(); }

 private:
  ByteLevelBPE() = default;

  [[nodiscard]] std::vector<std::string> merged(std::string_view word) const;

  std::unordered_map<std::string, std::int64_t> numbers_;
  std::vector<std::string> tokens_;                     ///< by number; empty where there is none
  std::unordered_map<std::string, std::size_t> ranks_;  ///< of "left right"; a smaller one is merged first
};

}  // namespace murmel::worker
