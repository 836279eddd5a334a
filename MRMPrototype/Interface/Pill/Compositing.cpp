#include "Interface/Pill/Compositing.h"

#include <QAbstractNativeEventFilter>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <utility>

#include <xcb/xcb.h>
#include <xcb/xfixes.h>

namespace murmel {

namespace {

/// Owned by the compositor of the first screen; there are no others any more.
constexpr std::string_view compositorSelection = "_NET_WM_CM_S0";

template <class T>
using Reply = std::unique_ptr<T, decltype(&std::free)>;

template <class T>
Reply<T> own(T* reply) {
  return {reply, &std::free};
}

/// Null off X, and on Qt's platforms that have none.
xcb_connection_t* xConnection() {
  const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 == nullptr ? nullptr : x11->connection();
}

xcb_atom_t selectionAtom(xcb_connection_t* connection) {
  const auto naming =
      xcb_intern_atom(connection, /*only_if_exists=*/0,
                      static_cast<std::uint16_t>(compositorSelection.size()), compositorSelection.data());
  const auto name = own(xcb_intern_atom_reply(connection, naming, nullptr));
  return name ? name->atom : xcb_atom_t{XCB_ATOM_NONE};
}

}  // namespace

bool isComposited() {
  auto* connection = xConnection();
  if (connection == nullptr) return true;
  const auto asking = xcb_get_selection_owner(connection, selectionAtom(connection));
  const auto owner = own(xcb_get_selection_owner_reply(connection, asking, nullptr));
  return owner && owner->owner != XCB_WINDOW_NONE;
}

class CompositorWatch::Filter final : public QAbstractNativeEventFilter {
 public:
  Filter(QWidget& window, std::function<void()> changed) : changed_(std::move(changed)) {
    auto* connection = xConnection();
    if (connection == nullptr) return;
    const auto* extension = xcb_get_extension_data(connection, &xcb_xfixes_id);
    if (extension == nullptr || extension->present == 0) return;
    const auto asking =
        xcb_xfixes_query_version(connection, XCB_XFIXES_MAJOR_VERSION, XCB_XFIXES_MINOR_VERSION);
    own(xcb_xfixes_query_version_reply(connection, asking, nullptr));
    event_ = static_cast<std::uint8_t>(extension->first_event + XCB_XFIXES_SELECTION_NOTIFY);
    selection_ = selectionAtom(connection);
    xcb_xfixes_select_selection_input(connection, static_cast<xcb_window_t>(window.winId()), selection_,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    xcb_flush(connection);
    qGuiApp->installNativeEventFilter(this);
  }
  ~Filter() override {
    if (qGuiApp != nullptr) qGuiApp->removeNativeEventFilter(this);
  }
  Filter(const Filter&) = delete;
  Filter& operator=(const Filter&) = delete;

  bool nativeEventFilter(const QByteArray& kind, void* message, qintptr* /*result*/) override {
    if (kind != "xcb_generic_event_t") return false;
    constexpr std::uint8_t typeMask = 0x7F;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & typeMask) != event_) return false;
    if (reinterpret_cast<const xcb_xfixes_selection_notify_event_t*>(event)->selection == selection_)
      changed_();
    return false;
  }

 private:
  std::function<void()> changed_;
  std::uint8_t event_ = 0;
  xcb_atom_t selection_ = XCB_ATOM_NONE;
};

CompositorWatch::CompositorWatch(QWidget& window, std::function<void()> changed)
    : filter_(std::make_unique<Filter>(window, std::move(changed))) {}

CompositorWatch::~CompositorWatch() = default;

QScreen* screenOfWindow(unsigned long window) {
  auto* connection = xConnection();
  if (connection == nullptr || window == 0) return nullptr;
  const auto id = static_cast<xcb_window_t>(window);
  const auto measuring = xcb_get_geometry(connection, id);
  const auto geometry = own(xcb_get_geometry_reply(connection, measuring, nullptr));
  if (!geometry) return nullptr;
  const auto placing = xcb_translate_coordinates(connection, id, geometry->root, 0, 0);
  const auto place = own(xcb_translate_coordinates_reply(connection, placing, nullptr));
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
