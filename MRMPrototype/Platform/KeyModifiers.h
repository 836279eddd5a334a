#pragma once

#include <cstdint>

namespace murmel {

/// Modifier flags of a key event: one bit a modifier, whichever of its two keys is down. The values are those
/// that shortcuts are stored with.
namespace keyModifier {
inline constexpr std::uint64_t capsLock = 0x10000;  ///< the lock is on; never part of a shortcut
inline constexpr std::uint64_t shift = 0x20000;
inline constexpr std::uint64_t control = 0x40000;
inline constexpr std::uint64_t option = 0x80000;
inline constexpr std::uint64_t command = 0x100000;
inline constexpr std::uint64_t function = 0x800000;
}  // namespace keyModifier

/// What a shortcut may consist of.
inline constexpr std::uint64_t shortcutModifierMask = keyModifier::shift | keyModifier::control |
                                                      keyModifier::option | keyModifier::command |
                                                      keyModifier::function;

}  // namespace murmel
