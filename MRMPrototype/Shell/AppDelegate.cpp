#include "Shell/AppDelegate.h"

namespace murmel {

namespace {

/// A window manager maps a window within a few of these; five seconds in all, for a loaded machine.
constexpr int reopenAttempts = 50;
constexpr Duration reopenInterval = std::chrono::milliseconds(100);
constexpr int windowMissingStatus = 1;

}  // namespace

AppDelegate::AppDelegate(Executor& executor, ApplicationLaunchActions& actions, LaunchSelfTest selfTest)
    : executor_(executor), actions_(actions), selfTest_(selfTest) {}

void AppDelegate::applicationDidFinishLaunching() {
  const auto onMainQueue = [this](auto job) {
    executor_.post([weak = std::weak_ptr(alive_), job = std::move(job)] {
      if (weak.lock()) job();
    });
  };
  if (selfTest_ == LaunchSelfTest::releaseLaunch) {
    onMainQueue([this] { actions_.terminate(0); });
    return;
  }
  const bool isReopenTest = selfTest_ == LaunchSelfTest::dockReopen;
  if (!isReopenTest) actions_.applyDockIconPreference();
  actions_.refreshServices();
  if (!isReopenTest && actions_.requiresSetupWindow()) {
    onMainQueue([this] { actions_.openSetupWindow(); });
  }
  if (isReopenTest) {
    onMainQueue([this] {
      actions_.reopen();
      checkReopenedWindow(reopenAttempts);
    });
  }
}

void AppDelegate::checkReopenedWindow(int attemptsLeft) {
  if (actions_.isMainWindowVisible()) {
    actions_.terminate(0);
  } else if (attemptsLeft <= 1) {
    actions_.terminate(windowMissingStatus);
  } else {
    reopenCheck_ =
        executor_.after(reopenInterval, [this, attemptsLeft] { checkReopenedWindow(attemptsLeft - 1); });
  }
}

}  // namespace murmel
