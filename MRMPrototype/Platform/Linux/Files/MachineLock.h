#pragma once

#include "Foundation/UniqueDescriptor.h"

#include <expected>

namespace murmel::machineLock {

/// Whether a failed lock says that the file system has none: a network mount without its lock service.
bool isNeeded(int error);

/// The lock of an open file among this machine's processes, had from the kernel instead of the file system;
/// it ends with the descriptor that is returned, or its process. The error is EWOULDBLOCK while another holds
/// it.
std::expected<UniqueDescriptor, int> take(int file);
/// Disturbs nobody who takes it at the same moment.
bool isHeld(int file);

}  // namespace murmel::machineLock
