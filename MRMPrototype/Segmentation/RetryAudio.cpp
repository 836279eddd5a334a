#include "Segmentation/RetryAudio.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <span>

namespace murmel {

namespace {

constexpr double targetPeak = 0.7 * 32'767;  // -3 dBFS
constexpr double greatestGain = 100;         // 40 dB: beyond it there is nothing but the converter's noise
constexpr double silenceSeconds = 0.3;
constexpr std::size_t bytesPerSample = 2;

std::int16_t sampleAt(std::span<const std::uint8_t> bytes, std::size_t at) {
  return static_cast<std::int16_t>(static_cast<std::uint16_t>(bytes[at] | (bytes[at + 1] << 8U)));
}

}  // namespace

CapturedAudio retryAudio(CapturedAudio audio) {
  const auto& bytes = audio.pcm16LE;
  const std::size_t end = bytes.size() - bytes.size() % bytesPerSample;
  int peak = 0;
  for (std::size_t at = 0; at < end; at += bytesPerSample)
    peak = std::max(peak, std::abs(static_cast<int>(sampleAt(bytes, at))));
  const double gain = peak == 0 ? 1 : std::clamp(targetPeak / peak, 1.0, greatestGain);

  const std::size_t silence =
      bytesPerSample * static_cast<std::size_t>(silenceSeconds * recognitionSampleRate);
  CapturedAudio changed;
  changed.pcm16LE.reserve(end + 2 * silence);
  changed.pcm16LE.resize(silence);
  for (std::size_t at = 0; at < end; at += bytesPerSample) {
    // A gain above 1 stays below the target peak, so nothing can overflow.
    const auto sample = static_cast<std::uint16_t>(std::lround(gain * sampleAt(bytes, at)));
    changed.pcm16LE.push_back(static_cast<std::uint8_t>(sample & 0xFFU));
    changed.pcm16LE.push_back(static_cast<std::uint8_t>(sample >> 8U));
  }
  changed.pcm16LE.resize(changed.pcm16LE.size() + silence);
  return changed;
}

}  // namespace murmel
