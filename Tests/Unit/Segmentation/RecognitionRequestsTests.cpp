#include "Platform/Fake/ManualExecutor.h"
#include "Segmentation/RecognitionRequests.h"
#include "Support/Awaiting.h"
#include "Support/ScriptedTranscriptionProvider.h"

#include <gtest/gtest.h>

using namespace murmel;
using namespace std::chrono_literals;

namespace {

using Kind = RecognitionOutcome::Kind;

const MRMError dead = MRMError::workerFailed("worker exited unexpectedly");

CapturedAudio seconds(double length) {
  CapturedAudio audio;
  audio.pcm16LE.resize(static_cast<std::size_t>(length * recognitionSampleRate) * 2);
  return audio;
}

class Requests : public ::testing::Test {
 protected:
  RecognitionOutcome ask(double length = 1) {
    Awaiting<RecognitionOutcome> asking(requests.recognise(seconds(length)));
    executor.advance(1h);
    if (!asking.done()) throw std::logic_error("no answer");
    return *asking;
  }

  ManualExecutor executor;
  ScriptedTranscriptionProvider::Script script;
  std::shared_ptr<ScriptedTranscriptionProvider> provider = std::make_shared<ScriptedTranscriptionProvider>(
      executor, [this](const auto& request, std::size_t index) { return script(request, index); });
  RecognitionRequests requests{executor, executor, provider, "ru"};
};

TEST_F(Requests, TheSameAudioGoesToWorkerAfterWorker) {
  for (std::size_t deaths = 0; deaths <= 5; ++deaths) {
    provider->requests.clear();
    script = [deaths](const auto&, std::size_t index) {
      using Answer = ScriptedTranscriptionProvider::Answer;
      return index < deaths ? Answer{std::unexpected(dead), 1s} : Answer{" words \n", 1s};
    };
    const auto outcome = ask(2);
    EXPECT_EQ(outcome.kind, deaths < 5 ? Kind::text : Kind::failed) << deaths;
    EXPECT_EQ(outcome.text.reveal(), deaths < 5 ? "words" : "");
    EXPECT_EQ(provider->requests.size(), std::min<std::size_t>(deaths + 1, 5));
    for (const auto& request : provider->requests) {
      EXPECT_EQ(request.audio.duration(), 2);
      EXPECT_EQ(request.language, "ru");
    }
  }
}

TEST_F(Requests, OnlyADeadWorkerIsWorthAnotherTry) {
  struct Row {
    Result<std::string> answer;
    Kind kind;
  };
  for (const auto& [answer, kind] :
       {Row{std::unexpected(MRMError::Case::noSpeech), Kind::empty}, Row{" \n", Kind::empty},
        Row{std::unexpected(MRMError::Case::workerMissing), Kind::failed},
        Row{std::unexpected(MRMError::modelMissing("/nowhere")), Kind::failed}}) {
    provider->requests.clear();
    script = [&answer](const auto&, std::size_t) { return ScriptedTranscriptionProvider::Answer{answer}; };
    const auto outcome = ask();
    EXPECT_EQ(outcome.kind, kind);
    EXPECT_EQ(provider->requests.size(), 1U);
    if (kind == Kind::failed) {
      EXPECT_EQ(outcome.error, answer.error());
    }
  }
}

TEST_F(Requests, WorkersThatFailOnEverythingGetFewerTriesUntilOneAnswers) {
  bool broken = true;
  script = [&broken](const auto&, std::size_t) {
    using Answer = ScriptedTranscriptionProvider::Answer;
    return broken ? Answer{std::unexpected(dead)} : Answer{"words"};
  };
  auto tries = [&] {
    const auto before = provider->requests.size();
    const auto outcome = ask();
    EXPECT_EQ(outcome.kind == Kind::failed, broken);
    EXPECT_EQ(outcome.error, broken ? std::optional(dead) : std::nullopt);
    return provider->requests.size() - before;
  };
  EXPECT_EQ(tries(), 5U);
  EXPECT_EQ(tries(), 2U);
  EXPECT_EQ(tries(), 2U);
  requests.hurry();
  EXPECT_EQ(tries(), 0U) << "hopeless, and somebody waits";
  requests.hopeAgain();
  EXPECT_EQ(tries(), 2U);
  EXPECT_EQ(tries(), 0U) << "in vain";
  requests.hopeAgain();
  broken = false;
  EXPECT_EQ(tries(), 1U);
  broken = true;
  EXPECT_EQ(tries(), 5U) << "a new failure";
}

TEST_F(Requests, AWorkerThatHangsIsNotWaitedForAgainAndAgain) {
  script = [](const auto&, std::size_t) {
    return ScriptedTranscriptionProvider::Answer{std::unexpected(MRMError::workerFailed("timed out")), 45s};
  };
  EXPECT_EQ(ask().kind, Kind::failed);
  EXPECT_EQ(provider->requests.size(), 2U);
}

TEST_F(Requests, ARequestIsSlowWhenSpeechIsFaster) {
  struct Row {
    double audio;
    Duration takes;
    bool slow;
  };
  for (const auto& [audio, takes, slow] :
       {Row{1, 4900ms, false}, Row{1, 5100ms, true}, Row{15, 14s, false}, Row{15, 16s, true}}) {
    std::vector<bool> reports;
    requests.onSlow = [&reports](bool isSlow) { reports.push_back(isSlow); };
    script = [takes](const auto&, std::size_t) {
      return ScriptedTranscriptionProvider::Answer{"words", takes};
    };
    ask(audio);
    EXPECT_EQ(reports, slow ? (std::vector{true, false}) : std::vector<bool>{}) << audio;
  }
}

}  // namespace
