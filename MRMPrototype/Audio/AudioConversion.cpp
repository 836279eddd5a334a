// The conversion of captured samples into what a recogniser is given.

#include "Audio/AudioCaptureService.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace murmel {

namespace {

constexpr float fullScale = 32'767;  // symmetric: the code -32768 is never used

/// `value` in ±32767, rounded half away from zero. Branch-free, so that the compiler uses vectors.
inline std::int16_t rounded(float value) {
  const auto whole = static_cast<std::int32_t>(value);
  const float rest = value - static_cast<float>(whole);  // exact
  const auto up = static_cast<std::int32_t>(rest >= 0.5F);
  const auto down = static_cast<std::int32_t>(rest <= -0.5F);
  return static_cast<std::int16_t>(whole + up - down);
}

constexpr std::uint16_t littleEndian(std::uint16_t value) {
  if constexpr (std::endian::native == std::endian::little) return value;
  return static_cast<std::uint16_t>((value << 8U) | (value >> 8U));
}

}  // namespace

PrivateVector<float> AudioCaptureService::resample(PrivateVector<float> samples, double sourceRate,
                                                   double targetRate) {
  if (sourceRate == targetRate) return samples;
  if (!(sourceRate > 0) || !(targetRate > 0) || samples.empty()) return {};
  const auto count = std::floor(targetRate * static_cast<double>(samples.size()) / sourceRate);
  if (count < 1) return {};
  const double ratio = sourceRate / targetRate;
  const auto last = samples.size() - 1;
  PrivateVector<float> output(static_cast<std::size_t>(count));
  for (std::size_t index = 0; index < output.size(); ++index) {
    const double position = ratio * static_cast<double>(index);
    const auto lower = std::min(last, static_cast<std::size_t>(position));
    const auto upper = std::min(last, lower + 1);
    // In double precision, where the difference of two floats cannot overflow.
    const double from = samples[lower];
    const double to = samples[upper];
    output[index] = static_cast<float>(from + (to - from) * (position - static_cast<double>(lower)));
  }
  return output;
}

PrivateVector<std::uint8_t> AudioCaptureService::encodePCM16LE(std::span<const float> samples) {
  constexpr std::uint32_t exponentBits = 0x7f80'0000;  // all set in infinities and in what is not a number
  constexpr std::size_t chunkLength = 512;             // simple loops over arrays, for the sake of vectors
  PrivateVector<std::uint8_t> bytes(2 * samples.size());
  std::array<std::uint16_t, chunkLength> codes{};
  std::uint32_t notFinite = 0;
  for (std::size_t done = 0; done < samples.size();) {
    const auto count = std::min(samples.size() - done, chunkLength);
    const float* chunk = samples.data() + done;
    for (std::size_t index = 0; index < count; ++index) {
      const float sample = chunk[index];
      notFinite |=
          static_cast<std::uint32_t>((std::bit_cast<std::uint32_t>(sample) & exponentBits) == exponentBits);
      // This order of the comparisons turns what is not a number into -1: converting it would be undefined.
      const float above = -1.0F < sample ? sample : -1.0F;
      const float clipped = above < 1.0F ? above : 1.0F;
      codes[index] = littleEndian(static_cast<std::uint16_t>(rounded(clipped * fullScale)));
    }
    std::memcpy(bytes.data() + 2 * done, codes.data(), 2 * count);
    done += count;
  }
  if (notFinite != 0) throw std::invalid_argument("encodePCM16LE was given a sample that is not finite");
  return bytes;
}

CapturedAudio convertForRecognition(PendingCapturedAudio pending) {
  using Service = AudioCaptureService;
  return {Service::encodePCM16LE(
      Service::resample(std::move(pending.monoSamples), pending.sampleRate, recognitionSampleRate))};
}

}  // namespace murmel
