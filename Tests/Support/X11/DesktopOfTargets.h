#pragma once

#include "Platform/Fake/FakeWorkspace.h"
#include "Platform/Fake/ManualExecutor.h"
#include "Platform/Linux/X11/X11Workspace.h"
#include "Support/BuildPaths.h"
#include "Support/X11/ApplicationProcess.h"
#include "Support/X11/RealLoop.h"

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace murmel::test {

/// A real desktop whose applications are processes of ours. Needs a window manager.
class X11TargetDesk {
 public:
  using Application = std::unique_ptr<ApplicationProcess>;

  X11TargetDesk() {
    auto opened = X11Workspace::open(loop.executor);
    if (!opened) throw std::runtime_error(opened.error());
    x11 = *std::move(opened);
  }

  Workspace& workspace() { return *x11; }

  /// Starts an application and waits until it has a window and the keyboard.
  Application launch(const std::string& windowClass, std::vector<std::string> options = {}) {
    std::vector<std::string> command{buildFolder() + "/tests/target-application", windowClass};
    command.insert(command.end(), options.begin(), options.end());
    auto application = std::make_unique<ApplicationProcess>(std::move(command));
    // Window managers do not always give the focus to a new window, when they have just started themselves
    // for instance: then it is asked for.
    const auto hasKeyboard = [&] { return isInFront(*application) && !application->told("focus").empty(); };
    for (int attempt = 0; attempt < 40; ++attempt) {
      if (loop.waitUntil(hasKeyboard, std::chrono::milliseconds(500))) return application;
      application->tell("activate");
    }
    throw std::runtime_error("the application did not come to the front");
  }
  [[nodiscard]] bool isInFront(const ApplicationProcess& application) {
    const auto front = x11->frontmostApplication();
    return front && front->client.processIdentifier == application.identifier();
  }
  void bringToFront(const Application& application) { application->tell("activate"); }
  void terminate(const Application& application) { application->kill(); }
  [[nodiscard]] static pid_t identifierOf(const Application& application) {
    return application->identifier();
  }

  bool waitUntil(const std::function<bool()>& condition) { return loop.waitUntil(condition); }

  RealLoop loop;
  std::unique_ptr<X11Workspace> x11;
};

/// The fake, with applications that are only numbers.
class FakeTargetDesk {
 public:
  using Application = RunningApplication;

  Workspace& workspace() { return fake; }
  Application launch(const std::string& windowClass) {
    RunningApplication application;
    application.client = {nextProcess_, static_cast<std::uint32_t>(nextProcess_)};
    ++nextProcess_;
    application.bundleIdentifier = windowClass;
    fake.bringToFront(application);
    return application;
  }
  void bringToFront(const Application& application) { fake.bringToFront(application); }
  void terminate(const Application& application) { fake.terminate(application); }
  [[nodiscard]] static pid_t identifierOf(const Application& application) {
    return application.client.processIdentifier;
  }
  bool waitUntil(const std::function<bool()>& condition) {
    for (int step = 0; step < 1'000 && !condition(); ++step)
      loop.executor.advance(std::chrono::milliseconds(10));
    return condition();
  }

  struct {
    ManualExecutor executor;
  } loop;
  FakeWorkspace fake{loop.executor};

 private:
  pid_t nextProcess_ = 100;
};

}  // namespace murmel::test
