#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <xcb/xcb.h>

namespace murmel::test {

/// Looks at the X server over a connection of its own, as another program would.
class XObserver {
 public:
  /// `display` empty: the environment's.
  explicit XObserver(const std::string& display = "")
      : connection_(xcb_connect(display.empty() ? nullptr : display.c_str(), nullptr)) {
    if (xcb_connection_has_error(connection_.get()) != 0) throw std::runtime_error("no X server");
    screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_.get())).data;
  }

  [[nodiscard]] xcb_connection_t* connection() const { return connection_.get(); }
  [[nodiscard]] const xcb_screen_t& screen() const { return *screen_; }

  [[nodiscard]] xcb_atom_t atom(const std::string& name) const {
    const auto cookie =
        xcb_intern_atom(connection_.get(), 0, static_cast<std::uint16_t>(name.size()), name.c_str());
    return own(xcb_intern_atom_reply(connection_.get(), cookie, nullptr))->atom;
  }
  /// The values of a list of atoms, windows or numbers.
  [[nodiscard]] std::vector<std::uint32_t> property(xcb_window_t window, const std::string& name) const {
    const auto cookie =
        xcb_get_property(connection_.get(), 0, window, atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, 1'000);
    const auto reply = own(xcb_get_property_reply(connection_.get(), cookie, nullptr));
    if (!reply || reply->format != 32) return {};
    const auto* values = static_cast<std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {values, values + reply->value_len};
  }
  /// `_NET_ACTIVE_WINDOW`, or none.
  [[nodiscard]] xcb_window_t activeWindow() const {
    const auto values = property(screen_->root, "_NET_ACTIVE_WINDOW");
    return values.empty() ? xcb_window_t{XCB_WINDOW_NONE} : values.front();
  }
  /// When it returns, the server has done everything that it was asked for.
  void settle() const { (void)inputFocus(); }
  [[nodiscard]] xcb_window_t inputFocus() const {
    return own(xcb_get_input_focus_reply(connection_.get(), xcb_get_input_focus(connection_.get()), nullptr))
        ->focus;
  }
  /// Both: where keys go, and what the window manager says.
  [[nodiscard]] bool hasFocus(xcb_window_t window) const {
    return activeWindow() == window && inputFocus() == window;
  }

  /// Asks for the focus as a task bar does, which no window manager refuses.
  void activate(xcb_window_t window) const {
    constexpr std::uint32_t fromTaskBar = 2;
    xcb_client_message_event_t request{};
    request.response_type = XCB_CLIENT_MESSAGE;
    request.format = 32;
    request.window = window;
    request.type = atom("_NET_ACTIVE_WINDOW");
    request.data.data32[0] = fromTaskBar;
    xcb_send_event(connection_.get(), 0, screen_->root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&request));
    xcb_flush(connection_.get());
  }

  template <class Reply>
  static std::unique_ptr<Reply, decltype(&std::free)> own(Reply* reply) {
    return {reply, &std::free};
  }

 private:
  struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
  };
  std::unique_ptr<xcb_connection_t, Disconnect> connection_;
  const xcb_screen_t* screen_ = nullptr;
};

/// A window of another program.
class ForeignWindow {
 public:
  ForeignWindow() : window_(xcb_generate_id(x.connection())) {
    constexpr std::uint16_t size = 200;
    const std::uint32_t events = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_FOCUS_CHANGE;
    xcb_create_window(x.connection(), XCB_COPY_FROM_PARENT, window_, x.screen().root, 0, 0, size, size, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, x.screen().root_visual, XCB_CW_EVENT_MASK, &events);
    xcb_map_window(x.connection(), window_);
    xcb_flush(x.connection());
  }
  [[nodiscard]] bool hasFocus() const { return x.hasFocus(window_); }
  /// Asks for it, and gives whether it has it: to be repeated until the window is managed.
  [[nodiscard]] bool takesFocus() const {
    if (hasFocus()) return true;
    x.activate(window_);
    return false;
  }
  /// How often it has lost the focus, be it for a moment.
  [[nodiscard]] int focusLosses() {
    while (const auto event = XObserver::own(xcb_poll_for_event(x.connection()))) {
      constexpr int typeMask = 0x7F;
      if ((event->response_type & typeMask) == XCB_FOCUS_OUT) ++focusLosses_;
    }
    return focusLosses_;
  }

  XObserver x;

 private:
  xcb_window_t window_;
  int focusLosses_ = 0;
};

}  // namespace murmel::test
