// Foundation/Text against the tables and test vectors of the Unicode Character Database (package
// unicode-data): the short cuts for common text must agree with the full rules for every scalar.

#include "Foundation/Text/Text.h"
#include "Support/Testing.h"

#include <sstream>

namespace {

constexpr char32_t lastScalar = 0x10FFFF;

/// Most planes have no characters at all: of those a few scalars stand for the rest.
bool isTried(char32_t scalar) {
  const auto plane = scalar >> 16U;
  return plane < 4 || plane == 14 || scalar % 251 == 0;
}

std::string utf8(const std::vector<char32_t>& scalars) {
  std::string result;
  for (const auto scalar : scalars) text::appendScalar(result, scalar);
  return result;
}

char32_t parseScalar(std::string_view digits) {
  return static_cast<char32_t>(std::stoul(std::string(digits), nullptr, 16));
}

Strings fields(const std::string& line, char separator) {
  Strings result;
  std::istringstream stream(line);
  for (std::string field; std::getline(stream, field, separator);) result.emplace_back(text::trimmed(field));
  return result;
}

/// Calls `visit` with the fields of every data line of a file of the database.
void forEachLine(const std::string& name, char separator, const std::function<void(const Strings&)>& visit) {
  std::ifstream file("/usr/share/unicode/" + name);
  ASSERT_TRUE(file) << "the package unicode-data is not installed";
  for (std::string line; std::getline(file, line);) {
    line.resize(std::min(line.find('#'), line.size()));
    if (!text::trimmed(line).empty()) visit(fields(line, separator));
  }
}

/// The value of a property for every scalar that a file lists, in ranges "0041..005A ; Value".
std::map<char32_t, std::string> readProperty(const std::string& name, const std::string& only = {}) {
  std::map<char32_t, std::string> values;
  forEachLine(name, ';', [&](const Strings& line) {
    if (!only.empty() && line[1] != only) return;
    const auto dots = line[0].find("..");
    const auto first = parseScalar(line[0].substr(0, dots));
    const auto last = dots == std::string::npos ? first : parseScalar(line[0].substr(dots + 2));
    for (auto scalar = first; scalar <= last; ++scalar) {
      if (isTried(scalar)) values[scalar] = line[1];
    }
  });
  return values;
}

std::vector<char32_t> parseScalars(const std::string& list) {
  std::vector<char32_t> result;
  for (const auto& digits : fields(list, ' ')) {
    if (!digits.empty()) result.push_back(parseScalar(digits));
  }
  return result;
}

}  // namespace

TEST(UnicodeData, CharactersPassTheGraphemeBreakTest) {
  int cases = 0;
  forEachLine("auxiliary/GraphemeBreakTest.txt", '\n', [&](const Strings& line) {
    Strings expected(1);
    std::istringstream marks(line[0]);
    std::string whole;
    for (std::string mark; marks >> mark;) {
      if (mark == "÷") {
        if (!expected.back().empty()) expected.emplace_back();
      } else if (mark != "×") {
        text::appendScalar(expected.back(), parseScalar(mark));
        text::appendScalar(whole, parseScalar(mark));
      }
    }
    if (expected.back().empty()) expected.pop_back();
    const auto actual = text::characters(whole);
    EXPECT_EQ(Strings(actual.begin(), actual.end()), expected) << line[0];
    EXPECT_EQ(text::characterCount(whole), expected.size());
    ++cases;
  });
  EXPECT_GT(cases, 500);
}

TEST(UnicodeData, EveryScalarJoinsItsNeighboursAsItsBreakPropertySays) {
  const auto property = readProperty("auxiliary/GraphemeBreakProperty.txt");
  std::size_t wrong = 0;
  for (char32_t scalar = 1; scalar <= lastScalar; ++scalar) {
    if ((scalar >= 0xD800 && scalar <= 0xDFFF) || !isTried(scalar)) continue;
    const auto found = property.find(scalar);
    const auto value = found == property.end() ? "Other" : found->second;
    const bool joins = value == "Extend" || value == "ZWJ" || value == "SpacingMark" || value == "Prepend";
    if (text::characterCount(utf8({U'a', scalar, U'я'})) != (joins ? 2U : 3U)) ++wrong;
  }
  EXPECT_EQ(wrong, 0U);
}

TEST(UnicodeData, WhiteSpacePunctuationLettersAndWordScalars) {
  const auto whiteSpace = readProperty("PropList.txt", "White_Space");
  const auto alphabetic = readProperty("DerivedCoreProperties.txt", "Alphabetic");
  const auto uppercase = readProperty("DerivedCoreProperties.txt", "Uppercase");
  const auto lowercase = readProperty("DerivedCoreProperties.txt", "Lowercase");
  const auto category = readProperty("extracted/DerivedGeneralCategory.txt");
  std::size_t wrong = 0;
  for (const auto& [scalar, value] : category) {
    if (value == "Cs") continue;
    const auto character = utf8({scalar});
    const bool isWord = value.starts_with('L') || value.starts_with('N') || scalar == U'_';
    const bool right = text::isWhitespace(character) == whiteSpace.contains(scalar) &&
                       text::isPunctuation(character) == value.starts_with('P') &&
                       text::isLetter(character) == alphabetic.contains(scalar) &&
                       text::isUppercase(character) == uppercase.contains(scalar) &&
                       text::isLowercase(character) == lowercase.contains(scalar) &&
                       text::isWordScalar(scalar) == isWord &&
                       text::words("a" + character + "b").size() == (whiteSpace.contains(scalar) ? 2U : 1U);
    if (!right && ++wrong < 10) ADD_FAILURE() << "U+" << std::hex << static_cast<std::uint32_t>(scalar);
  }
  EXPECT_EQ(wrong, 0U);
  EXPECT_GT(category.size(), 140'000U);
}

TEST(UnicodeData, FullCaseFolding) {
  int cases = 0;
  forEachLine("CaseFolding.txt", ';', [&](const Strings& line) {
    if (line[1] != "C" && line[1] != "F") return;
    const auto from = utf8({parseScalar(line[0])});
    EXPECT_EQ(text::caseFolded(from), text::normalized(utf8(parseScalars(line[2])))) << line[0];
    ++cases;
  });
  EXPECT_GT(cases, 1'500);
}

TEST(UnicodeData, ComposedAndDecomposedFormsAreEqualAndFoldAlike) {
  int cases = 0;
  forEachLine("UnicodeData.txt", ';', [&](const Strings& line) {
    if (line[5].empty() || line[5].front() == '<') return;
    const auto composed = utf8({parseScalar(line[0])});
    const auto decomposed = utf8(parseScalars(line[5]));
    EXPECT_TRUE(text::areCanonicallyEqual(composed, decomposed)) << line[0];
    EXPECT_EQ(text::caseFolded(composed), text::caseFolded(decomposed)) << line[0];
    ++cases;
  });
  EXPECT_GT(cases, 2'000);
}
