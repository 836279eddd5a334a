#include "Platform/Fake/FakeLanguageRecognizer.h"
#include "Refinement/TextLanguageRouter.h"
#include "Support/Testing.h"

TEST(TextLanguageRouter, RoutesByScriptAndAsksOnlyAboutMixedTexts) {
  struct Row {
    std::string_view text;
    RefinementRoute route;
  };
  FakeLanguageRecognizer recognizer;
  for (const auto& row : std::vector<Row>{
           {"", RefinementRoute::none},
           {"123 !!!", RefinementRoute::none},
           {"éàü ñ 日本", RefinementRoute::none},  // accented letters alone say nothing
           {"\xFF\xD0", RefinementRoute::none},
           {"hello world", RefinementRoute::english},
           {"привет мир", RefinementRoute::russian},
           {"привет 123 é", RefinementRoute::russian},
           {"\u0400", RefinementRoute::russian},
           {"\u052F", RefinementRoute::russian},
           {"\u0530\u03FF", RefinementRoute::none},
       }) {
    EXPECT_EQ(TextLanguageRouter::classify(row.text, recognizer), row.route) << row.text;
  }
  EXPECT_EQ(recognizer.questions(), 0U);
}

TEST(TextLanguageRouter, LetsTheRecognizerThenTheWordsDecideOnMixedTexts) {
  struct Row {
    std::string text;
    std::optional<std::string> dominant;
    RefinementRoute route;
  };
  const auto none = std::nullopt;
  for (const auto& row : std::vector<Row>{
           {"open the файл", "ru", RefinementRoute::russian},
           {"open the файл", "en", RefinementRoute::multilingual},
           {"open the файл", none, RefinementRoute::multilingual},
           {"open файл", "en", RefinementRoute::russian},
           {"open файл", none, RefinementRoute::russian},
           {"open этот файл", "uk", RefinementRoute::russian},
       }) {
    FakeLanguageRecognizer recognizer;
    recognizer.answer(row.text, row.dominant);
    EXPECT_EQ(TextLanguageRouter::classify(row.text, recognizer), row.route)
        << row.text << " in " << row.dominant.value_or("none");
  }
}

TEST(TextLanguageRouter, CountsWordsByScript) {
  using Counts = TextLanguageRouter::ScriptWordCounts;
  EXPECT_EQ(TextLanguageRouter::scriptWordCounts(" abc\u00A0где\nx-ы 12 é "), (Counts{2, 2}));
  EXPECT_EQ(TextLanguageRouter::scriptWordCounts(""), Counts{});
}
