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

/// The models that can be downloaded into the store at `root`, the recommended one first, then the model that
/// comes as a package and serves until one of them is there.
std::vector<SpeechModel> speechModels(const std::filesystem::path& root);

/// The packaged model alone.
SpeechModel packagedSpeechModel();

}  // namespace murmel
