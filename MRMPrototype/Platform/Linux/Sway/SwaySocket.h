#pragma once

#include "Foundation/UniqueDescriptor.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace murmel {

/// A connection to sway's own interface (sway-ipc). Main thread; nothing waits longer than it says.
class SwaySocket {
 public:
  enum class Request : std::uint32_t { command = 0, subscribe = 2, tree = 4 };

  struct Message {
    std::uint32_t type = 0;
    std::string body;  ///< JSON
  };
  /// Of the messages that tell of events.
  static constexpr std::uint32_t workspaceEvent = 0x8000'0000;
  static constexpr std::uint32_t windowEvent = 0x8000'0003;
  static constexpr std::uint32_t bindingEvent = 0x8000'0005;

  /// Null when nobody answers there.
  static std::unique_ptr<SwaySocket> open(const std::string& path);

  [[nodiscard]] int descriptor() const { return socket_.get(); }
  [[nodiscard]] bool hasFailed() const { return failed_; }
  /// The process that serves it; 0 when it cannot be told.
  [[nodiscard]] pid_t server() const;

  /// The answer, a JSON text; nothing when there is none within a second. Not on a connection that subscribes
  /// to events after it has done so.
  std::optional<std::string> ask(Request request, std::string_view payload = {});
  /// The next message that has come completely; nothing, without waiting, when there is none.
  std::optional<Message> next();

 private:
  explicit SwaySocket(UniqueDescriptor socket) : socket_(std::move(socket)) {}
  void read();

  UniqueDescriptor socket_;
  std::string received_;
  bool failed_ = false;
};

}  // namespace murmel
