#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>

#include <linux/input-event-codes.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <xcb/xcb.h>
#include <xcb/xtest.h>

namespace murmel::test {

/// Presses keys on the X server by XTest, over a connection of its own. Keys are named as the kernel does
/// (KEY_D). Every call returns when the server has done it.
class XTestKeyboard {
 public:
  /// `display` empty: the environment's.
  explicit XTestKeyboard(const std::string& display = "")
      : connection_(xcb_connect(display.empty() ? nullptr : display.c_str(), nullptr)) {
    if (xcb_connection_has_error(connection_.get()) != 0) throw std::runtime_error("no X server");
  }

  void press(std::uint32_t evdevCode) {
    send(evdevCode, XCB_KEY_PRESS);
    settle();
  }
  void release(std::uint32_t evdevCode) {
    send(evdevCode, XCB_KEY_RELEASE);
    settle();
  }
  /// Queued only: `settle` sends.
  void send(std::uint32_t evdevCode, std::uint8_t type) {
    constexpr std::uint32_t keyCodeOffset = 8;
    xcb_test_fake_input(connection_.get(), type, static_cast<std::uint8_t>(evdevCode + keyCodeOffset),
                        XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
  }
  void settle() {
    std::free(xcb_get_input_focus_reply(connection_.get(), xcb_get_input_focus(connection_.get()), nullptr));
  }

  /// Hangs up this process's other connections to an X server, as a server that goes away would.
  void hangUpOtherConnections() const {
    constexpr int highestDescriptor = 255;
    for (int descriptor = 3; descriptor <= highestDescriptor; ++descriptor) {
      sockaddr_un peer{};
      socklen_t length = sizeof peer - 1;
      if (descriptor == xcb_get_file_descriptor(connection_.get()) ||
          ::getpeername(descriptor, reinterpret_cast<sockaddr*>(&peer), &length) != 0) {
        continue;
      }
      // The path may begin with a zero byte: the abstract form of the same name.
      const std::string path(peer.sun_path, sizeof peer.sun_path);
      if (path.find(".X11-unix") != std::string::npos) ::shutdown(descriptor, SHUT_RDWR);
    }
  }

  [[nodiscard]] xcb_connection_t* connection() const { return connection_.get(); }

 private:
  struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
  };
  std::unique_ptr<xcb_connection_t, Disconnect> connection_;
};

}  // namespace murmel::test
