#pragma once

#include "Settings/OverlayPosition.h"

#include <QPoint>
#include <QRect>

namespace murmel {

/// Where the indicator stands at an edge of the area that windows may take: in its middle, a little inside.
QPoint pillPlace(QSize pill, const QRect& area, OverlayPosition edge);

/// The edge that something dropped there belongs to.
OverlayPosition nearestEdge(QPoint centre, const QRect& area);

}  // namespace murmel
