#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/Registration.h"

#include <functional>

namespace murmel {

/// Decides how long a child process is kept between its uses: it is let go when nobody has used it for a
/// while. Main thread; the executor must outlive it, and it must outlive the uses that it gives.
class KeepAlive {
 public:
  static constexpr Duration usualLimit = std::chrono::minutes(10);

  /// `limit` is asked at the end of each use; zero keeps the child for ever, and so does nothing. `letGo` is
  /// called once the limit is over, and not again before the next use.
  KeepAlive(Executor& executor, std::function<Duration()> limit, std::function<void()> letGo);

  /// One use, until the handle is destroyed.
  [[nodiscard]] Registration use();

 private:
  void end();

  Executor& executor_;
  std::function<Duration()> limit_;
  std::function<void()> letGo_;
  int uses_ = 0;
  Registration timer_;
};

}  // namespace murmel
