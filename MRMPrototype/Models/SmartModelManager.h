#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/Async/SerialQueue.h"
#include "Foundation/Async/Signal.h"
#include "MRMDownloadManifest/MRMDownloadManifest.h"
#include "Models/ModelInventory.h"

#include <atomic>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace murmel {

/// How far one model file is.
enum class ModelFileState {
  missing,
  verifying,  ///< there; its contents are being checked
  damaged,    ///< there, but not what it must be
  ready,      ///< installed and verified
};

/// The optional refinement models, named by the identifiers of the download manifest. Main thread.
class SmartModelManager {
 public:
  /// `files` must outlive the manager. Nothing is looked at before `validate`.
  SmartModelManager(Executor& executor, std::shared_ptr<ModelInventory> inventory,
                    std::span<const ApprovedModelDownload> files = MRMDownloadManifest::optional);
  /// Interrupts a verification that runs.
  ~SmartModelManager();
  SmartModelManager(const SmartModelManager&) = delete;
  SmartModelManager& operator=(const SmartModelManager&) = delete;

  /// The identifier of the entry with that file in that repository; empty when there is none.
  [[nodiscard]] std::string identifierFor(std::string_view repository, std::string_view file) const;
  [[nodiscard]] ModelFileState state(std::string_view identifier) const;
  /// Whether the model's file is installed and verified. Sees a change of the file since it was verified.
  [[nodiscard]] bool isReady(std::string_view identifier) const;
  /// Where the file of a model is or would be. Empty for an identifier that is not in the list.
  [[nodiscard]] std::filesystem::path file(std::string_view identifier) const;

  /// The folder of the Russian corrector's files.
  [[nodiscard]] std::filesystem::path sageFolder() const;
  /// Whether all of them are installed and verified.
  [[nodiscard]] bool isSageReady() const;

  /// Looks at everything and reads, in the background, what is not known.
  void validate();
  [[nodiscard]] Registration onInventoryChange(std::function<void()> handler);

 private:
  [[nodiscard]] const ApprovedModelDownload* find(std::string_view identifier) const;
  void set(std::string_view identifier, ModelFileState state);

  Executor& executor_;
  const std::shared_ptr<ModelInventory> inventory_;
  const std::span<const ApprovedModelDownload> files_;
  std::map<std::string_view, ModelFileState> states_;
  std::uint64_t validation_ = 0;
  Signal<> inventoryChanged_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);  ///< weakly held by what was posted
  std::atomic<bool> stopping_ = false;
  SerialQueue queue_;  ///< last: stopped before what its job uses goes
};

}  // namespace murmel
