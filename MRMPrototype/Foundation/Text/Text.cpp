#include "Foundation/Text/Text.h"

#include <algorithm>
#include <memory>
#include <stdexcept>

#include <unicode/brkiter.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

namespace murmel::text {

namespace {

constexpr char32_t replacementCharacter = 0xFFFD;

constexpr bool isAsciiByte(char byte) {
  return static_cast<unsigned char>(byte) < 0x80;
}

/// The controls that are white space, and the space.
constexpr bool isAsciiWhitespace(char byte) {
  return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

bool isAscii(std::string_view text) {
  return std::ranges::all_of(text, isAsciiByte);
}

/// Reads the scalar that ends at `position` and moves before it.
char32_t previousScalar(std::string_view text, std::size_t& position) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  auto index = static_cast<std::int32_t>(position);
  UChar32 scalar = 0;
  U8_PREV_OR_FFFD(bytes, 0, index, scalar);
  position = static_cast<std::size_t>(index);
  return static_cast<char32_t>(scalar);
}

char32_t firstScalar(std::string_view character) {
  std::size_t position = 0;
  return character.empty() ? U'\0' : nextScalar(character, position);
}

bool isWhitespaceScalar(char32_t scalar) {
  return u_isUWhiteSpace(static_cast<UChar32>(scalar)) != 0;
}

int graphemeBreakClass(char32_t scalar) {
  return u_getIntPropertyValue(static_cast<UChar32>(scalar), UCHAR_GRAPHEME_CLUSTER_BREAK);
}

/// Whether two such scalars side by side are always two characters: scalars of Latin, Greek and Cyrillic text
/// and its punctuation that neither extend their neighbours nor join them. CR is left out because of CR LF.
constexpr bool standsAlone(char32_t scalar) {
  if (scalar < 0x7F) return scalar != U'\r';
  return (scalar >= 0xA0 && scalar <= 0x2FF && scalar != 0xAD) || (scalar >= 0x370 && scalar <= 0x481) ||
         (scalar >= 0x48A && scalar <= 0x52F) || (scalar >= 0x1E00 && scalar <= 0x1FFF) ||
         (scalar >= 0x2010 && scalar <= 0x2027) || (scalar >= 0x20A0 && scalar <= 0x20BF);
}

std::unique_ptr<icu::BreakIterator> makeCharacterIterator() {
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::BreakIterator> iterator{
      icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status)};
  if (U_FAILURE(status)) throw std::runtime_error("no character break iterator");
  return iterator;
}

struct OpenText {
  UText text = UTEXT_INITIALIZER;
  explicit OpenText(std::string_view bytes) {
    UErrorCode status = U_ZERO_ERROR;
    utext_openUTF8(&text, bytes.data(), static_cast<std::int64_t>(bytes.size()), &status);
    if (U_FAILURE(status)) throw std::runtime_error("cannot open text");
  }
  OpenText(const OpenText&) = delete;
  OpenText& operator=(const OpenText&) = delete;
  ~OpenText() { utext_close(&text); }
};

/// Calls `visit(begin, end)` for every character, by the full rules. One break iterator a thread: making one
/// costs more than most texts take.
template <class Visit>
void forEachCharacterByRules(std::string_view text, Visit visit) {
  thread_local const auto iterator = makeCharacterIterator();
  OpenText input(text);
  UErrorCode status = U_ZERO_ERROR;
  iterator->setText(&input.text, status);
  if (U_FAILURE(status)) throw std::runtime_error("cannot break text");
  auto begin = iterator->first();
  for (auto end = iterator->next(); end != icu::BreakIterator::DONE; end = iterator->next()) {
    visit(static_cast<std::size_t>(begin), static_cast<std::size_t>(end));
    begin = end;
  }
}

/// Calls `visit(begin, end)` for every character. The text is cut wherever two scalars that stand alone meet;
/// only the stretches between such cuts need the rules.
template <class Visit>
void forEachCharacter(std::string_view text, Visit visit) {
  std::size_t begin = 0;
  while (begin < text.size()) {
    auto end = begin;
    bool alone = standsAlone(nextScalar(text, end));
    const bool plain = alone;
    std::size_t count = 1;
    while (end < text.size()) {
      auto next = end;
      const bool nextAlone = standsAlone(nextScalar(text, next));
      if (alone && nextAlone) break;
      alone = nextAlone;
      end = next;
      ++count;
    }
    if (plain && count == 1) {
      visit(begin, end);
    } else {
      forEachCharacterByRules(text.substr(begin, end - begin),
                              [&](std::size_t from, std::size_t to) { visit(begin + from, begin + to); });
    }
    begin = end;
  }
}

/// Whether the white-space scalar in [begin, end) begins a character of its own. If so, `end` is moved over
/// the marks that stand on it. Controls neither join what comes before nor carry marks.
bool beginsWhitespaceCharacter(std::string_view text, char32_t scalar, std::size_t begin, std::size_t& end) {
  if (graphemeBreakClass(scalar) != U_GCB_OTHER) return true;
  if (begin > 0 && !isAsciiByte(text[begin - 1])) {
    auto before = begin;
    if (graphemeBreakClass(previousScalar(text, before)) == U_GCB_PREPEND) return false;
  }
  while (end < text.size() && !isAsciiByte(text[end])) {
    auto next = end;
    const int property = graphemeBreakClass(nextScalar(text, next));
    if (property != U_GCB_EXTEND && property != U_GCB_ZWJ && property != U_GCB_SPACING_MARK) break;
    end = next;
  }
  return true;
}

}  // namespace

