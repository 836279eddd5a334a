#pragma once

#include "Foundation/RawValue.h"
#include "Product/InformationDictionary.h"

#include <string>

namespace murmel {

/// Decides where models come from, which shortcuts are offered and who handles updates.
enum class DistributionEdition { complete, lite, development };

template <>
inline constexpr auto rawValueTable<DistributionEdition> = std::to_array<RawValueRow<DistributionEdition>>({
    {DistributionEdition::complete, "complete"},
    {DistributionEdition::lite, "lite"},
    {DistributionEdition::development, "development"},
});

/// The edition that "MRMEdition" names; absent or unknown is development.
DistributionEdition distributionEdition(const InformationDictionary& info);

/// What the running build says about itself.
struct MRMBuildIdentity {
  std::string displayName;
  std::string version;
  std::string buildNumber;
  std::string editionName;

  static MRMBuildIdentity from(const InformationDictionary& info);

  friend bool operator==(const MRMBuildIdentity&, const MRMBuildIdentity&) = default;
};

}  // namespace murmel
