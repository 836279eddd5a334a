#include "Shortcut/ShortcutDistributionPolicy.h"

#include "Platform/KeyModifiers.h"
#include "Shortcut/ShortcutChoice.h"

#include <bit>

namespace murmel {

namespace {

using Kind = ShortcutConfiguration::Kind;

constexpr std::uint64_t combinationModifierMask =
    keyModifier::control | keyModifier::option | keyModifier::command;

/// Command and Shift alone are part of ordinary typing; any two modifiers together are not.
bool canBeHeldAlone(std::uint64_t modifiers) {
  return std::popcount(modifiers) >= 2 || modifiers == keyModifier::control ||
         modifiers == keyModifier::option || modifiers == keyModifier::function;
}

ShortcutConfiguration sanitizeForAppStore(const ShortcutConfiguration& masked) {
  const bool allowed = masked.kind == Kind::key && (masked.modifierRawValue & keyModifier::function) == 0 &&
                       ShortcutDistributionPolicy::makesKeyCombination(masked.modifierRawValue);
  return allowed ? masked : configuration(ShortcutChoice::commandShiftD);
}

ShortcutConfiguration sanitizeForDirect(const ShortcutConfiguration& masked) {
  const auto fallback = configuration(ShortcutChoice::functionKey);
  const auto modifiers = masked.modifierRawValue;
  switch (masked.kind) {
    case Kind::key:
      return ShortcutDistributionPolicy::makesKeyCombination(modifiers) ? masked : fallback;
    case Kind::modifiersOnly:
      return canBeHeldAlone(modifiers) ? masked : fallback;
    case Kind::doubleTapModifier:
      return modifiers == keyModifier::option ? configuration(ShortcutChoice::doubleTapOption) : fallback;
    case Kind::capsLock:
      return configuration(ShortcutChoice::capsLock);
    case Kind::disabled:
      break;
  }
  return configuration(ShortcutChoice::disabled);
}

}  // namespace

ShortcutConfiguration ShortcutDistributionPolicy::sanitize(const ShortcutConfiguration& configuration,
                                                           MRMDistributionChannel channel) {
  auto masked = configuration;
  masked.modifierRawValue &= shortcutModifierMask;
  return channel == MRMDistributionChannel::appStore ? sanitizeForAppStore(masked)
                                                     : sanitizeForDirect(masked);
}

bool ShortcutDistributionPolicy::makesKeyCombination(std::uint64_t modifiers) {
  return (modifiers & combinationModifierMask) != 0;
}

}  // namespace murmel
