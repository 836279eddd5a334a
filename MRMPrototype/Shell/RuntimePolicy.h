#pragma once

#include "Product/ExecutableRuntimePolicy.h"
#include "Shell/ApplicationFolders.h"

namespace murmel {

/// The policy of this installation: its own resources folder and, where the application is signed, its own
/// team. A development build is not signed.
ExecutableRuntimePolicy runtimePolicy(const ApplicationFolders& folders);

}  // namespace murmel
