#include "Models/SpeechModels.h"

#include "MRMDownloadManifest/MRMDownloadManifest.h"
#include "Models/ModelStoreLayout.h"

#include <algorithm>

namespace murmel {

bool canRunParakeet(const std::filesystem::path& resources) {
#if defined(__x86_64__)
  // What the engine is built for.
  __builtin_cpu_init();
  if (__builtin_cpu_supports("x86-64-v3") == 0) return false;
#endif
  std::error_code error;
  return std::filesystem::is_regular_file(resources / parakeetEnginePath, error);
}

std::vector<SpeechModel> speechModels(const std::filesystem::path& root, bool withParakeet) {
  std::vector<SpeechModel> models;
  for (const auto& entry : MRMDownloadManifest::parakeetGGML) {
    if (!withParakeet) break;
    const auto folder = root / entry.folder;
    auto model = std::ranges::find(models, folder, &SpeechModel::folder);
    if (model == models.end()) model = models.insert(model, {folder, {}});
    model->files.push_back(
        {*entry.relativePath, static_cast<std::uint64_t>(entry.byteCount.value()), entry.sha256});
  }
  models.push_back(packagedSpeechModel());
  return models;
}

SpeechModel packagedSpeechModel() {
  const auto files = packagedSpeechModelFiles();
  return {packagedSpeechModelFolder, {files.begin(), files.end()}};
}

}  // namespace murmel
