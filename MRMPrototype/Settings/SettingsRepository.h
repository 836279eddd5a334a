#pragma once

#include "Foundation/Async/Signal.h"
#include "Platform/ActivationPolicy.h"
#include "Recognition/DictationLanguage.h"
#include "Settings/DefaultsStore.h"
#include "Settings/DictationSettings.h"
#include "Settings/OverlayPosition.h"
#include "Settings/SettingsMigrations.h"
#include "Settings/VocabularyStorage.h"
#include "Shortcut/ShortcutConfiguration.h"
#include "Shortcut/ShortcutDistributionPolicy.h"
#include "Storage/SecureStorageStatus.h"

#include <string>
#include <string_view>
#include <vector>

namespace murmel {

/// What observers are told has changed.
enum class SettingsProperty {
  shortcut,
  cancelShortcut,
  pasteAgainShortcut,
  singleLanguage,
  selectedLanguages,
  languageMode,
  playFeedbackSound,
  showInDock,
  smartLocalModel,
  smartRefinementRouting,
  smartFormatting,
  processWhileRecording,
  recogniserIdleMinutes,
  insertWhileRecording,
  removeFillerWords,
  spokenCommands,
  spaceBetweenDictations,
  restorePreviousClipboard,
  historyEnabled,
  historyRetention,
  automaticUpdateChecks,
  overlayPosition,
  showRestingIndicator,
  personalVocabulary,
  vocabularyStorageStatus,
  modelMigrationNotice,
};

/// What the settings are made of. The references must outlive the repository.
struct SettingsRepositoryParameters {
  DefaultsStore& defaults;
  Executor& executor;
  SerialQueue& queue;              ///< on which the vocabulary's file is waited for
  SecureLocalFile vocabularyFile;  ///< `vocabularyFile(...)`
  /// The edition offers the full catalogue of language models.
  bool fullGemmaCatalog = false;
  /// Whether a model's file is installed and verified.
  settingsMigration::ModelIsReady modelIsReady{};
  MRMDistributionChannel channel = MRMDistributionChannel::direct;
  /// Absent where there is no desktop.
  ActivationPolicyControl* activationPolicy = nullptr;
};

/// The one owner of the user's settings. Brings those of earlier versions up to date, and keeps each change
/// right away: in the preference store, the vocabulary in its sealed file. The vocabulary is empty until it
/// has been read. Main thread.
class SettingsRepository : public DictationSettings {
 public:
  explicit SettingsRepository(SettingsRepositoryParameters parameters);

  /// Emitted before a property takes its new value, and after.
  [[nodiscard]] Signal<SettingsProperty>& willChange() { return willChange_; }
  [[nodiscard]] Signal<SettingsProperty>& didChange() { return didChange_; }
  /// MRM.ShortcutDidChange: emitted whenever the shortcut was set.
  [[nodiscard]] Signal<>& shortcutDidChange() { return shortcutDidChange_; }

