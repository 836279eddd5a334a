#pragma once

#include "Dictation/SettingsRefinementSource.h"
#include "Dictation/SettingsTranscriptCleanUp.h"
#include "Foundation/Clock.h"
#include "Foundation/Executor.h"
#include "Foundation/Log.h"
#include "Models/ModelManager.h"
#include "Platform/Linux/LanguageRecognizer/CLD2LanguageRecognizer.h"
#include "Platform/Linux/Process/LinuxProcessLauncher.h"
#include "Segmentation/IncrementalDictationSession.h"
#include "Shell/ApplicationFolders.h"
#include "Shell/FluidAudioRecognition.h"
#include "Storage/DictationSettings.h"

#include <string>

namespace murmel {

/// From samples to cleaned text: what every way of dictating shares, with a desktop or without. Main thread.
class SpeechServices {
 public:
  /// The references must outlive this.
  SpeechServices(Executor& executor, const Clock& clock, LogSink& log, const ApplicationFolders& folders,
                 const std::string& applicationIdentifier, const DictationSettings& settings);

 private:
  LinuxProcessLauncher launcher_;
  CLD2LanguageRecognizer languages_;
  MissingModelRefiners modelRefiners_;

 public:
  ModelManager models;
  FluidAudioRecognition recognition;
  SettingsRefinementSource refinement;
  SettingsTranscriptCleanUp cleanUp;
  IncrementalDictationSessionFactory sessions;
};

}  // namespace murmel
