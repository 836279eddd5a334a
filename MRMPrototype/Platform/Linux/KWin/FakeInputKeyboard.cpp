#include "Platform/Linux/KWin/FakeInputKeyboard.h"

#include <ranges>
#include <utility>

#include <linux/input-event-codes.h>

namespace murmel {

namespace {

/// The first version that presses keys.
constexpr std::uint32_t versionWithKeys = 4;
/// Which applications have no use for.
constexpr std::uint32_t neutralKey = KEY_UNKNOWN;

constexpr std::uint32_t modifierKeys[] = {KEY_LEFTCTRL,  KEY_RIGHTCTRL,  KEY_LEFTALT,  KEY_RIGHTALT,
                                          KEY_LEFTSHIFT, KEY_RIGHTSHIFT, KEY_LEFTMETA, KEY_RIGHTMETA};

void destroy(org_kde_kwin_fake_input* input) {
  org_kde_kwin_fake_input_destroy(input);
}

}  // namespace

std::expected<std::unique_ptr<FakeInputKeyboard>, std::string> FakeInputKeyboard::open(
    Workspace& workspace, const UsersKeymap& keymap) {
  auto connection = WaylandConnection::open();
  if (!connection) return std::unexpected(connection.error());
  if ((*connection)->versionOf(org_kde_kwin_fake_input_interface) < versionWithKeys)
    return std::unexpected("KWin does not let this program press keys.");
  auto* input =
      (*connection)->bind<org_kde_kwin_fake_input>(org_kde_kwin_fake_input_interface, versionWithKeys);
  std::unique_ptr<FakeInputKeyboard> keyboard(
      new FakeInputKeyboard(workspace, keymap, *std::move(connection), input));
  org_kde_kwin_fake_input_authenticate(input, "Murmel", "Pastes what was dictated");
  if (!keyboard->connection_->roundTrip())
    return std::unexpected("KWin does not let this program press keys.");
  return keyboard;
}

FakeInputKeyboard::FakeInputKeyboard(Workspace& workspace, const UsersKeymap& keymap,
                                     std::unique_ptr<WaylandConnection> connection,
                                     org_kde_kwin_fake_input* input)
    : workspace_(workspace), keymap_(keymap), connection_(std::move(connection)), input_(input, &destroy) {}

void FakeInputKeyboard::send(std::uint32_t key, bool goesDown) {
  org_kde_kwin_fake_input_keyboard_key(input_.get(), key, goesDown ? 1 : 0);
}

// KWin does not tell what is held, and any other key ends a shortcut that is held.
void FakeInputKeyboard::maskHeldModifiers() {}

// Whatever is held then is let go of in the user's stead.
Task<void> FakeInputKeyboard::awaitReleasedModifiers() {
  co_return;
}

PostResult FakeInputKeyboard::post(PasteChord chord, const RunningApplication& target) {
  const auto keys = keymap_.keysFor(chord);
  // Answers to what was asked before, an error for instance.
  if (!keys || !connection_->roundTrip()) return PostResult::unavailable;
  const auto front = workspace_.frontmostApplication();
  if (!front || !isSameWindow(*front, target)) return PostResult::targetNotInFront;
  // A lone modifier that goes up would open a menu.
  send(neutralKey, true);
  send(neutralKey, false);
  for (const auto modifier : modifierKeys) send(modifier, false);
  for (const auto key : *keys) send(key, true);
  for (const auto key : std::views::reverse(*keys)) send(key, false);
  // The keys are with the application when the compositor answers.
  return connection_->roundTrip() ? PostResult::posted : PostResult::unavailable;
}

}  // namespace murmel
