#pragma once

#include "Platform/VirtualKeyCode.h"

#include <cstdint>
#include <string>

namespace murmel {

/// What can be found out about the keyboard while a shortcut is chosen. Main thread; each question is a few
/// round trips to the server.
class KeyboardProbe {
 public:
  virtual ~KeyboardProbe() = default;
  /// Whether another program has reserved the key with exactly these modifiers (bits of `keyModifier`).
  [[nodiscard]] virtual bool isTaken(VirtualKeyCode keyCode, std::uint64_t modifiers) = 0;
  /// Whether the layout makes something else of the Caps Lock key.
  [[nodiscard]] virtual bool capsLockIsRemapped() = 0;
  /// What the key writes by itself (UTF-8), or is called ("F4"); empty otherwise.
  [[nodiscard]] virtual std::string label(VirtualKeyCode keyCode) = 0;
};

}  // namespace murmel
