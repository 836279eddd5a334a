#pragma once

#include "Platform/Linux/Sway/SwaySocket.h"
#include "Platform/SettledActivations.h"

#include <memory>
#include <optional>
#include <string>

namespace murmel {

/// The windows of sway, by its own interface: with their processes, Wayland's and X programs' alike.
class SwayWorkspace final : public Workspace {
 public:
  /// Null when sway does not answer at `path`.
  static std::unique_ptr<SwayWorkspace> open(Executor& executor, const std::string& path);

  std::optional<RunningApplication> frontmostApplication() override;
  [[nodiscard]] Registration onActivation(std::function<void(const RunningApplication&)> handler) override {
    return activations_.subscribe(std::move(handler));
  }
  [[nodiscard]] bool isTerminated(const RunningApplication& application) override;
  void activate(const RunningApplication& application) override;

 private:
  SwayWorkspace(Executor& executor, std::string path, std::unique_ptr<SwaySocket> questions,
                std::unique_ptr<SwaySocket> events);
  std::optional<std::string> ask(SwaySocket::Request request, const std::string& payload = {});
  void handleEvents();

  std::string path_;
  std::unique_ptr<SwaySocket> questions_;
  std::unique_ptr<SwaySocket> events_;
  SettledActivations activations_;
  Registration watch_;
};

}  // namespace murmel
