#pragma once

#include "Platform/VirtualKeyCode.h"

#include <cstdint>

namespace murmel {

/// What a key is in the layout of the moment.
struct KeyRole {
  enum class Kind {
    ordinary,
    modifier,  ///< with a flag, or without one like AltGr
    capsLock,
  };
  Kind kind = Kind::ordinary;
  VirtualKeyCode keyCode = 0;
  std::uint64_t flag = 0;  ///< a bit of `keyModifier`, or none

  friend bool operator==(const KeyRole&, const KeyRole&) = default;
};

/// The role of a key from the xkb symbol that it has by itself, without Shift and the like, and the kernel's
/// number for its place. Modifier keys are what the layout makes of them; every other key is its place.
KeyRole keyRole(std::uint32_t symbol, std::uint32_t evdevCode);

}  // namespace murmel
