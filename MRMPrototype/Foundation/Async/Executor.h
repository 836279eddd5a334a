#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Registration.h"

#include <functional>

namespace murmel {

using Job = std::move_only_function<void()>;

/// The main thread's event loop. All state of the application lives on it.
///
/// `post` may be called from any thread; everything else, and every job and callback, runs on the main
/// thread. A callback is never run from inside the call that registered it.
class Executor {
 public:
  virtual ~Executor() = default;

  /// Runs `job` soon, after everything that was posted before it.
  virtual void post(Job job) = 0;

  /// Runs `job` once, not earlier than `delay` from now. Destroying the handle before then cancels it.
  [[nodiscard]] virtual Registration after(Duration delay, Job job) = 0;

  /// Calls `onReadable` whenever `descriptor` can be read or has hung up, until the handle is destroyed.
  /// The descriptor stays the caller's and must outlive the handle.
  [[nodiscard]] virtual Registration watchReadable(int descriptor,
                                                   std::move_only_function<void()> onReadable) = 0;
};

}  // namespace murmel
