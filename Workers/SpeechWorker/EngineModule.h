#pragma once

#include "Models/SpeechEngines.h"
#include "Workers/SpeechWorker/SpeechEngine.h"

#include <filesystem>
#include <memory>

namespace murmel::worker {

using LoadedEngine = std::expected<std::unique_ptr<SpeechEngine>, std::string>;

/// A speech model on disk: its engine and the file by which it was recognised.
struct FoundModel {
  const SpeechEngineRow* engine;
  std::filesystem::path file;
};

/// What lies in a model folder says which engine it is for; the last one's where it says nothing.
FoundModel modelIn(const std::filesystem::path& modelDirectory);

/// The engines for Whisper and Parakeet models lie in a module of their own beside the worker, built for
/// several levels of processors: no instruction of it may run before the processor has been asked.
class EngineModule {
 public:
  /// Opens the module in `folder` that suits this processor; before the worker gives up opening files. It
  /// stays open. The error is a short reason.
  static std::expected<EngineModule, std::string> open(const SpeechEngineRow& engine,
                                                       const std::filesystem::path& folder);

  [[nodiscard]] LoadedEngine load(const std::filesystem::path& modelFile) const {
    return load_(modelFile, threads_);
  }

 private:
  using Load = LoadedEngine (*)(const std::filesystem::path& modelFile, int threads);
  EngineModule(Load entry, int threads) : load_(entry), threads_(threads) {}

  Load load_;
  int threads_;
};

}  // namespace murmel::worker