char32_t nextScalar(std::string_view text, std::size_t& position) {
  if (isAsciiByte(text[position])) return static_cast<char32_t>(text[position++]);
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  auto index = static_cast<std::int32_t>(position);
  const auto length = static_cast<std::int32_t>(text.size());
  UChar32 scalar = 0;
  U8_NEXT_OR_FFFD(bytes, index, length, scalar);  // NOLINT(bugprone-inc-dec-in-conditions)
  position = static_cast<std::size_t>(index);
  return static_cast<char32_t>(scalar);
}

std::vector<std::string_view> characters(std::string_view text) {
  std::vector<std::string_view> result;
  result.reserve(text.size());
  forEachCharacter(
      text, [&](std::size_t begin, std::size_t end) { result.push_back(text.substr(begin, end - begin)); });
  return result;
}

std::size_t characterCount(std::string_view text) {
  std::size_t count = 0;
  forEachCharacter(text, [&](std::size_t, std::size_t) { ++count; });
  return count;
}

std::vector<char32_t> scalars(std::string_view text) {
  std::vector<char32_t> result;
  result.reserve(text.size());
  for (std::size_t position = 0; position < text.size();) result.push_back(nextScalar(text, position));
  return result;
}

void appendScalar(std::string& text, char32_t scalar) {
  std::uint8_t buffer[U8_MAX_LENGTH];
  std::int32_t length = 0;
  UBool failed = 0;
  U8_APPEND(buffer, length, U8_MAX_LENGTH, static_cast<UChar32>(scalar), failed);
  if (failed) return appendScalar(text, replacementCharacter);
  text.append(reinterpret_cast<const char*>(buffer), static_cast<std::size_t>(length));
}

bool isValidUtf8(std::string_view text) {
  if (isAscii(text)) return true;
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  const auto length = static_cast<std::int32_t>(text.size());
  for (std::int32_t index = 0; index < length;) {
    UChar32 scalar = 0;
    U8_NEXT(bytes, index, length, scalar);  // NOLINT(bugprone-inc-dec-in-conditions)
    if (scalar < 0) return false;
  }
  return true;
}

std::string repairedUtf8(std::string_view text) {
  if (isValidUtf8(text)) return std::string(text);
  std::string result;
  result.reserve(text.size());
  for (std::size_t position = 0; position < text.size();) appendScalar(result, nextScalar(text, position));
  return result;
}

bool isWhitespace(std::string_view character) {
  return !character.empty() && isWhitespaceScalar(firstScalar(character));
}

bool isPunctuation(std::string_view character) {
  if (character.empty()) return false;
  for (std::size_t position = 0; position < character.size();) {
    if (!u_ispunct(static_cast<UChar32>(nextScalar(character, position)))) return false;
  }
  return true;
}

bool isLetter(std::string_view character) {
  return !character.empty() && u_isUAlphabetic(static_cast<UChar32>(firstScalar(character))) != 0;
}

bool isUppercase(std::string_view character) {
  if (character.empty()) return false;
  std::size_t position = 0;
  const auto scalar = static_cast<UChar32>(nextScalar(character, position));
  if (position == character.size() && u_isUUppercase(scalar)) return true;
  return areCanonicallyEqual(uppercased(character), character) &&
         !areCanonicallyEqual(lowercased(character), character);
}

bool isLowercase(std::string_view character) {
  if (character.empty()) return false;
  std::size_t position = 0;
  const auto scalar = static_cast<UChar32>(nextScalar(character, position));
  if (position == character.size() && u_isULowercase(scalar)) return true;
  return areCanonicallyEqual(lowercased(character), character) &&
         !areCanonicallyEqual(uppercased(character), character);
}

bool isWordScalar(char32_t scalar) {
  if (scalar < 0x80) {
    return (scalar >= U'a' && scalar <= U'z') || (scalar >= U'A' && scalar <= U'Z') ||
           (scalar >= U'0' && scalar <= U'9') || scalar == U'_';
  }
  return (U_GET_GC_MASK(static_cast<UChar32>(scalar)) & (U_GC_L_MASK | U_GC_N_MASK)) != 0;
}

std::string_view trimmedEnd(std::string_view text) {
  std::size_t end = text.size();
  for (std::size_t position = end; position > 0;) {
    if (!isWhitespaceScalar(previousScalar(text, position))) break;
    end = position;
  }
  return text.substr(0, end);
}

std::string_view trimmed(std::string_view text) {
  std::size_t begin = 0;
  for (std::size_t position = 0; position < text.size();) {
    if (!isWhitespaceScalar(nextScalar(text, position))) break;
    begin = position;
  }
  return trimmedEnd(text.substr(begin));
}

std::vector<std::string_view> words(std::string_view text) {
  constexpr std::size_t usualBytesPerWord = 6;
  std::vector<std::string_view> result;
  result.reserve(text.size() / usualBytesPerWord + 1);
  std::size_t begin = 0;
  for (std::size_t position = 0; position < text.size();) {
    const auto start = position;
    const auto byte = text[position];
    if (isAsciiByte(byte) && !isAsciiWhitespace(byte)) {
      ++position;
      continue;
    }
    const auto scalar = nextScalar(text, position);
    if (!isWhitespaceScalar(scalar) || !beginsWhitespaceCharacter(text, scalar, start, position)) continue;
    if (start > begin) result.push_back(text.substr(begin, start - begin));
    begin = position;
  }
  if (begin < text.size()) result.push_back(text.substr(begin));
  return result;
}

}  // namespace murmel::text
