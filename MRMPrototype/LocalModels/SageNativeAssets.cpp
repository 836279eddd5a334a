#include "LocalModels/SageNativeAssets.h"

#include <system_error>
#include <utility>

namespace murmel {

SageNativeAssets::SageNativeAssets(const std::filesystem::path& resourcesDirectory,
                                   std::filesystem::path runtime, const SmartModelFiles& files)
    : worker_(resourcesDirectory / "Workers" / workerName), runtime_(std::move(runtime)), files_(files) {}

std::optional<SageNativeAssets::Paths> SageNativeAssets::paths() const {
  auto model = files_.russianModelDirectory();
  std::error_code failure;
  if (!model || !std::filesystem::is_regular_file(worker_, failure) ||
      !std::filesystem::is_regular_file(runtime_, failure)) {
    return std::nullopt;
  }
  return Paths{worker_, runtime_, *std::move(model)};
}

}  // namespace murmel
