#include "Workers/SpeechWorker/WhisperRules.h"

#include <utility>
#include <vector>

#include <gtest/gtest.h>

using namespace murmel::worker;

TEST(WhisperRules, FindTheLoopOfAModelThatHasLostItsWay) {
  const std::vector<std::pair<std::string_view, std::string_view>> firstSayingAndRest{
      {"We went home. ", "we went home we went home"},
      {"Now: press the star key, ", "press the star key, and wait"},
      {"no, ", "No, no! no."},
      {"thank you. ", "Thank you. Thank you. Thank you."},
      {"Привет, мой друг. ", "Привет, мой друг."},
  };
  for (const auto& [first, rest] : firstSayingAndRest)
    EXPECT_EQ(repetitionIn(std::string(first) + std::string(rest)), first.size()) << first;
  EXPECT_EQ(repetitionIn("Да. ПППППППППППППППППП"), std::string_view("Да. ").size());
  EXPECT_EQ(repetitionIn("谢谢谢谢谢谢谢谢谢谢"), 0U);
  for (const auto* natural : {"", "aaaaaaah, 1000000000000", "no, no, no", "it was very, very, very cold",
                              "one two one two", "the end of the day is the end of the week", "- - - - -"})
    EXPECT_EQ(repetitionIn(natural), std::string_view::npos) << natural;
}

TEST(WhisperRules, LeaveOutDescriptionsOfSoundsButNotWhatIsSaidBesideThem) {
  for (const auto* sound :
       {" [BLANK_AUDIO]", "(wind blowing) [Music].", "*coughs*", "\u266a\u266a", " ", "", "[", "(unfinished"})
    EXPECT_EQ(withoutSoundDescriptions(sound), "") << sound;
  for (const auto* speech : {"Hello (again).", "[laughs] Hello", "(one) two", "Yes."})
    EXPECT_EQ(withoutSoundDescriptions(std::string(" ") + speech + "\n"), speech);
}

TEST(WhisperRules, GiveEveryLengthOfSpeechAWindowThatHoldsIt) {
  for (std::size_t samples = 0; samples <= 29 * 16'000; samples += 997) {
    const int window = whisperWindow(samples);
    EXPECT_TRUE(window == 0 || window * 320 >= static_cast<int>(samples) + 16'000) << samples;
    EXPECT_TRUE(window % 8 == 0 && window < 1'500 && (window == 0 || window >= 384)) << samples;
  }
  EXPECT_EQ(whisperTokenLimit(16'000), 26);
  // Ten seconds of speech and ten of a quiet room.
  std::vector<std::int16_t> spoken(20 * 16'000, 30);
  std::fill_n(spoken.begin(), 10 * 16'000, std::int16_t{3'000});
  EXPECT_EQ(whisperTokenLeast(spoken), 25);
  EXPECT_EQ(whisperTokenLeast({}), 0);
  EXPECT_EQ(whisperTokenLimit(29 * 16'000), 220);
}
