#include "Audio/AudioCaptureService.h"
#include "Support/Testing.h"

#include <numeric>

namespace {

constexpr float endless = std::numeric_limits<float>::infinity();
constexpr float broken = std::numeric_limits<float>::quiet_NaN();
constexpr float largest = std::numeric_limits<float>::max();

PrivateVector<float> ramp(std::size_t count) {
  PrivateVector<float> samples(count);
  std::iota(samples.begin(), samples.end(), 0.0F);
  return samples;
}

}  // namespace

TEST(Resample, GivesTheRoundedDownNumberOfSamples) {
  struct Row {
    std::size_t count;
    double from, to;
    std::size_t expected;
  };
  for (const auto& row : std::vector<Row>{{48'001, 48'000, 16'000, 16'000},
                                          {2, 48'000, 16'000, 0},
                                          {3, 48'000, 16'000, 1},
                                          {44'100, 44'100, 16'000, 16'000},
                                          {100, 100, 16'000, 16'000},
                                          {192'000, 192'000, 16'000, 16'000},
                                          {11'025, 11'025, 16'000, 16'000},
                                          {0, 48'000, 16'000, 0},
                                          {10, 0, 16'000, 0},
                                          {10, -1, 16'000, 0}}) {
    EXPECT_EQ(AudioCaptureService::resample(ramp(row.count), row.from, row.to).size(), row.expected)
        << row.count << " samples from " << row.from << " to " << row.to;
  }
}

TEST(Resample, InterpolatesBetweenNeighboursAndHoldsTheLast) {
  EXPECT_EQ(AudioCaptureService::resample({0, 1, 2, 3, 4, 5}, 48'000, 16'000), (PrivateVector<float>{0, 3}));
  EXPECT_EQ(AudioCaptureService::resample({0, 1, -1}, 8'000, 16'000),
            (PrivateVector<float>{0, 0.5F, 1, 0, -1, -1}));
  EXPECT_EQ(AudioCaptureService::resample({4, 8, 0}, 24'000, 16'000), (PrivateVector<float>{4, 4}));
}

TEST(Resample, GivesTheInputBackAtEqualRates) {
  auto samples = ramp(1'000);
  const auto* storage = samples.data();
  const auto same = AudioCaptureService::resample(std::move(samples), 44'100, 44'100);
  EXPECT_EQ(same.data(), storage) << "moved, not copied";
  EXPECT_EQ(same, ramp(1'000));
}

TEST(Resample, StaysFiniteBetweenExtremes) {
  const auto output = AudioCaptureService::resample({largest, -largest, largest, -largest}, 3, 7);
  EXPECT_EQ(output.size(), 9U);
  for (const float sample : output) EXPECT_TRUE(std::isfinite(sample)) << sample;
}

TEST(EncodePCM16LE, RoundsHalfAwayFromZeroOnASymmetricScale) {
  for (const auto& [sample, code] : {std::pair(-0.0F, 0),
                                     {1e-40F, 0},
                                     {2, 32'767},
                                     {largest, 32'767},
                                     {-2, -32'767},
                                     {-largest, -32'767}}) {
    const auto bytes = AudioCaptureService::encodePCM16LE(std::span(&sample, 1));
    EXPECT_EQ(static_cast<std::int16_t>(bytes.at(0) | bytes.at(1) << 8), code) << sample;
  }
  EXPECT_EQ(AudioCaptureService::encodePCM16LE(PrivateVector<float>{1, -1, 0.5F}),
            (PrivateVector<std::uint8_t>{0xff, 0x7f, 0x01, 0x80, 0x00, 0x40}));
  EXPECT_TRUE(AudioCaptureService::encodePCM16LE({}).empty());
}

TEST(EncodePCM16LE, AgreesWithTheLibrarysRoundingEverywhere) {
  PrivateVector<float> samples;
  for (int step = -70'000; step <= 70'000; ++step)
    samples.push_back(static_cast<float>(step) / 65'534);  // every code and every half between two
  const auto bytes = AudioCaptureService::encodePCM16LE(samples);
  ASSERT_EQ(bytes.size(), 2 * samples.size());
  for (std::size_t index = 0; index < samples.size(); ++index) {
    const auto code =
        static_cast<std::int16_t>(static_cast<std::uint16_t>(bytes[2 * index] | bytes[2 * index + 1] << 8));
    const auto expected = samples[index] <= -1
                              ? -32'767
                              : static_cast<int>(std::round(std::min(samples[index], 1.0F) * 32'767));
    ASSERT_EQ(code, expected) << samples[index];
  }
}

TEST(EncodePCM16LE, RefusesASampleThatIsNotFinite) {
  for (const float bad : {broken, -broken, endless, -endless}) {
    PrivateVector<float> samples(100, 0.1F);
    samples[57] = bad;
    EXPECT_THROW(static_cast<void>(AudioCaptureService::encodePCM16LE(samples)), std::invalid_argument)
        << bad;
  }
}
