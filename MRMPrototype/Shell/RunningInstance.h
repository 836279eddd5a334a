#pragma once

#include "Shell/InstanceLock.h"
#include "Shell/RemoteCommands.h"

#include <expected>
#include <optional>
#include <string>

namespace murmel {

/// What a second start does about the first instance.
struct SecondStart {
  std::optional<InstanceLock> lock;  ///< this process is the instance
  int exitStatus = 0;                ///< else: another one is, and this process ends with this status
  std::string complaint;             ///< with this sentence, if there is one
};

/// Becomes the instance, waiting for one that is about to end, or has the running one show itself.
/// `replaces`: the running one is about to end, and is not asked.
SecondStart becomeTheInstance(const Installation& installation, bool replaces);

/// Waits until no instance is left, as long as a delivery may take. False when one still is.
bool awaitEndOfInstance(const Installation& installation);

}  // namespace murmel
