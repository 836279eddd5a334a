#include "Support/Testing.h"
#include "Workers/SpeechWorker/QuietCut.h"

using namespace murmel::worker;

namespace {

constexpr std::size_t rate = 16'000;

std::vector<std::int16_t> noise(double seconds, int amplitude) {
  std::mt19937 random(1);
  std::uniform_int_distribution<int> level(-amplitude, amplitude);
  std::vector<std::int16_t> samples(static_cast<std::size_t>(seconds * rate));
  std::ranges::generate(samples, [&] { return static_cast<std::int16_t>(level(random)); });
  return samples;
}

void hush(std::vector<std::int16_t>& samples, double from, double to) {
  const auto at = [&](double seconds) {
    return samples.begin() + static_cast<std::ptrdiff_t>(seconds * rate);
  };
  std::fill(at(from), at(to), std::int16_t{0});
}

}  // namespace

TEST(QuietCut, LeavesAShortRecordingWhole) {
  for (const double seconds : {0.0, 0.01, 30.0}) {
    const auto samples = noise(seconds, 1'000);
    const auto pieces = cutAtQuietPlaces(samples);
    ASSERT_EQ(pieces.size(), 1);
    EXPECT_EQ(pieces[0].size(), samples.size());
  }
}

TEST(QuietCut, CutsInTheMiddleOfAPause) {
  auto samples = noise(50, 5'000);
  hush(samples, 3, 4);          // before the earliest place
  hush(samples, 18.02, 18.06);  // a dip inside a word
  hush(samples, 22, 22.4);
  const auto pieces = cutAtQuietPlaces(samples);
  ASSERT_EQ(pieces.size(), 2);
  const auto cut = static_cast<double>(pieces[0].size()) / rate;
  EXPECT_GT(cut, 22.05);
  EXPECT_LT(cut, 22.35);
}

TEST(QuietCut, GivesNobodySilenceOrNoiseToHear) {
  const auto hear = [](auto) -> std::expected<std::string, std::string> { return "word"; };
  EXPECT_EQ(inPieces(noise(3, 300), {}, hear), "");
  EXPECT_EQ(inPieces(std::vector<std::int16_t>(rate, 7), {}, hear), "");
  auto spoken = noise(3, 300);
  for (std::size_t at = rate; at < 2 * rate; ++at) spoken[at] = static_cast<std::int16_t>(spoken[at] * 10);
  EXPECT_EQ(inPieces(spoken, {}, hear), "word");
}

TEST(QuietCut, LosesNothingAndKeepsItsLimits) {
  for (const double seconds : {30.001, 31.0, 44.9, 60.0, 61.7, 200.0}) {
    const auto samples = noise(seconds, 300);
    const auto pieces = cutAtQuietPlaces(samples);
    const auto* position = samples.data();
    for (std::size_t index = 0; index < pieces.size(); ++index) {
      EXPECT_EQ(pieces[index].data(), position);
      position += pieces[index].size();
      const bool isLast = index + 1 == pieces.size();
      EXPECT_LE(pieces[index].size(), 30 * rate);
      EXPECT_GE(pieces[index].size(), (isLast ? 5 : 15) * rate) << seconds;
    }
    EXPECT_EQ(position, samples.data() + samples.size());
  }
}
