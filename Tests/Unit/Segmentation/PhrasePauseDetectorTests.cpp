#include "Segmentation/PhrasePauseDetector.h"
#include "Support/SoundTape.h"
#include "Support/Testing.h"

namespace {

using Kind = PhrasePause::Kind;

std::vector<PhrasePause> detect(const SoundTape& tape, double rate = recognitionSampleRate,
                                std::size_t batch = 4'096) {
  PhrasePauseDetector detector(rate);
  std::vector<PhrasePause> all;
  const std::span<const float> samples(tape.samples());
  for (std::size_t at = 0; at < samples.size(); at += batch) {
    const auto found = detector.append(samples.subspan(at, std::min(batch, samples.size() - at)));
    all.insert(all.end(), found.begin(), found.end());
  }
  return all;
}

/// Where the tape may be cut between phrases, in seconds.
std::vector<double> phraseCuts(const SoundTape& tape, double rate = recognitionSampleRate) {
  std::vector<double> seconds;
  for (const auto& pause : detect(tape, rate))
    if (pause.kind == Kind::phrase) seconds.push_back(static_cast<double>(pause.cut) / rate);
  return seconds;
}

TEST(PhrasePauseDetector, CutsWhereSpeechPausesAndNowhereElse) {
  struct Row {
    const char* what;
    SoundTape tape;
    std::vector<double> cuts;  ///< earliest place of each cut; at most 200 ms later
  };
  const std::vector<Row> rows{
      {"two phrases", SoundTape().noise(0.5).speech(2).noise(0.9).speech(2).noise(0.9), {2.9, 5.8}},
      {"speech from the first sample on", SoundTape().speech(2).noise(0.9).speech(1), {2.4}},
      {"one cut in a long pause", SoundTape().noise(0.5).speech(1).noise(20).speech(1), {1.9}},
      {"a pause of half a second is none", SoundTape().noise(0.5).speech(2).noise(0.6).speech(2), {}},
      {"a click does not end a pause",
       SoundTape().noise(0.5).speech(2).noise(0.4).noise(0.02, -20).noise(0.5),
       {2.9}},
      {"nor is it speech", SoundTape().noise(1).noise(0.02, -20).noise(3), {}},
      {"a word that is too short to be one", SoundTape().noise(1).speech(0.15).noise(2), {}},
      {"quiet speech in a quiet room", SoundTape().noise(0.5, -80).speech(2, -50).noise(0.9, -80), {2.9}},
      {"speech in noise is not cut", SoundTape().noise(0.5, -32).speech(3, -22).noise(2, -32), {}},
      {"noise alone", SoundTape().noise(12, -30), {}},
      {"digital silence", SoundTape().zeros(12), {}},
      {"a hum", SoundTape().hum(12, 50, -20), {}},
      {"a hum under the speech", SoundTape().hum(0.5, 50, -50).speech(2).hum(0.9, 50, -50), {2.9}},
      {"a device that opens slowly", SoundTape().zeros(3).noise(1).speech(2).noise(0.9).speech(1), {6.4}},
      {"a gate that closes between the phrases",
       SoundTape().noise(0.5).speech(2).zeros(1).speech(2).zeros(1),
       {2.9, 5.9}},
      {"a microphone that is turned down by 30 dB",
       SoundTape().noise(0.5).speech(3).noise(0.9).speech(3, -50).noise(0.9, -90).speech(3, -50).noise(0.9,
                                                                                                       -90),
       {3.9, 7.8, 11.7}},
      {"clipped speech", SoundTape().noise(0.5).speech(2, 0).noise(0.9).speech(1, 0).clipped(0.3), {2.9}},
  };
  for (const auto& row : rows) {
    const auto cuts = phraseCuts(row.tape);
    ASSERT_EQ(cuts.size(), row.cuts.size()) << row.what;
    for (std::size_t index = 0; index < cuts.size(); ++index) {
      EXPECT_GE(cuts[index], row.cuts[index]) << row.what;
      EXPECT_LE(cuts[index], row.cuts[index] + 0.2) << row.what;
    }
  }
}

TEST(PhrasePauseDetector, FindsTheSamePausesAtAnyRate) {
  for (const double rate : {100.0, 999.5, 8'000.0, 11'025.0, 44'100.0, 192'000.0}) {
    SoundTape tape(rate);
    tape.noise(0.5).speech(2).noise(0.9).speech(2).noise(0.9);
    const auto cuts = phraseCuts(tape, rate);
    if (rate < 1'000) continue;  // two samples a frame say nothing: not to fail is enough
    ASSERT_EQ(cuts.size(), 2U) << rate;
    EXPECT_NEAR(cuts[0], 3.0, 0.1) << rate;
    EXPECT_NEAR(cuts[1], 5.9, 0.1) << rate;
  }
}

TEST(PhrasePauseDetector, BatchesMakeNoDifference) {
  const auto tape = SoundTape().noise(0.5).speech(2).noise(0.55).speech(1).noise(0.9).speech(2).noise(0.8);
  const auto expected = detect(tape, recognitionSampleRate, tape.samples().size());
  ASSERT_EQ(expected.size(), 8U) << "a gap before each breath, and both before each pause between phrases";
  for (const std::size_t batch : {1U, 7U, 319U, 320U, 16'000U})
    EXPECT_EQ(detect(tape, recognitionSampleRate, batch), expected) << batch;
}

TEST(PhrasePauseDetector, KeepsTheFiguresOfTheDiagnostics) {
  constexpr std::size_t tenth = recognitionSampleRate / 10;
  const auto tape = SoundTape().zeros(0.5).noise(0.5).speech(1);
  PhrasePauseDetector detector(recognitionSampleRate);
  EXPECT_EQ(detector.minimumWindowDB(), std::numeric_limits<double>::infinity());
  const std::span<const float> samples(tape.samples());
  for (std::size_t at = 0; at < samples.size(); at += tenth)
    (void)detector.append(samples.subspan(at, tenth));
  EXPECT_EQ(detector.calibrationBatches(), 8) << "three tenths of a second after the zeros";
  EXPECT_NEAR(*detector.floorDB(), -60, 3);
  EXPECT_NEAR(*detector.speechDB(), -20, 3);
  EXPECT_EQ(detector.minimumWindowDB(), -std::numeric_limits<double>::infinity());
  EXPECT_NEAR(detector.leadingLowLevelSeconds(), 0.5, 1e-9);
  EXPECT_TRUE(detector.leadingLowLevelEnded());

  PhrasePauseDetector noisy(recognitionSampleRate);
  (void)noisy.append(SoundTape().noise(5, -40).samples());
  EXPECT_NEAR(noisy.minimumWindowDB(), -40, 1.5);
  EXPECT_EQ(noisy.leadingLowLevelSeconds(), 0);
}

}  // namespace
