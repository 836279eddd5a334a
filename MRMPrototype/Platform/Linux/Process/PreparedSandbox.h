#pragma once

#include "Foundation/UniqueDescriptor.h"
#include "Platform/Linux/Confinement/CallFilter.h"
#include "Platform/Linux/Process/LinuxProcessLauncher.h"
#include "Platform/Linux/Process/PrivateRoot.h"

#include <cstdint>
#include <expected>
#include <string>

namespace murmel {

/// A sandbox in the form in which a forked child can put it on without allocating.
struct PreparedSandbox {
  bool hasLandlock = false;
  UniqueDescriptor landlock{};
  confinement::CallProgram calls{};
  std::uint64_t password = 0;
  PrivateRoot root;

  /// The error is for the user.
  static std::expected<PreparedSandbox, std::string> of(const ProcessRequest& request,
                                                        const ConfinementPolicy& policy);
};

}  // namespace murmel
