#pragma once

#include "Platform/VirtualKeyCode.h"

#include <cstdint>
#include <ostream>
#include <string>

namespace murmel {

enum class KeyEventType : std::uint32_t {
  buttonDown = 1,  ///< a button of the pointer, not its wheel; without a key
  keyDown = 10,
  keyUp = 11,
  flagsChanged = 12,  ///< a modifier key went down or up; Caps Lock only when it goes down
  tapDisabledByTimeout = 0xFFFFFFFE,
  tapDisabledByUserInput = 0xFFFFFFFF,
};

/// What happened on the keyboard, as an event tap or a key monitor tells it. Nothing prints or logs this
/// type.
struct KeyEvent {
  KeyEventType type = KeyEventType::keyDown;
  /// Bits of `keyModifier`, as they are after the event.
  std::uint64_t flags = 0;
  VirtualKeyCode keyCode = 0;
  bool isRepeat = false;
  /// What the key writes without Control, Option and Command (UTF-8), or is called, for the shortcut
  /// recorder. Only the application-local monitor fills it: what is typed into other applications is nobody's
  /// business here.
  std::string characters;

  friend bool operator==(const KeyEvent&, const KeyEvent&) = default;
  friend std::ostream& operator<<(std::ostream&, const KeyEvent&) = delete;
};

}  // namespace murmel
