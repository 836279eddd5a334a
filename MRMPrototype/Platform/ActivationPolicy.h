#pragma once

namespace murmel {

enum class ActivationPolicy {
  regular,    ///< in the dock and the task list
  accessory,  ///< in the tray only
};

/// How the desktop lists the running application. Main thread.
class ActivationPolicyControl {
 public:
  virtual ~ActivationPolicyControl() = default;
  [[nodiscard]] virtual ActivationPolicy current() const = 0;
  virtual void set(ActivationPolicy policy) = 0;
};

}  // namespace murmel
