#pragma once

#include "CleanUp/PersonalVocabulary.h"
#include "Dictation/TranscriptCleanUp.h"
#include "Platform/LanguageRecognizer.h"
#include "Settings/DictationSettings.h"

namespace murmel {

/// Fillers first, then the spoken commands, then the vocabulary, as the settings ask for.
class SettingsTranscriptCleanUp final : public TranscriptCleanUp {
 public:
  /// Both must outlive this.
  SettingsTranscriptCleanUp(const DictationSettings& settings, const LanguageRecognizer& languages)
      : settings_(settings), languages_(languages) {}
  [[nodiscard]] std::string clean(std::string text) override;

 private:
  const DictationSettings& settings_;
  const LanguageRecognizer& languages_;
  PersonalVocabulary vocabulary_;
};

}  // namespace murmel
