#include "Product/MRMBuildIdentity.h"

#include "Product/MRMAppIdentity.h"

#include <utility>

namespace murmel {

namespace {

std::string editionName(DistributionEdition edition) {
  switch (edition) {
    case DistributionEdition::complete:
      return "Full edition";
    case DistributionEdition::lite:
      return "Lite edition";
    case DistributionEdition::development:
      return "Development build";
  }
  std::unreachable();
}

}  // namespace

DistributionEdition distributionEdition(const InformationDictionary& info) {
  const auto raw = info.string("MRMEdition");
  return fromRawValue<DistributionEdition>(raw.value_or("")).value_or(DistributionEdition::development);
}

std::string_view editionTagline(DistributionEdition edition) {
  switch (edition) {
    case DistributionEdition::complete:
      return "Ready offline · Models included";
    case DistributionEdition::lite:
      return "Lite · Models on demand";
    case DistributionEdition::development:
      return "Local development";
  }
  std::unreachable();
}

MRMDistributionChannel distributionChannel(const InformationDictionary& info) {
  const auto raw = info.string("MRMDistributionChannel");
  return fromRawValue<MRMDistributionChannel>(raw.value_or("")).value_or(MRMDistributionChannel::direct);
}

MRMBuildIdentity MRMBuildIdentity::from(const InformationDictionary& info) {
  return {
      .displayName = MRMAppIdentity::displayName(info),
      .version = info.string("CFBundleShortVersionString").value_or("Unknown"),
      .buildNumber = info.string("CFBundleVersion").value_or("Unknown"),
      .editionName = murmel::editionName(distributionEdition(info)),
  };
}

}  // namespace murmel
