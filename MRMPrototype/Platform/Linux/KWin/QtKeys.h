#pragma once

#include <cstdint>
#include <optional>

#include <xkbcommon/xkbcommon.h>

namespace murmel {

/// The number that Qt's programs, KDE's daemons among them, know a key by: what it writes. Nothing for a key
/// that has none. `modifiers` are bits of `keyModifier`.
std::optional<int> qtKey(xkb_keysym_t symbol, std::uint64_t modifiers);

inline constexpr int qtEscape = 0x0100'0000;

}  // namespace murmel
