#pragma once

#include "Platform/KeyEvent.h"

#include <cstdint>
#include <optional>
#include <ostream>

namespace murmel {

/// A key event reduced to what shortcuts are about. Nothing prints or logs this type.
struct MRMHotkeyEvent {
  KeyEventType type = KeyEventType::keyDown;
  /// Within `shortcutModifierMask`.
  std::uint64_t modifiers = 0;
  VirtualKeyCode keyCode = 0;
  bool isRepeat = false;
  /// Seconds of system uptime when this value was made; not the event's own time, which not every source has.
  double timestamp = 0;

  /// Nothing unless `event` is a keyDown, keyUp or flagsChanged.
  static std::optional<MRMHotkeyEvent> from(const KeyEvent& event, double systemUptime);

  friend std::ostream& operator<<(std::ostream&, const MRMHotkeyEvent&) = delete;
};

}  // namespace murmel
