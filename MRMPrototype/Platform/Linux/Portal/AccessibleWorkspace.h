#pragma once

#include "Platform/Linux/Bus/SessionBus.h"
#include "Platform/SettledActivations.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace murmel {

/// The windows of applications that tell of them on the accessibility bus, where nobody else does. While
/// another application has the keyboard none is in front; no window can be brought there. Main thread.
class AccessibleWorkspace final : public Workspace {
 public:
  /// `complete` adds what else is known of an application: who reads the clipboard in its stead. Null where
  /// the bus does not run. `session` and the executor outlive this.
  static std::unique_ptr<AccessibleWorkspace> open(Executor& executor, SessionBus& session,
                                                   std::function<void(RunningApplication&)> complete);

  /// By the application's own word of this moment: one that does not answer soon is not in front.
  std::optional<RunningApplication> frontmostApplication() override;
  [[nodiscard]] Registration onActivation(std::function<void(const RunningApplication&)> handler) override {
    return activations_.subscribe(std::move(handler));
  }
  [[nodiscard]] bool isTerminated(const RunningApplication& application) override;
  void activate(const RunningApplication& /*application*/) override {}

 private:
  /// The application's name on the bus, and the window's there.
  using Window = std::pair<std::string, std::string>;

  AccessibleWorkspace(Executor& executor, std::unique_ptr<SessionBus> bus,
                      std::function<void(RunningApplication&)> complete);
  /// Applications tell only of what somebody has asked for.
  void announce();
  void changed(sd_bus_message* signal, bool isActive);
  /// Applications that were there before us have said so before.
  void look();
  [[nodiscard]] bool isActive(const Window& window);
  [[nodiscard]] pid_t processOf(const std::string& application);

  std::unique_ptr<SessionBus> bus_;
  std::function<void(RunningApplication&)> complete_;
  std::optional<Window> active_;
  std::map<Window, std::uint32_t> numbers_;
  SettledActivations activations_;
  Registration activated_;
  Registration deactivated_;
  Registration registry_;
};

}  // namespace murmel
