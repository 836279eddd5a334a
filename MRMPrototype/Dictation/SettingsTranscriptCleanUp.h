#pragma once

#include "CleanUp/PersonalVocabulary.h"
#include "Dictation/TranscriptCleanUp.h"
#include "Settings/DictationSettings.h"

namespace murmel {

/// Fillers first, then the vocabulary, as the settings ask for.
class SettingsTranscriptCleanUp final : public TranscriptCleanUp {
 public:
  explicit SettingsTranscriptCleanUp(const DictationSettings& settings) : settings_(settings) {}
  [[nodiscard]] std::string clean(std::string text) override;

 private:
  const DictationSettings& settings_;
  PersonalVocabulary vocabulary_;
};

}  // namespace murmel
