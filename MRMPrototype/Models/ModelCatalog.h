#pragma once

#include "MRMDownloadManifest/MRMModelDownloadPolicy.h"

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
};

/// Every model that can be of use on this platform, speech models first, the recommended one before all.
const std::vector<CatalogModel>& modelCatalog();

/// The entry of that name; nullptr when there is none.
const CatalogModel* catalogModel(std::string_view name);

}  // namespace murmel
