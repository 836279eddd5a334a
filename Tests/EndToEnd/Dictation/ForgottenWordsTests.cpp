#include "DictationDesk.h"
#include "Support/ProcessMemory.h"

namespace {

/// Numbers of the application's worker processes.
std::vector<pid_t> workersOf(pid_t application) {
  std::istringstream numbers(outputOf("pgrep -P " + std::to_string(application)));
  return {std::istream_iterator<pid_t>(numbers), {}};
}

}  // namespace

// The microphone of this session has the recogniser's rate, so that the samples stay what they are.
TEST_F(DictationDesk, WordsAndSoundAreNowhereWhenTheyMayNoLongerBeCopied) {
#if defined(MURMEL_SANITIZED)
  GTEST_SKIP() << "instrumented programs have a heap of their own";
#endif
  constexpr std::size_t header = 44;
  constexpr std::size_t rate = 16'000;
  const auto wave = contentsOf("/usr/share/pocketsphinx/test/data/cards/005.wav");
  std::vector<std::int16_t> samples((wave.size() - header) / 2);
  std::memcpy(samples.data(), wave.data() + header, 2 * samples.size());
  const auto sound = piecesOfSound(std::span(samples).subspan(rate, rate));

  start();
  const ProcessMemory application(murmel->identifier());
  if (!application.isReadable()) GTEST_SKIP() << "this user may not look into processes";
  const auto editor = openEditor("spoken");
  holdShortcut();
  say(eightOfSpadesAndMore);
  EXPECT_GT(application.count(sound), 0) << "the search finds what is there";
  releaseShortcut();
  ASSERT_TRUE(waitForText(eightOfSpadesAndMore.word, "spoken")) << murmel->log();
  ASSERT_TRUE(waitForSummaries(1));
  const auto words = piecesOfText(textIn("spoken"));
  ASSERT_FALSE(words.empty()) << textIn("spoken");
  ASSERT_TRUE(waitForClipboard("old clipboard"));
  // They may be copied once more: they are there once, and not in both encodings.
  EXPECT_GT(application.count(words), 0);
  std::string copies;
  EXPECT_TRUE(waitUntil([&] { return application.count(words) <= static_cast<int>(words.size() / 2); }))
      << application.count(words, &copies) << " of " << words.size() / 2 << "\n"
      << copies;

  // What may be copied goes with the next dictation, if it does not before.
  holdShortcut();
  EXPECT_EQ(command("cancel"), 0);
  releaseShortcut();
  ASSERT_TRUE(waitUntilCommand(std::string("! ") + pillIsVisible));
  std::vector<pid_t> processes = workersOf(murmel->identifier());
  EXPECT_FALSE(processes.empty());
  processes.push_back(murmel->identifier());
  for (const auto process : processes) {
    const ProcessMemory memory(process);
    std::string where;
    EXPECT_TRUE(waitUntil([&] { return memory.count(words) + memory.count(sound) == 0; }))
        << outputOf("ps -o comm= -p " + std::to_string(process)) << memory.count(words, &where) << " of "
        << words.size() << " words, " << memory.count(sound, &where) << " of " << sound.size() << " sounds\n"
        << where;
  }
}
