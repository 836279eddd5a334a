#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace murmel {

/// A 128-bit universally unique identifier.
class Uuid {
 public:
  /// The nil identifier.
  Uuid() = default;

  /// A fresh random (version 4) identifier. Throws std::runtime_error when the system has no random bytes.
  static Uuid random();
  /// Accepts the canonical form of 36 characters in either case.
  static std::optional<Uuid> parse(std::string_view text);

  /// The canonical form in upper case, 36 characters.
  [[nodiscard]] std::string text() const;

  friend auto operator<=>(const Uuid&, const Uuid&) = default;

 private:
  std::array<std::uint8_t, 16> bytes_{};
};

}  // namespace murmel
