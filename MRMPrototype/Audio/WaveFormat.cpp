#include "Audio/WaveFormat.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <utility>

#include <fmt/format.h>

namespace murmel {

namespace {

constexpr std::size_t plainChunkSize = 16;
constexpr std::size_t extensibleChunkSize = 40;
constexpr std::size_t subformatOffset = 24;

constexpr unsigned pcmTag = 0x0001;
constexpr unsigned floatTag = 0x0003;
constexpr unsigned extensibleTag = 0xfffe;
// What follows the tag in the identifier of an extensible file's sub-format.
constexpr std::array<std::uint8_t, 14> subformatTail{0x00, 0x00, 0x00, 0x00, 0x10, 0x00, 0x80,
                                                     0x00, 0x00, 0xaa, 0x00, 0x38, 0x9b, 0x71};

// Speech below the first cannot be understood, and a wrong rate would blow a small file up when it is
// converted; no converter goes beyond the second.
constexpr std::uint32_t lowestSampleRate = 100;
constexpr std::uint32_t highestSampleRate = 768'000;

template <class Unsigned>
Unsigned littleEndian(const std::uint8_t* bytes) {
  Unsigned value = 0;
  for (std::size_t index = 0; index < sizeof(Unsigned); ++index)
    value |= static_cast<Unsigned>(static_cast<Unsigned>(bytes[index]) << (8 * index));
  return value;
}

std::expected<WaveFormat::Encoding, std::string> encodingOf(unsigned tag, unsigned bits) {
  using enum WaveFormat::Encoding;
  if (tag == pcmTag) {
    switch (bits) {
      case 8:
        return unsigned8;
      case 16:
        return signed16;
      case 24:
        return signed24;
      case 32:
        return signed32;
      default:
        return std::unexpected(fmt::format("samples of {} bits are not supported", bits));
    }
  }
  if (tag == floatTag) {
    if (bits == 32) return float32;
    if (bits == 64) return float64;
    return std::unexpected(fmt::format("floating-point samples of {} bits are not supported", bits));
  }
  return std::unexpected(fmt::format("compressed audio (format {}) is not supported", tag));
}

template <std::size_t width, class Convert>
void decodeEach(const std::uint8_t* bytes, std::span<float> output, Convert convert) {
  for (auto& sample : output) {
    sample = convert(bytes);
    bytes += width;
  }
}

}  // namespace

std::size_t WaveFormat::bytesPerSample() const {
  switch (encoding) {
    case Encoding::unsigned8:
      return 1;
    case Encoding::signed16:
      return 2;
    case Encoding::signed24:
      return 3;
    case Encoding::signed32:
    case Encoding::float32:
      return 4;
    case Encoding::float64:
      return 8;
  }
  std::unreachable();
}

std::expected<WaveFormat, std::string> WaveFormat::parse(std::span<const std::uint8_t> chunk) {
  if (chunk.size() < plainChunkSize) return std::unexpected("its format description is cut short");
  unsigned tag = littleEndian<std::uint16_t>(&chunk[0]);
  const unsigned channels = littleEndian<std::uint16_t>(&chunk[2]);
  const auto rate = littleEndian<std::uint32_t>(&chunk[4]);
  const std::size_t frameSize = littleEndian<std::uint16_t>(&chunk[12]);
  const unsigned bits = littleEndian<std::uint16_t>(&chunk[14]);
  if (tag == extensibleTag) {
    if (chunk.size() < extensibleChunkSize) return std::unexpected("its format description is cut short");
    tag = littleEndian<std::uint16_t>(&chunk[subformatOffset]);
    if (!std::ranges::equal(subformatTail, chunk.subspan(subformatOffset + 2, subformatTail.size())))
      return std::unexpected("its sample format is unknown");
  }
  const auto encoding = encodingOf(tag, bits);
  if (!encoding) return std::unexpected(encoding.error());
  if (channels == 0) return std::unexpected("it has no channels");
  if (rate < lowestSampleRate || rate > highestSampleRate)
    return std::unexpected(fmt::format("a sample rate of {} Hz is not supported", rate));
  const WaveFormat format{*encoding, channels, rate};
  if (frameSize != format.bytesPerFrame())
    return std::unexpected(fmt::format("its format contradicts itself ({} bytes for {} channels of {} bits)",
                                       frameSize, channels, bits));
  return format;
}

void decodeSamples(WaveFormat::Encoding encoding, std::span<const std::uint8_t> bytes,
                   std::span<float> output) {
  constexpr float scale16 = 1.0F / 32'768;
  constexpr float scale32 = 1.0F / 2'147'483'648.0F;
  const std::uint8_t* data = bytes.data();
  switch (encoding) {
    case WaveFormat::Encoding::unsigned8:
      decodeEach<1>(data, output,
                    [](const std::uint8_t* at) { return static_cast<float>(*at - 128) / 128.0F; });
      return;
    case WaveFormat::Encoding::signed16:
      decodeEach<2>(data, output, [](const std::uint8_t* at) {
        return static_cast<float>(static_cast<std::int16_t>(littleEndian<std::uint16_t>(at))) * scale16;
      });
      return;
    case WaveFormat::Encoding::signed24:
      // In the upper three bytes of four, so that the sign is where it belongs.
      decodeEach<3>(data, output, [](const std::uint8_t* at) {
        const std::uint32_t raw = static_cast<std::uint32_t>(at[0]) << 8U |
                                  static_cast<std::uint32_t>(at[1]) << 16U |
                                  static_cast<std::uint32_t>(at[2]) << 24U;
        return static_cast<float>(static_cast<std::int32_t>(raw)) * scale32;
      });
      return;
    case WaveFormat::Encoding::signed32:
      decodeEach<4>(data, output, [](const std::uint8_t* at) {
        return static_cast<float>(static_cast<std::int32_t>(littleEndian<std::uint32_t>(at))) * scale32;
      });
      return;
    case WaveFormat::Encoding::float32:
      decodeEach<4>(data, output, [](const std::uint8_t* at) {
        return std::bit_cast<float>(littleEndian<std::uint32_t>(at));
      });
      return;
    case WaveFormat::Encoding::float64:
      decodeEach<8>(data, output, [](const std::uint8_t* at) {
        constexpr double largest = std::numeric_limits<float>::max();
        const auto value = std::bit_cast<double>(littleEndian<std::uint64_t>(at));
        return static_cast<float>(std::isfinite(value) ? std::clamp(value, -largest, largest) : value);
      });
      return;
  }
}

}  // namespace murmel
