#include "Foundation/Text/RegularExpression.h"

#include <algorithm>
#include <limits>

#include <unicode/regex.h>
#include <unicode/unistr.h>

namespace murmel::text {

namespace {

/// ICU counts the times it saves a state to come back to, in ticks of 10,000. A pattern that is linear saves
/// a few for each unit of the text; this many are taken for a runaway.
constexpr std::int32_t savesPerTick = 10'000;
constexpr std::int32_t savesPerUnit = 100;
/// Short texts may take a millisecond or two without any harm.
constexpr std::int32_t freeTicks = 10;
/// Bytes that saved states may take, on the heap: a state is 24 bytes or more, and a plain "+" saves one for
/// each unit that it has matched.
constexpr std::int32_t freeStack = 8'000'000;
constexpr std::int32_t stackPerUnit = 64;
constexpr std::int32_t longestText = (std::numeric_limits<std::int32_t>::max() - freeStack) / stackPerUnit;

icu::UnicodeString fromUtf8(std::string_view text) {
  return icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
}

std::string toUtf8(const icu::UnicodeString& text) {
  std::string result;
  text.toUTF8String(result);
  return result;
}

}  // namespace

struct RegularExpression::Compiled {
  std::unique_ptr<icu::RegexPattern> pattern;

  [[nodiscard]] std::unique_ptr<icu::RegexMatcher> matcher(const icu::UnicodeString& text,
                                                           UErrorCode& status) const {
    std::unique_ptr<icu::RegexMatcher> matcher{pattern->matcher(text, status)};
    if (U_FAILURE(status)) return nullptr;
    matcher->setTimeLimit(freeTicks + text.length() / (savesPerTick / savesPerUnit), status);
    matcher->setStackLimit(freeStack + stackPerUnit * std::min(text.length(), longestText), status);
    return matcher;
  }
};

std::expected<RegularExpression, RegularExpressionError> RegularExpression::compile(
    std::string_view pattern) {
  UErrorCode status = U_ZERO_ERROR;
  auto compiled = std::make_shared<Compiled>();
  compiled->pattern.reset(icu::RegexPattern::compile(fromUtf8(pattern), 0, status));
  if (U_FAILURE(status)) return std::unexpected(RegularExpressionError::invalidPattern);
  return RegularExpression(std::move(compiled));
}

std::string RegularExpression::escaped(std::string_view literal) {
  constexpr std::string_view meaningful = "\\*?+[(){}^$|./-&#<>=!:@~` \t\n\r\v\f]";
  std::string result;
  result.reserve(literal.size() + literal.size() / 4);
  for (const char byte : literal) {
    if (meaningful.find(byte) != std::string_view::npos) result += '\\';
    result += byte;
  }
  return result;
}

std::expected<std::string, RegularExpressionError> RegularExpression::replacingMatches(
    std::string_view text, std::string_view replacement, Replacement kind) const {
  UErrorCode status = U_ZERO_ERROR;
  const auto input = fromUtf8(text);
  const auto matcher = compiled_->matcher(input, status);
  if (U_FAILURE(status)) return std::unexpected(RegularExpressionError::limitExceeded);
  const auto inserted = fromUtf8(replacement);
  icu::UnicodeString output;
  std::int32_t copied = 0;
  bool found = false;
  while (matcher->find(status) && U_SUCCESS(status)) {
    found = true;
    if (kind == Replacement::withReferences) {
      matcher->appendReplacement(output, inserted, status);
    } else {
      output.append(input, copied, matcher->start(status) - copied);
      output.append(inserted);
      copied = matcher->end(status);
    }
    if (U_FAILURE(status)) break;
  }
  if (U_FAILURE(status)) return std::unexpected(RegularExpressionError::limitExceeded);
  if (!found) return std::string(text);
  if (kind == Replacement::withReferences) {
    matcher->appendTail(output);
  } else {
    output.append(input, copied, input.length() - copied);
  }
  return toUtf8(output);
}

std::expected<std::vector<std::string>, RegularExpressionError> RegularExpression::matches(
    std::string_view text) const {
  UErrorCode status = U_ZERO_ERROR;
  const auto input = fromUtf8(text);
  const auto matcher = compiled_->matcher(input, status);
  std::vector<std::string> result;
  while (U_SUCCESS(status) && matcher->find(status)) result.push_back(toUtf8(matcher->group(status)));
  if (U_FAILURE(status)) return std::unexpected(RegularExpressionError::limitExceeded);
  return result;
}

}  // namespace murmel::text
