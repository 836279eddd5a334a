#pragma once

#include "Platform/Linux/Sway/SwayWorkspace.h"
#include "Support/BuildPaths.h"
#include "Support/X11/ApplicationProcess.h"
#include "Support/X11/RealLoop.h"

#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>

namespace murmel::test {

/// A real sway whose applications are processes of ours.
class SwayTargetDesk {
 public:
  using Application = std::unique_ptr<ApplicationProcess>;

  SwayTargetDesk() {
    if (!sway || !commands) throw std::runtime_error("sway does not answer");
  }

  Workspace& workspace() { return *sway; }

  /// Starts an application and waits until it has a window and the keyboard.
  Application launch(const std::string& identifier) {
    auto application = std::make_unique<ApplicationProcess>(
        std::vector<std::string>{buildFolder() + "/tests/wayland-target", identifier});
    const auto hasKeyboard = [&] {
      const auto front = sway->frontmostApplication();
      return front && front->client.processIdentifier == application->identifier() &&
             !application->told("focus").empty();
    };
    if (!loop.waitUntil(hasKeyboard)) throw std::runtime_error("the application did not come to the front");
    return application;
  }
  void bringToFront(const Application& application) {
    commands->ask(SwaySocket::Request::command,
                  "[pid=" + std::to_string(application->identifier()) + "] focus");
  }
  void terminate(const Application& application) { application->kill(); }
  [[nodiscard]] static pid_t identifierOf(const Application& application) {
    return application->identifier();
  }
  bool waitUntil(const std::function<bool()>& condition) { return loop.waitUntil(condition); }

  RealLoop loop;
  std::string path = std::getenv("SWAYSOCK") == nullptr ? "" : std::getenv("SWAYSOCK");
  std::unique_ptr<SwaySocket> commands = SwaySocket::open(path);
  std::unique_ptr<SwayWorkspace> sway = SwayWorkspace::open(loop.executor, path);
};

}  // namespace murmel::test
