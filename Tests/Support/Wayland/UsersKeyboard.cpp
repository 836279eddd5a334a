// The user's keyboard on a Wayland desktop. usage: users-keyboard LAYOUT FIFO: plays the lines that are
// written to the FIFO: "down KEY", "up KEY", "tap KEY", with the kernel's number of the key. Says "ready"
// when it is plugged in.

#include "Foundation/UniqueDescriptor.h"
#include "Foundation/WriteAll.h"
#include "Platform/Linux/Wayland/WaylandConnection.h"

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iostream>
#include <memory>
#include <string>
#include <thread>

#include <fake-input.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <virtual-keyboard-unstable-v1.h>
#include <xkbcommon/xkbcommon.h>

namespace {

using namespace murmel;
using Press = std::function<void(std::uint32_t key, bool goesDown)>;

std::uint32_t timeNow() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<std::uint32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

Press virtualKeyboard(WaylandConnection& connection, const char* layout) {
  auto* manager =
      connection.bind<zwp_virtual_keyboard_manager_v1>(zwp_virtual_keyboard_manager_v1_interface, 1);
  if (manager == nullptr) return {};
  auto* keyboard = zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(manager, connection.seat());
  auto* context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
  const xkb_rule_names names{"evdev", "pc105", layout, "", ""};
  auto* keymap = xkb_keymap_new_from_names(context, &names, XKB_KEYMAP_COMPILE_NO_FLAGS);
  const std::unique_ptr<char, decltype(&std::free)> text(
      xkb_keymap_get_as_string(keymap, XKB_KEYMAP_FORMAT_TEXT_V1), &std::free);
  const auto bytes = std::string(text.get()) + '\0';
  const UniqueDescriptor file(::memfd_create("keymap", MFD_CLOEXEC));
  writeAll(file.get(), bytes);
  zwp_virtual_keyboard_v1_keymap(keyboard, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file.get(),
                                 static_cast<std::uint32_t>(bytes.size()));
  auto* state = xkb_state_new(keymap);
  return [&connection, keyboard, state](std::uint32_t key, bool goesDown) {
    constexpr std::uint32_t offset = 8;
    zwp_virtual_keyboard_v1_key(keyboard, timeNow(), key, goesDown ? 1 : 0);
    xkb_state_update_key(state, key + offset, goesDown ? XKB_KEY_DOWN : XKB_KEY_UP);
    const auto part = [state](xkb_state_component which) { return xkb_state_serialize_mods(state, which); };
    zwp_virtual_keyboard_v1_modifiers(keyboard, part(XKB_STATE_MODS_DEPRESSED), part(XKB_STATE_MODS_LATCHED),
                                      part(XKB_STATE_MODS_LOCKED),
                                      xkb_state_serialize_layout(state, XKB_STATE_LAYOUT_EFFECTIVE));
    connection.roundTrip();
  };
}

Press fakeInput(WaylandConnection& connection) {
  constexpr std::uint32_t versionWithKeys = 4;
  auto* input = connection.bind<org_kde_kwin_fake_input>(org_kde_kwin_fake_input_interface, versionWithKeys);
  if (input == nullptr) return {};
  org_kde_kwin_fake_input_authenticate(input, "keyboard", "the test's");
  return [&connection, input](std::uint32_t key, bool goesDown) {
    org_kde_kwin_fake_input_keyboard_key(input, key, goesDown ? 1 : 0);
    connection.roundTrip();
  };
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) return 2;
  const auto connection = WaylandConnection::open();
  if (!connection) return 1;
  auto press = virtualKeyboard(**connection, arguments[1]);
  if (!press) press = fakeInput(**connection);
  if (!press || !(*connection)->roundTrip()) return 1;
  // Opened for both, so that it does not end with the first who writes.
  const UniqueDescriptor open(::open(arguments[2], O_RDWR | O_CLOEXEC));
  std::ifstream lines(arguments[2]);
  std::cout << "ready" << std::endl;
  std::string what;
  std::uint32_t key = 0;
  while (lines >> what >> key) {
    if (what != "up") press(key, true);
    if (what == "tap") std::this_thread::sleep_for(std::chrono::milliseconds(10));
    if (what != "down") press(key, false);
  }
  return 0;
}
