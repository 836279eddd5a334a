#include "WorkerProcess/KeepAlive.h"

#include <utility>

namespace murmel {

KeepAlive::KeepAlive(Executor& executor, std::function<Duration()> limit, std::function<void()> letGo)
    : executor_(executor), limit_(std::move(limit)), letGo_(std::move(letGo)) {}

Registration KeepAlive::use() {
  timer_.reset();
  ++uses_;
  return Registration([this] { end(); });
}

void KeepAlive::end() {
  if (--uses_ > 0) return;
  const auto limit = limit_ ? limit_() : usualLimit;
  if (limit > Duration::zero()) timer_ = executor_.after(limit, [this] { letGo_(); });
}

}  // namespace murmel
