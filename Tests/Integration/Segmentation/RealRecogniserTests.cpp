#include "Audio/AudioCaptureService.h"
#include "Foundation/Async/Clock.h"
#include "Foundation/Text/Text.h"
#include "Models/ModelManager.h"
#include "NaturalSpeech.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Platform/Linux/Process/LinuxProcessLauncher.h"
#include "Recognition/FluidAudioProvider.h"
#include "Segmentation/IncrementalDictationSession.h"
#include "Support/Awaiting.h"
#include "Support/BuildPaths.h"
#include "Support/SessionBench.h"
#include "Support/Testing.h"

#include <atomic>
#include <iostream>

namespace {

/// Launches workers and knows the last one.
class KillableLauncher final : public ProcessLauncher {
 public:
  std::expected<std::unique_ptr<ChildProcess>, std::string> launch(const ProcessRequest& request) override {
    auto child = launcher_.launch(request);
    if (child) last_ = (*child)->identifier();
    return child;
  }
  /// Kills the last worker, once. False when there is none alive that was not killed yet.
  bool kill() {
    const auto process = last_.exchange(0);
    return process > 0 && ::kill(process, SIGKILL) == 0;
  }

 private:
  LinuxProcessLauncher launcher_;
  std::atomic<pid_t> last_ = 0;
};

/// Counts the requests.
class CountedProvider final : public TranscriptionProvider {
 public:
  explicit CountedProvider(std::unique_ptr<TranscriptionProvider> provider)
      : provider_(std::move(provider)) {}
  [[nodiscard]] const std::string& providerID() const override { return provider_->providerID(); }
  Task<Result<TranscriptionResult>> transcribe(CapturedAudio audio,
                                               std::optional<std::string> language) override {
    ++requests_;
    return provider_->transcribe(std::move(audio), std::move(language));
  }
  [[nodiscard]] int requests() const { return requests_; }

 private:
  std::unique_ptr<TranscriptionProvider> provider_;
  int requests_ = 0;
};

/// Dictates into an incremental session with the application's own speech worker. Segments are cut in no
/// time; recognition takes its time.
class WithRealRecogniser : public ::testing::Test {
 protected:
  void SetUp() override {
    auto made = FluidAudioProvider::create({executor, clock, launcher}, {resourcesFolder(), "test"}, models,
                                           ExecutableRuntimePolicy(resourcesFolder(), std::nullopt, nullptr));
    ASSERT_TRUE(made.has_value()) << made.error().localizedDescription();
    provider = std::make_shared<CountedProvider>(*std::move(made));
  }

  /// `whileRecognising` is called all the time.
  Result<DictationSessionResult> dictate(
      const PendingCapturedAudio& audio, double target,
      const std::function<void()>& whileRecognising = [] {}) {
    DictationSessionConfiguration configuration;
    configuration.transcription = provider;
    configuration.targetSegmentSeconds = target;
    const auto session =
        IncrementalDictationSessionFactory(
            {executor, clock, Logger(log, "test", "incremental-stages"), &convertForRecognition})
            .make(configuration);
    session->append({audio.monoSamples, audio.sampleRate});
    Awaiting<Result<DictationSessionResult>> finishing(session->finish());
    const auto limit = clock.now() + 20min;
    auto tick = clock.now();
    while (!finishing.done()) {
      executor.waitUntil([&] {
        whileRecognising();
        return finishing.done() || clock.now() - tick >= 20ms;
      });
      // The pauses between the tries run on virtual time.
      executor.advance(clock.now() - tick);
      tick = clock.now();
      if (tick > limit) throw std::runtime_error("the session hangs");
    }
    figures = session->diagnostics();
    return *finishing;
  }

