#pragma once

#include "Foundation/UniqueDescriptor.h"

#include <expected>
#include <filesystem>

namespace murmel::machineLock {

/// Whether a failed lock says that the file system has none: a network mount without its lock service.
bool isNeeded(int error);

/// The lock of an open file among this machine's processes, had from the kernel instead of the file system;
/// it ends with the descriptor that is returned, or its process. The error is EWOULDBLOCK while another holds
/// it.
std::expected<UniqueDescriptor, int> take(int file);
/// The same for the users of a folder, where its file system has no locks. Empty where it has: whoever uses
/// the folder locks it then.
std::expected<UniqueDescriptor, int> takeWhereNeeded(const std::filesystem::path& folder);
/// Disturbs nobody who takes it at the same moment.
bool isHeld(int file);

}  // namespace murmel::machineLock
