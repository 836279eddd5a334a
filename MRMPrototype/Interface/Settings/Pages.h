#pragma once

#include "Interface/Settings/SettingsPage.h"

#include <QCoreApplication>
#include <memory>

namespace murmel {

class LevelBar;
class MicrophoneChoice;

/// Starting, showing itself, and what happens while one speaks.
class GeneralPage final : public SettingsPage {
  Q_DECLARE_TR_FUNCTIONS(GeneralPage)
 public:
  explicit GeneralPage(const SettingsServices& services);

 private:
  void addStart();
  void addIndicator();
  void addDictation();
};

/// The shortcut: which, how it is used, whether this desktop hears it.
class ShortcutPage final : public SettingsPage {
  Q_DECLARE_TR_FUNCTIONS(ShortcutPage)
 public:
  explicit ShortcutPage(const SettingsServices& services);

 private:
  void show();
  void addFurther(Card& card, const QString& title, const QString& description, SettingsProperty property,
                  std::function<const ShortcutConfiguration&()> get,
                  std::function<void(const ShortcutConfiguration&)> set);

  std::vector<ShortcutConfiguration> ready_;  ///< to choose from, the proposal first
  ChoiceBox* choice_;
  FormRow* row_ = nullptr;
  NoticeBar* notice_;
};

/// The microphone, tried on the spot, and the sounds.
class AudioPage final : public SettingsPage {
  Q_DECLARE_TR_FUNCTIONS(AudioPage)
 public:
  explicit AudioPage(const SettingsServices& services);

 protected:
  void hideEvent(QHideEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void toggleTrial();
  void listen();
  void endTrial();
  void hear(double level);
  void say(const QString& words);

  MicrophoneChoice* choice_;
  LevelBar* meter_;
  QLabel* verdict_;
  QPushButton* test_;
  Registration trial_;
};

/// Which languages are spoken.
class LanguagesPage final : public SettingsPage {
  Q_DECLARE_TR_FUNCTIONS(LanguagesPage)
 public:
  explicit LanguagesPage(const SettingsServices& services);

 private:
  Card* addSelection();
};

/// What becomes of recognised words: fillers, formatting, vocabulary.
class TextPage final : public SettingsPage {
  Q_DECLARE_TR_FUNCTIONS(TextPage)
 public:
  explicit TextPage(const SettingsServices& services);

 private:
  void addCleanUp();
  void addFormatting();
  void addVocabulary();
  void showFormatting();

  FormRow* formatting_ = nullptr;
  FormRow* model_ = nullptr;
  FormRow* recommendation_ = nullptr;
  NoticeBar* migration_ = nullptr;
  Registration preparations_;
  Registration inventory_;
};

/// What is kept of what was said, and for how long.
class PrivacyPage final : public SettingsPage {
  Q_DECLARE_TR_FUNCTIONS(PrivacyPage)
 public:
  explicit PrivacyPage(const SettingsServices& services);

 private:
  void show();

  NoticeBar* storage_;
  QPushButton* deleteAll_;
  FormRow* stored_ = nullptr;
  Registration history_;
};

/// What few people change.
class AdvancedPage final : public SettingsPage {
  Q_DECLARE_TR_FUNCTIONS(AdvancedPage)
 public:
  explicit AdvancedPage(const SettingsServices& services);

 private:
  void exportSettings();
  void importSettings();

  NoticeBar* outcome_;
};

/// The names of the cases that a person chooses from.
namespace settingsTitles {
QString of(DictationLanguage language);
QString of(HistoryRetention retention);
QString of(OverlayPosition position);
}  // namespace settingsTitles

}  // namespace murmel
