#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/Registration.h"
#include "Shell/LaunchRole.h"

#include <memory>

namespace murmel {

/// What the launch sequence asks of the application. Main thread.
class ApplicationLaunchActions {
 public:
  virtual ~ApplicationLaunchActions() = default;
  virtual void applyDockIconPreference() = 0;
  /// Looks again at permissions and at the installed models.
  virtual void refreshServices() = 0;
  /// Whether the first-run setup is not finished or a permission is missing.
  [[nodiscard]] virtual bool requiresSetupWindow() const = 0;
  virtual void openSetupWindow() = 0;
  /// The user opened the application once more while it runs: show a window of it.
  virtual void reopen() = 0;
  /// Whether the setup or the settings window is on screen and not minimised.
  [[nodiscard]] virtual bool isMainWindowVisible() const = 0;
  virtual void terminate(int exitStatus) = 0;
};

/// The launch sequence and its self-tests.
class AppDelegate {
 public:
  AppDelegate(Executor& executor, ApplicationLaunchActions& actions, LaunchSelfTest selfTest);

  void applicationDidFinishLaunching();

 private:
  void checkReopenedWindow(int attemptsLeft);

  Executor& executor_;
  ApplicationLaunchActions& actions_;
  LaunchSelfTest selfTest_;
  Registration reopenCheck_;
  /// Posted jobs look whether this still lives.
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace murmel
