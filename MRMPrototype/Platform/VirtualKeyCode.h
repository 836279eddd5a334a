#pragma once

#include <cstdint>

namespace murmel {

/// The number of a physical key, whatever the layout writes with it: macOS virtual key codes, the form in
/// which shortcuts are stored. Only the keys that a rule names are here; the others are just numbers.
using VirtualKeyCode = std::uint16_t;

namespace virtualKey {
inline constexpr VirtualKeyCode d = 2;
inline constexpr VirtualKeyCode returnKey = 36;
inline constexpr VirtualKeyCode tab = 48;
inline constexpr VirtualKeyCode space = 49;
inline constexpr VirtualKeyCode deleteKey = 51;
inline constexpr VirtualKeyCode escape = 53;
inline constexpr VirtualKeyCode rightCommand = 54;
inline constexpr VirtualKeyCode leftCommand = 55;
inline constexpr VirtualKeyCode leftShift = 56;
inline constexpr VirtualKeyCode capsLock = 57;
inline constexpr VirtualKeyCode leftOption = 58;
inline constexpr VirtualKeyCode leftControl = 59;
inline constexpr VirtualKeyCode rightShift = 60;
inline constexpr VirtualKeyCode rightOption = 61;
inline constexpr VirtualKeyCode rightControl = 62;
inline constexpr VirtualKeyCode function = 63;
inline constexpr VirtualKeyCode home = 115;
inline constexpr VirtualKeyCode pageUp = 116;
inline constexpr VirtualKeyCode forwardDelete = 117;
inline constexpr VirtualKeyCode end = 119;
inline constexpr VirtualKeyCode pageDown = 121;
inline constexpr VirtualKeyCode leftArrow = 123;
inline constexpr VirtualKeyCode rightArrow = 124;
inline constexpr VirtualKeyCode downArrow = 125;
inline constexpr VirtualKeyCode upArrow = 126;
}  // namespace virtualKey

}  // namespace murmel