  ManualExecutor executor;
  SystemClock clock;
  KillableLauncher launcher;
  ModelManager models{executor};
  std::shared_ptr<CountedProvider> provider;
  MemoryLogSink log;
  DictationDiagnostics figures;
};

constexpr double unlimited = std::numeric_limits<double>::infinity();

/// How many of these the environment asks for: the suite makes do with few.
std::size_t wanted(const char* variable, std::size_t otherwise) {
  const char* value = std::getenv(variable);
  return value == nullptr ? otherwise : std::strtoul(value, nullptr, 10);
}

std::vector<std::string> spokenWords(std::string_view text) {
  std::vector<std::string> words;
  for (const auto word : text::words(text)) {
    std::string plain;
    const auto folded = text::caseFolded(word);
    for (const auto character : text::characters(folded))
      if (text::isLetter(character) || character == "'") plain += character;
    if (!plain.empty()) words.push_back(plain);
  }
  return words;
}

/// Words to insert, leave out or exchange to turn one text into the other.
std::size_t wordErrors(const std::vector<std::string>& expected, const std::vector<std::string>& found) {
  std::vector<std::size_t> row(found.size() + 1);
  for (std::size_t column = 0; column < row.size(); ++column) row[column] = column;
  for (std::size_t line = 1; line <= expected.size(); ++line) {
    std::size_t diagonal = std::exchange(row[0], line);
    for (std::size_t column = 1; column < row.size(); ++column) {
      const auto exchanged = diagonal + (expected[line - 1] == found[column - 1] ? 0 : 1);
      diagonal = std::exchange(row[column], std::min({exchanged, row[column] + 1, row[column - 1] + 1}));
    }
  }
  return row.back();
}

TEST_F(WithRealRecogniser, SegmentsAreUnderstoodAsWellAsTheWholeHoweverOftenTheWorkerIsKilled) {
  const auto speech =
      NaturalSpeech::load("en", 2.5, wanted("MURMEL_PROMPTS", 4), NaturalSpeech::Transcripts::needed);
  const auto joined = JoinedSpeech::join(speech, 0.8, 1.2, 5);
  const PendingCapturedAudio audio{joined.samples, NaturalSpeech::sampleRate};
  std::vector<std::string> expected;
  for (const auto& transcript : speech.transcripts)
    std::ranges::copy(spokenWords(transcript), std::back_inserter(expected));
  auto undisturbed = [&](double target) {
    auto result = dictate(audio, target);
    if (!result) throw std::runtime_error(result.error().localizedDescription());
    EXPECT_EQ(result->failedPieces, 0);
    return *std::move(result);
  };
  auto errorRate = [&](const DictationSessionResult& result) {
    const auto errors = wordErrors(expected, spokenWords(result.text.reveal()));
    const auto rate = 100.0 * static_cast<double>(errors) / static_cast<double>(expected.size());
    std::cout << result.pieces.size() << " pieces, word error rate " << rate << " % of " << expected.size()
              << " words\n";
    return rate;
  };
  const auto whole = undisturbed(unlimited);
  const auto begin = clock.now();
  const auto before = provider->requests();
  const auto pieces = undisturbed(3);
  const auto oneRequest =
      durationToSeconds(clock.now() - begin) / static_cast<double>(provider->requests() - before);
  EXPECT_LE(errorRate(pieces), errorRate(whole) + 1);

  // Every second request is to lose its worker at some moment, but for those that end before that.
  std::mt19937 random(3);
  std::size_t kills = 0;
  const auto most = wanted("MURMEL_KILLS", 2);
  int followed = provider->requests();
  std::optional<Instant> next;
  const auto disturbed = dictate(audio, 3, [&] {
    if (followed != provider->requests()) {
      followed = provider->requests();
      next.reset();
      const auto after = std::uniform_real_distribution<double>(0, oneRequest)(random);
      if (random() % 2 == 0) next = clock.now() + secondsToDuration(after);
    }
    if (kills == most || !next || clock.now() < *next) return;
    next.reset();
    if (launcher.kill()) ++kills;
  });
  ASSERT_TRUE(disturbed.has_value()) << disturbed.error().localizedDescription();
  EXPECT_GE(kills, 1U);
  std::cout << kills << " kills\n";
  EXPECT_EQ(disturbed->text, pieces.text);
  EXPECT_EQ(disturbed->failedPieces, 0);
}

}  // namespace
