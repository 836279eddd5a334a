#include "Models/ModelInventory.h"

#include "MRMDownloadManifest/MRMDownloadManifest.h"
#include "Models/ModelStoreLayout.h"

#include <algorithm>
#include <utility>

namespace murmel {

namespace {

ModelArtifact artifactOf(const SpeechModelFile& file, const std::filesystem::path& folder) {
  return {folder / file.path, file.size, file.sha256};
}

}  // namespace

ModelInventory::ModelInventory(std::filesystem::path store, std::filesystem::path resources)
    : ModelInventory(std::move(store), std::move(resources),
                     [](std::string_view identifier) { return MRMDownloadManifest::asset(identifier); }) {}

ModelInventory::ModelInventory(std::filesystem::path store, std::filesystem::path resources, Lookup lookup)
    : store_(std::move(store)),
      resources_(std::move(resources)),
      lookup_(std::move(lookup)),
      verifier_(store_.empty() ? store_ : store_ / verificationMemoryName) {}

std::filesystem::path ModelInventory::place(const ApprovedModelDownload& file) const {
  std::error_code error;
  auto own = store_ / file.storePath();
  if (resources_.empty() || std::filesystem::exists(own, error)) return own;
  auto packaged = resources_ / packagedModelsFolder / file.storePath();
  return std::filesystem::exists(packaged, error) ? packaged : own;
}

ModelArtifact ModelInventory::artifact(const ApprovedModelDownload& file) const {
  const auto size =
      file.byteCount ? std::optional(static_cast<std::uint64_t>(*file.byteCount)) : std::nullopt;
  return {place(file), size, file.sha256};
}

ModelInventory::Finding ModelInventory::look(const ApprovedModelDownload& file) const {
  return verifier_.look(artifact(file));
}

ModelInventory::Finding ModelInventory::look(const std::vector<std::string>& identifiers) const {
  auto worst = Finding::verified;
  for (const auto& identifier : identifiers) {
    const auto* const file = lookup_(identifier);
    worst = std::min(worst, file == nullptr ? Finding::missing : look(*file));
  }
  return worst;
}

ModelInventory::Finding ModelInventory::look(const SpeechModel& model,
                                             const std::filesystem::path& folder) const {
  auto worst = Finding::verified;
  for (const auto& file : model.files) worst = std::min(worst, verifier_.look(artifactOf(file, folder)));
  return worst;
}

bool ModelInventory::verify(const ApprovedModelDownload& file, const std::atomic<bool>& stopping) {
  return verifier_.verify(artifact(file), stopping);
}

bool ModelInventory::verify(const std::vector<std::string>& identifiers, const std::atomic<bool>& stopping) {
  return std::ranges::all_of(identifiers, [&](const auto& identifier) {
    const auto* const file = lookup_(identifier);
    return file != nullptr && verify(*file, stopping);
  });
}

bool ModelInventory::verify(const SpeechModel& model, const std::filesystem::path& folder,
                            const std::atomic<bool>& stopping) {
  return std::ranges::all_of(
      model.files, [&](const auto& file) { return verifier_.verify(artifactOf(file, folder), stopping); });
}

bool ModelInventory::verifyAgain(const std::vector<std::string>& identifiers,
                                 const std::atomic<bool>& stopping) {
  bool areRight = true;
  for (const auto& identifier : identifiers) {
    const auto* const file = lookup_(identifier);
    areRight = file != nullptr && verifier_.verifyAgain(artifact(*file), stopping) && areRight;
  }
  return areRight;
}

bool ModelInventory::verifyAgain(const SpeechModel& model, const std::atomic<bool>& stopping) {
  bool areRight = true;
  for (const auto& file : model.files)
    areRight = verifier_.verifyAgain(artifactOf(file, model.folder), stopping) && areRight;
  return areRight;
}

bool ModelInventory::isPackaged(const std::vector<std::string>& identifiers) const {
  return std::ranges::any_of(identifiers, [&](const auto& identifier) {
    const auto* const file = lookup_(identifier);
    return file != nullptr && place(*file) != store_ / file->storePath();
  });
}

bool ModelInventory::remove(const std::vector<std::string>& identifiers) {
  bool allGone = true;
  const auto partials = store_ / partialDownloadsFolder;
  for (const auto& identifier : identifiers) {
    const auto* asset = lookup_(identifier);
    if (asset == nullptr) continue;
    std::error_code error;
    const auto file = store_ / asset->storePath();
    std::filesystem::remove(file, error);
    allGone = allGone && !std::filesystem::exists(std::filesystem::symlink_status(file, error));
    for (const auto* suffix : {".part", ".etag"})
      std::filesystem::remove(partials / std::string(asset->sha256).append(suffix), error);
    // Folders that are empty now, up to the root.
    for (auto folder = file.parent_path(); folder != store_ && std::filesystem::remove(folder, error);)
      folder = folder.parent_path();
  }
  std::error_code error;
  std::filesystem::remove(partials, error);
  verifier_.forgetMissing();
  return allGone;
}

std::uint64_t ModelInventory::bytes(const std::vector<std::string>& identifiers) const {
  std::uint64_t sum = 0;
  for (const auto& identifier : identifiers) {
    std::error_code error;
    const auto* asset = lookup_(identifier);
    if (asset == nullptr) continue;
    const auto size = std::filesystem::file_size(store_ / asset->storePath(), error);
    if (!error) sum += size;
  }
  return sum;
}

}  // namespace murmel
