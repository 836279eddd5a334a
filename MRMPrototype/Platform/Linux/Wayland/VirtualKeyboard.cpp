#include "Platform/Linux/Wayland/VirtualKeyboard.h"

#include "Foundation/UniqueDescriptor.h"
#include "Foundation/WriteAll.h"
#include "Platform/Linux/Keys/PasteKeys.h"

#include <chrono>
#include <cstdlib>
#include <ranges>
#include <utility>

#include <sys/mman.h>
#include <xkbcommon/xkbcommon.h>

namespace murmel {

namespace {

/// The first eight modifiers have the same bits everywhere.
constexpr std::uint32_t shiftBit = 1U << 0U;
constexpr std::uint32_t controlBit = 1U << 2U;

std::uint32_t modifierBit(std::uint32_t key) {
  if (key == KEY_LEFTCTRL) return controlBit;
  return key == KEY_LEFTSHIFT ? shiftBit : 0;
}

/// The layout that every installation has.
std::string latinKeymap() {
  const std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> context(
      xkb_context_new(XKB_CONTEXT_NO_FLAGS), &xkb_context_unref);
  if (!context) return {};
  const xkb_rule_names names{"evdev", "pc105", "us", "", ""};
  const std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)> keymap(
      xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS), &xkb_keymap_unref);
  if (!keymap) return {};
  const std::unique_ptr<char, decltype(&std::free)> text(
      xkb_keymap_get_as_string(keymap.get(), XKB_KEYMAP_FORMAT_TEXT_V1), &std::free);
  return text ? std::string(text.get()) : std::string();
}

std::uint32_t timeNow() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<std::uint32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

}  // namespace

std::expected<std::unique_ptr<VirtualKeyboard>, std::string> VirtualKeyboard::open(Workspace& workspace) {
  auto connection = WaylandConnection::open();
  if (!connection) return std::unexpected(connection.error());
  auto* manager =
      (*connection)->bind<zwp_virtual_keyboard_manager_v1>(zwp_virtual_keyboard_manager_v1_interface, 1);
  if (manager == nullptr || (*connection)->seat() == nullptr)
    return std::unexpected("The compositor lets no program press keys.");
  std::unique_ptr<VirtualKeyboard> keyboard(new VirtualKeyboard(workspace, *std::move(connection), manager));
  const auto keymap = latinKeymap();
  const UniqueDescriptor file(::memfd_create("murmel-keymap", MFD_CLOEXEC));
  if (keymap.empty() || !file || !writeAll(file.get(), keymap + '\0'))
    return std::unexpected("There is no keyboard layout to press keys of (xkb-data).");
  zwp_virtual_keyboard_v1_keymap(keyboard->keyboard_.get(), WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file.get(),
                                 static_cast<std::uint32_t>(keymap.size() + 1));
  if (!keyboard->connection_->roundTrip())
    return std::unexpected("The compositor does not let this program press keys.");
  return keyboard;
}

VirtualKeyboard::VirtualKeyboard(Workspace& workspace, std::unique_ptr<WaylandConnection> connection,
                                 zwp_virtual_keyboard_manager_v1* manager)
    : workspace_(workspace),
      connection_(std::move(connection)),
      manager_(manager, &zwp_virtual_keyboard_manager_v1_destroy),
      keyboard_(zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(manager, connection_->seat()),
                &zwp_virtual_keyboard_v1_destroy) {}

// Modifiers belong to one keyboard each.
Task<void> VirtualKeyboard::awaitReleasedModifiers() {
  co_return;
}

void VirtualKeyboard::send(std::uint32_t key, bool goesDown) {
  zwp_virtual_keyboard_v1_key(keyboard_.get(), timeNow(), key,
                              goesDown ? WL_KEYBOARD_KEY_STATE_PRESSED : WL_KEYBOARD_KEY_STATE_RELEASED);
}

void VirtualKeyboard::setModifiers(std::uint32_t modifiers) {
  zwp_virtual_keyboard_v1_modifiers(keyboard_.get(), modifiers, 0, 0, 0);
}

PostResult VirtualKeyboard::post(PasteChord chord, const RunningApplication& target) {
  // Answers to what was asked before, an error for instance.
  if (!connection_->roundTrip()) return PostResult::unavailable;
  const auto front = workspace_.frontmostApplication();
  if (!front || !isSameWindow(*front, target)) return PostResult::targetNotInFront;
  std::uint32_t modifiers = 0;
  const auto keys = keysOf(chord);
  for (const auto key : keys) {
    send(key, true);
    if (modifierBit(key) != 0) setModifiers(modifiers |= modifierBit(key));
  }
  for (const auto key : std::views::reverse(keys)) {
    send(key, false);
    if (modifierBit(key) != 0) setModifiers(modifiers &= ~modifierBit(key));
  }
  // The keys are with the application when the compositor answers.
  return connection_->roundTrip() ? PostResult::posted : PostResult::unavailable;
}

}  // namespace murmel
