#pragma once

#include "Foundation/Async/Clock.h"
#include "Platform/Linux/Process/LinuxProcessLauncher.h"
#include "Support/Testing.h"
#include "WorkerProcess/WorkerCancellation.h"
#include "WorkerProcess/WorkerChannel.h"

namespace murmel {

/// A real worker, and both ends of what is said to it.
class WorkerDriver {
 protected:
  Result<WorkerMessage> read() { return channel_->readMessage(std::chrono::seconds(60)); }
  void write(std::string_view line) {
    ASSERT_TRUE(channel_->writeLine(line, std::chrono::seconds(60)).has_value());
  }
  void launch(const ProcessRequest& request) {
    channel_.reset();
    auto launched = launcher.launch(request);
    ASSERT_TRUE(launched.has_value()) << launched.error();
    process = *std::move(launched);
    channel_.emplace(process->input(), process->output(), clock, cancellation_);
  }

  SystemClock clock;
  LinuxProcessLauncher launcher;
  std::unique_ptr<ChildProcess> process;

 private:
  WorkerCancellation cancellation_;
  std::optional<WorkerChannel> channel_;
};

}  // namespace murmel
