#include "Models/InstalledModels.h"

#include "MRMDownloadManifest/MRMDownloadManifest.h"
#include "Models/ModelStoreLayout.h"

#include <algorithm>
#include <utility>

namespace murmel {

InstalledModels::InstalledModels(std::filesystem::path root)
    : InstalledModels(std::move(root),
                      [](std::string_view identifier) { return MRMDownloadManifest::asset(identifier); }) {}

InstalledModels::InstalledModels(std::filesystem::path root, Lookup lookup)
    : root_(std::move(root)), lookup_(std::move(lookup)), verifier_(root_ / verificationMemoryName) {}

ModelArtifact InstalledModels::artifact(const std::filesystem::path& root,
                                        const ApprovedModelDownload& asset) {
  const auto size =
      asset.byteCount ? std::optional(static_cast<std::uint64_t>(*asset.byteCount)) : std::nullopt;
  return {root / asset.storePath(), size, asset.sha256};
}

InstalledModels::Finding InstalledModels::look(const std::vector<std::string>& identifiers) const {
  auto worst = Finding::verified;
  for (const auto& identifier : identifiers) {
    const auto* asset = lookup_(identifier);
    worst = std::min(worst, asset == nullptr ? Finding::missing : verifier_.look(artifact(root_, *asset)));
  }
  return worst;
}

bool InstalledModels::verify(const std::vector<std::string>& identifiers, const std::atomic<bool>& stopping) {
  return std::ranges::all_of(identifiers, [&](const auto& identifier) {
    const auto* asset = lookup_(identifier);
    return asset != nullptr && verifier_.verify(artifact(root_, *asset), stopping);
  });
}

bool InstalledModels::verifyAgain(const std::vector<std::string>& identifiers,
                                  const std::atomic<bool>& stopping) {
  bool areRight = true;
  for (const auto& identifier : identifiers) {
    const auto* asset = lookup_(identifier);
    areRight = asset != nullptr && verifier_.verifyAgain(artifact(root_, *asset), stopping) && areRight;
  }
  return areRight;
}

bool InstalledModels::remove(const std::vector<std::string>& identifiers) {
  bool allGone = true;
  const auto partials = root_ / partialDownloadsFolder;
  for (const auto& identifier : identifiers) {
    const auto* asset = lookup_(identifier);
    if (asset == nullptr) continue;
    std::error_code error;
    const auto file = root_ / asset->storePath();
    std::filesystem::remove(file, error);
    allGone = allGone && !std::filesystem::exists(std::filesystem::symlink_status(file, error));
    for (const auto* suffix : {".part", ".etag"})
      std::filesystem::remove(partials / std::string(asset->sha256).append(suffix), error);
    // Folders that are empty now, up to the root.
    for (auto folder = file.parent_path(); folder != root_ && std::filesystem::remove(folder, error);)
      folder = folder.parent_path();
  }
  std::error_code error;
  std::filesystem::remove(partials, error);
  verifier_.forgetMissing();
  return allGone;
}

std::uint64_t InstalledModels::bytes(const std::vector<std::string>& identifiers) const {
  std::uint64_t sum = 0;
  for (const auto& identifier : identifiers) {
    std::error_code error;
    const auto* asset = lookup_(identifier);
    if (asset == nullptr) continue;
    const auto size = std::filesystem::file_size(root_ / asset->storePath(), error);
    if (!error) sum += size;
  }
  return sum;
}

}  // namespace murmel
