#include "CleanUp/PersonalVocabulary.h"
#include "Foundation/Text/RegularExpression.h"
#include "Foundation/Text/Text.h"
#include "Support/Testing.h"

namespace {

std::string applied(std::string_view vocabulary, std::string_view text) {
  return CompiledVocabulary(vocabulary).apply(text);
}

/// A term and the regular expression that it stands for.
struct Term {
  std::string text;
  text::RegularExpression pattern;
};

Term makeTerm(const std::string& term) {
  const auto pattern =
      R"((?i)(?<![\p{L}\p{N}_]))" + text::RegularExpression::escaped(term) + R"((?![\p{L}\p{N}_]))";
  return {term, text::RegularExpression::compile(pattern).value()};
}

class Generator {
 public:
  explicit Generator(unsigned seed) : engine_(seed) {}

  std::size_t below(std::size_t end) {
    return std::uniform_int_distribution<std::size_t>(0, end - 1)(engine_);
  }

  /// Up to `longest` pieces that meet in every way that matters to boundaries and case.
  std::string text(std::size_t longest) {
    static const Strings units{"a", "b", "A", "ab", "я", "Я", "ё", "1", "_", "+", "-", ".", "$", " ", " "};
    std::string result;
    for (auto left = below(longest + 1); left > 0; --left) result += units[below(units.size())];
    return result;
  }

 private:
  std::mt19937 engine_;
};

}  // namespace

TEST(PersonalVocabulary, ReplacesWholeTerms) {
  struct Row {
    const char* what;
    std::string_view vocabulary, text, expected;
  };
  for (const auto& row : std::vector<Row>{
           {"any case", "postgresql = PostgreSQL", "I use Postgresql", "I use PostgreSQL"},
           {"not inside a word", "postgresql = PostgreSQL", "postgresql_db postgresql2 xpostgresql",
            "postgresql_db postgresql2 xpostgresql"},
           {"a later entry sees the output of an earlier one", "a = b\nb = c", "a b", "c c"},
           {"an earlier one does not see that of a later", "b = c\na = b", "a b", "b c"},
           {"several words", "new york = New York City", "in new york.", "in New York City."},
           {"only the literal space between them", "new york = NYC", "new  york", "new  york"},
           {"an empty replacement deletes", "um =", "um yes", " yes"},
           {"split at the first equals sign", "eq = a = b", "eq", "a = b"},
           {"lines without meaning are skipped", "nothing\n = x\n\n  \nok = fine", "nothing ok",
            "nothing fine"},
           {"CR LF, CR and a line separator", "a = 1\r\nb = 2\rc = 3\u2028d = 4", "a b c d", "1 2 3 4"},
           {"a byte-order mark",
            "\xEF\xBB\xBF"
            "a = 1",
            "a", "1"},
           {"ill-formed lines are skipped alone", "a\xFF = x\nb = \xC3\nc = 3", "a\xFF b c", "a\xFF b 3"},
           {"regular expressions mean themselves", ".* = x\n[a-z]+ = y\n(a|b = z\n\\w = w",
            "a .* [a-z]+ (a|b \\w", "a x y z w"},
           {"so do replacements", "price = $1 \\0 & \\n $&", "price", "$1 \\0 & \\n $&"},
           {"a term that begins or ends with signs", "c++ = C++ language\n.net = .NET", "c++ .net x.net c++x",
            "C++ language .NET x.net c++x"},
           {"ß and ss", "straße = Weg", "STRASSE Straße strasse", "Weg Weg Weg"},
           {"final sigma", "οδός = δρόμος", "ΟΔΌΣ", "δρόμος"},
           {"İ and its two parts", "İzmir = x", "İZMIR i̇zmir", "x x"},
           {"not a part of İ", "i = x\nzmir = y", "İzmir", "İzmir"},
           {"accents encoded in two ways", "cafe\u0301 = bar\nйод = I", "caf\u00E9 \u0438\u0306\u043E\u0434",
            "bar I"},
           {"text without a match stays as it is encoded", "x = y", "cafe\u0301 \xFF", "cafe\u0301 \xFF"},
           {"matches side by side", "+ = x\nxx = both", "++", "both"},
           {"matches that overlap", "a a = b", "a a a", "b a"},
           {"a match that overlaps one inside a word", "+ + = y", "x+ + +", "x+ y"},
           {"emoji", "👍🏽 = ok\n:) = 🙂", "👍🏽 :)", "ok 🙂"},
           {"the same term twice", "a = b\na = c", "a", "b"},
           {"nothing", "", "text", "text"},
           {"no text", "a = b", "", ""},
       }) {
    EXPECT_EQ(applied(row.vocabulary, row.text), row.expected) << row.what;
  }
}

TEST(PersonalVocabulary, AgreesWithRegularExpressionsAppliedInTurn) {
  Generator termGenerator(1);
  std::vector<Term> terms;  // compiling a pattern takes milliseconds: the terms are shared by all rounds
  while (terms.size() < 60) {
    const std::string term(text::trimmed(termGenerator.text(4)));
    if (!term.empty()) terms.push_back(makeTerm(term));
  }
  for (unsigned seed = 1; seed <= 800; ++seed) {
    Generator random(seed);
    const auto original = random.text(40);
    auto expected = original;
    std::string vocabulary;
    for (auto left = 1 + random.below(12); left > 0; --left) {
      const auto& term = terms[random.below(terms.size())];
      const auto replacement = random.text(3);
      vocabulary += term.text + " = " + replacement + "\n";
      expected = term.pattern.replacingMatches(expected, text::trimmed(replacement)).value();
    }
    ASSERT_EQ(applied(vocabulary, original), expected) << "seed " << seed << "\n"
                                                       << vocabulary << "on: " << original;
  }
}

TEST(PersonalVocabulary, KeepsExplosionsAndPathologiesInBounds) {
  std::string doubling;
  for (int line = 0; line < 200; ++line) doubling += "a = a a\n";
  const auto doubled = applied(doubling, "a");
  EXPECT_LE(doubled.size(), CompiledVocabulary::maximumResultSize(1));
  EXPECT_GT(doubled.size(), 10'000U) << "the entries before the bound apply";

  const std::string plusses(100'000, '+');
  EXPECT_EQ(applied(plusses.substr(0, 50'000) + "- = x", plusses), plusses) << "fails late at every place";
  EXPECT_EQ(applied(std::string(50'000, 'a') + " = x", std::string(100'000, 'a')).size(), 100'000U);
}

TEST(PersonalVocabulary, FollowsAChangedVocabulary) {
  PersonalVocabulary vocabulary;
  EXPECT_EQ(vocabulary.apply("", "a"), "a");
  EXPECT_EQ(vocabulary.apply("a = b", "a"), "b");
  EXPECT_EQ(vocabulary.apply("a = b", "A"), "b");
  EXPECT_EQ(vocabulary.apply("a = c", "a"), "c");
  EXPECT_EQ(vocabulary.apply("", "a"), "a");
}

TEST(VocabularyHints, AreTheFirstShortNames) {
  EXPECT_EQ(vocabularyHints(
                "cubernetes = Kubernetes\r\nno line\nbtw = by the way\nk8s=Kubernetes \nx = \xff\nё = Ёлкин"),
            (Strings{"Kubernetes", "Ёлкин"}));
  std::string many = "x = " + std::string(100, 'N') + "\n";
  for (int i = 0; i < 50; ++i) many += "a = Name" + std::to_string(i) + "\n";
  EXPECT_EQ(vocabularyHints(many).size(), 10U);
}
