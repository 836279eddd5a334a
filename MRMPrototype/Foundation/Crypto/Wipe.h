#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace murmel {

/// Overwrites `bytes` in a way that the compiler does not leave out.
void wipe(std::span<std::uint8_t> bytes) noexcept;

/// Overwrites everything that `text` has allocated, not only what it holds, and leaves it empty.
void wipe(std::string& text) noexcept;

}  // namespace murmel
