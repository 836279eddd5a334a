#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Executor.h"
#include "Models/SpeechModelStore.h"
#include "Models/SpeechModels.h"
#include "Platform/ProcessLauncher.h"
#include "Product/ExecutableRuntimePolicy.h"
#include "Recognition/FluidAudioProvider.h"
#include "Recognition/TranscriptionProviderFactory.h"

#include <expected>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace murmel {

/// Makes the recogniser, and gives the same one again as long as the model is the same: its worker has loaded
/// the model already.
class FluidAudioRecognition final : public TranscriptionProviderFactory {
 public:
  FluidAudioRecognition(FluidAudioProvider::Services services, FluidAudioProvider::Bundle bundle,
                        const SpeechModelStore& models, ExecutableRuntimePolicy policy,
                        std::vector<SpeechModel> allModels = {});

  Result<std::shared_ptr<TranscriptionProvider>> make(std::function<void(bool)> warmupCompletion) override;
  std::shared_ptr<TranscriptionProvider> makeNext(const std::optional<std::string>& language) override;
  /// The best recogniser that knows the language; without one the error says which languages are known.
  std::expected<std::shared_ptr<TranscriptionProvider>, std::string> makeFor(const std::string& language);

 private:
  std::shared_ptr<TranscriptionProvider> makeOther(const std::filesystem::path& folder);

  FluidAudioProvider::Services services_;
  FluidAudioProvider::Bundle bundle_;
  const SpeechModelStore& models_;
  ExecutableRuntimePolicy policy_;
  std::filesystem::path model_;
  std::shared_ptr<TranscriptionProvider> provider_;
  std::vector<SpeechModel> allModels_;  ///< that this machine can run, the best first
  std::filesystem::path otherModel_;
  std::shared_ptr<TranscriptionProvider> other_;
};

}  // namespace murmel
