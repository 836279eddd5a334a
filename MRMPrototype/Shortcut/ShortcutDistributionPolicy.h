#pragma once

#include "Product/MRMBuildIdentity.h"
#include "Shortcut/ShortcutConfiguration.h"

#include <cstdint>

namespace murmel {

/// Which shortcuts a distribution channel can serve.
struct ShortcutDistributionPolicy {
  /// `configuration` when `channel` can serve it, brought into its regular form; else the channel's default.
  static ShortcutConfiguration sanitize(const ShortcutConfiguration& configuration,
                                        MRMDistributionChannel channel);

  /// Whether a key with these modifiers does not also type in the application in front: it takes Control,
  /// Option or Command, while Fn and Shift are not enough.
  static bool makesKeyCombination(std::uint64_t modifiers);
};

}  // namespace murmel
