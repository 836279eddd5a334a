#include "Platform/Linux/Wayland/LayerSurface.h"

#include "Foundation/UniqueDescriptor.h"
#include "Foundation/WriteAll.h"

#include <string_view>
#include <utility>

#include <sys/mman.h>

// The name of an argument is a word of the language.
#define namespace namespace_
#include <wlr-layer-shell-unstable-v1.h>
#undef namespace

namespace murmel {

namespace {

constexpr int distanceFromEdge = 24;
constexpr std::uint32_t newestLayerShell = 4;
/// The first that knows of screens with more pixels.
constexpr std::uint32_t newestCompositor = 3;

std::uint32_t anchorOf(IndicatorSurface::Edge edge) {
  switch (edge) {
    case IndicatorSurface::Edge::top:
      return ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP;
    case IndicatorSurface::Edge::right:
      return ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT;
    case IndicatorSurface::Edge::bottom:
      return ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM;
    case IndicatorSurface::Edge::left:
      break;
  }
  return ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT;
}

constexpr wl_buffer_listener bufferListener{
    .release = [](void* /*self*/, wl_buffer* buffer) { wl_buffer_destroy(buffer); }};

}  // namespace

struct LayerSurface::Globals {
  WaylandObject<wl_compositor> compositor;
  WaylandObject<wl_shm> memory;
  WaylandObject<zwlr_layer_shell_v1> layers;
};

struct LayerSurface::Shown {
  WaylandObject<wl_surface> surface;
  WaylandObject<zwlr_layer_surface_v1> layer;
  bool isConfigured = false;
  bool isClosed = false;  ///< its screen has gone, for instance
};

std::unique_ptr<LayerSurface> LayerSurface::open(Executor& executor) {
  auto connection = WaylandConnection::open();
  if (!connection) return nullptr;
  auto globals = std::make_unique<Globals>();
  globals->compositor = {(*connection)->bind<wl_compositor>(wl_compositor_interface, newestCompositor),
                         &wl_compositor_destroy};
  globals->memory = {(*connection)->bind<wl_shm>(wl_shm_interface, 1), &wl_shm_destroy};
  globals->layers = {
      (*connection)->bind<zwlr_layer_shell_v1>(zwlr_layer_shell_v1_interface, newestLayerShell),
      &zwlr_layer_shell_v1_destroy};
  if (!globals->compositor || !globals->memory || !globals->layers) return nullptr;
  return std::unique_ptr<LayerSurface>(
      new LayerSurface(executor, *std::move(connection), std::move(globals)));
}

LayerSurface::LayerSurface(Executor& executor, std::unique_ptr<WaylandConnection> connection,
                           std::unique_ptr<Globals> globals)
    : connection_(std::move(connection)), globals_(std::move(globals)) {
  watch_ = executor.watchReadable(connection_->descriptor(), [this] {
    if (!connection_->pump({})) watch_.reset();
  });
}

LayerSurface::~LayerSurface() = default;

void LayerSurface::show(const Picture& picture) {
  if (connection_->hasFailed() || picture.width <= 0 || picture.height <= 0) return;
  if (shown_ && shown_->isClosed) shown_.reset();
  arrange(picture);
  // The compositor says once that the surface may be drawn on.
  if (!shown_->isConfigured && !connection_->roundTrip()) return;
  if (shown_->isConfigured) draw(picture);
}

void LayerSurface::arrange(const Picture& picture) {
  const bool isNew = !shown_;
  if (isNew) {
    shown_ = std::make_unique<Shown>();
    shown_->surface = {wl_compositor_create_surface(globals_->compositor.get()), &wl_surface_destroy};
    shown_->layer = {
        zwlr_layer_shell_v1_get_layer_surface(globals_->layers.get(), shown_->surface.get(), nullptr,
                                              ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY, "murmel"),
        &zwlr_layer_surface_v1_destroy};
    static constexpr zwlr_layer_surface_v1_listener listener{
        .configure =
            [](void* self, zwlr_layer_surface_v1* layer, std::uint32_t serial, std::uint32_t /*width*/,
               std::uint32_t /*height*/) {
              zwlr_layer_surface_v1_ack_configure(layer, serial);
              static_cast<Shown*>(self)->isConfigured = true;
            },
        .closed = [](void* self,
                     zwlr_layer_surface_v1* /*layer*/) { static_cast<Shown*>(self)->isClosed = true; },
    };
    zwlr_layer_surface_v1_add_listener(shown_->layer.get(), &listener, shown_.get());
    zwlr_layer_surface_v1_set_keyboard_interactivity(shown_->layer.get(),
                                                     ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_NONE);
    zwlr_layer_surface_v1_set_margin(shown_->layer.get(), distanceFromEdge, distanceFromEdge,
                                     distanceFromEdge, distanceFromEdge);
    // Some compositors give the keyboard to whatever is clicked.
    const WaylandObject<wl_region> nothing(wl_compositor_create_region(globals_->compositor.get()),
                                           &wl_region_destroy);
    wl_surface_set_input_region(shown_->surface.get(), nothing.get());
  }
  zwlr_layer_surface_v1_set_anchor(shown_->layer.get(), anchorOf(picture.edge));
  zwlr_layer_surface_v1_set_size(shown_->layer.get(),
                                 static_cast<std::uint32_t>(picture.width / picture.scale),
                                 static_cast<std::uint32_t>(picture.height / picture.scale));
  if (isNew) wl_surface_commit(shown_->surface.get());
}

void LayerSurface::draw(const Picture& picture) {
  const int stride = picture.width * static_cast<int>(sizeof(std::uint32_t));
  const int size = stride * picture.height;
  const UniqueDescriptor file(::memfd_create("murmel-indicator", MFD_CLOEXEC));
  const std::string_view bytes(reinterpret_cast<const char*>(picture.pixels.data()),
                               static_cast<std::size_t>(size));
  if (!file || !writeAll(file.get(), bytes)) return;
  const WaylandObject<wl_shm_pool> pool(wl_shm_create_pool(globals_->memory.get(), file.get(), size),
                                        &wl_shm_pool_destroy);
  auto* buffer =
      wl_shm_pool_create_buffer(pool.get(), 0, picture.width, picture.height, stride, WL_SHM_FORMAT_ARGB8888);
  wl_buffer_add_listener(buffer, &bufferListener, nullptr);
  wl_surface_set_buffer_scale(shown_->surface.get(), picture.scale);
  wl_surface_attach(shown_->surface.get(), buffer, 0, 0);
  wl_surface_damage(shown_->surface.get(), 0, 0, picture.width, picture.height);
  wl_surface_commit(shown_->surface.get());
  wl_display_flush(connection_->get());
}

void LayerSurface::hide() {
  shown_.reset();
  wl_display_flush(connection_->get());
}

}  // namespace murmel
