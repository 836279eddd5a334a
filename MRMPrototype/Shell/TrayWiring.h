#pragma once

#include "Foundation/Async/Executor.h"
#include "Interface/Menu/TrayMenu.h"
#include "Interface/Models/ModelShelf.h"
#include "Interface/Notices/NoticeChannel.h"
#include "Interface/Notices/NoticeWindow.h"
#include "Platform/Qt/TrayWatch.h"
#include "Settings/DefaultsStore.h"

#include <QPointer>
#include <functional>
#include <string>

namespace murmel {

/// The icon, its menu, and the messages to the user, on whatever tray the desktop has or gets. Main thread.
class TrayWiring {
 public:
  /// How long a desktop may take to show its panel before the user is told how to do without.
  static constexpr Duration panelPatience = std::chrono::seconds(45);

  /// The references outlive this.
  TrayWiring(Executor& executor, DefaultsStore& defaults, std::string displayName, MenuServices menu);
  ~TrayWiring();
  TrayWiring(const TrayWiring&) = delete;
  TrayWiring& operator=(const TrayWiring&) = delete;

  void refresh() { menu_.refresh(); }
  /// A message of the core, in the words of this desktop.
  /// `pasteKeys`: see inPlatformWords.
  void tell(const std::string& sentence, const QString& pasteKeys = {});
  /// See NoticeChannel.
  void tellAtTheEnd(const std::string& sentence, const QString& pasteKeys,
                    std::function<void(bool stays)> answer);

 private:
  [[nodiscard]] NoticeRoads roads();
  void trayChanged();
  void tellWithoutTray();
  void showInWindow(const QString& text);

  DefaultsStore& defaults_;
  QString displayName_;
  TrayMenu menu_;
  QPointer<NoticeWindow> window_;
  NoticeChannel notices_;
  TrayWatch watch_;
  Registration trayObserver_;
  Registration patience_;
};

/// What the menu says about models: how far a download is, else which one recognises speech.
QString modelLine(const std::vector<ModelShelfRow>& rows);

}  // namespace murmel
