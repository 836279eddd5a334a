#pragma once

#include "Shortcut/MRMHotkeyEvent.h"
#include "Shortcut/ShortcutConfiguration.h"

#include <optional>

namespace murmel {

/// Turns a stream of key events into requests to start and stop a dictation. A value: it holds no timer and
/// calls nothing. The same event told twice (by the event tap and by the local monitor) counts once.
class HotkeyStateMachine {
 public:
  enum class Transition {
    none,
    press,    ///< a hold shortcut went down: start
    release,  ///< it went up: stop
    toggle,   ///< a tapped shortcut was completed: start or stop
  };

  /// Forgets what is held, because its release will not be seen.
  void letGo() { isPressed_ = false; }
  /// The shortcut whose events follow. A press of another one before is given back: its release is due.
  Transition adopt(const ShortcutConfiguration& shortcut);

  /// One event and the shortcut that is set at that moment. Another shortcut than before resets everything
  /// first: no half double tap and no held key carries over.
  Transition consume(const MRMHotkeyEvent& event, const ShortcutConfiguration& shortcut);

 private:
  Transition consumeKey(const MRMHotkeyEvent& event, const ShortcutConfiguration& shortcut);
  Transition consumeModifiersOnly(const MRMHotkeyEvent& event, const ShortcutConfiguration& shortcut);
  Transition consumeDoubleTap(const MRMHotkeyEvent& event, const ShortcutConfiguration& shortcut);
  Transition consumeOptionChange(const MRMHotkeyEvent& event);
  Transition consumeCapsLock(const MRMHotkeyEvent& event, const ShortcutConfiguration& shortcut);
  Transition pressUnlessPressed();
  Transition releaseIfPressed();

  /// What the rest belongs to.
  std::optional<ShortcutConfiguration> activeShortcut_;
  /// A hold shortcut is down.
  bool isPressed_ = false;
  /// Option is down, in double-tap mode.
  bool optionTapIsDown_ = false;
  /// Since Option went down nothing else was touched.
  bool optionTapIsEligible_ = false;
  /// Uptime of the last clean Option release that no toggle has used, in seconds.
  std::optional<double> lastOptionTapRelease_;
  /// Uptime of the last Caps Lock event that toggled, in seconds.
  std::optional<double> lastCapsLockEvent_;
};

}  // namespace murmel
