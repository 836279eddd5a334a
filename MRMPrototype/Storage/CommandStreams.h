#pragma once

#include <functional>
#include <istream>
#include <string_view>

namespace murmel {

/// What a command on kept data talks to. Words go in and out here, never through arguments.
struct CommandStreams {
  std::function<void(std::string_view)> print;     ///< standard output, as it is
  std::function<void(std::string_view)> complain;  ///< one sentence for the user
  std::istream& input;
};

/// The exit statuses of such commands.
enum CommandStatus : int { commandDone = 0, commandFailed = 1, commandMisused = 2 };

}  // namespace murmel
