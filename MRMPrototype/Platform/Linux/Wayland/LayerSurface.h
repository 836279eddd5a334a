#pragma once

#include "Foundation/Async/Executor.h"
#include "Platform/IndicatorSurface.h"
#include "Platform/Linux/Wayland/WaylandConnection.h"

#include <memory>

struct zwlr_layer_shell_v1;
struct zwlr_layer_surface_v1;

namespace murmel {

/// The indicator as a layer of the compositor.
class LayerSurface final : public IndicatorSurface {
 public:
  /// Null where the compositor has no layers.
  static std::unique_ptr<LayerSurface> open(Executor& executor);
  ~LayerSurface() override;
  LayerSurface(const LayerSurface&) = delete;
  LayerSurface& operator=(const LayerSurface&) = delete;

  void show(const Picture& picture) override;
  void hide() override;

 private:
  struct Globals;
  struct Shown;

  LayerSurface(Executor& executor, std::unique_ptr<WaylandConnection> connection,
               std::unique_ptr<Globals> globals);
  void arrange(const Picture& picture);
  void draw(const Picture& picture);

  std::unique_ptr<WaylandConnection> connection_;
  std::unique_ptr<Globals> globals_;
  std::unique_ptr<Shown> shown_;
  Registration watch_;
};

}  // namespace murmel
