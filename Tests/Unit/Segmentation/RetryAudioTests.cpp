#include "Segmentation/RetryAudio.h"
#include "Support/Testing.h"

namespace {

CapturedAudio pcm(const std::vector<std::int16_t>& samples) {
  CapturedAudio audio;
  for (const auto sample : samples) {
    audio.pcm16LE.push_back(static_cast<std::uint8_t>(static_cast<std::uint16_t>(sample) & 0xFFU));
    audio.pcm16LE.push_back(static_cast<std::uint8_t>(static_cast<std::uint16_t>(sample) >> 8U));
  }
  return audio;
}

TEST(RetryAudio, MakesQuietAudioLouderAndPutsSilenceAroundIt) {
  constexpr std::size_t silence = 2 * 4'800;
  struct Row {
    const char* what;
    std::vector<std::int16_t> before, after;
  };
  const std::vector<Row> rows{
      {"quiet", {1'000, -500, 0}, {22'937, -11'468, 0}},
      {"as loud as it may be", {30'000, -32'768}, {30'000, -32'768}},
      {"the gain has a limit", {3, -3}, {300, -300}},
      {"silence stays silence", {0, 0}, {0, 0}},
      {"nothing", {}, {}},
  };
  for (const auto& row : rows) {
    const auto changed = retryAudio(pcm(row.before)).pcm16LE;
    ASSERT_EQ(changed.size(), 2 * silence + 2 * row.before.size()) << row.what;
    const PrivateVector<std::uint8_t> middle(changed.begin() + silence, changed.end() - silence);
    EXPECT_EQ(middle, pcm(row.after).pcm16LE) << row.what;
    EXPECT_EQ(changed.front() + changed.back(), 0) << row.what;
  }
}

}  // namespace
