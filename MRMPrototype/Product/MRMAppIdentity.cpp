#include "Product/MRMAppIdentity.h"

#include <algorithm>
#include <utility>

namespace murmel {

namespace {

bool isEditionIdentifier(std::string_view identifier) {
  return std::ranges::any_of(allCases<DistributionEdition>(), [&](DistributionEdition edition) {
    return identifier == MRMAppIdentity::applicationIdentifier(edition);
  });
}

}  // namespace

std::string MRMAppIdentity::displayName(const InformationDictionary& info) {
  if (auto name = info.string("CFBundleDisplayName")) return *std::move(name);
  return info.string("CFBundleName").value_or("Murmel");
}

std::string_view MRMAppIdentity::applicationIdentifier(DistributionEdition edition) {
  switch (edition) {
    case DistributionEdition::complete:
      return "app.murmel.Murmel";
    case DistributionEdition::lite:
      return "app.murmel.Murmel.Lite";
    case DistributionEdition::development:
      return "app.murmel.Murmel.Development";
  }
  std::unreachable();
}

std::string MRMAppIdentity::applicationIdentifier(const InformationDictionary& info) {
  auto identifier = info.string("CFBundleIdentifier");
  if (identifier && isEditionIdentifier(*identifier)) return *std::move(identifier);
  return std::string(applicationIdentifier(distributionEdition(info)));
}

std::optional<std::string> MRMAppIdentity::downloaderServiceName(const InformationDictionary& info) {
  const auto identifier = info.string("CFBundleIdentifier");
  if (!identifier || !isEditionIdentifier(*identifier)) return std::nullopt;
  auto expected = *identifier + ".model-downloader";
  if (info.string("MRMModelDownloaderServiceName") != expected) return std::nullopt;
  const bool isComplete = distributionEdition(info) == DistributionEdition::complete;
  if (isComplete && info.string("MRMDistributionChannel") != "developer-id") return std::nullopt;
  return expected;
}

}  // namespace murmel
