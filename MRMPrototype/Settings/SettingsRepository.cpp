#include "Settings/SettingsRepository.h"

#include "Settings/SettingsKeys.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

namespace murmel {

namespace {

template <class E>
E storedCase(const DefaultsStore& defaults, std::string_view key, E fallback) {
  const auto raw = defaults.get<std::string>(key);
  return raw ? fromRawValue<E>(*raw).value_or(fallback) : fallback;
}

std::vector<std::string> codes(const std::vector<DictationLanguage>& languages) {
  std::vector<std::string> result;
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
      vocabulary_(std::move(parameters.vocabularyFile)),
      channel_(parameters.channel),
      activationPolicy_(parameters.activationPolicy) {
  const auto ready = [&](SmartLocalModel model) {
    return parameters.modelIsReady && parameters.modelIsReady(model);
  };
  shortcut_ = settingsMigration::shortcut(defaults_, channel_);
  loadLanguages();
  playFeedbackSound_ = defaults_.boolean(settingsKey::feedbackSound, true);
  showInDock_ = defaults_.boolean(settingsKey::showInDock, true);
  smartLocalModel_ = settingsMigration::smartLocalModel(defaults_, parameters.fullGemmaCatalog, ready);
  modelMigrationNotice_ = settingsMigration::modelMigrationNotice(defaults_);
  smartRefinementRouting_ = storedCase(defaults_, settingsKey::smartRefinementRouting,
                                       SmartRefinementRoutingMode::automaticByLanguage);
  smartFormatting_ = settingsMigration::smartFormatting(defaults_, smartLocalModel_, ready);
  historyEnabled_ = defaults_.boolean(settingsKey::historyEnabled, false);
  historyRetention_ = storedCase(defaults_, settingsKey::historyRetention, HistoryRetention::forever);
  removeFillerWords_ = defaults_.boolean(settingsKey::removeFillerWords, false);
  processWhileRecording_ = defaults_.boolean(settingsKey::processWhileRecording, true);
  insertWhileRecording_ = defaults_.boolean(settingsKey::insertWhileRecording, false);
  restorePreviousClipboard_ = defaults_.boolean(settingsKey::restorePreviousClipboard, true);
  personalVocabulary_ = vocabulary_.load(defaults_);
  vocabularyStorageStatus_ = vocabulary_.status();
  overlayPosition_ = storedCase(defaults_, settingsKey::overlayAnchor, OverlayPosition::right);
}

void SettingsRepository::loadLanguages() {
  const auto primary = storedCase(defaults_, settingsKey::primaryLanguage, DictationLanguage::english);
  const auto secondary = storedCase(defaults_, settingsKey::secondaryLanguage, DictationLanguage::russian);
  singleLanguage_ = storedCase(defaults_, settingsKey::singleLanguage, primary);
  const auto stored = defaults_.get<std::vector<std::string>>(settingsKey::selectedLanguages);
  for (const auto& code : stored.value_or(std::vector<std::string>{})) {
    if (const auto language = fromRawValue<DictationLanguage>(code)) selectedLanguages_.push_back(*language);
  }
  if (selectedLanguages_.empty()) selectedLanguages_ = {primary, secondary};
  languageMode_ = storedCase(defaults_, settingsKey::languageMode, DictationLanguageMode::automaticAll);
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

void SettingsRepository::setShortcut(const ShortcutConfiguration& shortcut) {
  auto sanitized = ShortcutDistributionPolicy::sanitize(shortcut, channel_);
  const auto json = sanitized.toJson();
  if (json) {
    assign(SettingsProperty::shortcut, shortcut_, std::move(sanitized), settingsKey::shortcutConfiguration,
           std::vector<std::uint8_t>(json->begin(), json->end()));
  } else {
    publish(SettingsProperty::shortcut, shortcut_, std::move(sanitized));
  }
  shortcutDidChange_.emit();
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
  const auto policy = on ? ActivationPolicy::regular : ActivationPolicy::accessory;
  if (activationPolicy_ != nullptr && activationPolicy_->current() != policy) activationPolicy_->set(policy);
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

void SettingsRepository::setInsertWhileRecording(bool on) {
  assignBoolean(SettingsProperty::insertWhileRecording, insertWhileRecording_, on,
                settingsKey::insertWhileRecording);
}

void SettingsRepository::setRemoveFillerWords(bool on) {
  assignBoolean(SettingsProperty::removeFillerWords, removeFillerWords_, on, settingsKey::removeFillerWords);
}

void SettingsRepository::setRestorePreviousClipboard(bool on) {
  assignBoolean(SettingsProperty::restorePreviousClipboard, restorePreviousClipboard_, on,
                settingsKey::restorePreviousClipboard);
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

void SettingsRepository::setPersonalVocabulary(std::string text) {
  publish(SettingsProperty::personalVocabulary, personalVocabulary_, SpokenText(std::move(text)));
  vocabulary_.store(personalVocabulary_);
  publish(SettingsProperty::vocabularyStorageStatus, vocabularyStorageStatus_, vocabulary_.status());
}

void SettingsRepository::retryPersonalVocabulary() {
  if (vocabulary_.loadedSuccessfully() || !personalVocabulary_.empty()) return;
  publish(SettingsProperty::personalVocabulary, personalVocabulary_, vocabulary_.load(defaults_));
  publish(SettingsProperty::vocabularyStorageStatus, vocabularyStorageStatus_, vocabulary_.status());
}

void SettingsRepository::dismissModelMigrationNotice() {
  defaults_.remove(settingsKey::modelMigrationPreviousSelection);
  publish(SettingsProperty::modelMigrationNotice, modelMigrationNotice_, std::optional<std::string>());
}

std::optional<std::string> SettingsRepository::workerLanguageCode() const {
  if (languageMode_ != DictationLanguageMode::single) return std::nullopt;
  return std::string(rawValue(singleLanguage_));
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
