#include "Shell/RuntimePolicy.h"

namespace murmel {

ExecutableRuntimePolicy runtimePolicy(const ApplicationFolders& folders) {
  return {folders.resources, std::nullopt, [](const std::filesystem::path&) { return std::nullopt; }};
}

}  // namespace murmel
