#pragma once

#include <string_view>

namespace murmel {

/// Which forms a selection is offered in. Pure rules.
struct ClipboardTypes {
  /// A form of the plain text.
  static bool isText(std::string_view type);

  /// Whether the form is data that can be kept and given back: not a part of the protocol, not a command to
  /// the owner, and not an address inside the owner's process.
  static bool isKept(std::string_view type);

  /// The order in which forms are asked for, lowest first: when the owner is slow, what matters most is there
  /// by the time the patience ends.
  static int urgency(std::string_view type);
};

}  // namespace murmel
