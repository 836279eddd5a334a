#pragma once

#include "Product/InformationDictionary.h"
#include "Product/MRMBuildIdentity.h"

#include <optional>
#include <string>
#include <string_view>

namespace murmel {

/// How the application is called, by people and by other programs. Stateless.
struct MRMAppIdentity {
  /// "CFBundleDisplayName", else "CFBundleName", else "Murmel".
  static std::string displayName(const InformationDictionary& info);

  /// The reverse-DNS application identifier of an edition.
  static std::string_view applicationIdentifier(DistributionEdition edition);

  /// "CFBundleIdentifier" when it is one of the three editions' identifiers, else that of the edition.
  static std::string applicationIdentifier(const InformationDictionary& info);

  /// Name of the model-downloader service: the application identifier followed by ".model-downloader".
  /// Nothing when the dictionary is inconsistent; model downloads are unavailable then.
  static std::optional<std::string> downloaderServiceName(const InformationDictionary& info);
};

}  // namespace murmel
