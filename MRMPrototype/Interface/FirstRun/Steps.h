#pragma once

#include "Interface/Common/Form.h"
#include "Interface/FirstRun/FirstRunServices.h"

#include <QCoreApplication>
#include <QPointer>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

class QPlainTextEdit;
class QProgressBar;

namespace murmel {

class LevelBar;
class MicrophoneChoice;

/// Failed checks, each beside what mends it.
class CheckList final : public QWidget {
 public:
  /// Those of these identifiers; all others when `isRest`.
  CheckList(DesktopChecks& checks, std::vector<std::string> identifiers, bool isRest = false);

  /// The page says this sentence itself.
  void leaveOut(std::string sentence);

 private:
  void refresh();

  DesktopChecks& checks_;
  std::vector<std::string> identifiers_;
  bool isRest_;
  std::map<std::string, NoticeBar*> bars_;
  std::string leftOut_;
  Registration changes_;
};

/// What the application does, and what it never does.
class WelcomeStep final : public FormPage {
  Q_DECLARE_TR_FUNCTIONS(WelcomeStep)
 public:
  explicit WelcomeStep(const FirstRunServices& services);
};

/// What recognises speech now, and what could do it better here.
class ModelStep final : public FormPage {
  Q_DECLARE_TR_FUNCTIONS(ModelStep)
 public:
  explicit ModelStep(const FirstRunServices& services);

 private:
  void refresh();

  ModelShelf& models_;
  FormRow* present_;
  FormRow* better_;
  QLabel* progressWords_;
  QProgressBar* progress_;
  QPushButton* act_;
  std::string betterName_;
  Registration changes_;
};

/// Which microphone, and whether it hears.
class MicrophoneStep final : public FormPage {
  Q_DECLARE_TR_FUNCTIONS(MicrophoneStep)
 public:
  explicit MicrophoneStep(const FirstRunServices& services);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void listen();
  void hear(double level);

  FirstRunServices services_;
  MicrophoneChoice* choice_;
  LevelBar* meter_;
  QLabel* verdict_;
  Registration trial_;
};

/// Which keys start a dictation.
class ShortcutStep final : public FormPage {
  Q_DECLARE_TR_FUNCTIONS(ShortcutStep)
 public:
  /// `offerChanged`: what `offer` gives may be another.
  ShortcutStep(const FirstRunServices& services, std::function<void()> offerChanged);

  /// What going on takes, since the shortcut of now is not heard here; nothing when it is.
  [[nodiscard]] std::optional<ShortcutConfiguration> offer() const;
  void take(const ShortcutConfiguration& shortcut);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void show();

  FirstRunServices services_;
  std::function<void()> offerChanged_;
  FormRow* current_;
  std::vector<std::pair<ShortcutConfiguration, QPushButton*>> proposals_;
  NoticeBar* notice_;
  NoticeBar* request_;  ///< to press the shortcut
  CheckList* checks_;
  Registration changes_;
  Registration accessChanges_;
};

/// A whole dictation into a field of this window, by the road of every other one.
class TryStep final : public FormPage {
  Q_DECLARE_TR_FUNCTIONS(TryStep)
 public:
  /// `succeeded`: words have arrived.
  TryStep(const FirstRunServices& services, std::function<void()> succeeded);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void show();

  FirstRunServices services_;
  std::function<void()> succeeded_;
  QLabel* task_;
  QLabel* state_;
  QPlainTextEdit* field_;
  bool wasDictated_ = false;
  Registration acceptance_;
  Registration states_;
  Registration changes_;
};

}  // namespace murmel
