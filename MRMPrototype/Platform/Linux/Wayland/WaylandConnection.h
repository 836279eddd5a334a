#pragma once

#include "Foundation/Async/Clock.h"

#include <cstdint>
#include <expected>
#include <map>
#include <memory>
#include <string>

#include <sys/types.h>
#include <wayland-client.h>

namespace murmel {

/// An object of the protocol, with the function that gives it back.
template <class T>
class WaylandObject {
 public:
  WaylandObject() = default;
  WaylandObject(T* object, void (*destroy)(T*)) : object_(object, destroy) {}

  [[nodiscard]] T* get() const { return object_.get(); }
  explicit operator bool() const { return object_ != nullptr; }

 private:
  std::unique_ptr<T, void (*)(T*)> object_{nullptr, nullptr};
};

/// A connection to the compositor, with what it offers. On one thread at a time. Nothing here waits for a
/// compositor that hangs longer than it says.
class WaylandConnection {
 public:
  /// For whoever waits for an answer of the compositor.
  static constexpr Duration answerLimit = std::chrono::seconds(1);

  /// For the first answer: KWin gives it when all of its desktop has started, and that takes its time.
  static constexpr Duration firstAnswerLimit = std::chrono::seconds(5);

  /// `display` empty: that of the environment. The error is one sentence.
  static std::expected<std::unique_ptr<WaylandConnection>, std::string> open(const std::string& display = {});
  ~WaylandConnection();
  WaylandConnection(const WaylandConnection&) = delete;
  WaylandConnection& operator=(const WaylandConnection&) = delete;

  [[nodiscard]] wl_display* get() const { return display_; }
  [[nodiscard]] int descriptor() const { return wl_display_get_fd(display_); }
  [[nodiscard]] bool hasFailed() const { return failed_ || wl_display_get_error(display_) != 0; }
  /// The process that serves this connection; 0 when it cannot be told.
  [[nodiscard]] pid_t compositor() const;

  /// The version in which an interface is offered; 0: it is not.
  [[nodiscard]] std::uint32_t versionOf(const wl_interface& interface) const;
  /// Null where the interface is not offered.
  template <class T>
  [[nodiscard]] T* bind(const wl_interface& interface, std::uint32_t newestKnown) {
    return static_cast<T*>(bindAny(interface, newestKnown));
  }
  [[nodiscard]] wl_seat* seat();

  /// Sends what was asked for, waits for events up to `limit`, and dispatches them. False when the connection
  /// has failed.
  bool pump(Duration limit);
  /// Until the compositor has done everything that was asked for. False when it does not answer in time.
  bool roundTrip(Duration limit = answerLimit);

 private:
  struct Global {
    std::uint32_t name = 0;
    std::uint32_t version = 0;
  };

  explicit WaylandConnection(wl_display* display);
  void* bindAny(const wl_interface& interface, std::uint32_t newestKnown);

  wl_display* display_;
  wl_registry* registry_;
  std::map<std::string, Global> globals_;
  wl_seat* seat_ = nullptr;
  bool failed_ = false;
};

}  // namespace murmel
