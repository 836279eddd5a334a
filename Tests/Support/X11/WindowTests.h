#pragma once

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

/// `main` of a test that shows windows: one application for all of them.
inline int runWindowTests(int argumentCount, char** arguments) {
  ::testing::InitGoogleTest(&argumentCount, arguments);
  const QApplication application(argumentCount, arguments);
  QApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}

}  // namespace murmel::test
