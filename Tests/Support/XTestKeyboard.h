#pragma once

#include "Support/X11/XWindows.h"

#include <cstdint>
#include <string>

#include <linux/input-event-codes.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <xcb/xtest.h>

namespace murmel::test {

/// Presses keys on the X server by XTest, over a connection of its own. Keys are named as the kernel does
/// (KEY_D). Every call returns when the server has done it.
class XTestKeyboard {
 public:
  explicit XTestKeyboard(const std::string& display = "") : x_(display) {}

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
    xcb_test_fake_input(x_.connection(), type, static_cast<std::uint8_t>(evdevCode + keyCodeOffset),
                        XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
  }
  void settle() { x_.settle(); }

  /// Hangs up this process's other connections to an X server, as a server that goes away would.
  void hangUpOtherConnections() const {
    constexpr int highestDescriptor = 255;
    for (int descriptor = 3; descriptor <= highestDescriptor; ++descriptor) {
      sockaddr_un peer{};
      socklen_t length = sizeof peer - 1;
      if (descriptor == xcb_get_file_descriptor(x_.connection()) ||
          ::getpeername(descriptor, reinterpret_cast<sockaddr*>(&peer), &length) != 0) {
        continue;
      }
      // The path may begin with a zero byte: the abstract form of the same name.
      const std::string path(peer.sun_path, sizeof peer.sun_path);
      if (path.find(".X11-unix") != std::string::npos) ::shutdown(descriptor, SHUT_RDWR);
    }
  }

  [[nodiscard]] xcb_connection_t* connection() const { return x_.connection(); }

 private:
  XObserver x_;
};

}  // namespace murmel::test
