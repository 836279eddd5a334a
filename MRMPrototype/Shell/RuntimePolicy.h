#pragma once

#include "Product/ExecutableRuntimePolicy.h"
#include "Shell/ApplicationFolders.h"

#include <filesystem>

namespace murmel {

/// The policy of this installation: its own resources folder and, where the application is signed, its own
/// team. `program` is the application's executable; a development build is not signed.
ExecutableRuntimePolicy runtimePolicy(const ApplicationFolders& folders,
                                      const std::filesystem::path& program = "/proc/self/exe");

}  // namespace murmel
