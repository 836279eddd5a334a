#include "WorkerProcess/WorkerChannel.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <ctime>
#include <limits>
#include <optional>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace murmel {

namespace {

constexpr std::size_t chunkSize = 4'096;  // replies are short

/// What `poll` is given for the time until `deadline`, in whole milliseconds. Nothing when it has come.
std::optional<int> pollLimit(const Clock& clock, Instant deadline) {
  const auto left = deadline - clock.now();
  if (left <= Duration::zero()) return std::nullopt;
  const auto whole = std::chrono::duration_cast<std::chrono::milliseconds>(left).count();
  return static_cast<int>(std::min<std::int64_t>(whole, std::numeric_limits<int>::max()));
}

void makeNonBlocking(int descriptor) {
  if (descriptor < 0) return;
  const int flags = ::fcntl(descriptor, F_GETFL);
  if (flags >= 0) ::fcntl(descriptor, F_SETFL, flags | O_NONBLOCK);
}

/// Keeps SIGPIPE from this thread while it writes to a pipe whose reader may have died, and takes away the
/// one that such a write raised.
class PipeSignalGuard {
 public:
  PipeSignalGuard() {
    ::sigemptyset(&pipeSignal_);
    ::sigaddset(&pipeSignal_, SIGPIPE);
    sigset_t pending;
    ::sigpending(&pending);
    wasPending_ = ::sigismember(&pending, SIGPIPE) == 1;
    ::pthread_sigmask(SIG_BLOCK, &pipeSignal_, &before_);
  }
  PipeSignalGuard(const PipeSignalGuard&) = delete;
  PipeSignalGuard& operator=(const PipeSignalGuard&) = delete;
  ~PipeSignalGuard() {
    constexpr timespec noWait{};
    if (!wasPending_) {
      while (::sigtimedwait(&pipeSignal_, nullptr, &noWait) < 0 && errno == EINTR) {
      }
    }
    ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  }

 private:
  sigset_t pipeSignal_{};
  sigset_t before_{};
  bool wasPending_ = false;
};

}  // namespace

WorkerChannel::WorkerChannel(int input, int output, const Clock& clock,
                             const WorkerCancellation& cancellation)
    : input_(input), output_(output), clock_(clock), cancellation_(cancellation) {
  makeNonBlocking(input);
  makeNonBlocking(output);
}

Result<WorkerMessage> WorkerChannel::readMessage(Duration limit) {
  if (output_ < 0) return workerFailed("worker output unavailable");
  const auto deadline = clock_.now() + limit;
  while (true) {
    while (const auto line = lines_.next()) {
      auto message = WorkerMessage::decode(line->text);
      if (!message) continue;
      lines_.forgetUsed();
      return *std::move(message);
    }
    if (ended_ || cancellation_.isCancelled()) return workerFailed("worker exited unexpectedly");
    const auto milliseconds = pollLimit(clock_, deadline);
    if (!milliseconds) return workerFailed("worker response timed out");
    std::array<pollfd, 2> waited{{{output_, POLLIN, 0}, {cancellation_.descriptor(), POLLIN, 0}}};
    const int ready = ::poll(waited.data(), waited.size(), *milliseconds);
    if (ready == 0) return workerFailed("worker response timed out");
    if (ready < 0 && errno == EINTR) continue;
    if (ready < 0 || (waited[0].revents & (POLLERR | POLLNVAL)) != 0)
      return workerFailed("worker response unavailable");
    if (waited[0].revents != 0 && receive() == Received::failure)
      return workerFailed("worker response unavailable");
  }
}

/// Appends what the worker has written to the buffer.
WorkerChannel::Received WorkerChannel::receive() {
  std::array<char, chunkSize> chunk;  // filled by the read
  const auto count = ::read(output_, chunk.data(), chunk.size());
  if (count > 0) {
    lines_.append({chunk.data(), static_cast<std::size_t>(count)});
    return Received::bytes;
  }
  if (count == 0) {
    ended_ = true;
    return Received::end;
  }
  return errno == EINTR || errno == EAGAIN ? Received::nothing : Received::failure;
}

Result<void> WorkerChannel::writeLine(std::string_view line, Duration limit) {
  if (input_ < 0) return workerFailed("worker input unavailable");
  const PipeSignalGuard guard;
  const auto deadline = clock_.now() + limit;
  if (auto written = write(line, deadline); !written) return written;
  return write("\n", deadline);
}

Result<void> WorkerChannel::write(std::string_view bytes, Instant deadline) {
  while (!bytes.empty()) {
    const auto count = ::write(input_, bytes.data(), bytes.size());
    if (count > 0) {
      bytes.remove_prefix(static_cast<std::size_t>(count));
      continue;
    }
    if (count < 0 && errno == EINTR) continue;
    if (count < 0 && errno != EAGAIN) return workerFailed("worker input unavailable");
    if (cancellation_.isCancelled()) return workerFailed("worker exited unexpectedly");
    const auto milliseconds = pollLimit(clock_, deadline);
    if (!milliseconds) return workerFailed("worker response timed out");
    // A worker that talks before it has read everything must not be stuck in its own writing. What it says is
    // kept up to a bound; a negative descriptor is not polled.
    const bool listens = output_ >= 0 && !ended_ && hasRoom();
    std::array<pollfd, 3> waited{
        {{input_, POLLOUT, 0}, {listens ? output_ : -1, POLLIN, 0}, {cancellation_.descriptor(), POLLIN, 0}}};
    const int ready = ::poll(waited.data(), waited.size(), *milliseconds);
    if (ready == 0) return workerFailed("worker response timed out");
    if (ready < 0 && errno != EINTR) return workerFailed("worker response unavailable");
    if (ready > 0 && waited[1].revents != 0 && receive() == Received::failure)
      return workerFailed("worker response unavailable");
  }
  return {};
}

}  // namespace murmel
