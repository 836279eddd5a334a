#include "Workers/SageWorker/ByteLevelBPE.h"

#include "Foundation/Json/Json.h"
#include "Foundation/Text/RegularExpression.h"
#include "Foundation/Text/Text.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace murmel::worker {

namespace {

/// Far above any vocabulary, far below what hurts.
constexpr std::size_t mostTokens = 1 << 20;

/// Tokens that steer the model and stand for nothing that is written.
constexpr auto controlTokens =
    std::to_array<std::string_view>({"<pad>", "<s>", "</s>", "<unk>", "<mask>", "<|endoftext|>"});

/// Contractions, words, numbers and signs, each with the space before it, and what white space is left.
const text::RegularExpression& wordPattern() {
  static const auto pattern =
      text::RegularExpression::compile(
          R"('s|'t|'re|'ve|'m|'ll|'d| ?\p{L}+| ?\p{N}+| ?[^\s\p{L}\p{N}]+|\s+(?!\S)|\s+)")
          .value();
  return pattern;
}

/// The character that stands for each byte: itself where it is visible, else the next one from U+0100 on.
struct ByteCharacters {
  std::array<std::string, 256> characters;
  std::unordered_map<std::string_view, char> bytes;

  ByteCharacters() {
    char32_t next = 0x100;
    for (std::size_t byte = 0; byte < characters.size(); ++byte) {
      const bool isVisible =
          (byte >= 0x21 && byte <= 0x7E) || (byte >= 0xA1 && byte <= 0xAC) || (byte >= 0xAE && byte <= 0xFF);
      text::appendScalar(characters[byte], isVisible ? static_cast<char32_t>(byte) : next++);
      bytes[characters[byte]] = static_cast<char>(byte);
    }
  }
  ByteCharacters(const ByteCharacters&) = delete;
  ByteCharacters& operator=(const ByteCharacters&) = delete;
};

const ByteCharacters& byteCharacters() {
  static const ByteCharacters table;
  return table;
}

bool isControl(std::string_view token) {
  return std::ranges::find(controlTokens, token) != controlTokens.end();
}

/// The bytes that a token stands for, appended to `text`. Characters that stand for none are passed over.
void appendBytes(std::string_view token, std::string& text) {
  for (std::size_t position = 0; position < token.size();) {
    const auto begin = position;
    (void)text::nextScalar(token, position);
    const auto& bytes = byteCharacters().bytes;
    if (const auto found = bytes.find(token.substr(begin, position - begin)); found != bytes.end())
      text += found->second;
  }
}

}  // namespace

std::expected<ByteLevelBPE, std::string> ByteLevelBPE::create(std::string_view vocabulary,
                                                              std::string_view merges) {
  ByteLevelBPE result;
  const auto object = parsedJson(vocabulary);
  const std::unexpected<std::string> badVocabulary("model vocabulary is not understood");
  if (object.members().empty()) return badVocabulary;
  for (const auto& [token, number] : object.members()) {
    const auto index = number.unsignedInteger().value_or(mostTokens);
    if (index >= mostTokens) return badVocabulary;
    if (index >= result.tokens_.size()) result.tokens_.resize(index + 1);
    if (!result.tokens_[index].empty()) return badVocabulary;
    result.tokens_[index] = token;
    result.numbers_[token] = static_cast<std::int64_t>(index);
  }
  while (!merges.empty()) {
    const auto end = merges.find('\n');
    auto line = merges.substr(0, end);
    merges.remove_prefix(end == std::string_view::npos ? merges.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.empty() || line.starts_with("#version")) continue;
    const auto space = line.find(' ');
    if (space == 0 || space == std::string_view::npos || space + 1 == line.size() ||
        line.find(' ', space + 1) != std::string_view::npos || result.ranks_.size() >= mostTokens) {
      return std::unexpected("model merges are not understood");
    }
    result.ranks_.emplace(line, result.ranks_.size());
  }
  return result;
}

std::optional<std::int64_t> ByteLevelBPE::token(const std::string& text) const {
  const auto found = numbers_.find(text);
  if (found == numbers_.end()) return std::nullopt;
  return found->second;
}

std::optional<std::vector<std::int64_t>> ByteLevelBPE::encode(std::string_view text) const {
  const auto words = wordPattern().matches(text::repairedUtf8(text));
  if (!words) return std::nullopt;
  std::vector<std::int64_t> result;
  for (const auto& word : *words) {
    for (const auto& piece : merged(word)) {
      const auto number = token(piece);
      if (!number) return std::nullopt;
      result.push_back(*number);
    }
  }
  return result;
}

/// The tokens of one word, as they are written in the vocabulary.
std::vector<std::string> ByteLevelBPE::merged(std::string_view word) const {
  std::vector<std::string> pieces;
  for (const char byte : word)
    pieces.push_back(byteCharacters().characters[static_cast<unsigned char>(byte)]);
  while (pieces.size() > 1) {
    std::size_t best = std::numeric_limits<std::size_t>::max();
    std::pair<std::string, std::string> pair;
    for (std::size_t index = 0; index + 1 < pieces.size(); ++index) {
      const auto found = ranks_.find(pieces[index] + ' ' + pieces[index + 1]);
      if (found == ranks_.end() || found->second >= best) continue;
      best = found->second;
      pair = {pieces[index], pieces[index + 1]};
    }
    if (best == std::numeric_limits<std::size_t>::max()) break;
    std::vector<std::string> joined;
    for (std::size_t index = 0; index < pieces.size(); ++index) {
      const bool isPair =
          index + 1 < pieces.size() && pieces[index] == pair.first && pieces[index + 1] == pair.second;
      joined.push_back(isPair ? pair.first + pair.second : std::move(pieces[index]));
      if (isPair) ++index;
    }
    pieces = std::move(joined);
  }
  return pieces;
}

std::string ByteLevelBPE::decode(std::span<const std::int64_t> tokens) const {
  std::string text;
  for (const auto number : tokens) {
    if (number < 0 || static_cast<std::size_t>(number) >= tokens_.size()) continue;
    const auto& token = tokens_[static_cast<std::size_t>(number)];
    if (!isControl(token)) appendBytes(token, text);
  }
  return text::repairedUtf8(text);
}

}  // namespace murmel::worker
