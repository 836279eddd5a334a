#pragma once

#include "Platform/Linux/X11/X11Connection.h"

#include <expected>
#include <memory>
#include <string>

namespace murmel {

/// Sees the lockers of an X session that tell nobody: they have the keyboard and the pointer for themselves,
/// behind a window over the whole screen. A menu, a password prompt or a key binding of the window manager
/// has not all of that. Main thread.
class X11ScreenLock {
 public:
  static std::expected<std::unique_ptr<X11ScreenLock>, std::string> open(const std::string& display = {});

  /// Two to four round trips to the server.
  [[nodiscard]] bool isLocked();

 private:
  explicit X11ScreenLock(std::unique_ptr<X11Connection> connection);
  [[nodiscard]] bool isPointerGrabbed();
  [[nodiscard]] bool isScreenCovered();

  std::unique_ptr<X11Connection> connection_;
  xcb_window_t hiddenWindow_;
};

}  // namespace murmel
