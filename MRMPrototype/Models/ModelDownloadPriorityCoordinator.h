#pragma once

namespace murmel {

/// Lets optional downloads pause while somebody dictates. Main thread.
class ModelDownloadPriorityCoordinator {
 public:
  virtual ~ModelDownloadPriorityCoordinator() = default;
  /// True while a dictation, or the loading of its models, wants the machine for itself. Calls are balanced:
  /// every true is followed by one false.
  virtual void notifyOptionalControls(bool runtimeActive) = 0;
};

}  // namespace murmel
