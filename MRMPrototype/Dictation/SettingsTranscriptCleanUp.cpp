#include "Dictation/SettingsTranscriptCleanUp.h"

#include "CleanUp/FillerCleanUp.h"

namespace murmel {

std::string SettingsTranscriptCleanUp::clean(std::string text) {
  if (settings_.removeFillerWords()) {
    text = FillerCleanUp::apply(text, settings_.workerLanguageCode(), languages_);
  }
  return vocabulary_.apply(settings_.personalVocabulary(), text);
}

}  // namespace murmel
