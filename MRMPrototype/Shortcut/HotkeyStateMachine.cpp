#include "Shortcut/HotkeyStateMachine.h"

#include "Platform/KeyModifiers.h"

#include <cmath>
#include <cstdint>
#include <utility>

namespace murmel {

namespace {

using Transition = HotkeyStateMachine::Transition;

constexpr std::int64_t microsecondsPerSecond = 1'000'000;
/// From the first release to the second, both included: 0.45 s.
constexpr std::int64_t doubleTapWindowMicroseconds = 450'000;
/// Caps Lock events closer than 0.12 s are one bouncing key.
constexpr std::int64_t capsLockDebounceMicroseconds = 120'000;

/// Whole microseconds, so that a decimal fraction's rounding does not decide at the edge of an interval.
/// Nothing when the clock has gone back.
std::optional<std::int64_t> microsecondsSince(std::optional<double> earlier, double now) {
  if (!earlier || *earlier > now) return std::nullopt;
  return std::llround((now - *earlier) * static_cast<double>(microsecondsPerSecond));
}

}  // namespace

Transition HotkeyStateMachine::adopt(const ShortcutConfiguration& shortcut) {
  if (activeShortcut_ == shortcut) return Transition::none;
  const auto due = releaseIfPressed();
  *this = HotkeyStateMachine();
  activeShortcut_ = shortcut;
  return due;
}

Transition HotkeyStateMachine::consume(const MRMHotkeyEvent& event, const ShortcutConfiguration& shortcut) {
  adopt(shortcut);
  switch (shortcut.kind) {
    case ShortcutConfiguration::Kind::key:
      return consumeKey(event, shortcut);
    case ShortcutConfiguration::Kind::modifiersOnly:
      return consumeModifiersOnly(event, shortcut);
    case ShortcutConfiguration::Kind::doubleTapModifier:
      return consumeDoubleTap(event, shortcut);
    case ShortcutConfiguration::Kind::capsLock:
      return consumeCapsLock(event, shortcut);
    case ShortcutConfiguration::Kind::disabled:
      break;
  }
  return Transition::none;
}

Transition HotkeyStateMachine::pressUnlessPressed() {
  return std::exchange(isPressed_, true) ? Transition::none : Transition::press;
}

Transition HotkeyStateMachine::releaseIfPressed() {
  return std::exchange(isPressed_, false) ? Transition::release : Transition::none;
}

// Only the key's own release stops: letting go of the modifiers first is how people let go of a combination.
Transition HotkeyStateMachine::consumeKey(const MRMHotkeyEvent& event,
                                          const ShortcutConfiguration& shortcut) {
  if (event.keyCode != shortcut.keyCode) return Transition::none;
  if (event.type == KeyEventType::keyDown) {
    if (event.isRepeat || event.modifiers != shortcut.modifierRawValue) return Transition::none;
    return pressUnlessPressed();
  }
  if (event.type == KeyEventType::keyUp) return releaseIfPressed();
  return Transition::none;
}

Transition HotkeyStateMachine::consumeModifiersOnly(const MRMHotkeyEvent& event,
                                                    const ShortcutConfiguration& shortcut) {
  const auto required = shortcut.modifierRawValue;
  if (event.type == KeyEventType::flagsChanged) {
    return (event.modifiers & required) == required ? pressUnlessPressed() : releaseIfPressed();
  }
  // Some keyboards send Fn as a key instead of a modifier.
  if (required != keyModifier::function || event.keyCode != shortcut.keyCode) return Transition::none;
  if (event.type == KeyEventType::keyDown && !event.isRepeat) return pressUnlessPressed();
  if (event.type == KeyEventType::keyUp) return releaseIfPressed();
  return Transition::none;
}

Transition HotkeyStateMachine::consumeDoubleTap(const MRMHotkeyEvent& event,
                                                const ShortcutConfiguration& shortcut) {
  if (shortcut.modifierRawValue != keyModifier::option) return Transition::none;
  const bool isOption = event.keyCode == virtualKey::leftOption || event.keyCode == virtualKey::rightOption;
  if (event.type == KeyEventType::flagsChanged && isOption) return consumeOptionChange(event);
  // Anything else means that Option is part of a chord, or that the user has gone on typing.
  if (optionTapIsDown_) {
    optionTapIsEligible_ = false;
  } else {
    lastOptionTapRelease_.reset();
  }
  return Transition::none;
}

Transition HotkeyStateMachine::consumeOptionChange(const MRMHotkeyEvent& event) {
  const bool isClean = event.modifiers == keyModifier::option;
  if ((event.modifiers & keyModifier::option) != 0) {
    if (!isClean) optionTapIsEligible_ = false;
    if (!std::exchange(optionTapIsDown_, true)) optionTapIsEligible_ = isClean;
    return Transition::none;
  }
  if (!std::exchange(optionTapIsDown_, false)) return Transition::none;
  if (!std::exchange(optionTapIsEligible_, false)) {
    lastOptionTapRelease_.reset();
    return Transition::none;
  }
  const auto sinceFirst = microsecondsSince(lastOptionTapRelease_, event.timestamp);
  if (sinceFirst && *sinceFirst <= doubleTapWindowMicroseconds) {
    lastOptionTapRelease_.reset();
    return Transition::toggle;
  }
  lastOptionTapRelease_ = event.timestamp;
  return Transition::none;
}

Transition HotkeyStateMachine::consumeCapsLock(const MRMHotkeyEvent& event,
                                               const ShortcutConfiguration& shortcut) {
  if (event.type != KeyEventType::flagsChanged || event.keyCode != virtualKey::capsLock ||
      shortcut.keyCode != virtualKey::capsLock) {
    return Transition::none;
  }
  const auto sinceLast = microsecondsSince(lastCapsLockEvent_, event.timestamp);
  if (sinceLast && *sinceLast < capsLockDebounceMicroseconds) return Transition::none;
  lastCapsLockEvent_ = event.timestamp;
  return Transition::toggle;
}

}  // namespace murmel
