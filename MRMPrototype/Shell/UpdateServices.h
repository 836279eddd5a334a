#pragma once

#include "Foundation/Async/Task.h"
#include "MRMDirectUpdater/DirectUpdater.h"
#include "Shell/Installation.h"

#include <filesystem>

namespace murmel {

/// How this installation is updated.
DirectUpdater::Configuration updaterConfiguration(const Installation& installation);

/// Whether the application at `program` starts: its launch-time self-test, in this session, within a bound.
Task<bool> startsUp(std::filesystem::path program);

}  // namespace murmel
