#pragma once

#include "Dictation/SettingsTranscriptCleanUp.h"
#include "LocalModels/LocalModelRefiners.h"
#include "Platform/Linux/LanguageRecognizer/CLD2LanguageRecognizer.h"
#include "Segmentation/IncrementalDictationSession.h"
#include "Settings/DictationSettings.h"
#include "Shell/FluidAudioRecognition.h"
#include "Shell/ModelServices.h"

namespace murmel {

/// From samples to cleaned text: what every way of dictating shares, with a desktop or without. Main thread.
class SpeechServices {
 public:
  /// The references must outlive this.
  SpeechServices(const ProcessServices& process, const Installation& installation, ModelServices& models,
                 const DictationSettings& settings);

 private:
  CLD2LanguageRecognizer languages_;

 public:
  LocalModelRefiners refiners;
  FluidAudioRecognition recognition;
  SettingsTranscriptCleanUp cleanUp;
  IncrementalDictationSessionFactory sessions;
};

}  // namespace murmel
