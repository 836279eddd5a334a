#pragma once

#include "Shell/DesktopServices.h"

#include <expected>
#include <memory>
#include <string>

namespace murmel {

/// A Wayland session, each service by the road that the plan names. What a road turns out not to give is
/// absent, and says so.
class WaylandDesktop {
 public:
  static std::expected<std::unique_ptr<DesktopConnection>, std::string> open(
      const DesktopPlan& plan, const DesktopParameters& parameters);
};

}  // namespace murmel
