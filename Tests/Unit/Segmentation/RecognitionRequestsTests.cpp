#include "Platform/Fake/ManualExecutor.h"
#include "Segmentation/RecognitionRequests.h"
#include "Support/Awaiting.h"
#include "Support/ScriptedTranscriptionProvider.h"

namespace {

using OutcomeKind = RecognitionOutcome::Kind;

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
  std::shared_ptr<TranscriptionProvider> next;
  RecognitionRequests requests{executor, executor, {provider, [this] { return next; }}, "ru"};
};

TEST_F(Requests, TheAudioOutlivesAnEngineThatIsDownAndGoesToTheNextOneAtLast) {
  using Answer = ScriptedTranscriptionProvider::Answer;
  provider->down = [this] { return executor.now() < Instant{} + 30s; };
  script = [](const auto&, std::size_t) { return Answer{" words \n", 1s}; };
  EXPECT_EQ(ask(2).text.reveal(), "words");
  EXPECT_EQ(provider->requests.size(), 1U) << "an engine that is not up is not given audio";
  EXPECT_EQ(provider->requests.front().language, "ru");

  script = [](const auto&, std::size_t) { return Answer{std::unexpected(dead), 1s}; };
  auto outcome = ask(2);
  EXPECT_EQ(outcome.kind, OutcomeKind::failed);
  EXPECT_EQ(outcome.error, dead);
  EXPECT_EQ(provider->requests.size(), 6U);

  next = std::make_shared<ScriptedTranscriptionProvider>(
      executor, [](const auto&, std::size_t) { return Answer{"other words"}; });
  requests.hurry();
  EXPECT_EQ(ask(2).text.reveal(), "other words") << "after a minute";
  const auto begin = executor.now();
  next = nullptr;
  Awaiting<RecognitionOutcome> asking(requests.recognise(seconds(1)));
  EXPECT_TRUE(asking.done()) << "nobody waits another minute";
  EXPECT_EQ(executor.now(), begin);
}

TEST_F(Requests, OnlyADeadWorkerIsWorthAnotherTry) {
  struct Row {
    Result<std::string> answer;
    OutcomeKind kind;
  };
  for (const auto& [answer, kind] :
       {Row{std::unexpected(MRMError::Case::noSpeech), OutcomeKind::empty}, Row{" \n", OutcomeKind::empty},
        Row{std::unexpected(MRMError::Case::workerMissing), OutcomeKind::failed},
        Row{std::unexpected(MRMError::modelMissing("/nowhere")), OutcomeKind::failed}}) {
    provider->requests.clear();
    script = [&answer](const auto&, std::size_t) { return ScriptedTranscriptionProvider::Answer{answer}; };
    const auto outcome = ask();
    EXPECT_EQ(outcome.kind, kind);
    EXPECT_EQ(provider->requests.size(), 1U);
    if (kind == OutcomeKind::failed) {
      EXPECT_EQ(outcome.error, answer.error());
    }
  }
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