  [[nodiscard]] const ShortcutConfiguration& shortcut() const { return shortcut_; }
  /// Throws a recording away, and pastes the last dictation again; disabled unless somebody wants them.
  [[nodiscard]] const ShortcutConfiguration& cancelShortcut() const { return cancelShortcut_; }
  [[nodiscard]] const ShortcutConfiguration& pasteAgainShortcut() const { return pasteAgainShortcut_; }
  [[nodiscard]] DictationLanguage singleLanguage() const { return singleLanguage_; }
  [[nodiscard]] const std::vector<DictationLanguage>& selectedLanguages() const { return selectedLanguages_; }
  [[nodiscard]] DictationLanguageMode languageMode() const { return languageMode_; }
  [[nodiscard]] bool playFeedbackSound() const override { return playFeedbackSound_; }
  [[nodiscard]] bool showInDock() const { return showInDock_; }
  [[nodiscard]] SmartLocalModel smartLocalModel() const override { return smartLocalModel_; }
  [[nodiscard]] SmartRefinementRoutingMode smartRefinementRouting() const override {
    return smartRefinementRouting_;
  }
  [[nodiscard]] bool smartFormatting() const override { return smartFormatting_; }
  /// These two have no switch in the windows.
  [[nodiscard]] double forgottenRecordingMinutes() const override { return forgottenRecordingMinutes_; }
  [[nodiscard]] bool cancelsWithEscape() const override { return cancelsWithEscape_; }
  [[nodiscard]] bool keepFailedRecordings() const override { return keepFailedRecordings_; }
  [[nodiscard]] bool processWhileRecording() const override { return processWhileRecording_; }
  /// How long the speech model stays in memory after a dictation; 0: for ever.
  [[nodiscard]] std::int64_t recogniserIdleMinutes() const { return recogniserIdleMinutes_; }
  [[nodiscard]] bool insertWhileRecording() const override { return insertWhileRecording_; }
  [[nodiscard]] bool removeFillerWords() const override { return removeFillerWords_; }
  [[nodiscard]] bool spokenCommands() const override { return spokenCommands_; }
  [[nodiscard]] bool spaceBetweenDictations() const { return spaceBetweenDictations_; }
  [[nodiscard]] bool restorePreviousClipboard() const { return restorePreviousClipboard_; }
  [[nodiscard]] bool historyEnabled() const override { return historyEnabled_; }
  [[nodiscard]] HistoryRetention historyRetention() const { return historyRetention_; }
  [[nodiscard]] bool automaticUpdateChecks() const { return automaticUpdateChecks_; }
  [[nodiscard]] OverlayPosition overlayPosition() const { return overlayPosition_; }
  /// The indicator stays on the screen while nothing is dictated.
  [[nodiscard]] bool showRestingIndicator() const { return showRestingIndicator_; }
  [[nodiscard]] std::string personalVocabulary() const override { return personalVocabulary_.reveal(); }
  [[nodiscard]] SecureStorageStatus vocabularyStorageStatus() const { return vocabularyStorageStatus_; }
  /// Why that status is `unavailable`.
  [[nodiscard]] const std::optional<SecureLocalStorageError>& vocabularyTrouble() const {
    return vocabulary_.trouble();
  }
  /// What to tell the user about a model that was replaced; again at every start until it is dismissed.
  [[nodiscard]] const std::optional<std::string>& modelMigrationNotice() const {
    return modelMigrationNotice_;
  }

  /// As the distribution channel can serve it.
  void setShortcut(const ShortcutConfiguration& shortcut);
  void setCancelShortcut(const ShortcutConfiguration& shortcut);
  void setPasteAgainShortcut(const ShortcutConfiguration& shortcut);
  void setSingleLanguage(DictationLanguage language);
  /// At least one: an empty list is ignored.
  void setSelectedLanguages(std::vector<DictationLanguage> languages);
  void setLanguageMode(DictationLanguageMode mode);
  void setPlayFeedbackSound(bool on);
  /// Also lists the running application accordingly.
  void setShowInDock(bool on);
  void setSmartLocalModel(SmartLocalModel model);
  void setSmartRefinementRouting(SmartRefinementRoutingMode mode);
  void setSmartFormatting(bool on);
  void setProcessWhileRecording(bool on);
  void setRecogniserIdleMinutes(std::int64_t minutes);
  void setInsertWhileRecording(bool on);
  void setRemoveFillerWords(bool on);
  void setSpokenCommands(bool on);
  void setSpaceBetweenDictations(bool on);
  void setRestorePreviousClipboard(bool on);
  void setHistoryEnabled(bool on);
  void setHistoryRetention(HistoryRetention retention);
  void setAutomaticUpdateChecks(bool on);
  void setOverlayPosition(OverlayPosition position);
  void setShowRestingIndicator(bool on);
  /// Kept in memory alone while the sealed file could not be read.
  void setPersonalVocabulary(std::string text);
  /// Reads the sealed vocabulary again: another process has changed it, or the key ring has become available.
  void reloadPersonalVocabulary() { vocabulary_.load(defaults_); }
  /// Blocks until the vocabulary has been read or stored, or could not be.
  void waitForPersonalVocabulary() { vocabulary_.wait(); }
  /// Takes over what the preference store says now, because somebody else has changed it.
  void reload();
  /// Looks again at the choice of the model and at the formatting, where what is installed was not known at
  /// the start. For every change of the inventory; does something once.
  void modelInventoryChanged();
  void dismissModelMigrationNotice();

