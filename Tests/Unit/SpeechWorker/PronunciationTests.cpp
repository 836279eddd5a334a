#include "Support/Testing.h"
#include "Workers/SpeechWorker/Pronunciation.h"

using namespace murmel::worker;

TEST(Pronunciation, IsPutTogetherFromTheFewestWordsAndLettersOtherwise) {
  const std::map<std::string, std::string> dictionary{
      {"mur", "M ER"}, {"mel", "M EH L"}, {"me", "M IY"}, {"murmur", "M ER M ER"}};
  const auto lookup = [&](const std::string& word) {
    const auto found = dictionary.find(word);
    return found == dictionary.end() ? std::nullopt : std::optional(found->second);
  };
  EXPECT_EQ(guessedPronunciation("Murmel", lookup), "M ER M EH L");
  EXPECT_EQ(guessedPronunciation("MurmurX", lookup), "M ER M ER K S");
  EXPECT_EQ(guessedPronunciation("Qt", lookup), "K T");
  for (const auto* unknown : {"", "Wrocław", "C3PO"})
    EXPECT_FALSE(guessedPronunciation(unknown, lookup)) << unknown;
}
