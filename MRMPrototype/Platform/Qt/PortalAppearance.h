#pragma once

#include "Foundation/Async/Signal.h"

#include <memory>
#include <optional>

namespace murmel {

/// How the desktop wants applications to look, as its settings portal says it. Where there is no portal it
/// says nothing. Asks without waiting: the first answer comes as a change. Main thread.
class PortalAppearance {
 public:
  struct Preference {
    std::optional<bool> dark;  ///< absent: no preference
    bool highContrast = false;
    bool reducedMotion = false;

    friend bool operator==(const Preference&, const Preference&) = default;
  };

  /// Needs a QCoreApplication.
  PortalAppearance();
  ~PortalAppearance();
  PortalAppearance(const PortalAppearance&) = delete;
  PortalAppearance& operator=(const PortalAppearance&) = delete;

  [[nodiscard]] Preference preference() const;
  [[nodiscard]] Signal<>& changed() { return changed_; }

 private:
  class Listener;
  Signal<> changed_;
  std::unique_ptr<Listener> listener_;
};

}  // namespace murmel
