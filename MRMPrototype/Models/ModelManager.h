#pragma once

#include "Foundation/Executor.h"
#include "Foundation/SerialQueue.h"
#include "Foundation/Signal.h"
#include "Models/SpeechModelFiles.h"
#include "Models/SpeechModelStore.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <vector>

namespace murmel {

/// The store of the speech model that came as a package: it finds the model in its folder and verifies every
/// file by its SHA-256. Contents are read once and again only after a file has changed (device, inode, size,
/// time of modification or of status change); the latter cannot be set back by whoever writes to the file.
class ModelManager final : public SpeechModelStore {
 public:
  /// `root` is the model's folder; `files` must outlive the manager. Nothing is looked at before `validate`.
  explicit ModelManager(Executor& executor, std::filesystem::path root = packagedSpeechModelFolder,
                        std::span<const SpeechModelFile> files = packagedSpeechModelFiles());
  /// Interrupts a verification that runs.
  ~ModelManager() override;

  [[nodiscard]] SpeechModelState state() const override { return state_; }
  [[nodiscard]] std::filesystem::path activeModelURL() const override { return root_; }
  [[nodiscard]] bool requiredItemsPresent(const std::filesystem::path& folder) const override;
  [[nodiscard]] bool verifyArtifacts(const std::filesystem::path& folder) const override;
  /// What can be seen without reading (a file that is missing, of another size, or as it was when it was
  /// verified) shows in `state` at once; the rest follows.
  void validate() override;
  [[nodiscard]] Registration onInventoryChange(std::function<void()> handler) override;

 private:
  struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint64_t size = 0;
    std::int64_t modified = 0;  ///< ns
    std::int64_t changed = 0;   ///< ns
    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
  };
  struct Verified {
    std::filesystem::path folder;
    std::vector<FileIdentity> files;  ///< in the order of `files_`
    friend bool operator==(const Verified&, const Verified&) = default;
  };
  class OpenedFile;

  /// Empty unless every file is there as a regular file of its size.
  [[nodiscard]] std::vector<FileIdentity> look(const std::filesystem::path& folder) const;
  [[nodiscard]] bool isKnown(const Verified& seen) const;
  void setState(SpeechModelState state);

  Executor& executor_;
  const std::filesystem::path root_;
  const std::span<const SpeechModelFile> files_;
  SpeechModelState state_ = SpeechModelState::missing;
  std::uint64_t validation_ = 0;  ///< counts calls, so that an overtaken verification says nothing
  Signal<> inventoryChanged_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);  ///< weakly held by what was posted
  std::atomic<bool> stopping_ = false;
  mutable std::mutex mutex_;
  mutable Verified verified_;  ///< guarded by `mutex_`
  SerialQueue queue_;          ///< last: stopped before what its job uses goes
};

}  // namespace murmel
