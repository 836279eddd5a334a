#pragma once

#include "Support/SelectedTests.h"
#include "Support/Testing.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>

namespace murmel::test {

/// Runs the application's loop until something is to be observed; the limit is a hang, not a measure.
inline bool waitUntil(const std::function<bool()>& condition) {
  constexpr qint64 limitMilliseconds = 20'000;
  constexpr int lookEveryMilliseconds = 5;
  QElapsedTimer elapsed;
  elapsed.start();
  // Conditions may depend on other processes, of which no event tells.
  QTimer wake;
  wake.start(lookEveryMilliseconds);
  while (!condition()) {
    if (elapsed.elapsed() > limitMilliseconds) return false;
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  return true;
}

/// The one application of all tests of a source that shows windows.
inline std::shared_ptr<void> windowApplication() {
  static int argumentCount = 0;
  auto application = std::make_shared<QApplication>(argumentCount, nullptr);
  QApplication::setQuitOnLastWindowClosed(false);
  return application;
}

}  // namespace murmel::test
