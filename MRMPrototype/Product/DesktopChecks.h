#pragma once

#include "Foundation/Async/Signal.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace murmel {

enum class CheckState {
  pending,  ///< being tried
  works,
  limited,  ///< dictation works without it, less well
  broken,   ///< dictation cannot work
};

constexpr std::string_view checkStateName(CheckState state) {
  switch (state) {
    case CheckState::pending:
      return "pending";
    case CheckState::works:
      return "works";
    case CheckState::limited:
      return "limited";
    case CheckState::broken:
      return "broken";
  }
  std::unreachable();
}

/// One thing that dictation needs of this computer, and what trying it has shown.
struct CheckReport {
  std::string identifier;  ///< for programs
  std::string name;
  CheckState state = CheckState::pending;
  std::string sentence;  ///< what works, or what does not and what to do about it
  std::string cure;      ///< the title of the action that leads to the cure; empty where there is none
  std::vector<std::string> details{};  ///< lines of a table, for a terminal
};

/// The checks as a window or a command shows them. Main thread.
class DesktopChecks {
 public:
  virtual ~DesktopChecks() = default;
  /// In the order in which they are to be shown; the names are there before anything was tried.
  [[nodiscard]] virtual const std::vector<CheckReport>& reports() const = 0;
  /// Tries all of them, each on its own; reports change one by one. Does nothing while it is at it.
  virtual void run() = 0;
  /// Leads the user to what the check misses.
  virtual void cure(const std::string& identifier) = 0;
  [[nodiscard]] virtual Signal<>& didChange() = 0;
};

}  // namespace murmel
