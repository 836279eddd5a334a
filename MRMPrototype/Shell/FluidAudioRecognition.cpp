#include "Shell/FluidAudioRecognition.h"

#include <set>
#include <sstream>
#include <utility>

#include <fmt/format.h>

namespace murmel {

FluidAudioRecognition::FluidAudioRecognition(FluidAudioProvider::Services services,
                                             FluidAudioProvider::Bundle bundle,
                                             const SpeechModelStore& models, ExecutableRuntimePolicy policy,
                                             std::vector<SpeechModel> allModels)
    : services_(std::move(services)),
      bundle_(std::move(bundle)),
      models_(models),
      policy_(std::move(policy)),
      allModels_(std::move(allModels)) {}

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

std::shared_ptr<TranscriptionProvider> FluidAudioRecognition::makeNext(
    const std::optional<std::string>& language) {
  const auto active = models_.activeModelURL();
  for (const auto& model : allModels_) {
    if (model.folder == active || (language && !knowsLanguage(*model.engine, *language))) continue;
    if (auto other = makeOther(model.folder)) return other;
  }
  return nullptr;
}

std::expected<std::shared_ptr<TranscriptionProvider>, std::string> FluidAudioRecognition::makeFor(
    const std::string& language) {
  std::set<std::string> known;
  for (const auto& model : allModels_) {
    if (!models_.requiredItemsPresent(model.folder)) continue;
    const bool isActive = model.folder == models_.activeModelURL();
    if (knowsLanguage(*model.engine, language)) {
      if (auto made = isActive ? make(nullptr).value_or(nullptr) : makeOther(model.folder)) return made;
    }
    std::istringstream codes{std::string(model.engine->languages)};
    for (std::string code; codes >> code;) known.insert(code);
  }
  return std::unexpected(
      fmt::format("The language “{}” is not known here. Known are: {}", language, fmt::join(known, " ")));
}

std::shared_ptr<TranscriptionProvider> FluidAudioRecognition::makeOther(const std::filesystem::path& folder) {
  if (other_ && otherModel_ == folder) return other_;
  auto made = FluidAudioProvider::createFor(folder, services_, bundle_, models_, policy_);
  if (!made) return nullptr;
  otherModel_ = folder;
  other_ = *std::move(made);
  return other_;
}

}  // namespace murmel
