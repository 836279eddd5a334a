#pragma once

#include "Foundation/Registration.h"

#include <functional>
#include <optional>
#include <string_view>

namespace murmel {

/// Why nobody can be dictating at this desktop now.
enum class SessionObstacle {
  locked,      ///< the screen is locked
  inactive,    ///< another user's session, or a text console, is in front
  suspending,  ///< the computer is going to sleep
};

/// One sentence for the user.
constexpr std::string_view sentence(SessionObstacle obstacle) {
  switch (obstacle) {
    case SessionObstacle::inactive:
      return "Another session is in front.";
    case SessionObstacle::suspending:
      return "The computer is going to sleep.";
    case SessionObstacle::locked:
      break;
  }
  return "The screen is locked.";
}

/// Knows whether somebody sits at this session. Main thread.
class SessionGuard {
 public:
  virtual ~SessionGuard() = default;
  /// As of this moment.
  [[nodiscard]] virtual std::optional<SessionObstacle> obstacle() = 0;
  /// Told when there may be another answer. Not every way to lock a screen tells: whoever does something
  /// lasting asks again while it lasts. The end of an obstacle that was answered is always told.
  [[nodiscard]] virtual Registration onChange(std::function<void()> handler) = 0;
  /// Told when the computer is being shut down, which waits for this process for a few seconds.
  [[nodiscard]] virtual Registration onEnd(std::function<void()> handler) = 0;
};

/// For work that needs nobody at the desktop.
class UnguardedSession final : public SessionGuard {
 public:
  [[nodiscard]] std::optional<SessionObstacle> obstacle() override { return std::nullopt; }
  [[nodiscard]] Registration onChange(std::function<void()> /*handler*/) override { return {}; }
  [[nodiscard]] Registration onEnd(std::function<void()> /*handler*/) override { return {}; }
};

}  // namespace murmel
