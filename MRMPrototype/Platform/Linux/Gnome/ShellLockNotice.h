#pragma once

#include "Foundation/Async/Clock.h"
#include "Platform/Linux/Bus/SessionBus.h"
#include "Platform/Linux/Gnome/ShellExtension.h"

#include <optional>

namespace murmel {

/// GNOME Shell switches its extensions off as soon as it locks the screen, and tells of the lock itself when
/// its curtain has come down. What is copied in between could be pasted into the field for the password.
/// Main thread.
class ShellLockNotice {
 public:
  /// The curtain takes a third of a second, on a busy machine more; who only switches the extension off has
  /// to wait for so long.
  static constexpr Duration longest = std::chrono::seconds(3);

  /// Both outlive this.
  ShellLockNotice(SessionBus& bus, const Clock& clock)
      : clock_(clock), owner_(bus.onOwner(shellExtension.service, [this](bool isThere) {
          gone_ = isThere ? std::nullopt : std::optional(clock_.now());
        })) {}
  ShellLockNotice(const ShellLockNotice&) = delete;
  ShellLockNotice& operator=(const ShellLockNotice&) = delete;

  [[nodiscard]] bool isLocking() const { return gone_ && clock_.now() - *gone_ < longest; }

 private:
  const Clock& clock_;
  std::optional<Instant> gone_;
  Registration owner_;
};

}  // namespace murmel
