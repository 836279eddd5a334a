#pragma once

#include "Foundation/Crypto/PrivateMemory.h"

#include <cstdint>
#include <functional>
#include <ostream>

namespace murmel {

/// Sample rate of everything that is handed to a recogniser, in Hz.
inline constexpr int recognitionSampleRate = 16'000;

/// What a recogniser is given: mono, 16 kHz, signed 16-bit little-endian samples, no header. Somebody's
/// voice: it stays in memory and is never printed.
struct CapturedAudio {
  PrivateVector<std::uint8_t> pcm16LE;

  /// Seconds.
  [[nodiscard]] double duration() const {
    return static_cast<double>(pcm16LE.size()) / (2.0 * recognitionSampleRate);
  }

  friend std::ostream& operator<<(std::ostream&, const CapturedAudio&) = delete;
};

/// What the microphone delivered: mono samples in -1…1 at the device's own rate (Hz).
struct PendingCapturedAudio {
  PrivateVector<float> monoSamples;
  double sampleRate = 0;

  friend std::ostream& operator<<(std::ostream&, const PendingCapturedAudio&) = delete;
};

/// What a recogniser is given, made of what was captured. Any thread; the samples are finite.
[[nodiscard]] CapturedAudio convertForRecognition(PendingCapturedAudio pending);
using AudioConversion = std::function<CapturedAudio(PendingCapturedAudio)>;

}  // namespace murmel
