#pragma once

#include "Shortcut/ShortcutConfiguration.h"

#include <functional>
#include <string_view>
#include <vector>

namespace murmel {

/// What was found out about the keyboard and who else listens to it.
struct KeyboardFacts {
  bool isTaken = false;             ///< another program has reserved exactly these keys
  bool capsLockIsRemapped = false;  ///< the layout makes another key of it
};

/// What speaks against a shortcut on this desktop, in sentences of their own, the gravest first. Pure.
std::vector<std::string_view> shortcutConflicts(const ShortcutConfiguration& shortcut,
                                                const KeyboardFacts& facts);

/// What is proposed where Fn cannot be heard, the best first: to hold Ctrl and Super, which write nothing and
/// are on every keyboard, and a double tap of Alt; where the desktop hears neither, two that it does.
/// An empty predicate: it hears everything.
std::vector<ShortcutConfiguration> proposedShortcuts(
    const std::function<bool(const ShortcutConfiguration&)>& canBeHeard = {});

/// The same keys in the same use: for a chord it does not matter which of its keys went down last.
bool isSameShortcut(const ShortcutConfiguration& one, const ShortcutConfiguration& other);

}  // namespace murmel
