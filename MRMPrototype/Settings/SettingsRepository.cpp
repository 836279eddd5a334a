#include "Settings/SettingsRepository.h"

#include "Foundation/Crypto/Wipe.h"
#include "Settings/SettingsKeys.h"

#include <algorithm>
#include <utility>

#include <fmt/core.h>

namespace murmel {

namespace {

template <class E>
E storedCase(const DefaultsStore& defaults, std::string_view key, E fallback) {
  const auto raw = defaults.get<std::string>(key);
  return raw ? fromRawValue<E>(*raw).value_or(fallback) : fallback;
}

std::vector<std::string> codes(const std::vector<DictationLanguage>& languages) {
  std::vector<std::string> result;
  result.reserve(languages.size());
  for (const auto language : languages) result.emplace_back(rawValue(language));
  return result;
}

std::string titles(const std::vector<DictationLanguage>& languages) {
  std::string list;
  for (const auto language : languages) {
    if (!list.empty()) list += ", ";
    list += title(language);
  }
  return list;
}

}  // namespace

SettingsRepository::SettingsRepository(SettingsRepositoryParameters parameters)
    : defaults_(parameters.defaults),
      fullGemmaCatalog_(parameters.fullGemmaCatalog),
      modelIsReady_(std::move(parameters.modelIsReady)),
      channel_(parameters.channel),
      activationPolicy_(parameters.activationPolicy),
      shortcut_(settingsMigration::shortcut(defaults_, channel_)),
      vocabulary_(parameters.executor, parameters.queue, std::move(parameters.vocabularyFile), [this] {
        publish(SettingsProperty::personalVocabulary, personalVocabulary_, vocabulary_.text());
        publish(SettingsProperty::vocabularyStorageStatus, vocabularyStorageStatus_,
                vocabulary_.trouble() ? SecureStorageStatus::unavailable : SecureStorageStatus::available);
      }) {
  if (!modelIsReady_) modelIsReady_ = [](SmartLocalModel) { return false; };
  readModels();
  read();
  vocabulary_.load(defaults_);
}

void SettingsRepository::readModels() {
  const auto model = settingsMigration::smartLocalModel(defaults_, fullGemmaCatalog_, modelIsReady_);
  publish(SettingsProperty::smartLocalModel, smartLocalModel_, model);
  publish(SettingsProperty::modelMigrationNotice, modelMigrationNotice_,
          settingsMigration::modelMigrationNotice(defaults_));
  publish(SettingsProperty::smartFormatting, smartFormatting_,
          settingsMigration::smartFormatting(defaults_, model, modelIsReady_));
  isModelUndecided_ = !modelIsReady_(model) || !modelIsReady_(SmartLocalModel::gemma4E2B);
}

void SettingsRepository::modelInventoryChanged() {
  if (isModelUndecided_) readModels();
}

void SettingsRepository::reload() {
  const auto shortcut = settingsMigration::shortcut(defaults_, channel_);
  if (shortcut != shortcut_) {
    publish(SettingsProperty::shortcut, shortcut_, shortcut);
    shortcutDidChange_.emit();
  }
  // What somebody has chosen is not replaced behind their back: that is for the start.
  publish(SettingsProperty::smartLocalModel, smartLocalModel_,
          settingsMigration::storedModel(defaults_, settingsKey::smartLocalModel).value_or(smartLocalModel_));
  publish(SettingsProperty::smartFormatting, smartFormatting_,
          defaults_.boolean(settingsKey::smartFormatting, false) && modelIsReady_(smartLocalModel_) != false);
  publish(SettingsProperty::modelMigrationNotice, modelMigrationNotice_,
          settingsMigration::modelMigrationNotice(defaults_));
  const bool wasInDock = showInDock_;
  read();
  if (wasInDock != showInDock_) showWhereItBelongs();
}

void SettingsRepository::read() {
  using P = SettingsProperty;
  readLanguages();
  readHidden();
  const auto boolean = [this](P property, bool& member, std::string_view key, bool fallback) {
    publish(property, member, defaults_.boolean(key, fallback));
  };
  boolean(P::playFeedbackSound, playFeedbackSound_, settingsKey::feedbackSound, true);
  boolean(P::showInDock, showInDock_, settingsKey::showInDock, true);
  publish(P::smartRefinementRouting, smartRefinementRouting_,
          storedCase(defaults_, settingsKey::smartRefinementRouting,
                     SmartRefinementRoutingMode::automaticByLanguage));
  boolean(P::historyEnabled, historyEnabled_, settingsKey::historyEnabled, false);
  publish(P::historyRetention, historyRetention_,
          storedCase(defaults_, settingsKey::historyRetention, HistoryRetention::forever));
  boolean(P::removeFillerWords, removeFillerWords_, settingsKey::removeFillerWords, false);
  boolean(P::spokenCommands, spokenCommands_, settingsKey::spokenCommands, false);
  boolean(P::processWhileRecording, processWhileRecording_, settingsKey::processWhileRecording, true);
  constexpr auto oneDay = std::int64_t{24} * 60;
  constexpr std::int64_t usualMinutes = 10;
  const auto idle = defaults_.get<std::int64_t>(settingsKey::recogniserIdleMinutes).value_or(usualMinutes);
  publish(P::recogniserIdleMinutes, recogniserIdleMinutes_, std::clamp<std::int64_t>(idle, 0, oneDay));
  boolean(P::insertWhileRecording, insertWhileRecording_, settingsKey::insertWhileRecording, false);
  boolean(P::spaceBetweenDictations, spaceBetweenDictations_, settingsKey::spaceBetweenDictations, false);
  boolean(P::restorePreviousClipboard, restorePreviousClipboard_, settingsKey::restorePreviousClipboard,
          true);
  boolean(P::showRestingIndicator, showRestingIndicator_, settingsKey::showRestingIndicator, false);
  const auto further = [this](P property, ShortcutConfiguration& member, std::string_view key) {
    const auto stored = settingsMigration::storedShortcut(defaults_, key).value_or(ShortcutConfiguration{});
    if (stored == member) return;
    publish(property, member, stored);
    shortcutDidChange_.emit();
  };
  further(P::cancelShortcut, cancelShortcut_, settingsKey::cancelShortcut);
  further(P::pasteAgainShortcut, pasteAgainShortcut_, settingsKey::pasteAgainShortcut);
  boolean(P::automaticUpdateChecks, automaticUpdateChecks_, settingsKey::automaticUpdateChecks, false);
  publish(P::overlayPosition, overlayPosition_,
          storedCase(defaults_, settingsKey::overlayAnchor, OverlayPosition::right));
}

void SettingsRepository::readHidden() {
  if (const auto whole = defaults_.get<std::int64_t>(settingsKey::forgottenRecordingMinutes)) {
    forgottenRecordingMinutes_ = static_cast<double>(*whole);
  } else {
    forgottenRecordingMinutes_ = defaults_.get<double>(settingsKey::forgottenRecordingMinutes).value_or(10);
  }
  cancelsWithEscape_ = defaults_.boolean(settingsKey::cancelWithEscape, true);
  keepFailedRecordings_ = defaults_.boolean(settingsKey::keepFailedRecordings, true);
}

void SettingsRepository::readLanguages() {
  const auto primary = storedCase(defaults_, settingsKey::primaryLanguage, DictationLanguage::english);
  const auto secondary = storedCase(defaults_, settingsKey::secondaryLanguage, DictationLanguage::russian);
  publish(SettingsProperty::singleLanguage, singleLanguage_,
          storedCase(defaults_, settingsKey::singleLanguage, primary));
  std::vector<DictationLanguage> selected;
  const auto stored = defaults_.get<std::vector<std::string>>(settingsKey::selectedLanguages);
  for (const auto& code : stored.value_or(std::vector<std::string>{})) {
    if (const auto language = fromRawValue<DictationLanguage>(code)) selected.push_back(*language);
  }
  if (selected.empty()) selected = {primary, secondary};
  publish(SettingsProperty::selectedLanguages, selectedLanguages_, std::move(selected));
  publish(SettingsProperty::languageMode, languageMode_,
          storedCase(defaults_, settingsKey::languageMode, DictationLanguageMode::automaticAll));
}

void SettingsRepository::showWhereItBelongs() {
  const auto policy = showInDock_ ? ActivationPolicy::regular : ActivationPolicy::accessory;
  if (activationPolicy_ != nullptr && activationPolicy_->current() != policy) activationPolicy_->set(policy);
}

template <class T>
void SettingsRepository::publish(SettingsProperty property, T& member, T value) {
  if (member == value) return;
  willChange_.emit(property);
  member = std::move(value);
  didChange_.emit(property);
}

template <class T, class Stored>
void SettingsRepository::assign(SettingsProperty property, T& member, T value, std::string_view key,
                                Stored stored) {
  const bool changes = member != value;
  if (changes) willChange_.emit(property);
  member = std::move(value);
  defaults_.set(key, std::move(stored));
  if (changes) didChange_.emit(property);
}

template <class E>
void SettingsRepository::assignEnumeration(SettingsProperty property, E& member, E value,
                                           std::string_view key) {
  assign(property, member, value, key, std::string(rawValue(value)));
}

void SettingsRepository::assignBoolean(SettingsProperty property, bool& member, bool value,
                                       std::string_view key) {
  assign(property, member, value, key, value);
}

void SettingsRepository::assignShortcut(SettingsProperty property, ShortcutConfiguration& member,
                                        const ShortcutConfiguration& shortcut, std::string_view key) {
  if (const auto json = shortcut.toJson()) {
    assign(property, member, shortcut, key, std::vector<std::uint8_t>(json->begin(), json->end()));
  } else {
    publish(property, member, shortcut);
  }
  shortcutDidChange_.emit();
}

void SettingsRepository::setShortcut(const ShortcutConfiguration& shortcut) {
  assignShortcut(SettingsProperty::shortcut, shortcut_,
                 ShortcutDistributionPolicy::sanitize(shortcut, channel_),
                 settingsKey::shortcutConfiguration);
}

void SettingsRepository::setCancelShortcut(const ShortcutConfiguration& shortcut) {
  assignShortcut(SettingsProperty::cancelShortcut, cancelShortcut_, shortcut, settingsKey::cancelShortcut);
}

void SettingsRepository::setPasteAgainShortcut(const ShortcutConfiguration& shortcut) {
  assignShortcut(SettingsProperty::pasteAgainShortcut, pasteAgainShortcut_, shortcut,
                 settingsKey::pasteAgainShortcut);
}

void SettingsRepository::setSingleLanguage(DictationLanguage language) {
  assignEnumeration(SettingsProperty::singleLanguage, singleLanguage_, language, settingsKey::singleLanguage);
}

void SettingsRepository::setSelectedLanguages(std::vector<DictationLanguage> languages) {
  if (languages.empty()) return;
  auto stored = codes(languages);
  assign(SettingsProperty::selectedLanguages, selectedLanguages_, std::move(languages),
         settingsKey::selectedLanguages, std::move(stored));
}

void SettingsRepository::setLanguageMode(DictationLanguageMode mode) {
  assignEnumeration(SettingsProperty::languageMode, languageMode_, mode, settingsKey::languageMode);
}

void SettingsRepository::setPlayFeedbackSound(bool on) {
  assignBoolean(SettingsProperty::playFeedbackSound, playFeedbackSound_, on, settingsKey::feedbackSound);
}

void SettingsRepository::setShowInDock(bool on) {
  assignBoolean(SettingsProperty::showInDock, showInDock_, on, settingsKey::showInDock);
  showWhereItBelongs();
}

void SettingsRepository::setSmartLocalModel(SmartLocalModel model) {
  assignEnumeration(SettingsProperty::smartLocalModel, smartLocalModel_, model, settingsKey::smartLocalModel);
}

void SettingsRepository::setSmartRefinementRouting(SmartRefinementRoutingMode mode) {
  assignEnumeration(SettingsProperty::smartRefinementRouting, smartRefinementRouting_, mode,
                    settingsKey::smartRefinementRouting);
}

void SettingsRepository::setSmartFormatting(bool on) {
  assignBoolean(SettingsProperty::smartFormatting, smartFormatting_, on, settingsKey::smartFormatting);
}

void SettingsRepository::setProcessWhileRecording(bool on) {
  assignBoolean(SettingsProperty::processWhileRecording, processWhileRecording_, on,
                settingsKey::processWhileRecording);
}

void SettingsRepository::setRecogniserIdleMinutes(std::int64_t minutes) {
  defaults_.set(settingsKey::recogniserIdleMinutes, minutes);
  publish(SettingsProperty::recogniserIdleMinutes, recogniserIdleMinutes_, minutes);
}

void SettingsRepository::setInsertWhileRecording(bool on) {
  assignBoolean(SettingsProperty::insertWhileRecording, insertWhileRecording_, on,
                settingsKey::insertWhileRecording);
}

void SettingsRepository::setRemoveFillerWords(bool on) {
  assignBoolean(SettingsProperty::removeFillerWords, removeFillerWords_, on, settingsKey::removeFillerWords);
}

void SettingsRepository::setSpokenCommands(bool on) {
  assignBoolean(SettingsProperty::spokenCommands, spokenCommands_, on, settingsKey::spokenCommands);
}

void SettingsRepository::setSpaceBetweenDictations(bool on) {
  assignBoolean(SettingsProperty::spaceBetweenDictations, spaceBetweenDictations_, on,
                settingsKey::spaceBetweenDictations);
}

void SettingsRepository::setRestorePreviousClipboard(bool on) {
  assignBoolean(SettingsProperty::restorePreviousClipboard, restorePreviousClipboard_, on,
                settingsKey::restorePreviousClipboard);
}

void SettingsRepository::setAutomaticUpdateChecks(bool on) {
  assignBoolean(SettingsProperty::automaticUpdateChecks, automaticUpdateChecks_, on,
                settingsKey::automaticUpdateChecks);
}

void SettingsRepository::setHistoryEnabled(bool on) {
  assignBoolean(SettingsProperty::historyEnabled, historyEnabled_, on, settingsKey::historyEnabled);
}

void SettingsRepository::setHistoryRetention(HistoryRetention retention) {
  assignEnumeration(SettingsProperty::historyRetention, historyRetention_, retention,
                    settingsKey::historyRetention);
}

void SettingsRepository::setOverlayPosition(OverlayPosition position) {
  assignEnumeration(SettingsProperty::overlayPosition, overlayPosition_, position,
                    settingsKey::overlayAnchor);
}

void SettingsRepository::setShowRestingIndicator(bool on) {
  assignBoolean(SettingsProperty::showRestingIndicator, showRestingIndicator_, on,
                settingsKey::showRestingIndicator);
}

void SettingsRepository::setPersonalVocabulary(std::string text) {
  vocabulary_.store(SpokenText(std::move(text)));
  publish(SettingsProperty::personalVocabulary, personalVocabulary_, vocabulary_.text());
  wipeVectorRegisters();
}

void SettingsRepository::dismissModelMigrationNotice() {
  defaults_.remove(settingsKey::modelMigrationPreviousSelection);
  publish(SettingsProperty::modelMigrationNotice, modelMigrationNotice_, std::optional<std::string>());
}

std::optional<std::string> SettingsRepository::workerLanguageCode() const {
  if (languageMode_ != DictationLanguageMode::single) return std::nullopt;
  return std::string(rawValue(singleLanguage_));
}

std::vector<DictationLanguage> SettingsRepository::spokenLanguages() const {
  switch (languageMode_) {
    case DictationLanguageMode::automaticAll:
      return {};
    case DictationLanguageMode::selected:
      return selectedLanguages_;
    case DictationLanguageMode::single:
      return {singleLanguage_};
  }
  std::unreachable();
}

std::string SettingsRepository::historyLanguageLabel() const {
  switch (languageMode_) {
    case DictationLanguageMode::automaticAll:
      return "Automatic";
    case DictationLanguageMode::selected:
      return titles(selectedLanguages_);
    case DictationLanguageMode::single:
      return std::string(title(singleLanguage_));
  }
  std::unreachable();
}

std::string SettingsRepository::languageProfileSummary() const {
  switch (languageMode_) {
    case DictationLanguageMode::automaticAll:
      return fmt::format("All {} languages, recognized automatically", allCases<DictationLanguage>().size());
    case DictationLanguageMode::selected:
      return titles(selectedLanguages_);
    case DictationLanguageMode::single:
      return fmt::format("{} only", title(singleLanguage_));
  }
  std::unreachable();
}

bool SettingsRepository::isLanguageSelected(DictationLanguage language) const {
  return std::ranges::find(selectedLanguages_, language) != selectedLanguages_.end();
}

void SettingsRepository::toggleLanguage(DictationLanguage language) {
  auto languages = selectedLanguages_;
  if (std::erase(languages, language) == 0) languages.push_back(language);
  setSelectedLanguages(std::move(languages));
}

}  // namespace murmel
