#pragma once

#include "Workers/SpeechWorker/EngineModule.h"

#include <span>

namespace murmel::worker {

/// Loads the engine for the model that the arguments, the program's name first, tell of, and gives up
/// everything on the way that is not needed any more. The error is a short reason.
LoadedEngine preparedEngine(std::span<char* const> arguments);

}  // namespace murmel::worker
