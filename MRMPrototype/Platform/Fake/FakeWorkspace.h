#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/Async/Signal.h"
#include "Platform/Workspace.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <vector>

#include <sys/types.h>

namespace murmel {

/// A desktop with applications that a test brings to the front.
class FakeWorkspace final : public Workspace {
 public:
  /// How long an application must stay in front before others are told.
  static constexpr Duration activationDelay = std::chrono::milliseconds(40);

  explicit FakeWorkspace(Executor& executor) : executor_(executor) {}

  std::optional<RunningApplication> frontmostApplication() override { return front_; }
  [[nodiscard]] Registration onActivation(std::function<void(const RunningApplication&)> handler) override;
  [[nodiscard]] bool isTerminated(const RunningApplication& application) override;
  /// Throws std::logic_error for an application that has terminated: nobody may ask for that.
  void activate(const RunningApplication& application) override;

  /// The user, or the desktop, brings an application to the front; nothing for an empty desktop.
  void bringToFront(std::optional<RunningApplication> application);
  void terminate(const RunningApplication& application);
  /// Its window goes, its process lives on.
  void closeWindow(const RunningApplication& application);
  /// How long the desktop takes to follow `activate`; nothing: it never does.
  void setActivationTime(std::optional<Duration> time) { activationTime_ = time; }

  [[nodiscard]] const std::vector<RunningApplication>& activated() const { return activated_; }

 private:
  Executor& executor_;
  std::optional<RunningApplication> front_;
  std::set<pid_t> terminated_;
  std::set<std::uint32_t> closedWindows_;
  std::optional<Duration> activationTime_ = Duration{};
  std::vector<RunningApplication> activated_;
  Signal<const RunningApplication&> activations_;
  Registration announcement_;
  Registration arrival_;
};

}  // namespace murmel
