#include "Foundation/Scope.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Segmentation/SingleSegmentSession.h"
#include "Support/ScriptedTranscriptionProvider.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

using namespace murmel;

namespace {

class SingleSegment : public ::testing::Test {
 protected:
  /// The answers of the recogniser, in order; the last one goes on for ever.
  void answer(std::vector<Result<std::string>> answers) {
    auto script = [answers](const ScriptedTranscriptionProvider::Request&, std::size_t index) {
      return ScriptedTranscriptionProvider::Answer{answers[std::min(index, answers.size() - 1)]};
    };
    provider = std::make_shared<ScriptedTranscriptionProvider>(executor, script);
    DictationSessionConfiguration configuration;
    configuration.transcription = provider;
    configuration.languageCode = "en";
    session = SingleSegmentSessionFactory(oneByteASample).make(std::move(configuration));
  }

  Result<DictationSessionResult> finished() {
    std::optional<Result<DictationSessionResult>> result;
    struct Run {
      static Task<void> finish(DictationSession& session,
                               std::optional<Result<DictationSessionResult>>& result) {
        auto finishing = session.finish();
        result = co_await finishing;
      }
    };
    Scope scope;
    scope.start(Run::finish(*session, result));
    executor.runUntilIdle();
    if (!result) throw std::logic_error("the session did not finish");
    return *std::move(result);
  }

  static CapturedAudio oneByteASample(PendingCapturedAudio audio) {
    CapturedAudio converted;
    for (const auto sample : audio.monoSamples)
      converted.pcm16LE.push_back(static_cast<std::uint8_t>(sample));
    return converted;
  }

  ManualExecutor executor;
  std::shared_ptr<ScriptedTranscriptionProvider> provider;
  std::unique_ptr<DictationSession> session;
};

TEST_F(SingleSegment, SendsAllTheAudioOnceWhateverItsRates) {
  answer({"hello"});
  session->append({{1, 2}, 48'000});
  session->append({{3, std::numeric_limits<float>::quiet_NaN()}, 48'000});
  session->append({{}, 48'000});
  session->append({{9}, 0});
  session->append({{5}, 16'000});
  const auto result = finished();
  ASSERT_TRUE(result);
  EXPECT_EQ(result->text.reveal(), "hello");
  EXPECT_EQ(result->pieces.size(), 1U);
  EXPECT_EQ(result->providerID, "scripted");
  ASSERT_EQ(provider->requests.size(), 1U);
  EXPECT_EQ(provider->requests[0].audio.pcm16LE, (std::vector<std::uint8_t>{1, 2, 3, 0, 5}));
  EXPECT_EQ(provider->requests[0].language, "en");
}

TEST_F(SingleSegment, TheSameAudioGoesToTheNextWorkerOnce) {
  answer({std::unexpected(MRMError::workerFailed("worker exited unexpectedly")), "saved"});
  session->append({{1, 2, 3}, 16'000});
  const auto result = finished();
  ASSERT_TRUE(result);
  EXPECT_EQ(result->text.reveal(), "saved");
  ASSERT_EQ(provider->requests.size(), 2U);
  EXPECT_EQ(provider->requests[0].audio.pcm16LE, provider->requests[1].audio.pcm16LE);
}

TEST_F(SingleSegment, FailuresKeepTheirReason) {
  struct Row {
    const char* what;
    Result<std::string> answer;
    MRMError error;
    std::size_t requests;
  };
  const std::vector<Row> rows{
      {"silence is not tried again", std::unexpected(MRMError::Case::noSpeech), MRMError::Case::noSpeech, 1},
      {"an empty text is silence", "", MRMError::Case::noSpeech, 1},
      {"two dead workers", std::unexpected(MRMError::workerFailed("gone")), MRMError::workerFailed("gone"),
       2},
      {"without a worker there is no second try", std::unexpected(MRMError::Case::workerMissing),
       MRMError::Case::workerMissing, 1},
  };
  for (const auto& row : rows) {
    answer({row.answer});
    session->append({{1}, 16'000});
    const auto result = finished();
    ASSERT_FALSE(result) << row.what;
    EXPECT_EQ(result.error(), row.error) << row.what;
    EXPECT_EQ(provider->requests.size(), row.requests) << row.what;
  }
}

TEST_F(SingleSegment, NothingRecordedIsNoSpeechWithoutARequest) {
  answer({"invented"});
  const auto result = finished();
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error(), MRMError(MRMError::Case::noSpeech));
  EXPECT_TRUE(provider->requests.empty());
}

}  // namespace
