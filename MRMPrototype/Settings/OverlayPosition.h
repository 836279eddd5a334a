#pragma once

#include "Foundation/RawValue.h"

namespace murmel {

/// The edge of the screen at which the recording indicator floats.
enum class OverlayPosition { top, right, bottom, left };

template <>
inline constexpr auto rawValueTable<OverlayPosition> = std::to_array<RawValueRow<OverlayPosition>>({
    {OverlayPosition::top, "top"},
    {OverlayPosition::right, "right"},
    {OverlayPosition::bottom, "bottom"},
    {OverlayPosition::left, "left"},
});

constexpr bool isHorizontal(OverlayPosition position) {
  return position == OverlayPosition::top || position == OverlayPosition::bottom;
}

}  // namespace murmel
