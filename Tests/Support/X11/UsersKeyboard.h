#pragma once

#include "Support/XTestKeyboard.h"

#include <ranges>
#include <vector>

namespace murmel::test {

/// The keys of the user, pressed as another program and named as the X server does. They are let go with it.
class UsersKeyboard {
 public:
  ~UsersKeyboard() {
    for (const auto key : down_) press(key, false);
  }
  void press(std::uint8_t keyCode, bool down) {
    keyboard_.send(keyCode - 8U, down ? XCB_KEY_PRESS : XCB_KEY_RELEASE);
    keyboard_.settle();
    if (down) down_.push_back(keyCode);
  }
  /// All of them together, the first one down first.
  void strike(const std::vector<std::uint8_t>& keyCodes) {
    for (const auto key : keyCodes) press(key, true);
    for (const auto key : std::views::reverse(keyCodes)) press(key, false);
  }
  /// Every key that is down now.
  std::vector<int> held() {
    const auto asking = xcb_query_keymap(keyboard_.connection());
    const auto reply = XObserver::own(xcb_query_keymap_reply(keyboard_.connection(), asking, nullptr));
    std::vector<int> keys;
    for (int code = 8; code < 256; ++code) {
      if ((reply->keys[code / 8] >> (code % 8) & 1) != 0) keys.push_back(code);
    }
    return keys;
  }

 private:
  XTestKeyboard keyboard_;
  std::vector<std::uint8_t> down_;
};

}  // namespace murmel::test
