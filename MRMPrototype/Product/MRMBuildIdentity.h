#pragma once

#include "Foundation/RawValue.h"
#include "Product/InformationDictionary.h"

#include <string>
#include <string_view>

namespace murmel {

/// Decides where models come from, which shortcuts are offered and who handles updates.
enum class DistributionEdition { complete, lite, development };

template <>
inline constexpr auto rawValueTable<DistributionEdition> = std::to_array<RawValueRow<DistributionEdition>>({
    {DistributionEdition::complete, "complete"},
    {DistributionEdition::lite, "lite"},
    {DistributionEdition::development, "development"},
});

/// How the application reached the user.
enum class MRMDistributionChannel { direct, appStore };

template <>
inline constexpr auto rawValueTable<MRMDistributionChannel> =
    std::to_array<RawValueRow<MRMDistributionChannel>>({
        {MRMDistributionChannel::direct, "developer-id"},
        {MRMDistributionChannel::appStore, "app-store"},
    });

/// The edition that "MRMEdition" names; absent or unknown is development.
DistributionEdition distributionEdition(const InformationDictionary& info);
/// What an edition promises, in a line for the user.
std::string_view editionTagline(DistributionEdition edition);

/// The channel that "MRMDistributionChannel" names; absent or unknown is direct.
MRMDistributionChannel distributionChannel(const InformationDictionary& info);

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
