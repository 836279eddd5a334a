#include "Platform/Linux/Sway/SwaySocket.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <utility>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

namespace murmel {

namespace {

constexpr std::string_view magic = "i3-ipc";
constexpr std::size_t headSize = 14;  // the word, a length and a type
constexpr auto answerLimit = std::chrono::seconds(1);
/// The tree of thousands of windows is far smaller.
constexpr std::uint32_t longestBody = 64U * 1024 * 1024;

std::uint32_t numberAt(std::string_view bytes, std::size_t offset) {
  std::uint32_t number = 0;
  std::memcpy(&number, bytes.data() + offset, sizeof number);
  return number;
}

}  // namespace

std::unique_ptr<SwaySocket> SwaySocket::open(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.empty() || path.size() >= sizeof address.sun_path) return nullptr;
  std::memcpy(address.sun_path, path.data(), path.size());
  UniqueDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!socket) return nullptr;
  if (::connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
    return nullptr;
  return std::unique_ptr<SwaySocket>(new SwaySocket(std::move(socket)));
}

pid_t SwaySocket::server() const {
  ucred credentials{};
  socklen_t size = sizeof credentials;
  if (::getsockopt(socket_.get(), SOL_SOCKET, SO_PEERCRED, &credentials, &size) != 0) return 0;
  return credentials.pid;
}

std::optional<std::string> SwaySocket::ask(Request request, std::string_view payload) {
  std::string message(magic);
  const auto put = [&message](std::uint32_t number) {
    message.append(reinterpret_cast<const char*>(&number), sizeof number);
  };
  put(static_cast<std::uint32_t>(payload.size()));
  put(static_cast<std::uint32_t>(request));
  message += payload;
  // What is asked is short: a socket that does not take it at once hangs.
  if (::send(socket_.get(), message.data(), message.size(), MSG_NOSIGNAL) !=
      static_cast<ssize_t>(message.size())) {
    failed_ = true;
    return std::nullopt;
  }
  const auto deadline = std::chrono::steady_clock::now() + answerLimit;
  while (true) {
    if (auto answer = next()) {
      if (answer->type == static_cast<std::uint32_t>(request)) return std::move(answer->body);
      continue;
    }
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    pollfd waiting{socket_.get(), POLLIN, 0};
    if (failed_ || left.count() <= 0 || ::poll(&waiting, 1, static_cast<int>(left.count())) <= 0) {
      // An answer that comes late would be taken for that to the next question.
      failed_ = true;
      return std::nullopt;
    }
  }
}

void SwaySocket::read() {
  std::array<char, 65'536> piece{};
  while (true) {
    const auto count = ::recv(socket_.get(), piece.data(), piece.size(), 0);
    if (count > 0) {
      received_.append(piece.data(), static_cast<std::size_t>(count));
      continue;
    }
    if (count < 0 && errno == EINTR) continue;
    if (count == 0 || errno != EAGAIN) failed_ = true;
    return;
  }
}

std::optional<SwaySocket::Message> SwaySocket::next() {
  const auto isComplete = [this] {
    return received_.size() >= headSize && received_.size() - headSize >= numberAt(received_, magic.size());
  };
  if (!isComplete()) read();
  if (received_.size() >= headSize &&
      (!received_.starts_with(magic) || numberAt(received_, magic.size()) > longestBody)) {
    failed_ = true;
    received_.clear();
  }
  if (!isComplete()) return std::nullopt;
  const auto size = numberAt(received_, magic.size());
  Message message{numberAt(received_, magic.size() + sizeof(std::uint32_t)),
                  received_.substr(headSize, size)};
  received_.erase(0, headSize + size);
  return message;
}

}  // namespace murmel
