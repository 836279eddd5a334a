#pragma once

#include "MRMDownloadManifest/MRMModelDownloadPolicy.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace murmel {

/// A model as people install and remove it: one or several files of the download manifest.
struct CatalogModel {
  std::string_view name;   ///< on the command line
  std::string_view title;  ///< as people read it
  std::vector<std::string> identifiers;
  MRMModelDownloadImportance importance;
  std::string_view purpose{};  ///< what it is good for, in a sentence
  std::string_view licence{};
  std::uint64_t about = 0;    ///< bytes to download, where the list of files does not say it
  std::uint64_t memory = 0;   ///< bytes that it needs while it works
  int speechEngineLevel = 0;  ///< the level of x86-64 that the engine of a speech model needs
};

/// What a model can need of a machine.
struct ModelMachine {
  std::uint64_t memory = 0;   ///< bytes, of the machine
  int speechEngineLevel = 0;  ///< the level of x86-64 of the speech engines that it runs; 0: of none
  /// What stands against running the others, with what mends it, as it follows "Cannot run here: "; empty
  /// where nothing does.
  std::string languageModelObstacle{};
  std::string russianObstacle{};
};

/// Bytes, of this machine.
std::uint64_t installedMemory();
/// Why a model would be of no use there, in a sentence; empty when it can run.
std::string whyUnusable(const CatalogModel& model, const ModelMachine& machine);
/// Bytes to download.
std::uint64_t downloadSize(const CatalogModel& model);
/// Why it cannot be downloaded at all, in a sentence; empty when it can.
std::string whyNotDownloadable(const CatalogModel& model);

/// Every model that can be of use on this platform, speech models first, the recommended one before all.
const std::vector<CatalogModel>& modelCatalog();

/// The entry of that name; nullptr when there is none.
const CatalogModel* catalogModel(std::string_view name);

}  // namespace murmel
