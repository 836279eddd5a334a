#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <span>
#include <string>

namespace murmel {

/// How the samples of a WAV file are stored.
struct WaveFormat {
  enum class Encoding { unsigned8, signed16, signed24, signed32, float32, float64 };

  Encoding encoding = Encoding::signed16;
  unsigned channelCount = 0;
  std::uint32_t sampleRate = 0;  ///< Hz

  [[nodiscard]] std::size_t bytesPerSample() const;
  [[nodiscard]] std::size_t bytesPerFrame() const { return bytesPerSample() * channelCount; }
  [[nodiscard]] bool isFloatingPoint() const {
    return encoding == Encoding::float32 || encoding == Encoding::float64;
  }

  /// Reads the contents of a "fmt " chunk, plain or extensible. The error is the reason for a user, without
  /// the name of the file.
  static std::expected<WaveFormat, std::string> parse(std::span<const std::uint8_t> chunk);
};

/// Turns stored little-endian samples into floats, integers into -1…1. `bytes` holds exactly the samples of
/// `output`. Floating point is taken as it is, except that what a float cannot hold becomes its largest
/// value.
void decodeSamples(WaveFormat::Encoding encoding, std::span<const std::uint8_t> bytes,
                   std::span<float> output);

}  // namespace murmel
