#include "CleanUp/FillerCleanUp.h"
#include "Foundation/Text/Text.h"
#include "Platform/Linux/LanguageRecognizer/CLD2LanguageRecognizer.h"
#include "Support/BuildPaths.h"
#include "Support/Testing.h"

TEST(FillerLanguages, SentencesInOtherLanguagesKeepTheirWords) {
  const CLD2LanguageRecognizer recognizer;
  const std::vector<std::string> latin{"um", "uh", "basically", "kind of"};
  const std::vector<std::string> cyrillic{"ну", "значит", "типа", "короче"};
  std::ifstream sentences(sourceFolder() + "/Tests/Unit/CleanUp/sentences.txt");
  std::size_t count = 0;
  for (std::string language, sentence;
       sentences >> language && std::getline(sentences >> std::ws, sentence);) {
    const bool isCyrillic = std::string("uk be bg sr").find(language) != std::string::npos;
    const auto& filler = (isCyrillic ? cyrillic : latin)[count % latin.size()];
    const auto word = sentence.find(' ');
    for (const auto& text : {sentence.substr(0, word) + " " + filler + sentence.substr(word),
                             text::uppercased(filler.substr(0, isCyrillic ? 2 : 1)) +
                                 filler.substr(isCyrillic ? 2 : 1) + ", " + sentence}) {
      EXPECT_EQ(FillerCleanUp::apply(text, std::nullopt, recognizer), text) << language;
      ++count;
    }
  }
  EXPECT_EQ(count, 520U) << "twenty in each of twenty-six languages";
}

TEST(FillerLanguages, EnglishAndRussianLoseTheirFillers) {
  const CLD2LanguageRecognizer recognizer;
  for (const auto& [text, cleaned] : std::vector<std::pair<std::string, std::string>>{
           {"Um, I think we should, you know, leave before the rain starts.",
            "I think we should, leave before the rain starts."},
           {"The meeting is basically over. Um, yes.", "The meeting is over. yes."},
           {"Ну, мы как бы уже договорились встретиться завтра утром.",
            "мы уже договорились встретиться завтра утром."},
           {"Um, the train leaves at nine in the morning. Wir treffen uns um drei Uhr vor dem Bahnhof.",
            "the train leaves at nine in the morning. Wir treffen uns um drei Uhr vor dem Bahnhof."},
       }) {
    EXPECT_EQ(FillerCleanUp::apply(text, std::nullopt, recognizer), cleaned);
  }
  // The language that a dictation was forced to decides alone.
  EXPECT_EQ(FillerCleanUp::apply("um drei", "de", recognizer), "um drei");
  EXPECT_EQ(FillerCleanUp::apply("um three", "en", recognizer), "three");
}
