#include "Shell/RuntimePolicy.h"

#include "Platform/Linux/Process/SignedExecutableManifest.h"

namespace murmel {

ExecutableRuntimePolicy runtimePolicy(const ApplicationFolders& folders) {
  return {folders.resources, SignedExecutableManifest::teamOf(folders.executable),
          &SignedExecutableManifest::teamOf};
}

}  // namespace murmel
