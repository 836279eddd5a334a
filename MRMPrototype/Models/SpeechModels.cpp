#include "Models/SpeechModels.h"

#include "MRMDownloadManifest/MRMDownloadManifest.h"

#include <algorithm>

namespace murmel {

std::vector<SpeechModel> speechModels(const std::filesystem::path& root) {
  std::vector<SpeechModel> models;
  for (const auto& entry : MRMDownloadManifest::parakeetGGML) {
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
