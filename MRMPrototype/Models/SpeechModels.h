#pragma once

#include "Models/SpeechModelFiles.h"

#include <filesystem>
#include <string>
#include <vector>

namespace murmel {

/// One speech model that the engine of this platform can run, and where it belongs.
struct SpeechModel {
  std::filesystem::path folder;
  std::vector<SpeechModelFile> files;
};

/// Whether this build has the Parakeet engine (beside the worker in the resources folder) and this processor
/// can run it. Where it is false, a downloaded Parakeet model is of no use.
bool canRunParakeet(const std::filesystem::path& resources);

/// The models that can be downloaded into the store at `root`, the recommended one first (none of them when
/// `withParakeet` is false), then the model that comes as a package and serves until one of them is there.
std::vector<SpeechModel> speechModels(const std::filesystem::path& root, bool withParakeet);

/// The packaged model alone.
SpeechModel packagedSpeechModel();

}  // namespace murmel
