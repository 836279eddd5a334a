#pragma once

#include "Interface/About/AboutWindow.h"
#include "Interface/About/CreditsWindow.h"
#include "Interface/History/HistoryWindow.h"
#include "Interface/Settings/SettingsWindow.h"
#include "MRMDirectUpdater/DirectUpdater.h"
#include "Platform/Linux/PulseAudio/PulseAudioInput.h"
#include "Shell/DesktopServices.h"
#include "Shell/Installation.h"
#include "Shell/MicrophoneTest.h"
#include "Shell/ModelShelfServices.h"
#include "Shell/ProcessServices.h"
#include "Shell/SpeechServices.h"
#include "Shell/StorageServices.h"
#include "Shell/XdgAutostart.h"

#include <QPointer>
#include <functional>
#include <memory>
#include <string>

namespace murmel {

/// Opens the desktop's own sound settings; false when none are installed.
bool openSoundSettings();

/// Settings, history, credits and about: made when they are asked for, gone when they are closed. Main
/// thread.
class MainWindows {
 public:
  struct Parts {
    const ProcessServices& process;
    const Installation& installation;
    const DesktopServices& desktop;
    ModelServices& models;
    StorageServices& storage;
    SpeechServices& speech;
    DirectUpdater& updater;
    Microphones& microphones;
    /// Puts private words on the clipboard.
    std::function<void(const SpokenText&, std::function<void(bool copied)> told)> copy;
    /// Into the application that was in front before our window.
    std::function<void(const SpokenText&)> pasteAgain;
    std::function<void()> openSetup;
    /// Asks for the key ring, then reads again what is sealed with it.
    std::function<void()> unlockStorage;
    std::function<std::string(const ShortcutConfiguration&)> shortcutNotice;
    RecordShortcut recordShortcut;
    std::function<bool(const ShortcutConfiguration&)> canHearShortcut;
    std::function<bool(const ShortcutConfiguration&)> tellsOfRelease;
    SessionKind session = SessionKind::none;
    std::function<void(std::function<void(const std::string&)>)> diagnostics;
  };

  /// What the parts refer to outlives this.
  explicit MainWindows(Parts parts);
  ~MainWindows();

  void openSettings(SettingsWindow::Page page = SettingsWindow::Page::general);
  /// The list of models, with a word about why it opens.
  void openRequiredModel(const QString& why);
  void openHistory();
  void openAbout();
  void openCredits();
  /// One of them can be seen.
  [[nodiscard]] bool isAnyVisible() const;

  [[nodiscard]] ModelShelf& shelf() { return shelf_; }
  [[nodiscard]] MicrophoneTrial& microphone() { return microphone_; }

 private:
  [[nodiscard]] SettingsServices settingsServices();
  [[nodiscard]] HistoryServices historyServices();
  [[nodiscard]] AboutServices aboutServices();
  SettingsWindow& settings();
  /// The speech models that came with the application, and which of them is in use.
  [[nodiscard]] std::vector<ModelShelfRow> packagedModels() const;
  /// What the engine of the speech model in use lacks; empty when it knows the language.
  [[nodiscard]] std::string languageNote(DictationLanguage language) const;

  Parts parts_;
  ModelShelfServices shelf_;
  PulseAudioInput trialInput_;  ///< beside the one of a dictation
  MicrophoneTest microphone_;
  XdgAutostart autostart_;
  QPointer<SettingsWindow> settings_;
  QPointer<HistoryWindow> history_;
  QPointer<AboutWindow> about_;
  QPointer<CreditsWindow> credits_;
};

}  // namespace murmel
