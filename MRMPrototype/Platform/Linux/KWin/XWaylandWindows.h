#pragma once

#include "Platform/Linux/X11/X11Connection.h"

#include <memory>
#include <optional>
#include <string>

#include <sys/types.h>

namespace murmel {

/// What the X server of a Wayland session knows of its programs. Main thread.
class XWaylandWindows {
 public:
  struct Names {
    std::string windowClass;
    std::string instance;
  };

  /// Without a server there is nobody to be found, and one that hangs would never let go of this process.
  explicit XWaylandWindows(bool serverAnswers);

  /// Nothing when the process has no window there.
  [[nodiscard]] std::optional<Names> find(pid_t process);

 private:
  std::unique_ptr<X11Connection> connection_;
};

}  // namespace murmel
