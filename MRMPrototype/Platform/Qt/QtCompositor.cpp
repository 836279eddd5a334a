#include "Platform/Qt/QtCompositor.h"

#include "Platform/Qt/QtXConnection.h"

#include <QAbstractNativeEventFilter>
#include <QScreen>

#include <xcb/xfixes.h>

namespace murmel {

namespace {

constexpr std::string_view compositorSelection = "_NET_WM_CM_S0";

}  // namespace

class QtCompositor::Filter final : public QAbstractNativeEventFilter {
 public:
  Filter(xcb_connection_t* connection, Signal<>& didChange)
      : connection_(connection),
        didChange_(didChange),
        selection_(atomNamed(connection, compositorSelection)) {
    qGuiApp->installNativeEventFilter(this);
    const auto* extension = xcb_get_extension_data(connection, &xcb_xfixes_id);
    if (extension == nullptr || extension->present == 0) return;
    const auto asking =
        xcb_xfixes_query_version(connection, XCB_XFIXES_MAJOR_VERSION, XCB_XFIXES_MINOR_VERSION);
    ownReply(xcb_xfixes_query_version_reply(connection, asking, nullptr));
    event_ = static_cast<std::uint8_t>(extension->first_event + XCB_XFIXES_SELECTION_NOTIFY);
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    xcb_xfixes_select_selection_input(connection, root, selection_,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    xcb_flush(connection);
  }
  ~Filter() override {
    if (qGuiApp != nullptr) qGuiApp->removeNativeEventFilter(this);
  }
  Filter(const Filter&) = delete;
  Filter& operator=(const Filter&) = delete;

  [[nodiscard]] bool hasOwner() const { return selectionOwner(connection_, selection_) != XCB_WINDOW_NONE; }

  bool nativeEventFilter(const QByteArray& kind, void* message, qintptr* /*result*/) override {
    if (kind != "xcb_generic_event_t") return false;
    constexpr std::uint8_t typeMask = 0x7F;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if (event_ == 0 || (event->response_type & typeMask) != event_) return false;
    if (reinterpret_cast<const xcb_xfixes_selection_notify_event_t*>(event)->selection == selection_)
      didChange_.emit();
    return false;
  }

 private:
  xcb_connection_t* connection_;
  Signal<>& didChange_;
  xcb_atom_t selection_;
  std::uint8_t event_ = 0;
};

QtCompositor::QtCompositor() {
  if (auto* connection = qtXConnection()) filter_ = std::make_unique<Filter>(connection, didChange_);
}

QtCompositor::~QtCompositor() = default;

bool QtCompositor::isThere() const {
  return filter_ == nullptr || filter_->hasOwner();
}

QScreen* screenOfWindow(unsigned long window) {
  auto* connection = qtXConnection();
  if (connection == nullptr || window == 0) return nullptr;
  const auto id = static_cast<xcb_window_t>(window);
  const auto measuring = xcb_get_geometry(connection, id);
  const auto geometry = ownReply(xcb_get_geometry_reply(connection, measuring, nullptr));
  if (!geometry) return nullptr;
  const auto placing = xcb_translate_coordinates(connection, id, geometry->root, 0, 0);
  const auto place = ownReply(xcb_translate_coordinates_reply(connection, placing, nullptr));
  if (!place) return nullptr;
  const QRect frame(place->dst_x, place->dst_y, geometry->width, geometry->height);
  QScreen* best = nullptr;
  int most = 0;
  for (auto* screen : QGuiApplication::screens()) {
    // A screen begins at its place in the server's pixels; only its size is scaled.
    const QRect pixels(screen->geometry().topLeft(), screen->geometry().size() * screen->devicePixelRatio());
    const auto shared = pixels.intersected(frame);
    if (shared.width() * shared.height() > most) {
      most = shared.width() * shared.height();
      best = screen;
    }
  }
  return best;
}

}  // namespace murmel
