#pragma once

#include "Platform/ProcessLauncher.h"
#include "WorkerProcess/WorkerCancellation.h"

#include <chrono>
#include <optional>

namespace murmel {

/// Waits until `process` has ended: by its own descriptor, because a process may close its output and live,
/// or end and leave its output to a child. False after `within`, and with the cancellation.
///
/// Drops what the process prints meanwhile when `dropsOutput`, so that it never waits for a reader.
bool awaitProcessEnd(const ChildProcess& process, const WorkerCancellation& cancellation,
                     std::optional<std::chrono::milliseconds> within, bool dropsOutput);

}  // namespace murmel
