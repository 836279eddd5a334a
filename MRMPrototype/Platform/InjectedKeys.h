#pragma once

#include <cstdint>

namespace murmel {

/// Where whoever injects keys announces them, so that the event tap does not take them for the user's.
/// Main thread.
class InjectedKeys {
 public:
  virtual ~InjectedKeys() = default;

  /// Call before the injection, once for each key event, in their order. `keyCode` is the desktop's own
  /// number of the key (X11: the code that XTest takes). An announced event that does not come within two
  /// seconds is forgotten.
  virtual void expect(std::uint32_t keyCode, bool goesDown) = 0;
};

}  // namespace murmel
