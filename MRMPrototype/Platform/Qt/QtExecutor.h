#pragma once

#include "Foundation/Async/Executor.h"

#include <memory>

namespace murmel {

/// The application's main loop: Qt's event loop of the thread that creates it. Needs a QCoreApplication to
/// run.
class QtExecutor final : public Executor {
 public:
  QtExecutor();
  ~QtExecutor() override;

  void post(Job job) override;
  [[nodiscard]] Registration after(Duration delay, Job job) override;
  [[nodiscard]] Registration watchReadable(int descriptor,
                                           std::move_only_function<void()> onReadable) override;

 private:
  class Receiver;
  std::unique_ptr<Receiver> receiver_;
};

}  // namespace murmel
