#pragma once

#include <expected>
#include <functional>
#include <string>

namespace murmel {

/// What became of a command: done, or refused for a reason that is one sentence for the user.
using CommandOutcome = std::expected<void, std::string>;
using CommandReply = std::function<void(CommandOutcome)>;

/// Exit statuses of `murmel <command>`.
namespace commandStatus {
inline constexpr int done = 0;
inline constexpr int refused = 1;
inline constexpr int notRunning = 3;
}  // namespace commandStatus

}  // namespace murmel
