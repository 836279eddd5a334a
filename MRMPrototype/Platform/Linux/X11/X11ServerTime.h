#pragma once

#include "Platform/Linux/X11/X11EventLoop.h"

#include <optional>

namespace murmel {

/// The server's time, for requests that must not be confused with older ones. Needs a window that hears of
/// its properties. On the event loop's thread.
class X11ServerTime {
 public:
  X11ServerTime(X11EventLoop& loop, xcb_window_t window) : loop_(loop), window_(window) {}

  /// XCB_CURRENT_TIME when the server does not answer.
  xcb_timestamp_t now() {
    // The server answers in well under a millisecond; this only bounds one that does not answer at all.
    constexpr Duration patience = std::chrono::seconds(1);
    auto& connection = loop_.connection();
    observed_.reset();
    // Appending nothing changes nothing, and the server tells when it did so.
    xcb_change_property(connection.get(), XCB_PROP_MODE_APPEND, window_, connection.atom("MURMEL_TIME"),
                        XCB_ATOM_INTEGER, 32, 0, nullptr);
    loop_.pumpUntil([this] { return observed_.has_value(); }, patience);
    return observed_.value_or(XCB_CURRENT_TIME);
  }

  void propertyChanged(const xcb_property_notify_event_t& event) {
    if (event.window == window_) observed_ = event.time;
  }

 private:
  X11EventLoop& loop_;
  xcb_window_t window_;
  std::optional<xcb_timestamp_t> observed_;
};

}  // namespace murmel
