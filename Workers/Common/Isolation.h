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

/// Whether this process, from its start on, is held to what it may do; tried. `connects`: connections are
/// what it is for. The error is for the user; nothing is asked of a process that is known to be unconfined.
std::expected<void, std::string> provedConfined(bool connects);

/// From now on no other process of the user looks into this one: there are words in it. Not before, because
/// the application looks which program it is.
void closeMemory();

/// A worker ends when it is asked to, also where it is the first process of its namespace, of which the
/// system takes no default actions.
void endWhenAsked();

/// The keeper of the clipboard gives up everything but messages on the connections that it has.
std::expected<void, std::string> keepConnections();

}  // namespace murmel::worker
