#include "Shortcut/ShortcutRecorder.h"

#include "Foundation/Text/Text.h"
#include "Platform/KeyModifiers.h"
#include "Shortcut/ShortcutDistributionPolicy.h"

#include <utility>

namespace murmel {

namespace {

using Kind = ShortcutConfiguration::Kind;

constexpr std::string_view typingKeyWarning =
    "A single typing key would also type in your current app. Use Fn, Option, Control, or add a modifier.";
constexpr std::string_view chordWarningEnd =
    " was detected. Command and Shift cannot be used alone because normal Mac typing uses them constantly. "
    "Use Fn, Option, Control, or hold two modifiers together.";
constexpr std::string_view standingHelp =
    "Fn, Option, and Control work alone. Command and Shift must be combined with another modifier or a key. "
    "Press Esc to cancel.";

constexpr std::pair<VirtualKeyCode, std::string_view> fixedLabels[] = {
    {virtualKey::returnKey, "Return"}, {virtualKey::tab, "Tab"},
    {virtualKey::space, "Space"},      {virtualKey::deleteKey, "Delete"},
    {virtualKey::escape, "Esc"},       {virtualKey::home, "Home"},
    {virtualKey::pageUp, "Page Up"},   {virtualKey::forwardDelete, "Forward Delete"},
    {virtualKey::end, "End"},          {virtualKey::pageDown, "Page Down"},
    {virtualKey::leftArrow, "←"},      {virtualKey::rightArrow, "→"},
    {virtualKey::downArrow, "↓"},      {virtualKey::upArrow, "↑"},
};

}  // namespace

std::string recorderKeyLabel(const KeyEvent& event) {
  for (const auto& [keyCode, label] : fixedLabels) {
    if (keyCode == event.keyCode) return std::string(label);
  }
  // Repaired, because a label that is not UTF-8 could not be stored.
  auto label = text::uppercased(text::repairedUtf8(event.characters));
  return label.empty() ? "Key " + std::to_string(event.keyCode) : label;
}

ShortcutRecorder::Outcome ShortcutRecorder::consume(const KeyEvent& event) {
  if (outcome_ != Outcome::recording) return outcome_;
  switch (event.type) {
    case KeyEventType::keyDown:
      keyDown(event);
      break;
    case KeyEventType::keyUp:
      keyUp(event);
      break;
    case KeyEventType::flagsChanged:
      flagsChanged(event);
      break;
    default:
      break;
  }
  return outcome_;
}

void ShortcutRecorder::keyDown(const KeyEvent& event) {
  if (event.keyCode == virtualKey::escape) {
    outcome_ = Outcome::cancelled;
    return;
  }
  if (event.isRepeat) return;
  ShortcutConfiguration pressed{Kind::key, event.keyCode, event.flags & shortcutModifierMask,
                                recorderKeyLabel(event)};
  if (!ShortcutDistributionPolicy::makesKeyCombination(pressed.modifierRawValue)) {
    refuse(std::move(pressed), std::string(typingKeyWarning));
    return;
  }
  warning_.clear();
  candidate_ = pressed;
  detectedConfiguration_ = std::move(pressed);
  keyIsHeld_ = true;
}

void ShortcutRecorder::keyUp(const KeyEvent& event) {
  if (!keyIsHeld_ || !candidate_ || candidate_->kind != Kind::key || candidate_->keyCode != event.keyCode) {
    return;
  }
  keyIsHeld_ = false;
  ignoreModifiersUntilClear_ = true;
  confirm();
}

void ShortcutRecorder::flagsChanged(const KeyEvent& event) {
  if (keyIsHeld_) return;
  const bool isClear = (event.flags & shortcutModifierMask) == 0;
  if (ignoreModifiersUntilClear_) {
    if (!isClear) return;
    ignoreModifiersUntilClear_ = false;
    modifierChordFlags_ = 0;
    return;
  }
  if (!isClear) {
    extendChord(event);
    return;
  }
  if (candidate_ && candidate_->kind == Kind::modifiersOnly) confirm();
  modifierChordFlags_ = 0;
}

void ShortcutRecorder::extendChord(const KeyEvent& event) {
  modifierChordFlags_ |= event.flags & shortcutModifierMask;
  ShortcutConfiguration chord{Kind::modifiersOnly, event.keyCode, modifierChordFlags_, ""};
  if (ShortcutDistributionPolicy::sanitize(chord, MRMDistributionChannel::direct) != chord) {
    auto warning = chord.title() + std::string(chordWarningEnd);
    refuse(std::move(chord), std::move(warning));
    return;
  }
  warning_.clear();
  candidate_ = chord;
  detectedConfiguration_ = std::move(chord);
}

void ShortcutRecorder::refuse(ShortcutConfiguration detected, std::string warning) {
  candidate_.reset();
  confirmations_ = 0;
  detectedConfiguration_ = std::move(detected);
  warning_ = std::move(warning);
}

void ShortcutRecorder::confirm() {
  confirmations_ = candidate_ == confirmedCandidate_ ? confirmations_ + 1 : 1;
  confirmedCandidate_ = candidate_;
  if (confirmations_ >= requiredConfirmations) outcome_ = Outcome::confirmed;
}

std::string ShortcutRecorder::titleLine() const {
  if (candidate_) return candidate_->title();
  if (detectedConfiguration_) return detectedConfiguration_->title() + " detected";
  return "Press and release your shortcut three times";
}

std::string ShortcutRecorder::helpLine() const {
  return warning_.empty() ? std::string(standingHelp) : warning_;
}

}  // namespace murmel
