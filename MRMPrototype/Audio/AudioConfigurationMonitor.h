#pragma once

#include "Foundation/Async/Executor.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace murmel {

/// Tells once that the microphone changed under a running recording. Main thread, but for the notifier.
///
/// Every recording gets a notifier of its own generation. A notice of an earlier generation, a notice before
/// `arm` and every notice after the first one are ignored, however late they reach the main thread.
class AudioConfigurationMonitor {
  struct State {
    std::uint64_t generation = 0;
    std::function<void()> onChange;
  };

 public:
  /// Hands a notice over to the main thread. Any thread; may outlive the monitor, not the executor.
  class Notifier {
   public:
    void operator()() const;

   private:
    friend class AudioConfigurationMonitor;
    Notifier(Executor& executor, std::weak_ptr<State> state, std::uint64_t generation)
        : executor_(&executor), state_(std::move(state)), generation_(generation) {}

    Executor* executor_;
    std::weak_ptr<State> state_;
    std::uint64_t generation_;
  };

  explicit AudioConfigurationMonitor(Executor& executor);

  /// Begins a new generation, not armed yet: a device that is exchanged before it records changes nothing.
  [[nodiscard]] Notifier listen();
  /// From now on the first notice of this generation calls `onChange`.
  void arm(std::function<void()> onChange);
  void disarm();

 private:
  Executor& executor_;
  std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace murmel
