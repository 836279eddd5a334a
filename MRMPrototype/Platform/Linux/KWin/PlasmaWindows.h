#pragma once

#include "Platform/Linux/KWin/XWaylandWindows.h"
#include "Platform/Linux/Wayland/WaylandConnection.h"
#include "Platform/SettledActivations.h"

#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <plasma-window-management.h>

namespace murmel {

/// The windows of KWin as it tells them to a task bar: with their processes. KWin tells programs that a
/// desktop file names. Main thread.
class PlasmaWindows final : public Workspace {
 public:
  /// `asksX`: whether the session's X server answers, which knows X programs by other names.
  static std::expected<std::unique_ptr<PlasmaWindows>, std::string> open(Executor& executor, bool asksX);
  ~PlasmaWindows() override;
  PlasmaWindows(const PlasmaWindows&) = delete;
  PlasmaWindows& operator=(const PlasmaWindows&) = delete;

  std::optional<RunningApplication> frontmostApplication() override;
  [[nodiscard]] Registration onActivation(std::function<void(const RunningApplication&)> handler) override {
    return activations_.subscribe(std::move(handler));
  }
  [[nodiscard]] bool isTerminated(const RunningApplication& application) override;
  void activate(const RunningApplication& application) override;

 private:
  struct Window;

  PlasmaWindows(Executor& executor, bool asksX, std::unique_ptr<WaylandConnection> connection,
                org_kde_plasma_window_management* manager);
  void introduced(const char* identifier);
  void dispatch();
  [[nodiscard]] RunningApplication described(const Window& window);
  [[nodiscard]] Window* find(std::uint32_t number);

  std::unique_ptr<WaylandConnection> connection_;
  WaylandObject<org_kde_plasma_window_management> manager_;
  XWaylandWindows xWindows_;
  std::vector<std::unique_ptr<Window>> windows_;
  std::uint32_t lastNumber_ = 0;
  SettledActivations activations_;
  Registration watch_;
};

}  // namespace murmel
