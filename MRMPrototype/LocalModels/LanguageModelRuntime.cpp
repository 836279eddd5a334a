#include "LocalModels/LanguageModelRuntime.h"

#include <system_error>
#include <utility>

namespace murmel {

LanguageModelRuntime LanguageModelRuntime::locate(const std::filesystem::path& resourcesDirectory,
                                                  DistributionEdition edition, ExecutableRuntimePolicy policy,
                                                  const std::optional<std::string>& override) {
  if (edition == DistributionEdition::development && override && override->starts_with('/')) {
    const std::filesystem::path chosen = *override;
    return {chosen, [chosen](const std::filesystem::path& executable) { return executable == chosen; }};
  }
  return {resourcesDirectory / relativePath,
          [policy = std::move(policy)](const std::filesystem::path& executable) {
            return policy.mayExecute(executable);
          }};
}

std::optional<std::filesystem::path> LanguageModelRuntime::installedExecutable() const {
  std::error_code failure;
  if (!std::filesystem::is_regular_file(executable, failure)) return std::nullopt;
  return executable;
}

}  // namespace murmel
