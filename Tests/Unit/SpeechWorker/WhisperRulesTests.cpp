#include "Support/Testing.h"
#include "Workers/SpeechWorker/WhisperRules.h"

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
  for (const auto* loop : {"Go. Go home now. Go home now. Go home now. Go home", "Да. ПППППППППППППППППП",
                           "no no no no no no no no no"})
    EXPECT_TRUE(isLooping(loop)) << loop;
  for (const auto* said : {"", "Go home now. Go home now. Go home now.", "no no no no no no no",
                           "Go home now. Go home now. Go home now. Go home now. At once."})
    EXPECT_FALSE(isLooping(said)) << said;
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
  EXPECT_EQ(whisperTokenLimit(29 * 16'000), 220);
}

TEST(WhisperRules, SuspectFewTokensWhereTheSpeechHasRoomForMore) {
  constexpr std::size_t second = 16'000;
  // Speech from 0 to 6 s and from `again` on, in a quiet room.
  const auto spoken = [](std::size_t again) {
    std::vector<std::int16_t> samples(20 * second, 30);
    std::fill_n(samples.begin(), 6 * second, std::int16_t{3'000});
    std::fill(samples.begin() + static_cast<std::ptrdiff_t>(again * second), samples.end() - 2 * second,
              3'000);
    return samples;
  };
  const WhisperOmission twice(spoken(12));
  EXPECT_FALSE(twice.isPossible(36));
  EXPECT_TRUE(twice.isPossible(35));
  EXPECT_TRUE(twice.isAfter(15 * second));
  EXPECT_FALSE(twice.isAfter(17 * second));
  EXPECT_TRUE(twice.isInside(25));
  EXPECT_FALSE(twice.isInside(30));
  const WhisperOmission slowly(spoken(8));
  EXPECT_FALSE(slowly.isInside(30)) << "no two halves";
  EXPECT_TRUE(slowly.isInside(25)) << "slower than anybody";
  EXPECT_FALSE(WhisperOmission({}).isPossible(0));
}
