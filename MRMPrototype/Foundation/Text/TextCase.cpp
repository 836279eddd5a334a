#include "Foundation/Text/Ascii.h"
#include "Foundation/Text/Text.h"

#include <algorithm>
#include <stdexcept>

#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/normalizer2.h>
#include <unicode/stringpiece.h>
#include <unicode/uchar.h>

namespace murmel::text {

namespace {

bool isAllAscii(std::string_view text) {
  return std::ranges::all_of(text, [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

icu::StringPiece piece(std::string_view text) {
  return {text.data(), static_cast<std::int32_t>(text.size())};
}

void require(UErrorCode status, const char* what) {
  if (U_FAILURE(status)) throw std::runtime_error(std::string(what) + ": " + u_errorName(status));
}

std::string asciiUppercased(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(), [](char byte) {
    return byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 'a' + 'A') : byte;
  });
  return result;
}

/// Whether `text` consists of scalars that normalisation never touches, whatever stands beside them: Latin up
/// to its phonetic extensions and Cyrillic, without combining marks, and the dashes and quotes around them.
bool isPlainlyNormalized(std::string_view text) {
  for (std::size_t position = 0; position < text.size();) {
    const auto scalar = nextScalar(text, position);
    const bool inert = scalar < 0x300 || (scalar >= 0x400 && scalar <= 0x481) ||
                       (scalar >= 0x48A && scalar <= 0x52F) || (scalar >= 0x2010 && scalar <= 0x2027);
    if (!inert) return false;
  }
  return true;
}

/// The length of the beginning of `text` that is normalised at once. Normalisation sorts the marks that
/// follow a letter, in time that is quadratic in their number; no writing system needs thirty (the bound of
/// the Stream-Safe Text Format of UAX #15), so that is where a longer run is cut.
std::size_t normalizedAtOnce(std::string_view text) {
  constexpr int longestRunOfMarks = 30;
  int marks = 0;
  for (std::size_t position = 0; position < text.size();) {
    const auto start = position;
    const auto scalar = nextScalar(text, position);
    marks = u_getCombiningClass(static_cast<UChar32>(scalar)) == 0 ? 0 : marks + 1;
    if (marks > longestRunOfMarks) return start;
  }
  return text.size();
}

std::string folded(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  std::string result;
  icu::StringByteSink<std::string> sink(&result, static_cast<std::int32_t>(text.size()));
  icu::CaseMap::utf8Fold(0, piece(text), sink, nullptr, status);
  require(status, "cannot fold case");
  return result;
}

}  // namespace

std::string uppercased(std::string_view text) {
  if (isAllAscii(text)) return asciiUppercased(text);
  UErrorCode status = U_ZERO_ERROR;
  std::string result;
  icu::StringByteSink<std::string> sink(&result, static_cast<std::int32_t>(text.size()));
  icu::CaseMap::utf8ToUpper("", 0, piece(text), sink, nullptr, status);
  require(status, "cannot map to upper case");
  return result;
}

std::string lowercased(std::string_view text) {
  if (isAllAscii(text)) return asciiLowercased(text);
  UErrorCode status = U_ZERO_ERROR;
  std::string result;
  icu::StringByteSink<std::string> sink(&result, static_cast<std::int32_t>(text.size()));
  icu::CaseMap::utf8ToLower("", 0, piece(text), sink, nullptr, status);
  require(status, "cannot map to lower case");
  return result;
}

std::string normalized(std::string_view text) {
  if (isPlainlyNormalized(text)) return std::string(text);
  UErrorCode status = U_ZERO_ERROR;
  const auto* normalizer = icu::Normalizer2::getNFCInstance(status);
  require(status, "no normalizer");
  std::string result;
  icu::StringByteSink<std::string> sink(&result, static_cast<std::int32_t>(text.size()));
  while (!text.empty()) {
    const auto size = normalizedAtOnce(text);
    normalizer->normalizeUTF8(0, piece(text.substr(0, size)), sink, nullptr, status);
    require(status, "cannot normalize");
    text.remove_prefix(size);
  }
  return result;
}

std::string caseFolded(std::string_view text) {
  if (isAllAscii(text)) return asciiLowercased(text);
  // Normalised before as well: folding takes an iota subscript apart only where it is composed.
  if (isPlainlyNormalized(text)) return normalized(folded(text));
  return normalized(folded(normalized(text)));
}

bool areCanonicallyEqual(std::string_view left, std::string_view right) {
  return left == right || (!(isAllAscii(left) && isAllAscii(right)) && normalized(left) == normalized(right));
}

}  // namespace murmel::text
