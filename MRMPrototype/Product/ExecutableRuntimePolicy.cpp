#include "Product/ExecutableRuntimePolicy.h"

#include <system_error>
#include <utility>

namespace murmel {

ExecutableRuntimePolicy::ExecutableRuntimePolicy(std::filesystem::path resourcesDirectory,
                                                 std::optional<std::string> applicationTeam,
                                                 TeamLookup teamOf)
    : resourcesDirectory_(std::move(resourcesDirectory)),
      applicationTeam_(std::move(applicationTeam)),
      teamOf_(std::move(teamOf)) {}

bool ExecutableRuntimePolicy::mayExecute(const std::filesystem::path& executable) const {
  std::error_code failure;
  const auto folder = std::filesystem::canonical(resourcesDirectory_, failure);
  if (failure) return false;
  const auto file = std::filesystem::canonical(executable, failure);
  if (failure) return false;
  if (!file.string().starts_with(folder.string() + "/")) return false;
  return !applicationTeam_ || teamOf_(file) == applicationTeam_;
}

}  // namespace murmel
