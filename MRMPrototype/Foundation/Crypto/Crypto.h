#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace murmel::crypto {

using Sha256Digest = std::array<std::uint8_t, 32>;

/// Fills `bytes` from the system's cryptographically secure generator. False when the generator fails.
[[nodiscard]] bool fillRandom(std::span<std::uint8_t> bytes);

/// SHA-256 over data that arrives in pieces.
class Sha256 {
 public:
  Sha256();
  ~Sha256();
  Sha256(Sha256&&) noexcept;
  Sha256& operator=(Sha256&&) noexcept;

  void update(std::span<const std::uint8_t> bytes);
  /// Ends the computation; the object may not be updated afterwards.
  [[nodiscard]] Sha256Digest finish();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

[[nodiscard]] Sha256Digest sha256(std::span<const std::uint8_t> bytes);

/// Lower-case hexadecimal digits, two a byte.
[[nodiscard]] std::string hexadecimal(std::span<const std::uint8_t> bytes);
/// The other way round. False, unless there are lower-case digits for exactly `bytes`.
[[nodiscard]] bool fromHexadecimal(std::string_view digits, std::span<std::uint8_t> bytes);

template <std::size_t size>
[[nodiscard]] std::optional<std::array<std::uint8_t, size>> fromHexadecimal(std::string_view digits) {
  std::array<std::uint8_t, size> bytes{};
  if (!fromHexadecimal(digits, bytes)) return std::nullopt;
  return bytes;
}

}  // namespace murmel::crypto
