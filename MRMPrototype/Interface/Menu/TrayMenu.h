#pragma once

#include "Dictation/DictationState.h"
#include "Foundation/SpokenText.h"
#include "Platform/Microphones.h"

#include <QCoreApplication>
#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace murmel {

/// What the menu says at a moment.
struct MenuStatus {
  DictationState state;
  QString shortcut;  ///< by its keys; empty when there is none
  QString language;
  QString model;        ///< the speech model in use, or how far a download is
  QString update{};     ///< a version that can be had; empty where none is known
  QString pasteKeys{};  ///< of the application that got the last dictation; empty: the usual ones
  bool isPaused = false;
  bool hasLastTranscript = false;
  bool canRetry = false;
  /// Something can be brought back that a dictation has replaced on the clipboard.
  bool canBringBackClipboard = false;
  bool keepsHistory = false;
};

struct MenuServices {
  std::function<MenuStatus()> status;
  /// The newest dictations of the history, newest first; asked for when they are looked at.
  std::function<std::vector<SpokenText>()> recent;
  std::function<void(const SpokenText&)> copy;
  Microphones* microphones = nullptr;

  std::function<void()> toggle;
  std::function<void()> cancel;
  std::function<void()> retry;
  std::function<void()> copyLast;
  std::function<void()> pasteLast;
  std::function<void()> bringBackClipboard;
  std::function<void(bool paused)> pause;
  std::function<void()> openUpdates{};
  std::function<void()> openSettings;
  std::function<void()> openShortcut;
  std::function<void()> openLanguages;
  std::function<void()> openModels;
  std::function<void()> openHistory;
  std::function<void()> openSetup;
  std::function<void()> openCredits;
  std::function<void()> openAbout;
  std::function<void()> quit;
};

/// The icon in the tray and its menu. A tray over the session bus is told every entry, so the words of the
/// history stand in it only while their menu is open. Main thread.
class TrayMenu final : public QObject {
  Q_DECLARE_TR_FUNCTIONS(TrayMenu)
 public:
  explicit TrayMenu(MenuServices services);

  /// There is a tray now: puts the icon into it. Before that Qt must not be asked, because it looks once.
  void appear();
  /// What the status says may have changed; looked at once for many calls in a row.
  void refresh();
  /// Nothing: as the colours of the windows.
  void setPanelDark(std::optional<bool> dark);
  /// False when the icon is not in a tray that shows messages itself.
  bool showMessage(const QString& title, const QString& text);

  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  QAction* add(const QString& title, const std::function<void()>& run);
  void build();
  void fillRecent();
  void fillMicrophones(const std::vector<MicrophoneSource>& sources);
  void show(const MenuStatus& status);
  void drawIcon();

  MenuServices services_;
  QMenu menu_;
  QMenu recent_;
  QMenu microphones_;
  std::unique_ptr<QSystemTrayIcon> icon_;
  std::optional<bool> isPanelDark_;
  bool isRefreshDue_ = false;
  MenuStatus shown_;
  QAction* status_ = nullptr;
  QAction* toggle_ = nullptr;
  QAction* cancel_ = nullptr;
  QAction* retry_ = nullptr;
  QAction* copyLast_ = nullptr;
  QAction* pasteLast_ = nullptr;
  QAction* bringBack_ = nullptr;
  QAction* shortcut_ = nullptr;
  QAction* language_ = nullptr;
  QAction* model_ = nullptr;
  QAction* pause_ = nullptr;
  QAction* update_ = nullptr;
};

}  // namespace murmel
