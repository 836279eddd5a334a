#include "Platform/Qt/TaskBarPresence.h"

#include "Platform/Qt/QtXConnection.h"

#include <QEvent>
#include <QWindow>
#include <array>

namespace murmel {

namespace {

/// Whether a task bar would list it at all.
bool isOrdinary(const QWindow& window) {
  return window.isTopLevel() && (window.type() == Qt::Window || window.type() == Qt::Dialog);
}

}  // namespace

class TaskBarPresence::Filter final : public QObject {
 public:
  Filter() {
    if (auto* connection = qtXConnection()) {
      state_ = atomNamed(connection, "_NET_WM_STATE");
      skips_ = {atomNamed(connection, "_NET_WM_STATE_SKIP_TASKBAR"),
                atomNamed(connection, "_NET_WM_STATE_SKIP_PAGER")};
    }
    qGuiApp->installEventFilter(this);
  }

  [[nodiscard]] ActivationPolicy policy() const { return policy_; }

  void setPolicy(ActivationPolicy policy) {
    policy_ = policy;
    for (auto* window : QGuiApplication::topLevelWindows()) {
      if (isOrdinary(*window) && window->isVisible()) askWindowManager(*window);
    }
  }

  /// The window manager forgets the state of a window that is hidden, so every one that is shown gets it
  /// anew. The event comes before Qt maps the window, over the same connection.
  bool eventFilter(QObject* receiver, QEvent* event) override {
    if (event->type() == QEvent::Show && receiver->isWindowType()) {
      auto& window = static_cast<QWindow&>(*receiver);
      if (isOrdinary(window)) prepare(window);
    }
    return false;
  }

 private:
  /// Qt keeps what it finds on a window that is not mapped yet, and adds its own.
  void prepare(QWindow& window) const {
    auto* connection = qtXConnection();
    if (connection == nullptr) return;
    const auto id = static_cast<xcb_window_t>(window.winId());
    xcb_delete_property(connection, id, state_);
    if (policy_ == ActivationPolicy::accessory) {
      constexpr std::uint8_t atomFormat = 32;
      xcb_change_property(connection, XCB_PROP_MODE_REPLACE, id, state_, XCB_ATOM_ATOM, atomFormat,
                          static_cast<std::uint32_t>(skips_.size()), skips_.data());
    }
  }

  void askWindowManager(QWindow& window) const {
    auto* connection = qtXConnection();
    if (connection == nullptr) return;
    constexpr std::uint32_t remove = 0;
    constexpr std::uint32_t add = 1;
    constexpr std::uint32_t fromApplication = 1;
    xcb_client_message_event_t request{};
    request.response_type = XCB_CLIENT_MESSAGE;
    request.format = 32;
    request.window = static_cast<xcb_window_t>(window.winId());
    request.type = state_;
    request.data.data32[0] = policy_ == ActivationPolicy::accessory ? add : remove;
    request.data.data32[1] = skips_[0];
    request.data.data32[2] = skips_[1];
    request.data.data32[3] = fromApplication;
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    xcb_send_event(connection, 0, root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&request));
    xcb_flush(connection);
  }

  ActivationPolicy policy_ = ActivationPolicy::regular;
  xcb_atom_t state_ = XCB_ATOM_NONE;
  std::array<xcb_atom_t, 2> skips_{};
};

TaskBarPresence::TaskBarPresence() : filter_(std::make_unique<Filter>()) {}

TaskBarPresence::~TaskBarPresence() = default;

ActivationPolicy TaskBarPresence::current() const {
  return filter_->policy();
}

void TaskBarPresence::set(ActivationPolicy policy) {
  filter_->setPolicy(policy);
}

}  // namespace murmel
