#include "Foundation/Text.h"

#include <memory>
#include <stdexcept>

#include <unicode/brkiter.h>
#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/edits.h>
#include <unicode/normalizer2.h>
#include <unicode/stringpiece.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

namespace murmel::text {

namespace {

constexpr char32_t replacementCharacter = 0xFFFD;

/// Reads the scalar at `position` and moves behind it.
char32_t nextScalar(std::string_view text, std::size_t& position) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  auto index = static_cast<std::int32_t>(position);
  const auto length = static_cast<std::int32_t>(text.size());
  UChar32 scalar = 0;
  U8_NEXT_OR_FFFD(bytes, index, length, scalar);
  position = static_cast<std::size_t>(index);
  return static_cast<char32_t>(scalar);
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

bool isAscii(std::string_view text) {
  for (const char byte : text) {
    if (static_cast<unsigned char>(byte) >= 0x80) return false;
  }
  return true;
}

icu::StringPiece piece(std::string_view text) {
  return {text.data(), static_cast<std::int32_t>(text.size())};
}

void require(UErrorCode status, const char* what) {
  if (U_FAILURE(status)) throw std::runtime_error(std::string(what) + ": " + u_errorName(status));
}

/// Calls `visit(begin, end)` for every character. One break iterator a thread: making one costs more than
/// most texts take.
template <class Visit>
void forEachCharacter(std::string_view text, Visit visit) {
  UErrorCode status = U_ZERO_ERROR;
  thread_local const std::unique_ptr<icu::BreakIterator> iterator{
      icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status)};
  require(status, "no character break iterator");
  UText input = UTEXT_INITIALIZER;
  utext_openUTF8(&input, text.data(), static_cast<std::int64_t>(text.size()), &status);
  require(status, "cannot open text");
  iterator->setText(&input, status);
  require(status, "cannot break text");
  auto begin = iterator->first();
  for (auto end = iterator->next(); end != icu::BreakIterator::DONE; end = iterator->next()) {
    visit(static_cast<std::size_t>(begin), static_cast<std::size_t>(end));
    begin = end;
  }
  utext_close(&input);
}

}  // namespace

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
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  const auto length = static_cast<std::int32_t>(text.size());
  for (std::int32_t index = 0; index < length;) {
    UChar32 scalar = 0;
    U8_NEXT(bytes, index, length, scalar);
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
  return !character.empty() && u_isUUppercase(static_cast<UChar32>(firstScalar(character))) != 0;
}

bool isLowercase(std::string_view character) {
  return !character.empty() && u_isULowercase(static_cast<UChar32>(firstScalar(character))) != 0;
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
  std::vector<std::string_view> result;
  std::size_t begin = 0;
  for (std::size_t position = 0; position < text.size();) {
    const auto start = position;
    if (!isWhitespaceScalar(nextScalar(text, position))) continue;
    if (start > begin) result.push_back(text.substr(begin, start - begin));
    begin = position;
  }
  if (begin < text.size()) result.push_back(text.substr(begin));
  return result;
}

std::string uppercased(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  std::string result;
  icu::StringByteSink<std::string> sink(&result);
  icu::CaseMap::utf8ToUpper("", 0, piece(text), sink, nullptr, status);
  require(status, "cannot map to upper case");
  return result;
}

std::string normalized(std::string_view text) {
  if (isAscii(text)) return std::string(text);
  UErrorCode status = U_ZERO_ERROR;
  const auto* normalizer = icu::Normalizer2::getNFCInstance(status);
  require(status, "no normalizer");
  std::string result;
  icu::StringByteSink<std::string> sink(&result);
  normalizer->normalizeUTF8(0, piece(text), sink, nullptr, status);
  require(status, "cannot normalize");
  return result;
}

std::string caseFolded(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  std::string result;
  icu::StringByteSink<std::string> sink(&result);
  icu::CaseMap::utf8Fold(0, piece(text), sink, nullptr, status);
  require(status, "cannot fold case");
  return normalized(result);
}

}  // namespace murmel::text
