#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/Async/Signal.h"
#include "Platform/Linux/X11/X11Connection.h"
#include "Platform/Workspace.h"

#include <expected>
#include <memory>
#include <optional>
#include <string>

namespace murmel {

/// The applications of an X desktop, as its window manager tells of them. Main thread.
class X11Workspace final : public Workspace {
 public:
  /// The executor outlives this.
  static std::expected<std::unique_ptr<X11Workspace>, std::string> open(Executor& executor,
                                                                        const std::string& display = {});

  std::optional<RunningApplication> frontmostApplication() override;
  [[nodiscard]] Registration onActivation(std::function<void(const RunningApplication&)> handler) override;
  [[nodiscard]] bool isTerminated(const RunningApplication& application) override;
  void activate(const RunningApplication& application) override;

  /// Whether the window manager tells which window is active. Without that there is never a target.
  [[nodiscard]] bool isSupported();

 private:
  X11Workspace(Executor& executor, std::unique_ptr<X11Connection> connection);
  void handleEvents();
  void announce();
  [[nodiscard]] xcb_window_t activeWindow();
  [[nodiscard]] bool exists(xcb_window_t window);
  [[nodiscard]] RunningApplication describe(xcb_window_t window);
  void askWindowManager(xcb_window_t window, const char* what, std::uint32_t first, std::uint32_t second);

  Executor& executor_;
  std::unique_ptr<X11Connection> connection_;
  std::optional<RunningApplication> announced_;
  Signal<const RunningApplication&> activations_;
  Registration watch_;
  Registration pendingAnnouncement_;
};

}  // namespace murmel
