#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Crypto/SecretBytes.h"
#include "WorkerProcess/WorkerCancellation.h"

#include <cstddef>
#include <expected>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace murmel {

/// Asks a server on a Unix-domain stream socket one thing and takes its answer: one connection a request.
/// Blocks its thread, at most until the time-out or an interruption; bounded in memory.
class LocalUnixHTTP {
 public:
  enum class Error {
    pathTooLong,    ///< the system's bound for addresses
    unreachable,    ///< nobody listens there
    foreignServer,  ///< somebody else listens there; nothing was sent
    timedOut,
    interrupted,
    malformed,  ///< what came is no answer, or not a whole one
    tooLarge,
    failed,  ///< the connection broke
  };

  struct Request {
    const std::filesystem::path& socketURL;
    /// Sent as bearer token; never copied.
    const SecretBytes& token;
    std::string_view method;
    std::string_view path;
    std::optional<std::string_view> body;  ///< JSON
    Duration timeout{};
    /// The process that must have opened the socket for listening; not checked when absent.
    std::optional<pid_t> server;
  };

  struct Response {
    int status = 0;
    std::string body;
  };

  /// The longest path that is accepted, in bytes. The server appends to what it is given, so one byte less
  /// than the system's bound.
  static constexpr std::size_t longestSocketPath = 106;

  /// At most two interruptions. They and `clock` must outlive the object.
  explicit LocalUnixHTTP(const Clock& clock, std::span<const WorkerCancellation* const> interruptions = {});

  [[nodiscard]] std::expected<Response, Error> request(const Request& request) const;

 private:
  template <class T>
  using Outcome = std::expected<T, Error>;
  class Connection;

  const Clock& clock_;
  std::span<const WorkerCancellation* const> interruptions_;
};

}  // namespace murmel
