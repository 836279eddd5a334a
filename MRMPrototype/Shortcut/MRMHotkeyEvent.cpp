#include "Shortcut/MRMHotkeyEvent.h"

#include "Platform/KeyModifiers.h"

namespace murmel {

std::optional<MRMHotkeyEvent> MRMHotkeyEvent::from(const KeyEvent& event, double systemUptime) {
  switch (event.type) {
    case KeyEventType::keyDown:
    case KeyEventType::keyUp:
    case KeyEventType::flagsChanged:
      return MRMHotkeyEvent{event.type, event.flags & shortcutModifierMask, event.keyCode, event.isRepeat,
                            systemUptime};
    default:
      return std::nullopt;
  }
}

}  // namespace murmel
