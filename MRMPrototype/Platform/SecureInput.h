#pragma once

namespace murmel {

/// Whether the keyboard is reserved for a secret: a password prompt, a locked screen. Main thread.
class SecureInput {
 public:
  virtual ~SecureInput() = default;
  /// True when another program has the keyboard to itself, so that keys would not reach the application in
  /// front; false when there is no sign of it.
  [[nodiscard]] virtual bool isEnabled() = 0;
};

}  // namespace murmel
