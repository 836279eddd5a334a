#pragma once

#include "Foundation/Async/Clock.h"
#include "Foundation/Async/Executor.h"
#include "Foundation/Log.h"
#include "Platform/ProcessLauncher.h"
#include "Platform/ProcessMemory.h"

namespace murmel {

/// What every program of this executable has, with a desktop or without. All of it outlives what is made of
/// it.
struct ProcessServices {
  Executor& executor;
  Clock& clock;
  LogSink& log;
  ProcessLauncher& launcher;
  ProcessMemory& memory;
};

}  // namespace murmel
