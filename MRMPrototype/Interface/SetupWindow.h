#pragma once

#include "Shortcut/ShortcutConfiguration.h"

#include <QWidget>
#include <functional>
#include <string>
#include <vector>

class QComboBox;
class QLabel;
class QScrollArea;
class QVBoxLayout;

namespace murmel {

/// One thing that dictation needs of the desktop.
struct SetupCheck {
  std::string subject;
  bool works = false;
  std::string detail;  ///< what works, or what to do
};

/// What the setup window shows and changes.
struct SetupActions {
  std::function<std::vector<SetupCheck>()> look;
  std::function<ShortcutConfiguration()> shortcut;
  std::function<void(const ShortcutConfiguration&)> chooseShortcut;
  /// Why this desktop may not hear the shortcut, in words for the user; empty when it does.
  std::function<std::string(const ShortcutConfiguration&)> shortcutNotice;
  std::function<void()> checkAgain;  ///< the user may have granted something; before `look`
  std::function<void()> done;
};

/// Shows what works on this desktop and what to do about the rest, and lets the user choose the shortcut.
class SetupWindow final : public QWidget {
 public:
  explicit SetupWindow(SetupActions actions);

  /// Looks again and comes to the front.
  void present();
  /// What `look` gives has changed.
  void showChecks() { refresh(); }
  /// The shortcut has changed: shows the one of now.
  void showShortcut();

 private:
  void refresh();
  void choose(int index);
  void fitToContent();

  SetupActions actions_;
  QScrollArea* scroll_;
  QVBoxLayout* checks_;
  QComboBox* shortcuts_;
  QLabel* help_;
  QLabel* notice_;
};

}  // namespace murmel
