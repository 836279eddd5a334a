#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/UniqueDescriptor.h"

#include <csignal>
#include <functional>

namespace murmel {

/// What asks a process to end; the loss of its terminal only where nobody has that ignored, as nohup does.
sigset_t endingSignals();

/// Ctrl+C and the friendly request to end, on the main thread: the first one is told, from then on they end
/// the process as they always do. Made before any other thread.
class InterruptSignal {
 public:
  explicit InterruptSignal(Executor& executor);
  ~InterruptSignal();
  InterruptSignal(const InterruptSignal&) = delete;
  InterruptSignal& operator=(const InterruptSignal&) = delete;

  /// Has something to read once one has come and was not told yet: for whoever has to block.
  [[nodiscard]] int descriptor() const { return descriptor_.get(); }

  [[nodiscard]] bool isPending() const;

  void setHandler(std::function<void()> handler) { handler_ = std::move(handler); }

 private:
  void arrived();

  UniqueDescriptor descriptor_;
  std::function<void()> handler_;
  Registration watch_;
};

}  // namespace murmel
