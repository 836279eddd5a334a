#include "Platform/Linux/X11Keys/KeyEventTranslator.h"

#include "Platform/KeyModifiers.h"

#include <array>
#include <utility>

namespace murmel {

void KeyEventTranslator::consume(const RawKey& raw, const KeyLayout& layout, std::vector<KeyEvent>& events) {
  if (withheldRelease_ && raw.goesDown && raw.keyCode == withheldRelease_->keyCode &&
      raw.source == withheldRelease_->source && raw.time - withheldRelease_->time <= repeatGapMilliseconds) {
    withheldRelease_.reset();
  }
  tellWithheldRelease(layout, events);
  if (takeInjected(raw)) return;
  if (raw.goesDown) {
    press(raw, layout, events);
  } else if (mayBeRepeat(raw)) {
    withheldRelease_ = raw;
  } else {
    release(raw.keyCode, layout, events);
  }
}

bool KeyEventTranslator::mayBeRepeat(const RawKey& release) const {
  // Programs type faster than the server's clock ticks, but never repeat; modifiers do not repeat either.
  if (release.isSynthetic) return false;
  const auto held = held_.find(release.keyCode);
  return held != held_.end() && held->second.kind == KeyRole::Kind::ordinary;
}

void KeyEventTranslator::tellWithheldRelease(const KeyLayout& layout, std::vector<KeyEvent>& events) {
  if (const auto withheld = std::exchange(withheldRelease_, std::nullopt)) {
    release(withheld->keyCode, layout, events);
  }
}

void KeyEventTranslator::press(const RawKey& raw, const KeyLayout& layout, std::vector<KeyEvent>& events) {
  letGoByUs_.erase(raw.keyCode);
  const auto [entry, isNew] = held_.try_emplace(raw.keyCode, layout.role(raw.keyCode));
  const auto& role = entry->second;
  if (role.kind == KeyRole::Kind::ordinary) {
    auto down = event(KeyEventType::keyDown, role, layout);
    down.isRepeat = !isNew || raw.isRepeat;
    events.push_back(std::move(down));
  } else if (isNew) {
    events.push_back(event(KeyEventType::flagsChanged, role, layout));
  }
}

void KeyEventTranslator::release(std::uint32_t keyCode, const KeyLayout& layout,
                                 std::vector<KeyEvent>& events) {
  letGoByUs_.erase(keyCode);
  // A release whose press nobody saw: the server sends those, and they mean nothing.
  const auto held = held_.extract(keyCode);
  if (held.empty()) return;
  const auto& role = held.mapped();
  switch (role.kind) {
    case KeyRole::Kind::ordinary:
      events.push_back(event(KeyEventType::keyUp, role, layout));
      break;
    case KeyRole::Kind::modifier:
      events.push_back(event(KeyEventType::flagsChanged, role, layout));
      break;
    case KeyRole::Kind::capsLock:  // told once, when it goes down
      break;
  }
}

bool KeyEventTranslator::takeInjected(const RawKey& raw) {
  if (!raw.isSynthetic || !injected_.take(raw.keyCode, raw.goesDown)) return false;
  if (raw.goesDown) {
    injectedDown_.insert(raw.keyCode);
  } else if (injectedDown_.erase(raw.keyCode) == 0 && held_.contains(raw.keyCode)) {
    letGoByUs_.insert(raw.keyCode);
  }
  return true;
}

void KeyEventTranslator::reconcile(const PressedKeySet& serverKeys, const KeyLayout& layout,
                                   std::vector<KeyEvent>& events) {
  std::vector<std::uint32_t> missedReleases;
  for (const auto& [keyCode, role] : held_) {
    const bool isWithheld = withheldRelease_ && withheldRelease_->keyCode == keyCode;
    if (!serverKeys.test(keyCode) && !isWithheld && !letGoByUs_.contains(keyCode)) {
      missedReleases.push_back(keyCode);
    }
  }
  for (const auto keyCode : missedReleases) release(keyCode, layout, events);
  for (std::uint32_t keyCode = 0; keyCode < serverKeys.size(); ++keyCode) {
    if (serverKeys.test(keyCode) && !injectedDown_.contains(keyCode)) {
      held_.try_emplace(keyCode, layout.role(keyCode));
    }
  }
}

void KeyEventTranslator::locksChanged(const KeyLayout& layout, std::vector<KeyEvent>& events) {
  constexpr auto keys = std::to_array<std::pair<std::uint64_t, VirtualKeyCode>>({
      {keyModifier::control, virtualKey::leftControl},
      {keyModifier::option, virtualKey::leftOption},
      {keyModifier::shift, virtualKey::leftShift},
      {keyModifier::command, virtualKey::leftCommand},
  });
  const auto before = std::exchange(stuck_, layout.stuckModifiers());
  for (const auto& [flag, keyCode] : keys) {
    if (((before ^ stuck_) & flag) == 0) continue;
    events.push_back(event(KeyEventType::flagsChanged, {KeyRole::Kind::modifier, keyCode, flag}, layout));
  }
}

KeyEvent KeyEventTranslator::event(KeyEventType type, const KeyRole& role, const KeyLayout& layout) const {
  std::uint64_t flags = layout.capsLockIsOn() ? keyModifier::capsLock : 0;
  flags |= layout.stuckModifiers();
  for (const auto& [keyCode, held] : held_) flags |= held.flag;
  return {type, flags, role.keyCode, false, ""};
}

}  // namespace murmel
