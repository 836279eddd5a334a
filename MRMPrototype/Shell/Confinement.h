#pragma once

#include "Platform/Linux/Process/LinuxProcessLauncher.h"
#include "Shell/Installation.h"

namespace murmel {

/// How far this user wants helper processes confined. Reads the settings anew wherever it matters.
ConfinementPolicy confinementPolicy(const Installation& installation);

}  // namespace murmel
