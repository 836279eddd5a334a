#include "Models/SpeechModels.h"

#include "MRMDownloadManifest/MRMDownloadManifest.h"
#include "Models/ModelStoreLayout.h"

#include <algorithm>

namespace murmel {

namespace {

/// What the downloader puts into the store at `root` for the engine.
std::vector<SpeechModel> downloads(const SpeechEngineRow& engine, const std::filesystem::path& root) {
  std::vector<SpeechModel> models;
  for (const auto& entry : MRMDownloadManifest::speechGGML) {
    if (!entry.relativePath->starts_with(engine.modelFile)) continue;
    const auto folder = root / entry.folder;
    auto model = std::ranges::find(models, folder, &SpeechModel::folder);
    if (model == models.end()) model = models.insert(model, {folder, {}, &engine});
    model->files.push_back(
        {*entry.relativePath, static_cast<std::uint64_t>(entry.byteCount.value()), entry.sha256});
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
  const auto files = packagedSpeechModelFiles();
  return {packagedSpeechModelFolder, {files.begin(), files.end()}, &speechEngine("pocketsphinx")};
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
