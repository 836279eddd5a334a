#include "Audio/CaptureHealth.h"
#include "Support/Testing.h"

namespace {

using enum CaptureCondition;

struct Stretch {
  double seconds;
  CaptureFigures aTenth;  ///< what each tenth of a second brings
  CaptureCondition atItsEnd;
};

CaptureFigures sound(float peak, std::uint64_t clipped = 0, std::uint64_t frames = 1'600) {
  return {.frames = frames, .clippedFrames = clipped, .trailingZeros = 0, .peak = peak, .sampleRate = 16'000};
}
const CaptureFigures nothing{};
const CaptureFigures zeros{
    .frames = 1'600, .clippedFrames = 0, .trailingZeros = 1'600, .peak = 0, .sampleRate = 16'000};

TEST(CaptureHealth, SaysWhatIsWrongAndThatItIsOver) {
  const std::vector<std::pair<const char*, std::vector<Stretch>>> recordings{
      {"speech", {{60, sound(0.3F), fine}}},
      {"a stream that stalls and comes back",
       {{5, sound(0.3F), fine},
        {2, nothing, fine},
        {2, nothing, stalled},
        {0.1, sound(0.3F), fine},
        {8, sound(0.3F), fine}}},
      {"one that never delivers", {{3, nothing, stalled}}},
      {"a dead microphone", {{0.9, zeros, fine}, {0.3, zeros, silent}, {0.1, sound(0.2F), fine}}},
      {"a noise gate", {{2, sound(0.2F), fine}, {4, zeros, fine}, {2, zeros, silent}}},
      {"too loud, then turned down", {{7, sound(1, 40), clipping}, {7, sound(0.5F), fine}}},
      {"one loud noise", {{5, sound(0.5F), fine}, {0.1, sound(1, 40), fine}, {6, sound(0.5F), fine}}},
      {"a signal far below speech",
       {{3.8, sound(0.004F), fine}, {1, sound(0.004F), tooQuiet}, {0.1, sound(0.1F), fine}}},
      {"a device that loses sound", {{7, sound(0.2F, 0, 1'200), lagging}, {7, sound(0.2F), fine}}},
  };
  for (const auto& [what, stretches] : recordings) {
    CaptureHealth health;
    Instant now{};
    health.begin(now);
    for (std::size_t index = 0; index < stretches.size(); ++index) {
      const auto& stretch = stretches[index];
      for (int tenth = 0; tenth < static_cast<int>(stretch.seconds * 10 + 0.5); ++tenth) {
        now += 100ms;
        health.observe(stretch.aTenth, now);
      }
      EXPECT_EQ(health.condition(), stretch.atItsEnd) << what << ", stretch " << index;
      EXPECT_EQ(health.levelIsStale(now), stretch.aTenth.frames == 0 && stretch.seconds >= 0.3);
    }
  }
}

}  // namespace
