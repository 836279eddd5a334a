#pragma once

#include "Models/ModelDownloadClient.h"
#include "Models/ModelDownloadPriorityCoordinator.h"

namespace murmel {

/// Pauses optional downloads while anybody holds the runtime. Main thread.
class DownloadRuntimePriority final : public ModelDownloadPriorityCoordinator {
 public:
  /// `client` must outlive this.
  explicit DownloadRuntimePriority(ModelDownloadClient& client) : client_(client) {}

  void notifyOptionalControls(bool runtimeActive) override {
    holders_ += runtimeActive ? 1 : -1;
    client_.setRuntimeActive(holders_ > 0);
  }

 private:
  ModelDownloadClient& client_;
  int holders_ = 0;
};

}  // namespace murmel