  /// Present in mode `single` only.
  [[nodiscard]] Duration recogniserIdleLimit() const override {
    return std::chrono::minutes(recogniserIdleMinutes_);
  }
  [[nodiscard]] std::optional<std::string> workerLanguageCode() const override;
  [[nodiscard]] std::vector<DictationLanguage> spokenLanguages() const override;
  /// "German"; "English, Russian"; "Automatic".
  [[nodiscard]] std::string historyLanguageLabel() const override;
  /// "German only"; "English, Russian"; "All 28 languages, recognized automatically".
  [[nodiscard]] std::string languageProfileSummary() const;
  [[nodiscard]] bool isLanguageSelected(DictationLanguage language) const;
  /// Adds or removes; the last one stays.
  void toggleLanguage(DictationLanguage language);

 private:
  template <class T, class Stored>
  void assign(SettingsProperty property, T& member, T value, std::string_view key, Stored stored);
  template <class E>
  void assignEnumeration(SettingsProperty property, E& member, E value, std::string_view key);
  void assignShortcut(SettingsProperty property, ShortcutConfiguration& member,
                      const ShortcutConfiguration& shortcut, std::string_view key);
  void assignBoolean(SettingsProperty property, bool& member, bool value, std::string_view key);
  template <class T>
  void publish(SettingsProperty property, T& member, T value);
  void read();
  void readModels();
  void readLanguages();
  void readHidden();
  void showWhereItBelongs();

  DefaultsStore& defaults_;
  bool fullGemmaCatalog_;
  settingsMigration::ModelIsReady modelIsReady_;
  bool isModelUndecided_ = false;
  MRMDistributionChannel channel_;
  ActivationPolicyControl* activationPolicy_;

  ShortcutConfiguration shortcut_;
  ShortcutConfiguration cancelShortcut_;
  ShortcutConfiguration pasteAgainShortcut_;
  DictationLanguage singleLanguage_{};
  std::vector<DictationLanguage> selectedLanguages_;
  DictationLanguageMode languageMode_{};
  bool playFeedbackSound_ = true;
  bool showInDock_ = true;
  SmartLocalModel smartLocalModel_{};
  std::optional<std::string> modelMigrationNotice_;
  SmartRefinementRoutingMode smartRefinementRouting_{};
  bool smartFormatting_ = false;
  bool historyEnabled_ = false;
  HistoryRetention historyRetention_{};
  bool removeFillerWords_ = false;
  bool spokenCommands_ = false;
  bool spaceBetweenDictations_ = false;
  double forgottenRecordingMinutes_ = 10;
  bool cancelsWithEscape_ = true;
  bool keepFailedRecordings_ = true;
  bool processWhileRecording_ = true;
  std::int64_t recogniserIdleMinutes_ = 10;
  bool insertWhileRecording_ = false;
  bool restorePreviousClipboard_ = true;
  bool automaticUpdateChecks_ = false;
  SpokenText personalVocabulary_;
  SecureStorageStatus vocabularyStorageStatus_ = SecureStorageStatus::available;
  OverlayPosition overlayPosition_{};
  bool showRestingIndicator_ = false;

  Signal<SettingsProperty> willChange_;
  Signal<SettingsProperty> didChange_;
  Signal<> shortcutDidChange_;
  VocabularyStorage vocabulary_;  ///< last: it tells of changes
};

}  // namespace murmel
