#pragma once

#include "Platform/Linux/X11/X11Connection.h"
#include "Platform/SecureInput.h"

#include <expected>
#include <memory>
#include <string>

namespace murmel {

/// Whether another program has grabbed the keyboard. `hiddenWindow` is a window that is never shown.
bool isKeyboardGrabbed(X11Connection& connection, xcb_window_t hiddenWindow);

/// Sees programs that take the keyboard for themselves, as password prompts and screen lockers do; open menus
/// too, into which nothing can be pasted either. A password field of an ordinary window cannot be told from
/// any other field this way. Main thread.
class X11SecureInput final : public SecureInput {
 public:
  static std::expected<std::unique_ptr<X11SecureInput>, std::string> open(const std::string& display = {});

  [[nodiscard]] bool isEnabled() override { return isKeyboardGrabbed(*connection_, hiddenWindow_); }

 private:
  explicit X11SecureInput(std::unique_ptr<X11Connection> connection);

  std::unique_ptr<X11Connection> connection_;
  xcb_window_t hiddenWindow_;
};

}  // namespace murmel
