#include "Segmentation/RetryAudio.h"
#include "Support/SessionBench.h"
#include "Support/SoundTape.h"

namespace {

using Pcm = PrivateVector<std::uint8_t>;

/// A dictation at random: its pauses, its batches, when it is stopped, and what becomes of each request.
class RandomDictation {
 public:
  RandomDictation(unsigned seed, bool live) : random_(seed) {
    bench_.configuration.targetSegmentSeconds =
        std::vector{3.0, 15.0, std::numeric_limits<double>::infinity()}[random_() % 3];
    bench_.script = [this](const auto& request, std::size_t) { return answer(request.audio.pcm16LE); };
    if (live) bench_.configuration.onPhrase = [this](SpokenText text) { return deliver(this, text); };
    bench_.start();
    SoundTape tape(recognitionSampleRate, seed);
    for (const double length = between(5, 60); tape.seconds() < length;) {
      tape.speech(between(0.1, 7)).noise(between(0.2, 3));
      if (random_() % 6 == 0) tape.music(between(0.5, 3), -20);
    }
    const auto& samples = tape.samples();
    for (std::size_t at = 0; at < samples.size();) {
      const auto count = std::min<std::size_t>(samples.size() - at, 1 + random_() % 48'000);
      const auto begin = samples.begin() + static_cast<std::ptrdiff_t>(at);
      bench_.session->append({{begin, begin + static_cast<std::ptrdiff_t>(count)}, recognitionSampleRate});
      bench_.executor.advance(secondsToDuration(static_cast<double>(count) / recognitionSampleRate));
      at += count;
    }
    finish(live);
  }

 private:
  double between(double least, double most) {
    return std::uniform_real_distribution<double>(least, most)(random_);
  }

  /// Which segments a request consists of; the text that it is answered with names them.
  std::vector<std::size_t> identify(const Pcm& audio) {
    for (std::size_t index = 0; index < bench_.converted.size(); ++index) {
      const auto& segment = bench_.converted[index].pcm16LE;
      if (audio == segment || audio == retryAudio(bench_.converted[index]).pcm16LE) return {index};
      if (audio.size() <= segment.size() || !std::equal(segment.begin(), segment.end(), audio.begin()))
        continue;
      for (std::size_t next = index + 1; next < bench_.converted.size(); ++next) {
        const auto& second = bench_.converted[next].pcm16LE;
        if (segment.size() + second.size() == audio.size() &&
            std::equal(second.begin(), second.end(),
                       audio.begin() + static_cast<std::ptrdiff_t>(segment.size())))
          return {index, next};
      }
    }
    ADD_FAILURE() << "a request with audio that is no segment";
    return {};
  }

  ScriptedTranscriptionProvider::Answer answer(const Pcm& audio) {
    EXPECT_LE(static_cast<double>(audio.size()) / 2 / recognitionSampleRate, 50);
    const auto takes = secondsToDuration(between(0, 8));
    const auto dice = random_() % 10;
    if (dice < 3) return {std::unexpected(MRMError::workerFailed("worker exited unexpectedly")), takes};
    if (dice < 5) return {std::unexpected(MRMError::Case::noSpeech), takes};
    std::string text;
    for (const auto segment : identify(audio)) {
      ++answered_[segment];
      text += std::to_string(segment) + " ";
    }
    return {text, takes};
  }

  static Task<void> deliver(RandomDictation* dictation, SpokenText text) {
    auto wait = sleepFor(dictation->bench_.executor, std::chrono::milliseconds(300));
    co_await wait;
    dictation->delivered_ += text.reveal() + " ";
  }

  void finish(bool live) {
    const auto result = bench_.finish();
    double answeredSeconds = 0;
    double allSeconds = 0;
    for (std::size_t index = 0; index < bench_.converted.size(); ++index) {
      allSeconds += bench_.converted[index].duration();
      if (answered_[index] > 0) answeredSeconds += bench_.converted[index].duration();
      EXPECT_LE(answered_[index], 1) << "segment " << index
                                     << " was recognised again after its words were safe";
    }
    const auto figures = bench_.session->diagnostics();
    EXPECT_NEAR(answeredSeconds + figures.abandonedSeconds, allSeconds, 1e-3);

    std::string expected;
    for (const auto& [segment, times] : answered_)
      if (times > 0) expected += std::to_string(segment) + " ";
    EXPECT_EQ(result.has_value(), !expected.empty());
    if (!result) return;
    EXPECT_EQ(result->text.reveal() + " ", expected) << "every answer once, in the order of the speech";
    EXPECT_EQ(delivered_, live ? expected : "");
    EXPECT_LE(result->failedPieces > 0, figures.abandonedSeconds > 0);
    EXPECT_EQ(figures.empty, figures.recovered + figures.successorSalvaged + figures.unresolved);
    EXPECT_GE(figures.carried, figures.successorSalvaged);
  }

  std::mt19937 random_;
  SessionBench bench_;
  std::map<std::size_t, int> answered_;
  std::string delivered_;
};

TEST(SessionAccounting, NoSampleIsLostUncountedOrRecognisedTwice) {
  for (unsigned seed = 1; seed <= 20; ++seed) {
    SCOPED_TRACE(seed);
    const RandomDictation dictation(seed, seed % 2 == 0);
    if (::testing::Test::HasFailure()) break;
  }
}

}  // namespace
