#pragma once

#include "Foundation/UniqueDescriptor.h"
#include "Platform/ProcessLauncher.h"

#include <mutex>

namespace murmel {

/// A child of this process, held by a pidfd: no signal can reach a process that took over its number.
class LinuxChildProcess final : public ChildProcess {
 public:
  LinuxChildProcess(pid_t identifier, UniqueDescriptor process, UniqueDescriptor input,
                    UniqueDescriptor output, ExecutableIdentity launched);
  ~LinuxChildProcess() override;

  [[nodiscard]] pid_t identifier() const override { return identifier_; }
  [[nodiscard]] int input() const override { return input_.get(); }
  [[nodiscard]] int output() const override { return output_.get(); }
  [[nodiscard]] int endDescriptor() const override { return process_.get(); }
  void closeInput() override { input_.reset(); }
  [[nodiscard]] bool isRunning() override;
  void terminate(std::chrono::milliseconds grace) override;
  [[nodiscard]] std::expected<ExecutableIdentity, std::string> runningIdentity() const override;
  [[nodiscard]] ExecutableIdentity launchedIdentity() const override { return launched_; }

 private:
  /// Takes the ended child away. True when it is gone; false when it still runs and `wait` is false.
  bool reap(bool wait);
  void signal(int number) const;
  /// False when it still runs after `limit`.
  [[nodiscard]] bool waitForEnd(std::chrono::milliseconds limit) const;

  const pid_t identifier_;
  const UniqueDescriptor process_;
  UniqueDescriptor input_;
  UniqueDescriptor output_;
  const ExecutableIdentity launched_;
  mutable std::mutex mutex_;
  bool reaped_ = false;  ///< guarded by `mutex_`; from then on the process number may be another's
};

}  // namespace murmel
