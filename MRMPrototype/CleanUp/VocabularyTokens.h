#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace murmel {

/// Stands for a token of the vocabulary: two tokens have the same id when they differ in case only.
using TokenId = std::uint32_t;
/// A token that no term contains.
inline constexpr TokenId unknownToken = 0;

/// A text in tokens: each run of word scalars (letters, digits, underscores) and each other scalar is one. A
/// term that may only match where no word scalar stands beside it matches whole tokens.
struct TokenSequence {
  std::vector<TokenId> ids;
  std::vector<std::uint8_t> isWord;      ///< 1 for word scalars
  std::vector<std::string_view> pieces;  ///< the text of each token

  [[nodiscard]] std::size_t size() const { return ids.size(); }
  void reserve(std::size_t count);
  void append(TokenId id, bool word, std::string_view piece);
  void append(const TokenSequence& other, std::size_t from, std::size_t to);
  /// Puts `other` in the place of as many tokens from `position` on.
  void overwrite(std::size_t position, const TokenSequence& other);
};

/// Numbers the tokens of all terms.
class TokenIds {
 public:
  /// The ids of a term's tokens, new ones where needed.
  std::vector<TokenId> addedTokens(std::string_view term);
  /// A text's tokens; those that no term contains are unknown. The pieces are views into `text`.
  [[nodiscard]] TokenSequence tokens(std::string_view text) const;
  /// One more than the largest id.
  [[nodiscard]] std::size_t size() const { return ids_.size() + 1; }

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
  };
  std::unordered_map<std::string, TokenId, Hash, std::equal_to<>> ids_;
};

}  // namespace murmel
