#include "Shell/DesktopServices.h"

#include "Shell/WaylandDesktop.h"
#include "Shell/X11Desktop.h"

namespace murmel {

std::expected<std::unique_ptr<DesktopConnection>, std::string> connectToDesktop(
    const DesktopPlan& plan, const DesktopParameters& parameters) {
  if (!plan.failure.empty()) return std::unexpected(plan.failure);
  return plan.session == SessionKind::x11 ? X11Desktop::open(parameters)
                                          : WaylandDesktop::open(plan, parameters);
}

}  // namespace murmel
