#pragma once

#include "Dictation/DictationState.h"

#include <QMenu>
#include <QSystemTrayIcon>
#include <functional>

namespace murmel {

/// The icon in the tray and its menu.
class TrayMenu {
 public:
  struct Actions {
    std::function<void()> toggle;
    std::function<void()> cancel;
    std::function<void()> retry;
    std::function<void()> copyLast;
    std::function<void()> bringBackClipboard;
    std::function<void()> openSettings;
    std::function<void()> openHistory;
    std::function<void()> openSetup;
    std::function<void()> openAbout;
    std::function<void()> quit;
  };

  explicit TrayMenu(Actions actions);

  void show();
  void update(const DictationState& state);
  void setHasLastTranscript(bool available);
  /// Whether there is something to bring back that a dictation has replaced on the clipboard.
  void setCanBringBackClipboard(bool available);
  void setCanRetry(bool can);
  /// Shows a message that the state has no room for.
  void notify(const QString& title, const QString& text);

 private:
  QMenu menu_;
  QSystemTrayIcon icon_;
  QAction* status_;
  QAction* toggle_;
  QAction* cancel_;
  QAction* retry_;
  QAction* copyLast_;
  QAction* bringBack_;
};

}  // namespace murmel
