#include "Workers/ModelImport/NumberFormats.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace murmel::import {

namespace {

constexpr int halfMantissaBits = 10;
constexpr int halfExponentBias = 15;
constexpr int halfExponentMask = 31;

void appendHalf(std::vector<std::uint8_t>& bytes, std::uint16_t bits) {
  bytes.push_back(static_cast<std::uint8_t>(bits & 0xFFU));
  bytes.push_back(static_cast<std::uint8_t>(bits >> 8U));
}

/// Hertz of a place on Slaney's scale: even steps up to 1000 Hz, from there on even ratios.
double hertz(double mel) {
  constexpr double step = 200.0 / 3;
  constexpr double bend = 1'000 / step;
  if (mel < bend) return step * mel;
  return 1'000 * std::exp((mel - bend) * std::log(6.4) / 27);
}

double mel(double hertz) {
  constexpr double step = 200.0 / 3;
  if (hertz < 1'000) return hertz / step;
  return 1'000 / step + std::log(hertz / 1'000) / (std::log(6.4) / 27);
}

}  // namespace

float fromHalf(std::uint16_t bits) {
  const int exponent = bits >> halfMantissaBits & halfExponentMask;
  const int mantissa = bits & ((1 << halfMantissaBits) - 1);
  const float sign = (bits & 0x8000U) != 0 ? -1.0F : 1.0F;
  if (exponent == halfExponentMask) return sign * (mantissa == 0 ? INFINITY : NAN);
  if (exponent == 0)
    return sign * std::ldexp(static_cast<float>(mantissa), 1 - halfExponentBias - halfMantissaBits);
  return sign * std::ldexp(static_cast<float>(mantissa + (1 << halfMantissaBits)),
                           exponent - halfExponentBias - halfMantissaBits);
}

std::uint16_t toHalf(float value) {
  const auto sign = static_cast<std::uint16_t>(std::signbit(value) ? 0x8000U : 0U);
  const float size = std::fabs(value);
  if (std::isnan(value)) return sign | 0x7E00U;
  if (size == 0) return sign;
  int exponent = 0;
  std::frexp(size, &exponent);  // size = f · 2^exponent with f from one half to one
  // In units of the last place, which below the smallest normal number stays the same.
  const int unit = std::max(exponent - 1, 1 - halfExponentBias) - halfMantissaBits;
  const auto units = static_cast<std::uint32_t>(std::nearbyint(std::ldexp(std::min(size, 65'536.0F), -unit)));
  // The implied leading one adds itself to the exponent; so does a mantissa that was rounded up.
  const auto bits = units + (static_cast<std::uint32_t>(unit + halfMantissaBits + halfExponentBias - 1)
                             << halfMantissaBits);
  return sign | static_cast<std::uint16_t>(std::min(bits, 0x7C00U));
}

void appendQ8(std::vector<std::uint8_t>& bytes, std::span<const float> values) {
  for (; values.size() >= q8BlockSize; values = values.subspan(q8BlockSize)) {
    const auto block = values.first(q8BlockSize);
    float greatest = 0;
    for (const float value : block) greatest = std::max(greatest, std::fabs(value));
    constexpr float steps = 127;
    const float scale = greatest / steps;
    const float inverse = scale != 0 ? 1.0F / scale : 0.0F;
    appendHalf(bytes, toHalf(scale));
    for (const float value : block)
      bytes.push_back(static_cast<std::uint8_t>(static_cast<std::int8_t>(std::round(value * inverse))));
  }
}

std::vector<float> melFilters() {
  constexpr std::size_t bands = 80;
  constexpr std::size_t bins = 201;
  constexpr double binWidth = 40;
  constexpr double highest = 8'000;
  std::vector<double> edges(bands + 2);
  for (std::size_t i = 0; i < edges.size(); ++i)
    edges[i] = hertz(mel(highest) * static_cast<double>(i) / static_cast<double>(bands + 1));
  std::vector<float> filters;
  filters.reserve(bands * bins);
  for (std::size_t band = 0; band < bands; ++band) {
    for (std::size_t bin = 0; bin < bins; ++bin) {
      const double frequency = binWidth * static_cast<double>(bin);
      const double rise = (frequency - edges[band]) / (edges[band + 1] - edges[band]);
      const double fall = (edges[band + 2] - frequency) / (edges[band + 2] - edges[band + 1]);
      // Rounded twice, as the published file was made.
      const auto triangle = static_cast<float>(std::max(0.0, std::min(rise, fall)));
      const auto value =
          static_cast<float>(static_cast<double>(triangle) * (2 / (edges[band + 2] - edges[band])));
      filters.push_back(value == 0 ? 0.0F : value);  // no negative zero
    }
  }
  return filters;
}

}  // namespace murmel::import
