#include "Platform/Linux/Process/LinuxChildProcess.h"

#include <cerrno>
#include <csignal>
#include <utility>

#include <poll.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>

namespace murmel {

LinuxChildProcess::LinuxChildProcess(pid_t identifier, UniqueDescriptor process, UniqueDescriptor input,
                                     UniqueDescriptor output, ExecutableIdentity launched)
    : identifier_(identifier),
      process_(std::move(process)),
      input_(std::move(input)),
      output_(std::move(output)),
      launched_(launched) {}

LinuxChildProcess::~LinuxChildProcess() {
  terminate(std::chrono::milliseconds::zero());
}

bool LinuxChildProcess::reap(bool wait) {
  const std::lock_guard lock(mutex_);
  if (reaped_) return true;
  siginfo_t info{};
  int result = 0;
  do {
    result = ::waitid(P_PIDFD, static_cast<id_t>(process_.get()), &info, WEXITED | (wait ? 0 : WNOHANG));
  } while (result != 0 && errno == EINTR);
  // No such child: somebody else has reaped it (SIGCHLD ignored in this process). It is gone all the same.
  reaped_ = result != 0 || info.si_pid != 0;
  return reaped_;
}

bool LinuxChildProcess::isRunning() {
  return !reap(/*wait=*/false);
}

void LinuxChildProcess::signal(int number) const {
  // Fails only when the child has ended meanwhile, which is what the signal is for.
  // (The C library of Debian 12 declares its wrapper for C only.)
  ::syscall(SYS_pidfd_send_signal, process_.get(), number, nullptr, 0);
}

bool LinuxChildProcess::waitForEnd(std::chrono::milliseconds limit) const {
  pollfd ended{process_.get(), POLLIN, 0};
  int result = 0;
  do {
    result = ::poll(&ended, 1, static_cast<int>(limit.count()));
  } while (result < 0 && errno == EINTR);
  return result > 0;
}

void LinuxChildProcess::terminate(std::chrono::milliseconds grace) {
  if (reap(/*wait=*/false)) return;
  if (grace > std::chrono::milliseconds::zero()) {
    signal(SIGTERM);
    if (waitForEnd(grace)) {
      reap(/*wait=*/true);
      return;
    }
  }
  signal(SIGKILL);
  reap(/*wait=*/true);
}

std::expected<ExecutableIdentity, std::string> LinuxChildProcess::runningIdentity() const {
  const std::lock_guard lock(mutex_);  // keeps the number ours until the look at it is over
  struct stat status {};
  const auto link = "/proc/" + std::to_string(identifier_) + "/exe";
  if (reaped_ || ::stat(link.c_str(), &status) != 0) return std::unexpected("the process has ended");
  return ExecutableIdentity{status.st_dev, status.st_ino};
}

}  // namespace murmel
