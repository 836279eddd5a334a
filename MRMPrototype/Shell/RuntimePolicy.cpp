#include "Shell/RuntimePolicy.h"

#include "Platform/Linux/Process/SignedExecutableManifest.h"

#include <system_error>

namespace murmel {

ExecutableRuntimePolicy runtimePolicy(const ApplicationFolders& folders,
                                      const std::filesystem::path& program) {
  // The signature is beside the file itself, and names it.
  std::error_code failure;
  const auto file = std::filesystem::canonical(program, failure);
  auto team = failure ? std::nullopt : SignedExecutableManifest::teamOf(file);
  return {folders.resources, std::move(team), &SignedExecutableManifest::teamOf};
}

}  // namespace murmel
