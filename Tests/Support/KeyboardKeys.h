#pragma once

#include "Platform/KeyEventTap.h"
#include "Platform/KeyModifiers.h"

#include <cstdint>

#include <linux/input-event-codes.h>

namespace murmel::test {

/// A key as a real keyboard names it and as the product does.
struct Key {
  std::uint32_t evdevCode;
  VirtualKeyCode keyCode;
  std::uint64_t flag;
};
inline constexpr Key optionKey{KEY_LEFTALT, virtualKey::leftOption, keyModifier::option};
inline constexpr Key shiftKey{KEY_LEFTSHIFT, virtualKey::leftShift, keyModifier::shift};

/// Counts its modifiers as a real keyboard does.
class CountingKeyboard {
 public:
  KeyEvent moved(const Key& key, bool goesDown) {
    if (key.flag != 0) flags_ = goesDown ? flags_ | key.flag : flags_ & ~key.flag;
    const auto ordinary = goesDown ? KeyEventType::keyDown : KeyEventType::keyUp;
    return {key.flag != 0 ? KeyEventType::flagsChanged : ordinary, flags_, key.keyCode, false, ""};
  }

 private:
  std::uint64_t flags_ = 0;
};

}  // namespace murmel::test
