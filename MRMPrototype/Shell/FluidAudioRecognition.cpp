#include "Shell/FluidAudioRecognition.h"

#include <utility>

namespace murmel {

FluidAudioRecognition::FluidAudioRecognition(FluidAudioProvider::Services services,
                                             FluidAudioProvider::Bundle bundle,
                                             const SpeechModelStore& models, ExecutableRuntimePolicy policy)
    : services_(services), bundle_(std::move(bundle)), models_(models), policy_(std::move(policy)) {}

Result<std::shared_ptr<TranscriptionProvider>> FluidAudioRecognition::make(
    std::function<void(bool)> warmupCompletion) {
  if (provider_ && model_ == models_.activeModelURL()) {
    if (warmupCompletion) {
      services_.executor.post([completion = std::move(warmupCompletion)] { completion(true); });
    }
    return provider_;
  }
  auto made = FluidAudioProvider::create(services_, bundle_, models_, policy_, std::move(warmupCompletion));
  if (!made) return std::unexpected(made.error());
  provider_ = *std::move(made);
  model_ = models_.activeModelURL();
  return provider_;
}

}  // namespace murmel
