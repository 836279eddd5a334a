#include "Shell/SpeechServices.h"

#include "Audio/AudioCaptureService.h"
#include "Shell/RuntimePolicy.h"

namespace murmel {

SpeechServices::SpeechServices(Executor& executor, const Clock& clock, LogSink& log,
                               const ApplicationFolders& folders, const std::string& applicationIdentifier,
                               const DictationSettings& settings)
    : models(executor),
      recognition({executor, clock, launcher_}, {folders.resources, applicationIdentifier}, models,
                  runtimePolicy(folders)),
      refinement(settings, modelRefiners_, languages_),
      cleanUp(settings),
      sessions({executor, clock, Logger(log, applicationIdentifier, "incremental-stages"),
                &AudioCaptureService::convertForRecognition}) {
  models.validate();
}

}  // namespace murmel
