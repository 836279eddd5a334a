#pragma once

#include <optional>
#include <string>

namespace murmel {

/// Which sound server, and under which name we appear there.
struct PulseServer {
  std::string applicationName;
  std::optional<std::string> address;  ///< nothing: the user's own, as the environment says
};

}  // namespace murmel
