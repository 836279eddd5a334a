#include "Dictation/SettingsTranscriptCleanUp.h"

#include "CleanUp/FillerCleanUp.h"
#include "CleanUp/SpokenCommands.h"

namespace murmel {

std::string SettingsTranscriptCleanUp::clean(std::string text) {
  if (settings_.removeFillerWords()) {
    text = FillerCleanUp::apply(text, settings_.workerLanguageCode(), languages_);
  }
  if (settings_.spokenCommands())
    text = SpokenCommands::apply(text, settings_.workerLanguageCode(), languages_);
  return vocabulary_.apply(settings_.personalVocabulary(), text);
}

}  // namespace murmel
