#include "Segmentation/SegmentLevels.h"
#include "Support/SoundTape.h"
#include "Support/Testing.h"

namespace {

std::vector<FrameLevel> levels(const SoundTape& tape, double rate = recognitionSampleRate) {
  FrameLevelMeter meter(rate);
  return meter.append(tape.samples());
}

TEST(SpeechEvidence, KeepsSilenceFromTheRecogniserAndSpeechForIt) {
  using enum SpeechEvidence;
  struct Row {
    const char* what;
    SoundTape tape;
    SpeechEvidence evidence;
  };
  const std::vector<Row> rows{
      {"nothing", SoundTape(), none},
      {"a dead microphone", SoundTape().zeros(5), none},
      {"a quiet room", SoundTape().noise(10, -70), none},
      {"a loud fan", SoundTape().noise(15, -20), none},
      {"a hum of the mains", SoundTape().hum(10, 50, -15), none},
      {"a hum of 60 Hz", SoundTape().hum(10, 60, -15), none},
      {"a transformer", SoundTape().hum(10, 100, -30), none},
      {"a constant offset", SoundTape().zeros(0.1).noise(5, -75), none},
      {"a device that opens late into a quiet room", SoundTape().zeros(2).noise(3, -60), none},
      {"the end of a pause", SoundTape().noise(0.25), none},
      {"a key that clicks", SoundTape().noise(2).noise(0.02, -20).noise(2), none},
      {"a click in digital silence", SoundTape().zeros(0.3).noise(0.02, -20).zeros(0.3), none},
      {"speech", SoundTape().noise(0.5).speech(2).noise(1), clear},
      {"a short word in a long silence", SoundTape().noise(20).speech(0.35).noise(20), clear},
      {"quiet speech", SoundTape().noise(0.5, -80).speech(2, -62).noise(0.5, -80), clear},
      {"speech with zeros between the words", SoundTape().speech(1).zeros(4).speech(1), doubtful},
      {"speech as loud as the noise", SoundTape().noise(1, -31).speech(2, -25).noise(1, -31), doubtful},
      {"too short to be judged", SoundTape().noise(0.15), doubtful},
      {"music", SoundTape().music(5, -15), doubtful},
  };
  for (const auto& row : rows) EXPECT_EQ(speechEvidence(levels(row.tape)), row.evidence) << row.what;
}

TEST(QuietestPlace, IsAPauseOrTheQuietestMoment) {
  struct Row {
    const char* what;
    SoundTape tape;
    double seconds;
    bool isPause;
  };
  const std::vector<Row> rows{
      {"a pause", SoundTape().speech(3).noise(0.6).speech(2).noise(0.6, -50).speech(3), 3.35, true},
      {"in noise", SoundTape().speech(3).noise(0.2, -32).speech(2).noise(0.6, -28).speech(3), 5.5, true},
      {"fluent speech", SoundTape().speech(3).noise(0.15).speech(2), 3.08, false},
  };
  for (const auto& row : rows) {
    const auto place = quietestPlace(levels(row.tape));
    EXPECT_NEAR(static_cast<double>(place.frame) * FrameLevelMeter::frameSeconds, row.seconds, 0.12)
        << row.what;
    EXPECT_EQ(place.isPause, row.isPause) << row.what;
  }
  EXPECT_EQ(quietestPlace(levels(SoundTape().noise(0.02))).frame, 0U);
}

}  // namespace
