#pragma once

#include <cstdint>
#include <vector>

namespace murmel {

/// Where the indicator is, on a desktop that lets no window be placed: the desktop shows a picture of it
/// there, above the windows, which takes neither the keyboard nor clicks. Main thread.
class IndicatorSurface {
 public:
  enum class Edge { top, right, bottom, left };

  struct Picture {
    std::vector<std::uint32_t> pixels;  ///< rows from the top; alpha, red, green, blue, already multiplied
    int width = 0;                      ///< in pixels
    int height = 0;
    int scale = 1;  ///< pixels in a unit of the desktop
    Edge edge = Edge::right;
  };

  virtual ~IndicatorSurface() = default;
  virtual void show(const Picture& picture) = 0;
  virtual void hide() = 0;
};

}  // namespace murmel
