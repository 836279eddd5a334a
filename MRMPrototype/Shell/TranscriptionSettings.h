#pragma once

#include "Settings/DictationSettings.h"
#include "Shell/LaunchRole.h"

namespace murmel {

/// The user's settings, with what the command line says in their place. The settings must outlive it.
class TranscriptionSettings final : public DictationSettings {
 public:
  TranscriptionSettings(const DictationSettings& user, const SpeechOptions& options)
      : user_(user), options_(options) {}

  [[nodiscard]] bool playFeedbackSound() const override { return false; }
  [[nodiscard]] double forgottenRecordingMinutes() const override { return 0; }
  [[nodiscard]] bool cancelsWithEscape() const override { return false; }
  [[nodiscard]] bool keepFailedRecordings() const override { return false; }
  [[nodiscard]] bool processWhileRecording() const override { return user_.processWhileRecording(); }
  /// There is nothing to insert into.
  [[nodiscard]] bool insertWhileRecording() const override { return false; }
  [[nodiscard]] bool removeFillerWords() const override { return user_.removeFillerWords(); }
  [[nodiscard]] bool spokenCommands() const override { return user_.spokenCommands(); }
  [[nodiscard]] bool smartFormatting() const override { return options_.refine || user_.smartFormatting(); }
  [[nodiscard]] SmartRefinementRoutingMode smartRefinementRouting() const override {
    return user_.smartRefinementRouting();
  }
  [[nodiscard]] SmartLocalModel smartLocalModel() const override { return user_.smartLocalModel(); }
  [[nodiscard]] bool historyEnabled() const override { return options_.history && user_.historyEnabled(); }
  [[nodiscard]] std::string personalVocabulary() const override { return user_.personalVocabulary(); }
  [[nodiscard]] std::optional<std::string> workerLanguageCode() const override {
    return options_.language ? options_.language : user_.workerLanguageCode();
  }
  [[nodiscard]] std::vector<DictationLanguage> spokenLanguages() const override {
    if (!options_.language) return user_.spokenLanguages();
    const auto language = fromRawValue<DictationLanguage>(*options_.language);
    return language ? std::vector{*language} : std::vector<DictationLanguage>();
  }
  [[nodiscard]] Duration recogniserIdleLimit() const override { return user_.recogniserIdleLimit(); }
  [[nodiscard]] std::string historyLanguageLabel() const override { return user_.historyLanguageLabel(); }

 private:
  const DictationSettings& user_;
  SpeechOptions options_;
};

}  // namespace murmel
