#include "Segmentation/RetryPolicy.h"
#include "Support/Testing.h"

namespace {

using Step = RetryPolicy::Step;

/// One letter a failure, each of the piece of audio that it names: "a" and "b" kill an engine that is up, "-"
/// is an engine that does not come up, "." an answer, "h" the hurry, "w" half a minute. The answers are
/// milliseconds until the same audio is tried again, or what happens instead.
std::vector<std::string> steps(const std::string& events, bool othersMayGoFirst = true, Duration took = 1s) {
  RetryPolicy policy;
  std::map<char, RetryPolicy::Tries> tries;
  Instant now{};
  std::vector<std::string> answers;
  for (const char event : events) {
    now += took;
    Step step;
    if (event == '.') {
      policy.answered();
    } else if (event == 'h') {
      policy.hurry(now);
    } else if (event == 'w') {
      now += 30s;
    } else {
      auto& piece = tries[event];
      step = event == '-' ? policy.engineFailed(piece, MRMError::workerFailed("died"), now)
                          : policy.audioFailed(piece, took, othersMayGoFirst, now);
      using Decision = Step::Kind;
      if (step.kind == Decision::again)
        answers.push_back(
            std::to_string(std::chrono::duration_cast<std::chrono::milliseconds>(step.pause).count()));
      if (step.kind == Decision::setAside) answers.emplace_back("aside");
      if (step.kind == Decision::setAside) piece.wasAside = true;
      if (step.kind == Decision::nextEngine) answers.emplace_back("next");
      if (step.kind == Decision::nextEngine) piece.onNextEngine = true;
      if (step.kind == Decision::giveUp) answers.emplace_back("lost");
      now += step.pause;
    }
  }
  return answers;
}

TEST(RetryPolicy, TellsAnEngineThatIsDownFromAudioThatKillsIt) {
  using Steps = std::vector<std::string>;
  struct Row {
    const char* what;
    std::string events;
    Steps steps;
    bool othersMayGoFirst = true;
    Duration took = 1s;
  };
  for (const auto& row : std::vector<Row>{
           {"an engine that does not come up is waited for longer and longer",
            "------",
            {"250", "500", "1000", "2000", "2000", "2000"}},
           {"for ever while the user speaks", "-wwwwwwww-", {"250", "500"}},
           {"for a minute when he waits", "-wwwwwwh-w-w-", {"250", "500", "1000", "next"}},
           {"a minute from the stop, or from the failure if that is later",
            "hwww-w-w-",
            {"250", "500", "next"}},
           {"an answer makes everything good", "--.--", {"250", "500", "250", "500"}},
           {"audio that kills lets the others go first, is tried again at last, and then elsewhere",
            "aa.aaaa",
            {"0", "aside", "1500", "3000", "next", "lost"}},
           {"phrases keep their order", "aaaaaa", {"0", "500", "1500", "3000", "next", "lost"}, false},
           {"an engine that dies on everything is not the audio's fault",
            "aabbbbb",
            {"0", "aside", "0", "250", "500", "1000", "2000"}},
           {"one that answers in between is", "aa.bb.cc", {"0", "aside", "0", "aside", "0", "aside"}},
           {"nobody waits for a hanging engine again and again", "aaa", {"0", "aside", "next"}, true, 45s},
       }) {
    EXPECT_EQ(steps(row.events, row.othersMayGoFirst, row.took), row.steps) << row.what;
  }
  // What a hanging engine has taken is not the time that it was waited for.
  RetryPolicy hung;
  hung.hurry(Instant{});
  RetryPolicy::Tries tries;
  EXPECT_EQ(hung.audioFailed(tries, 99s, true, Instant{} + 99s).kind, Step::Kind::setAside);
  EXPECT_FALSE(hung.isHopeless(Instant{} + 99s));
  RetryPolicy policy;
  EXPECT_EQ(policy.engineFailed({}, MRMError::modelMissing("/nowhere"), Instant{}).kind,
            Step::Kind::nextEngine)
      << "nothing comes of waiting";
}

}  // namespace
