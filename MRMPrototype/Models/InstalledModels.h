#pragma once

#include "MRMDownloadManifest/ApprovedModelDownload.h"
#include "Models/ArtifactVerifier.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace murmel {

/// The files of the store as such, whatever model they belong to: what is there, whether it is right, and
/// their removal. Thread-safe.
class InstalledModels {
 public:
  using Finding = ArtifactVerifier::Finding;
  using Lookup = std::function<const ApprovedModelDownload*(std::string_view identifier)>;

  /// `root`: of the model store. `lookup`: the manifest's, but in tests.
  explicit InstalledModels(std::filesystem::path root);
  InstalledModels(std::filesystem::path root, Lookup lookup);

  /// The worst of the findings about these files, without reading them.
  [[nodiscard]] Finding look(const std::vector<std::string>& identifiers) const;
  /// Reads what is not known.
  bool verify(const std::vector<std::string>& identifiers, const std::atomic<bool>& stopping);
  /// Reads everything again, known or not.
  bool verifyAgain(const std::vector<std::string>& identifiers, const std::atomic<bool>& stopping);
  /// Removes the files, folders that become empty, and what an unfinished download left. False when a file
  /// stays.
  [[nodiscard]] bool remove(const std::vector<std::string>& identifiers);
  /// Bytes that these files occupy now.
  [[nodiscard]] std::uint64_t bytes(const std::vector<std::string>& identifiers) const;

 private:
  [[nodiscard]] static ModelArtifact artifact(const std::filesystem::path& root,
                                              const ApprovedModelDownload& asset);

  std::filesystem::path root_;
  Lookup lookup_;
  ArtifactVerifier verifier_;
};

}  // namespace murmel
