#include "Shell/InterruptSignal.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace murmel {

sigset_t endingSignals() {
  sigset_t set;
  ::sigemptyset(&set);
  ::sigaddset(&set, SIGINT);
  ::sigaddset(&set, SIGTERM);
  struct sigaction hangUp {};
  if (::sigaction(SIGHUP, nullptr, &hangUp) != 0 || hangUp.sa_handler != SIG_IGN) ::sigaddset(&set, SIGHUP);
  return set;
}

InterruptSignal::InterruptSignal(Executor& executor) {
  const auto set = endingSignals();
  ::pthread_sigmask(SIG_BLOCK, &set, nullptr);
  descriptor_ = UniqueDescriptor(::signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK));
  watch_ = executor.watchReadable(descriptor_.get(), [this] { arrived(); });
}

InterruptSignal::~InterruptSignal() {
  const auto set = endingSignals();
  ::pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
}

bool InterruptSignal::isPending() const {
  pollfd state{.fd = descriptor_.get(), .events = POLLIN, .revents = 0};
  return ::poll(&state, 1, 0) > 0;
}

void InterruptSignal::arrived() {
  signalfd_siginfo ignored{};
  [[maybe_unused]] const auto size = ::read(descriptor_.get(), &ignored, sizeof ignored);
  const auto set = endingSignals();
  ::pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
  if (handler_) handler_();
}

}  // namespace murmel
