#pragma once

#include "Platform/VirtualKeyCode.h"

#include <cstdint>
#include <optional>

namespace murmel {

/// The virtual key code of a key, from the kernel's number for it (`KEY_…` in linux/input-event-codes.h).
/// Different keys have different codes: those that no Mac keyboard has get numbers above 255.
VirtualKeyCode virtualKeyFromEvdev(std::uint32_t evdevCode);

/// The number that a key gets when nothing on a Mac keyboard corresponds to what it does.
VirtualKeyCode virtualKeyWithoutCounterpart(std::uint32_t evdevCode);

/// The way back; nothing for a number that no key has.
std::optional<std::uint32_t> evdevFromVirtualKey(VirtualKeyCode keyCode);

/// X and xkb key codes are the kernel's plus this.
inline constexpr std::uint32_t xKeyCodeOffset = 8;

}  // namespace murmel
