#pragma once

#include <expected>
#include <filesystem>
#include <string>

namespace murmel::worker {

/// Gives up, for this process and for good, every file but those below `readable` (and the null device),
/// where the kernel knows Landlock. Call before anything reads data from outside. What the launcher has taken
/// from it already stays taken. The error is a short reason.
std::expected<void, std::string> isolate(const std::filesystem::path& readable);

/// Gives up everything but computing, reading standard input and writing standard output; no memory becomes
/// executable any more. Proves that it holds by trying. Call when everything is loaded.
std::expected<void, std::string> closeDoors();

/// The keeper of the clipboard gives up everything but messages on the connections that it has.
std::expected<void, std::string> keepConnections();

}  // namespace murmel::worker
