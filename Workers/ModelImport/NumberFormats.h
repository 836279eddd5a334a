#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace murmel::import {

/// The bits of a 16-bit floating-point number as a number, exactly.
float fromHalf(std::uint16_t bits);
/// The nearest 16-bit floating-point number; of two, the even one.
std::uint16_t toHalf(float value);

/// That many numbers share one scale in ggml's q8_0.
constexpr std::size_t q8BlockSize = 32;
/// Appends `values`, a multiple of that, in q8_0: for each block its scale as a 16-bit number, then a byte a
/// number.
void appendQ8(std::vector<std::uint8_t>& bytes, std::span<const float> values);

/// Whisper's 80 triangles over the 201 frequencies of its spectrum, row by row: on Slaney's mel scale, with
/// the same area each.
std::vector<float> melFilters();

}  // namespace murmel::import
