#pragma once

#include <expected>
#include <filesystem>
#include <string>

namespace murmel::worker {

/// Gives up, for this process and for good: the network in every form, other processes and programs, and,
/// where the kernel knows Landlock, every file but those below `readable` (and the null device). Call before
/// anything reads data from outside. The error is a short reason.
///
/// On connections that are open already it can go on; some display servers are spoken to by messages.
enum class OpenConnections { readAndWritten, sentMessages };
std::expected<void, std::string> isolate(const std::filesystem::path& readable,
                                         OpenConnections connections = OpenConnections::readAndWritten);

/// Gives up opening descriptors of any kind, and proves that both steps hold by trying. Call when everything
/// is loaded.
std::expected<void, std::string> closeDoors();

}  // namespace murmel::worker
