#pragma once

#include "Foundation/Registration.h"
#include "Models/ModelDownloadPriorityCoordinator.h"

namespace murmel {

/// Holds optional downloads back while at least one lease lives. Main thread.
class RuntimePriority {
 public:
  explicit RuntimePriority(ModelDownloadPriorityCoordinator& downloads) : downloads_(downloads) {}

  /// The lease must not outlive this object.
  [[nodiscard]] Registration hold() {
    if (leases_++ == 0) downloads_.notifyOptionalControls(true);
    return Registration([this] {
      if (--leases_ == 0) downloads_.notifyOptionalControls(false);
    });
  }

 private:
  ModelDownloadPriorityCoordinator& downloads_;
  int leases_ = 0;
};

}  // namespace murmel
