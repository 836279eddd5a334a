#include "Models/SpeechModels.h"

#include "MRMDownloadManifest/MRMDownloadManifest.h"
#include "Models/ModelStoreLayout.h"

#include <algorithm>
#include <array>

namespace murmel {

namespace {

// Version 0.8+5prealpha+1-15, the only one that Debian 12 has had. Left out are the files that the recogniser
// does not open: the read-me and the phone language model.
constexpr auto packagedFiles = std::to_array<SpeechModelFile>({
    {"cmudict-en-us.dict", 3272051, "9de99dd2a24b63c653c1c30ab39388d05185cae36d0875f15c319b4ad6dc43af"},
    {"en-us.lm.bin", 27114385, "db21d0642286677699e6dbc859d2e5395570222361999387ce60f6e1d01995d6"},
    {"en-us/feat.params", 230, "9f8058c107ebbc42abef6d39c67c6aedbcf60ac371332e550994e12a0392cb02"},
    {"en-us/mdef", 2959176, "2360f9a86889c1cfee8bd618a0269387911e5fb2920a594f506b18b8c79683b0"},
    {"en-us/means", 838732, "832019e32cac12eb318964f96f469034acb12d0348eeddc3831831a100cb4dd4"},
    {"en-us/noisedict", 56, "7295b07df2c204c4f87c6782b6be1a3859d7006d4e3864181c955d6dab105a33"},
    {"en-us/sendump", 1969024, "8c9564c0d5bef69ca9d9bf1014abe162f071644cf02cf1fa8a483c3dc165a7a8"},
    {"en-us/transition_matrices", 2080, "c1f7f28ea43177be734be1f88bd7f1b9a853d0e660f8599c67c6eaeca8bb539a"},
    {"en-us/variances", 838732, "b00d696f85e96834fc10f8e5f06428d8c4db6bffdbe5845b6f69bf6efbc48fa5"},
});

/// What the downloader puts into the store at `root` for the engine.
std::vector<SpeechModel> downloads(const SpeechEngineRow& engine, const std::filesystem::path& root) {
  std::vector<SpeechModel> models;
  for (const auto& entry : MRMDownloadManifest::speechGGML) {
    const auto& path = entry.relativePath;
    if (!path || !entry.byteCount || !path->starts_with(engine.modelFile)) continue;
    const auto folder = root / entry.folder;
    auto model = std::ranges::find(models, folder, &SpeechModel::folder);
    if (model == models.end()) model = models.insert(model, {folder, {}, &engine});
    model->files.push_back({*path, static_cast<std::uint64_t>(*entry.byteCount), entry.sha256});
  }
  return models;
}

}  // namespace

bool canRun(const SpeechEngineRow& engine, const std::filesystem::path& resources) {
  return engine.loader.empty() ||
         engineModuleLevel(resources / workersFolder) >= std::max(1, engine.processorLevel);
}

std::vector<SpeechModel> speechModels(const std::filesystem::path& root,
                                      const std::filesystem::path& resources) {
  const auto packaged = packagedSpeechModels(resources);
  std::vector<SpeechModel> models;
  for (const auto& engine : speechEngines) {
    std::ranges::copy_if(packaged, std::back_inserter(models),
                         [&](const SpeechModel& model) { return model.engine == &engine; });
    if (canRun(engine, resources)) std::ranges::move(downloads(engine, root), std::back_inserter(models));
  }
  return models;
}

std::vector<SpeechModel> packagedSpeechModels(const std::filesystem::path& resources) {
  std::vector<SpeechModel> models;
  const auto& whisper = speechEngine("whisper-base");
  if (canRun(whisper, resources)) {
    // The same file as the one that can be downloaded.
    models = downloads(whisper, {});
    models.front().folder = resources / packagedModelsFolder / whisper.identifier;
  }
  models.push_back(packagedSpeechModel());
  return models;
}

bool isThere(const SpeechModel& model) {
  return std::ranges::all_of(model.files, [&](const SpeechModelFile& file) {
    std::error_code error;
    return std::filesystem::file_size(model.folder / file.path, error) == file.size;
  });
}

SpeechModel packagedSpeechModel() {
  return {
      packagedSpeechModelFolder, {packagedFiles.begin(), packagedFiles.end()}, &speechEngine("pocketsphinx")};
}

const SpeechEngineRow* engineOf(const std::filesystem::path& folder) {
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
    const auto name = entry.path().filename().string();
    const auto found = std::ranges::find_if(
        speechEngines, [&](const auto& engine) { return name.starts_with(engine.modelFile); });
    if (found != speechEngines.end()) return &*found;
  }
  return nullptr;
}

}  // namespace murmel
