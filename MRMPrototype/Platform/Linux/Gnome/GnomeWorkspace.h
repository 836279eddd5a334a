#pragma once

#include "Platform/Linux/Bus/SessionBus.h"
#include "Platform/SettledActivations.h"

#include <optional>

namespace murmel {

/// The windows of GNOME Shell, as its extension tells of them; none while that is not there. Main thread.
class GnomeWorkspace final : public Workspace {
 public:
  /// Both outlive this.
  GnomeWorkspace(Executor& executor, SessionBus& bus);

  std::optional<RunningApplication> frontmostApplication() override;
  [[nodiscard]] Registration onActivation(std::function<void(const RunningApplication&)> handler) override {
    return activations_.subscribe(std::move(handler));
  }
  [[nodiscard]] bool isTerminated(const RunningApplication& application) override;
  void activate(const RunningApplication& application) override;

 private:
  void follow();

  SessionBus& bus_;
  pid_t shell_ = 0;
  SettledActivations activations_;
  Registration owner_;
  Registration changes_;
};

}  // namespace murmel
