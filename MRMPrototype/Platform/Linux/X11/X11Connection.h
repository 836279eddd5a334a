#pragma once

#include "Platform/DesktopClient.h"

#include <cstdint>
#include <cstdlib>
#include <expected>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <xcb/xcb.h>

namespace murmel {

struct FreeReply {
  void operator()(void* reply) const { std::free(reply); }
};
/// An answer or event of the server, which is malloc'ed.
template <class T>
using X11Reply = std::unique_ptr<T, FreeReply>;

/// Waits for the answer to a request; null when the server reports an error or is gone.
/// `x11Reply(connection, xcb_get_property_reply, cookie)`.
template <class T, class Cookie>
X11Reply<T> x11Reply(xcb_connection_t* connection,
                     T* (*wait)(xcb_connection_t*, Cookie, xcb_generic_error_t**), Cookie cookie) {
  xcb_generic_error_t* error = nullptr;
  X11Reply<T> reply(wait(connection, cookie, &error));
  std::free(error);
  return reply;
}

/// One connection to the X server with what every adapter needs of it. Not thread-safe.
class X11Connection {
 public:
  /// `display` empty: the one of the environment. The error is a sentence for `doctor` and the log.
  static std::expected<std::unique_ptr<X11Connection>, std::string> open(const std::string& display = {});
  ~X11Connection();
  X11Connection(const X11Connection&) = delete;
  X11Connection& operator=(const X11Connection&) = delete;

  [[nodiscard]] xcb_connection_t* get() const { return connection_; }
  [[nodiscard]] xcb_window_t root() const { return screen_->root; }
  [[nodiscard]] int descriptor() const { return xcb_get_file_descriptor(connection_); }
  /// The server is gone; nothing works any more.
  [[nodiscard]] bool hasFailed() const { return xcb_connection_has_error(connection_) != 0; }

  xcb_atom_t atom(std::string_view name);
  /// Empty for an atom that does not exist.
  const std::string& atomName(xcb_atom_t atom);

  /// A window that is never shown, with this event mask. Lives as long as the connection unless destroyed.
  [[nodiscard]] xcb_window_t createHiddenWindow(std::uint32_t eventMask);

  /// The program that owns a window or other resource, by the server's own records.
  [[nodiscard]] DesktopClient clientOf(std::uint32_t resource);

  /// A property of at most 64 KiB; empty when it is missing or not of this format.
  std::string propertyBytes(xcb_window_t window, std::string_view name);
  std::vector<std::uint32_t> propertyWords(xcb_window_t window, std::string_view name);

  /// The next event that has arrived, null when there is none.
  [[nodiscard]] X11Reply<xcb_generic_event_t> nextEvent() {
    return X11Reply<xcb_generic_event_t>(xcb_poll_for_event(connection_));
  }

 private:
  X11Connection(xcb_connection_t* connection, xcb_screen_t* screen);

  xcb_connection_t* connection_;
  xcb_screen_t* screen_;
  bool hasResourceExtension_ = false;
  std::map<std::string, xcb_atom_t, std::less<>> atoms_;
  std::map<xcb_atom_t, std::string> names_;
};

}  // namespace murmel
