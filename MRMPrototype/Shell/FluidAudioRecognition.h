#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Executor.h"
#include "Models/SpeechModelStore.h"
#include "Platform/ProcessLauncher.h"
#include "Product/ExecutableRuntimePolicy.h"
#include "Recognition/FluidAudioProvider.h"
#include "Recognition/TranscriptionProviderFactory.h"

#include <filesystem>
#include <memory>

namespace murmel {

/// Makes the recogniser, and gives the same one again as long as somebody holds it and the model is the same:
/// its worker has loaded the model already.
class FluidAudioRecognition final : public TranscriptionProviderFactory {
 public:
  FluidAudioRecognition(FluidAudioProvider::Services services, FluidAudioProvider::Bundle bundle,
                        const SpeechModelStore& models, ExecutableRuntimePolicy policy);

  Result<std::shared_ptr<TranscriptionProvider>> make(std::function<void(bool)> warmupCompletion) override;

 private:
  FluidAudioProvider::Services services_;
  FluidAudioProvider::Bundle bundle_;
  const SpeechModelStore& models_;
  ExecutableRuntimePolicy policy_;
  std::filesystem::path model_;
  std::shared_ptr<TranscriptionProvider> provider_;
};

}  // namespace murmel
