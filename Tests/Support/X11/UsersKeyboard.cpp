#include "Support/X11/UsersKeyboard.h"

#include <cstdlib>
#include <ranges>

#include <xcb/xcb.h>
#include <xcb/xtest.h>

namespace murmel::test {

struct UsersKeyboard::Connection {
  xcb_connection_t* x11 = xcb_connect(nullptr, nullptr);
  std::vector<std::uint8_t> down;
};

UsersKeyboard::UsersKeyboard() : connection_(std::make_unique<Connection>()) {}

UsersKeyboard::~UsersKeyboard() {
  for (const auto key : connection_->down) press(key, false);
  xcb_disconnect(connection_->x11);
}

void UsersKeyboard::press(std::uint8_t keyCode, bool down) {
  xcb_test_fake_input(connection_->x11, down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, keyCode, XCB_CURRENT_TIME,
                      XCB_NONE, 0, 0, 0);
  if (down) connection_->down.push_back(keyCode);
  held();  // the answer comes after the key
}

void UsersKeyboard::strike(std::vector<std::uint8_t> keyCodes) {
  for (const auto key : keyCodes) press(key, true);
  for (const auto key : std::views::reverse(keyCodes)) press(key, false);
}

std::vector<int> UsersKeyboard::held() {
  auto* reply = xcb_query_keymap_reply(connection_->x11, xcb_query_keymap(connection_->x11), nullptr);
  std::vector<int> keys;
  for (int code = 8; code < 256; ++code) {
    if ((reply->keys[code / 8] >> (code % 8) & 1) != 0) keys.push_back(code);
  }
  std::free(reply);
  return keys;
}

}  // namespace murmel::test
