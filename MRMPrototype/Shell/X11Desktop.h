#pragma once

#include "Shell/DesktopServices.h"

#include <expected>
#include <memory>
#include <string>

namespace murmel {

/// An X server with a window manager, PulseAudio, and the accessibility bus.
class X11Desktop {
 public:
  static std::expected<std::unique_ptr<DesktopConnection>, std::string> open(
      const DesktopParameters& parameters);
};

}  // namespace murmel
