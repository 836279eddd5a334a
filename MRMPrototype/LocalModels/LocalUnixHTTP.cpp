#include "LocalModels/LocalUnixHTTP.h"

#include "Foundation/UniqueDescriptor.h"
#include "LocalModels/HTTPResponseReader.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <ctime>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

namespace murmel {

namespace {

constexpr std::size_t chunkSize = 16 * 1'024;

/// How long to wait for a place in a full queue of connections: the system tells nobody when there is one.
constexpr auto queueRetry = std::chrono::milliseconds(5);

std::string_view characters(std::span<const std::uint8_t> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace

/// One connection and its deadline. Every wait ends at the deadline or with an interruption.
class LocalUnixHTTP::Connection {
 public:
  Connection(const Clock& clock, std::span<const WorkerCancellation* const> interruptions, Duration timeout)
      : clock_(clock), interruptions_(interruptions), deadline_(clock.now() + timeout) {}

  Outcome<void> open(const std::filesystem::path& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const auto& name = path.native();
    if (name.size() > longestSocketPath) return std::unexpected(Error::pathTooLong);
    std::ranges::copy(name, address.sun_path);
    socket_ = UniqueDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (!socket_) return std::unexpected(Error::failed);
    while (::connect(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
      if (errno == EINTR) continue;
      if (errno != EAGAIN) return std::unexpected(Error::unreachable);
      const auto waited = wait(/*events=*/0, std::min(deadline_, clock_.now() + queueRetry));
      if (!waited && (waited.error() != Error::timedOut || clock_.now() >= deadline_)) return waited;
    }
    return {};
  }

  /// Whether `process` of this user is the one that listens.
  [[nodiscard]] bool isServedBy(pid_t process) const {
    ucred peer{};
    socklen_t size = sizeof peer;
    return ::getsockopt(socket_.get(), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.pid == process &&
           peer.uid == ::geteuid();
  }

  Outcome<void> sendAll(std::string_view bytes) {
    while (!bytes.empty()) {
      const auto count = ::send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
      if (count >= 0) {
        bytes.remove_prefix(static_cast<std::size_t>(count));
        continue;
      }
      if (errno == EINTR) continue;
      // A server that answers before it has read everything may have said why: read on.
      if (errno == EPIPE) return {};
      if (errno != EAGAIN) return std::unexpected(Error::failed);
      if (auto waited = wait(POLLOUT, deadline_); !waited) return waited;
    }
    return {};
  }

  Outcome<Response> readResponse() {
    HTTPResponseReader reader;
    std::array<char, chunkSize> chunk;  // filled by the read
    while (reader.state() == HTTPResponseReader::State::reading) {
      // Asked before every read: an endless answer would otherwise never let go.
      if (auto waited = wait(POLLIN, deadline_); !waited) return std::unexpected(waited.error());
      const auto count = ::recv(socket_.get(), chunk.data(), chunk.size(), 0);
      if (count > 0) reader.feed({chunk.data(), static_cast<std::size_t>(count)});
      if (count == 0) reader.end();
      if (count < 0 && errno != EINTR && errno != EAGAIN) return std::unexpected(Error::failed);
    }
    if (reader.state() == HTTPResponseReader::State::complete)
      return Response{reader.status(), reader.body()};
    return std::unexpected(reader.state() == HTTPResponseReader::State::tooLarge ? Error::tooLarge
                                                                                 : Error::malformed);
  }

 private:
  [[nodiscard]] Outcome<void> wait(short events, Instant until) const {
    std::array<pollfd, 3> waited{{{events == 0 ? -1 : socket_.get(), events, 0}, {-1, 0, 0}, {-1, 0, 0}}};
    for (std::size_t index = 0; index < interruptions_.size() && index + 1 < waited.size(); ++index)
      waited[index + 1] = {interruptions_[index]->descriptor(), POLLIN, 0};
    while (true) {
      const auto left = until - clock_.now();
      if (left <= Duration::zero()) return std::unexpected(Error::timedOut);
      const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(left);
      const timespec limit{seconds.count(), static_cast<long>((left - seconds).count())};
      const int ready = ::ppoll(waited.data(), waited.size(), &limit, nullptr);
      if (ready == 0) return std::unexpected(Error::timedOut);
      if (ready < 0 && errno == EINTR) continue;
      if (ready < 0) return std::unexpected(Error::failed);
      if (waited[1].revents != 0 || waited[2].revents != 0) return std::unexpected(Error::interrupted);
      return {};
    }
  }

  const Clock& clock_;
  std::span<const WorkerCancellation* const> interruptions_;
  const Instant deadline_;
  UniqueDescriptor socket_;
};

LocalUnixHTTP::LocalUnixHTTP(const Clock& clock, std::span<const WorkerCancellation* const> interruptions)
    : clock_(clock), interruptions_(interruptions) {}

std::expected<LocalUnixHTTP::Response, LocalUnixHTTP::Error> LocalUnixHTTP::request(
    const Request& request) const {
  // Nothing leaves this process for somebody who has stopped waiting.
  if (request.timeout <= Duration::zero()) return std::unexpected(Error::timedOut);
  Connection connection(clock_, interruptions_, request.timeout);
  if (auto opened = connection.open(request.socketURL); !opened) return std::unexpected(opened.error());
  if (request.server && !connection.isServedBy(*request.server)) return std::unexpected(Error::foreignServer);

  const auto beforeToken = std::string(request.method) + ' ' + std::string(request.path) +
                           " HTTP/1.1\r\nHost: localhost\r\nAuthorization: Bearer ";
  std::string afterToken = "\r\nConnection: close\r\n";
  if (request.body) {
    afterToken += "Content-Type: application/json\r\nContent-Length: " + std::to_string(request.body->size());
    afterToken += "\r\n";
  }
  afterToken += "\r\n";
  afterToken += request.body.value_or("");
  for (const auto part :
       {std::string_view(beforeToken), characters(request.token.reveal()), std::string_view(afterToken)}) {
    if (auto sent = connection.sendAll(part); !sent) return std::unexpected(sent.error());
  }
  return connection.readResponse();
}

}  // namespace murmel
