#include "WorkerProcess/ProcessEnd.h"

#include <array>
#include <cerrno>

#include <poll.h>
#include <unistd.h>

namespace murmel {

bool awaitProcessEnd(const ChildProcess& process, const WorkerCancellation& cancellation,
                     std::optional<std::chrono::milliseconds> within, bool dropsOutput) {
  using SteadyClock = std::chrono::steady_clock;  // the time that `poll` waits by
  const auto deadline = SteadyClock::now() + within.value_or(std::chrono::milliseconds::zero());
  int output = dropsOutput ? process.output() : -1;
  while (!cancellation.isCancelled()) {
    int limit = -1;
    if (within) {
      const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - SteadyClock::now());
      if (left.count() <= 0) return false;
      limit = static_cast<int>(left.count());
    }
    std::array<pollfd, 3> waited{
        {{process.endDescriptor(), POLLIN, 0}, {cancellation.descriptor(), POLLIN, 0}, {output, POLLIN, 0}}};
    const int ready = ::poll(waited.data(), waited.size(), limit);
    if (ready < 0 && errno != EINTR) return true;
    if (ready <= 0) continue;
    if (waited[0].revents != 0) return true;
    if (waited[2].revents == 0) continue;
    std::array<char, 4'096> dropped;  // filled by the read
    const auto count = ::read(output, dropped.data(), dropped.size());
    if (count == 0 || (count < 0 && errno != EINTR && errno != EAGAIN)) output = -1;
  }
  return false;
}

}  // namespace murmel
