#include "CleanUp/VocabularyTokens.h"

#include "Foundation/Text/Text.h"

#include <algorithm>

namespace murmel {

namespace {

bool isAscii(std::string_view text) {
  for (const char byte : text) {
    if (static_cast<unsigned char>(byte) >= 0x80) return false;
  }
  return true;
}

/// Calls `visit(begin, end, isWord)` for each run of word scalars and each other scalar.
template <class Visit>
void forEachRun(std::string_view text, Visit visit) {
  for (std::size_t position = 0; position < text.size();) {
    const auto begin = position;
    if (!text::isWordScalar(text::nextScalar(text, position))) {
      visit(begin, position, false);
      continue;
    }
    while (position < text.size()) {
      auto next = position;
      if (!text::isWordScalar(text::nextScalar(text, next))) break;
      position = next;
    }
    visit(begin, position, true);
  }
}

/// Calls `visit(key, isWord, piece)` for each token. Folding can take a letter apart into a letter and a mark
/// ("İ"): then the first token has the whole piece, the others have none, and all of them count as word, so
/// that nothing can match a part of it.
template <class Visit>
void forEachToken(std::string_view text, Visit visit) {
  forEachRun(text, [&](std::size_t begin, std::size_t end, bool isWord) {
    const auto piece = text.substr(begin, end - begin);
    const auto folded = text::caseFolded(piece);
    if (!isWord || isAscii(folded)) return visit(std::string_view(folded), isWord, piece);
    bool first = true;
    forEachRun(folded, [&](std::size_t from, std::size_t to, bool) {
      visit(std::string_view(folded).substr(from, to - from), true, first ? piece : std::string_view());
      first = false;
    });
  });
}

}  // namespace

void TokenSequence::reserve(std::size_t count) {
  ids.reserve(count);
  isWord.reserve(count);
  pieces.reserve(count);
}

void TokenSequence::append(TokenId id, bool word, std::string_view piece) {
  ids.push_back(id);
  isWord.push_back(word ? 1 : 0);
  pieces.push_back(piece);
}

void TokenSequence::append(const TokenSequence& other, std::size_t from, std::size_t to) {
  const auto begin = static_cast<std::ptrdiff_t>(from);
  const auto end = static_cast<std::ptrdiff_t>(to);
  ids.insert(ids.end(), other.ids.begin() + begin, other.ids.begin() + end);
  isWord.insert(isWord.end(), other.isWord.begin() + begin, other.isWord.begin() + end);
  pieces.insert(pieces.end(), other.pieces.begin() + begin, other.pieces.begin() + end);
}

void TokenSequence::overwrite(std::size_t position, const TokenSequence& other) {
  const auto at = static_cast<std::ptrdiff_t>(position);
  std::ranges::copy(other.ids, ids.begin() + at);
  std::ranges::copy(other.isWord, isWord.begin() + at);
  std::ranges::copy(other.pieces, pieces.begin() + at);
}

std::vector<TokenId> TokenIds::addedTokens(std::string_view term) {
  std::vector<TokenId> result;
  forEachToken(term, [&](std::string_view key, bool, std::string_view) {
    const auto next = static_cast<TokenId>(ids_.size() + 1);
    result.push_back(ids_.try_emplace(std::string(key), next).first->second);
  });
  return result;
}

TokenSequence TokenIds::tokens(std::string_view text) const {
  TokenSequence result;
  constexpr std::size_t usualBytesPerToken = 3;
  result.reserve(text.size() / usualBytesPerToken);
  forEachToken(text, [&](std::string_view key, bool isWord, std::string_view piece) {
    const auto found = ids_.find(key);
    result.append(found == ids_.end() ? unknownToken : found->second, isWord, piece);
  });
  return result;
}

}  // namespace murmel
