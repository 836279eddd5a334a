#pragma once

#include "Platform/KeyEvent.h"

#include <functional>
#include <memory>
#include <string>

namespace murmel {

/// Whether this application may observe the keyboard while other applications are in front.
struct ListenEventAccess {
  bool granted = false;
  /// Why not and what to do instead, in words for the user. Where it is granted: what they should do to make
  /// sure; empty otherwise.
  std::string reason;
};

/// A tap that is in place. Destroying it removes it.
class InstalledKeyEventTap {
 public:
  virtual ~InstalledKeyEventTap() = default;
  /// Goes on after the system has disabled the tap; on an enabled one it does nothing. False when this tap
  /// cannot go on: then a new one has to be created.
  virtual bool enable() = 0;
};

/// The desktop's system-wide observation of the keyboard, and of clicks, as far as it tells of them. Listens
/// only: every event reaches the application in front as if nobody watched. Main thread.
class KeyEventTap {
 public:
  using Handler = std::function<void(const KeyEvent&)>;

  virtual ~KeyEventTap() = default;

  [[nodiscard]] virtual ListenEventAccess permission() = 0;

  /// Puts a tap in place, enabled. `handler` runs on the main thread, never from inside this call, once for
  /// each event, in their order; it may remove the tap. When the system disables the tap, one event of the
  /// type that says so is the last until `enable`. Keys that were held when the tap came are not reported as
  /// going down, but count as flags.
  ///
  /// Null without permission, when the system refuses, or while another tap of this object exists.
  [[nodiscard]] virtual std::unique_ptr<InstalledKeyEventTap> create(Handler handler) = 0;
};

}  // namespace murmel
