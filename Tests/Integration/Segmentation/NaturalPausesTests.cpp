#include "NaturalSpeech.h"
#include "Segmentation/SegmentCutter.h"
#include "Support/Testing.h"

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double clean = infinite;

/// Prompts of a language, joined, under noise. Made once: that takes longer than the tests themselves.
class NaturalPauses : public ::testing::TestWithParam<const char*> {
 protected:
  static void TearDownTestSuite() { all().clear(); }

  [[nodiscard]] static const JoinedSpeech& speech(double signalToNoise) {
    auto& noisy = all()[{GetParam(), signalToNoise}];
    if (!noisy.samples.empty()) return noisy;
    if (signalToNoise == clean)
      noisy = JoinedSpeech::join(NaturalSpeech::load(GetParam(), 1.5, 60), 0.3, 1.2, 1);
    else
      noisy = speech(clean).withNoise(signalToNoise, 2);
    return noisy;
  }

 private:
  static std::map<std::pair<std::string, double>, JoinedSpeech>& all() {
    static std::map<std::pair<std::string, double>, JoinedSpeech> made;
    return made;
  }
};

TEST_P(NaturalPauses, AreFoundAndNoWordIsTakenForOne) {
  struct Row {
    double signalToNoise;
    double leastFound;  ///< share of the gaps of 0.7 s and more
  };
  for (const auto& [signalToNoise, leastFound] : {Row{clean, 0.95}, Row{20, 0.95}, Row{10, 0}, Row{5, 0}}) {
    SCOPED_TRACE(signalToNoise);
    const auto& recording = speech(signalToNoise);
    PhrasePauseDetector detector(NaturalSpeech::sampleRate);
    std::vector<std::int64_t> cuts;
    for (const auto& pause : detector.append(recording.samples)) {
      EXPECT_GT(recording.quietAround(pause.cut), 0)
          << "a word is cut at " << static_cast<double>(pause.cut) / NaturalSpeech::sampleRate << " s";
      if (pause.kind == PhrasePause::Kind::phrase) cuts.push_back(pause.cut);
    }
    int gaps = 0;
    int found = 0;
    for (const auto& gap : recording.gaps) {
      if (static_cast<double>(gap.end - gap.begin) < 0.7 * NaturalSpeech::sampleRate) continue;
      ++gaps;
      if (recording.isFound(gap, cuts)) ++found;
    }
    ASSERT_GE(gaps, 25);
    EXPECT_GE(found, leastFound * gaps) << found << " of " << gaps;
  }
}

TEST_P(NaturalPauses, SegmentsBeginAndEndBetweenWords) {
  for (const double signalToNoise : {clean, 20.0, 10.0, 5.0}) {
    const auto& recording = speech(signalToNoise);
    for (const double target : {3.0, infinite}) {
      SCOPED_TRACE(testing::Message() << signalToNoise << " dB, target " << target);
      SegmentCutter cutter(target);
      auto segments = cutter.append({recording.samples, NaturalSpeech::sampleRate});
      if (auto rest = cutter.flush()) segments.push_back(*std::move(rest));
      std::int64_t position = 0;
      for (const auto& segment : segments) {
        EXPECT_LE(segment.seconds, 50);
        if (segment.evidence == SpeechEvidence::none) {
          EXPECT_LT(segment.seconds, 1.3) << "speech is taken for silence";
        }
        position += std::ssize(segment.audio.monoSamples);
        if (position == std::ssize(recording.samples)) break;
        EXPECT_GT(recording.quietAround(position), 0)
            << "a word is cut at " << static_cast<double>(position) / NaturalSpeech::sampleRate << " s";
      }
      EXPECT_EQ(position, std::ssize(recording.samples));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Languages, NaturalPauses, ::testing::Values("en", "ru"));

}  // namespace
