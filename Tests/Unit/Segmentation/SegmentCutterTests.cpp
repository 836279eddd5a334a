#include "Segmentation/SegmentCutter.h"
#include "Support/SoundTape.h"
#include "Support/Testing.h"

namespace {

constexpr double unlimited = std::numeric_limits<double>::infinity();

std::vector<CutSegment> cut(double target, const std::vector<PendingCapturedAudio>& batches) {
  SegmentCutter cutter(target);
  std::vector<CutSegment> all;
  auto take = [&](CutSegment segment) { all.push_back(std::move(segment)); };
  for (const auto& batch : batches)
    for (auto& segment : cutter.append({batch.monoSamples, batch.sampleRate})) take(std::move(segment));
  if (auto rest = cutter.flush()) take(*std::move(rest));
  EXPECT_FALSE(cutter.flush()) << "flushed twice";
  return all;
}

std::vector<CutSegment> cut(double target, const SoundTape& tape) {
  return cut(target, std::vector{tape.audio()});
}

std::vector<double> lengths(const std::vector<CutSegment>& segments) {
  std::vector<double> seconds;
  for (const auto& segment : segments) seconds.push_back(segment.seconds);
  return seconds;
}

SoundTape phrases(int count, double speech, double pause) {
  SoundTape tape;
  tape.noise(0.5);
  for (int phrase = 0; phrase < count; ++phrase) tape.speech(speech).noise(pause);
  return tape;
}

TEST(SegmentCutter, CutsNearTheTarget) {
  struct Row {
    const char* what;
    double target;
    SoundTape tape;
    std::vector<double> lengths;
  };
  const std::vector<Row> rows{
      {"the first pause after the target", 3, phrases(4, 1.8, 0.9), {5.5, 5.4, 0.4}},
      {"the first pause, when it is late enough", 3, phrases(2, 4, 0.9), {4.95, 4.9, 0.45}},
      {"a long target passes pauses over", 15, phrases(8, 2.1, 0.9), {15.1, 9.4}},
      {"no pause between phrases: a breath after twice the target", 3, phrases(4, 3, 0.55), {7.4, 7.1, 0.2}},
      {"no target: one segment", unlimited, phrases(8, 2.1, 0.9), {24.5}},
      {"a pause after the last word is cut off", 15, SoundTape().noise(0.5).speech(3).noise(20), {23.5}},
  };
  for (const auto& row : rows) {
    const auto cuts = lengths(cut(row.target, row.tape));
    ASSERT_EQ(cuts.size(), row.lengths.size()) << row.what;
    for (std::size_t index = 0; index < cuts.size(); ++index)
      EXPECT_NEAR(cuts[index], row.lengths[index], 0.12) << row.what << ", segment " << index;
  }
}

TEST(SegmentCutter, AFreeRecogniserGetsOneFinishedPhraseBeforeTheTarget) {
  const std::vector<std::pair<double, double>> pausesAndCuts{{0.9, 6.1}, {0.55, 10.9}, {0.35, 12.6}};
  for (const auto& [pause, first] : pausesAndCuts) {
    SegmentCutter cutter(15);
    const auto early = lengths(cutter.append(phrases(9, 2.1, pause).audio(), true));
    ASSERT_GE(early.size(), 1U) << pause;
    EXPECT_NEAR(early[0], first, 0.2);
    EXPECT_TRUE(early.size() == 1 || early[1] >= 15) << "then it has something to do";
  }
}

TEST(SegmentCutter, NeverGrowsBeyondWhatARecogniserTakes) {
  SoundTape endless;
  while (endless.seconds() < 130) endless.speech(0.4).noise(0.1);
  for (const double target : {3.0, 15.0, 60.0, unlimited}) {
    const auto segments = cut(target, endless);
    for (const auto& segment : segments) EXPECT_LE(segment.seconds, 49.2) << target;
    EXPECT_GE(segments.size(), 3U) << target;
  }
  // Without a found pause the cut lies where it is quiet all the same.
  const auto segments = cut(15, SoundTape().noise(1, -26).speech(20).noise(0.6, -26).speech(30, -20));
  ASSERT_GE(segments.size(), 2U);
  EXPECT_NEAR(segments[0].seconds, 21.35, 0.3);
}

TEST(SegmentCutter, CutsSilenceOffAndLeavesALead) {
  for (double silence = 28; silence < 31.5; silence += 0.5) {
    SCOPED_TRACE(silence);
    const auto segments = cut(15, SoundTape().noise(silence).speech(2).noise(0.5));
    double silent = 0;
    for (const auto& segment : segments)
      if (segment.evidence == SpeechEvidence::none) silent += segment.seconds;
    EXPECT_GE(silent, silence - 4);
    EXPECT_LE(silent, silence - 0.8);
    EXPECT_EQ(segments.back().evidence, SpeechEvidence::clear);
  }
}

TEST(SegmentCutter, EverySampleIsInExactlyOneSegment) {
  for (unsigned seed = 1; seed <= 8; ++seed) {
    std::mt19937 random(seed);
    auto between = [&](double least, double most) {
      return std::uniform_real_distribution<double>(least, most)(random);
    };
    std::vector<PendingCapturedAudio> batches;
    std::vector<float> everything;
    const std::vector<double> rates{100, 8'000, 11'025, 16'000};
    for (int device = 0; device < 2; ++device) {
      const double rate = rates[random() % rates.size()];
      SoundTape tape(rate, seed);
      while (tape.seconds() < 40) {
        tape.speech(between(0.1, 9)).noise(between(0.1, 2));
        if (random() % 8 == 0) tape.zeros(between(0.1, 6));
        if (random() % 8 == 0) tape.hum(between(0.1, 6), 50, -30);
      }
      const auto& samples = tape.samples();
      for (std::size_t at = 0; at < samples.size();) {
        const auto count = std::min(samples.size() - at, 1 + random() % static_cast<std::size_t>(3 * rate));
        const auto begin = samples.begin() + static_cast<std::ptrdiff_t>(at);
        batches.push_back({{begin, begin + static_cast<std::ptrdiff_t>(count)}, rate});
        at += count;
      }
      everything.insert(everything.end(), samples.begin(), samples.end());
    }
    const double target = std::vector{3.0, 15.0, unlimited}[random() % 3];
    std::vector<float> found;
    for (const auto& segment : cut(target, batches)) {
      EXPECT_GT(segment.seconds, 0);
      EXPECT_LE(segment.seconds, 49.2);
      found.insert(found.end(), segment.audio.monoSamples.begin(), segment.audio.monoSamples.end());
    }
    ASSERT_EQ(found, everything) << "seed " << seed;
  }
}

TEST(SegmentCutter, TakesWhatDevicesDeliver) {
  constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
  constexpr float huge = std::numeric_limits<float>::infinity();
  const auto segments = cut(3, std::vector<PendingCapturedAudio>{{{0.5F, notANumber, huge, -huge}, 16'000},
                                                                 {{}, 48'000},
                                                                 {{0.5F}, 0},
                                                                 {{0.5F}, -1},
                                                                 {{0.5F}, unlimited},
                                                                 {{0.25F}, 48'000}});
  ASSERT_EQ(segments.size(), 2U) << "one a rate";
  EXPECT_EQ(segments[0].audio.monoSamples, (PrivateVector<float>{0.5F, 0, 0, 0}));
  EXPECT_EQ(segments[1].audio.sampleRate, 48'000);
}

}  // namespace
