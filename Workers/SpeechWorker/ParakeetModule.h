#pragma once

#include "Workers/SpeechWorker/SpeechEngine.h"

#include <expected>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace murmel::worker {

using LoadedEngine = std::expected<std::unique_ptr<SpeechEngine>, std::string>;

/// The Parakeet engine lies in a module of its own beside the worker: it is built for processors with AVX2,
/// and no instruction of it may run before the processor has been asked.
class ParakeetModule {
 public:
  /// Beside the worker's executable.
  static constexpr const char* fileName = "mrm-parakeet-engine.so";

  /// The model file in a model folder that this engine is for; nothing when the folder belongs to another.
  static std::optional<std::filesystem::path> modelFileIn(const std::filesystem::path& modelDirectory);

  /// Opens the module; before the worker gives up opening files. It stays open. The error is a short reason.
  static std::expected<ParakeetModule, std::string> open();

  [[nodiscard]] LoadedEngine load(const std::filesystem::path& modelFile) const;

 private:
  using Load = LoadedEngine (*)(const std::filesystem::path& modelFile, int threads);
  ParakeetModule(Load entry, int threads) : load_(entry), threads_(threads) {}

  Load load_;
  int threads_;
};

}  // namespace murmel::worker
