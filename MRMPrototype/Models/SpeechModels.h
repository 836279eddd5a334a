#pragma once

#include "Models/SpeechEngines.h"

#include <cstdint>
#include <filesystem>
#include <string_view>
#include <vector>

namespace murmel {

/// One file that a speech model consists of, known by its contents.
struct SpeechModelFile {
  std::string_view path;    ///< relative to the model's folder
  std::uint64_t size;       ///< bytes
  std::string_view sha256;  ///< lower-case hexadecimal
};

/// The US English model of Debian 12's package pocketsphinx-en-us, below this folder.
inline constexpr std::string_view packagedSpeechModelFolder = "/usr/share/pocketsphinx/model/en-us";

/// One speech model and where it belongs.
struct SpeechModel {
  std::filesystem::path folder;
  std::vector<SpeechModelFile> files;
  const SpeechEngineRow* engine = &speechEngines.back();
};

/// Whether the engine is in this build (the workers lie in the folder of that name in the resources) and this
/// processor can run it. Where it is not, its models are of no use.
bool canRun(const SpeechEngineRow& engine, const std::filesystem::path& resources);

/// The models that this machine can run, the best engine's first: of each what comes with the application or
/// the distribution, and what can be downloaded into the store at `root`, the recommended one first.
std::vector<SpeechModel> speechModels(const std::filesystem::path& root,
                                      const std::filesystem::path& resources);

/// Of these, the ones that come with the application or the distribution.
std::vector<SpeechModel> packagedSpeechModels(const std::filesystem::path& resources);

/// Whether all its files are there, by their sizes.
bool isThere(const SpeechModel& model);

/// The engine whose model lies in `folder`; nullptr when it is none's.
const SpeechEngineRow* engineOf(const std::filesystem::path& folder);

/// The distribution's model alone.
SpeechModel packagedSpeechModel();

}  // namespace murmel
