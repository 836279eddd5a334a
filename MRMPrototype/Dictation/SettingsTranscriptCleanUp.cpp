#include "Dictation/SettingsTranscriptCleanUp.h"

#include "CleanUp/FillerWordRemoval.h"

namespace murmel {

std::string SettingsTranscriptCleanUp::clean(std::string text) {
  if (settings_.removeFillerWords()) text = FillerWordRemoval::apply(text);
  return vocabulary_.apply(settings_.personalVocabulary(), text);
}

}  // namespace murmel
