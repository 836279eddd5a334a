#pragma once

#include "Foundation/UniqueDescriptor.h"

#include <atomic>

namespace murmel {

/// Ends every wait for a worker, once and for good, when its owner goes. Thread-safe.
class WorkerCancellation {
 public:
  WorkerCancellation();

  void cancel();
  [[nodiscard]] bool isCancelled() const { return cancelled_.load(); }
  /// Readable from the cancellation on: to be polled beside what is waited for.
  [[nodiscard]] int descriptor() const { return event_.get(); }

 private:
  std::atomic<bool> cancelled_ = false;
  UniqueDescriptor event_;
};

}  // namespace murmel
