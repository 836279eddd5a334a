#include "Shell/DesktopServices.h"

#include "Shell/X11Desktop.h"

namespace murmel {

std::expected<std::unique_ptr<DesktopConnection>, std::string> connectToDesktop(
    const DesktopPlan& plan, const DesktopParameters& parameters) {
  if (!plan.failure.empty()) return std::unexpected(plan.failure);
  // Where a Wayland session has X programs, these adapters serve them; what they cannot do there they say.
  if (plan.indicator == IndicatorRoad::x11) return X11Desktop::open(parameters);
  return std::unexpected("This is a session of " + sessionTitle(plan.session) +
                         " without XWayland, which Murmel needs for its clipboard and its windows.");
}

}  // namespace murmel
