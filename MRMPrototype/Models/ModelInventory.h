#pragma once

#include "MRMDownloadManifest/ApprovedModelDownload.h"
#include "Models/ArtifactVerifier.h"
#include "Models/SpeechModels.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace murmel {

/// Owns the files of all models on this machine, those of speech and of refinement: where they lie, whether
/// they are right, and their removal. There is one in a process; whoever asks about models asks it, and so
/// nobody's answer differs from another's. Thread-safe.
class ModelInventory {
 public:
  using Finding = ArtifactVerifier::Finding;
  using Lookup = std::function<const ApprovedModelDownload*(std::string_view identifier)>;

  /// `store`: the root of the user's store, which is also where it is remembered what was read; empty:
  /// neither. `resources`: the application's resources folder, whose models may only be read; empty for none.
  /// `lookup`: the manifest's, but in tests.
  explicit ModelInventory(std::filesystem::path store = {}, std::filesystem::path resources = {});
  ModelInventory(std::filesystem::path store, std::filesystem::path resources, Lookup lookup);

  [[nodiscard]] const std::filesystem::path& store() const { return store_; }
  [[nodiscard]] const std::filesystem::path& resources() const { return resources_; }

  /// Where a file lies: in the user's store, else where the package brought it. In the store when it is
  /// nowhere.
  [[nodiscard]] std::filesystem::path place(const ApprovedModelDownload& file) const;

  /// Without reading the contents.
  [[nodiscard]] Finding look(const ApprovedModelDownload& file) const;
  /// The worst of the findings about these files.
  [[nodiscard]] Finding look(const std::vector<std::string>& identifiers) const;
  /// The same for the files of a speech model in `folder`, which need not be its own.
  [[nodiscard]] Finding look(const SpeechModel& model, const std::filesystem::path& folder) const;

  /// Reads what is not known. Ends early, with false, when `stopping` becomes true.
  bool verify(const ApprovedModelDownload& file, const std::atomic<bool>& stopping);
  bool verify(const std::vector<std::string>& identifiers, const std::atomic<bool>& stopping);
  bool verify(const SpeechModel& model, const std::filesystem::path& folder,
              const std::atomic<bool>& stopping);
  /// Reads everything again, known or not.
  bool verifyAgain(const std::vector<std::string>& identifiers, const std::atomic<bool>& stopping);
  bool verifyAgain(const SpeechModel& model, const std::atomic<bool>& stopping);

  /// Whether the package brought one of these files, and the store has none in its place.
  [[nodiscard]] bool isPackaged(const std::vector<std::string>& identifiers) const;
  /// Removes the files from the store, folders that become empty, and what an unfinished download left. False
  /// when a file stays there.
  [[nodiscard]] bool remove(const std::vector<std::string>& identifiers);
  /// Bytes that these files occupy in the store now.
  [[nodiscard]] std::uint64_t bytes(const std::vector<std::string>& identifiers) const;

 private:
  [[nodiscard]] ModelArtifact artifact(const ApprovedModelDownload& file) const;

  const std::filesystem::path store_;
  const std::filesystem::path resources_;
  const Lookup lookup_;
  ArtifactVerifier verifier_;
};

}  // namespace murmel
