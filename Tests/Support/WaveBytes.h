#pragma once

#include <bit>
#include <cstdint>
#include <string_view>
#include <vector>

namespace murmel {

/// Puts WAV files together byte by byte, right ones and wrong ones.
class WaveBytes {
 public:
  struct Format {
    unsigned tag = 1;  // 1 integers, 3 floating point, 0xfffe extensible
    unsigned channels = 1;
    std::uint32_t rate = 16'000;
    unsigned bits = 16;
    unsigned extensibleTag = 1;
  };

  static constexpr std::uint32_t unknownSize = 0xffff'ffff;

  WaveBytes& text(std::string_view characters) {
    for (const char character : characters) bytes_.push_back(static_cast<std::uint8_t>(character));
    return *this;
  }
  /// Little-endian; zeros beyond the eighth byte.
  WaveBytes& number(std::uint64_t value, int width) {
    for (int index = 0; index < width; ++index) {
      bytes_.push_back(static_cast<std::uint8_t>(value));
      value >>= 8U;
    }
    return *this;
  }
  WaveBytes& header(std::uint32_t riffSize = unknownSize) {
    return text("RIFF").number(riffSize, 4).text("WAVE");
  }
  WaveBytes& format(Format format) {
    const bool extensible = format.tag == 0xfffe;
    const auto frame = format.channels * ((format.bits + 7) / 8);
    text("fmt ").number(extensible ? 40 : 16, 4).number(format.tag, 2).number(format.channels, 2);
    number(format.rate, 4).number(std::uint64_t{format.rate} * frame, 4).number(frame, 2);
    number(format.bits, 2);
    if (extensible) {
      number(22, 2).number(format.bits, 2).number(0, 4).number(format.extensibleTag, 2);
      for (const int byte :
           {0x00, 0x00, 0x00, 0x00, 0x10, 0x00, 0x80, 0x00, 0x00, 0xaa, 0x00, 0x38, 0x9b, 0x71})
        number(static_cast<std::uint64_t>(byte), 1);
    }
    return *this;
  }
  WaveBytes& data(std::uint32_t size) { return text("data").number(size, 4); }
  WaveBytes& float32(float value) { return number(std::bit_cast<std::uint32_t>(value), 4); }
  WaveBytes& float64(double value) { return number(std::bit_cast<std::uint64_t>(value), 8); }

  [[nodiscard]] const std::vector<std::uint8_t>& bytes() const { return bytes_; }

 private:
  std::vector<std::uint8_t> bytes_;
};

/// A whole mono file of 16-bit samples.
inline std::vector<std::uint8_t> waveFile16(const std::vector<std::int16_t>& samples, std::uint32_t rate) {
  WaveBytes wave;
  const auto size = static_cast<std::uint32_t>(2 * samples.size());
  wave.header(36 + size).format({.rate = rate}).data(size);
  for (const auto sample : samples) wave.number(static_cast<std::uint16_t>(sample), 2);
  return wave.bytes();
}

}  // namespace murmel
