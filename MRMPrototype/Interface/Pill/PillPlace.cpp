#include "Interface/Pill/PillPlace.h"

#include <algorithm>
#include <array>
#include <utility>

namespace murmel {

QPoint pillPlace(QSize pill, const QRect& area, OverlayPosition edge) {
  constexpr int distanceFromEdge = 24;
  const auto inside = area.adjusted(distanceFromEdge, distanceFromEdge, -distanceFromEdge, -distanceFromEdge);
  QRect frame(QPoint(), pill);
  frame.moveCenter(inside.center());
  switch (edge) {
    case OverlayPosition::top:
      frame.moveTop(inside.top());
      break;
    case OverlayPosition::right:
      frame.moveRight(inside.right());
      break;
    case OverlayPosition::bottom:
      frame.moveBottom(inside.bottom());
      break;
    case OverlayPosition::left:
      frame.moveLeft(inside.left());
      break;
  }
  return frame.topLeft();
}

OverlayPosition nearestEdge(QPoint centre, const QRect& area) {
  // By the shares of the area, so that the corners of a wide screen are divided fairly.
  const auto across = static_cast<double>(centre.x() - area.left()) / std::max(1, area.width());
  const auto down = static_cast<double>(centre.y() - area.top()) / std::max(1, area.height());
  const auto distances =
      std::to_array<std::pair<double, OverlayPosition>>({{down, OverlayPosition::top},
                                                         {1 - across, OverlayPosition::right},
                                                         {1 - down, OverlayPosition::bottom},
                                                         {across, OverlayPosition::left}});
  return std::ranges::min_element(distances, {}, &std::pair<double, OverlayPosition>::first)->second;
}

}  // namespace murmel
