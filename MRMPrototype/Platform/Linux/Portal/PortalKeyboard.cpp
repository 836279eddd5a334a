#include "Platform/Linux/Portal/PortalKeyboard.h"

#include <ranges>
#include <utility>

#include <linux/input-event-codes.h>

namespace murmel {

namespace {

/// Which applications have no use for.
constexpr std::uint32_t neutralKey = KEY_UNKNOWN;

constexpr std::uint32_t modifierKeys[] = {KEY_RIGHTCTRL,  KEY_LEFTALT,  KEY_RIGHTALT, KEY_LEFTSHIFT,
                                          KEY_RIGHTSHIFT, KEY_LEFTMETA, KEY_RIGHTMETA};

}  // namespace

PortalKeyboard::PortalKeyboard(Executor& executor, RemoteDesktopSession& session, Workspace& workspace,
                               const UsersKeymap& keymap, ClipboardPasteboard& clipboard)
    : executor_(executor), session_(session), workspace_(workspace), keymap_(keymap), clipboard_(clipboard) {}

BusMessage PortalKeyboard::keyCall(std::uint32_t key, bool goesDown) const {
  auto call = session_.newCall("RemoteDesktop", "NotifyKeyboardKeycode");
  if (call)
    sd_bus_message_append(call.get(), "a{sv}iu", 0, static_cast<std::int32_t>(key), goesDown ? 1U : 0U);
  return call;
}

bool PortalKeyboard::send(std::uint32_t key, bool goesDown) const {
  return session_.bus().send(keyCall(key, goesDown), RemoteDesktopSession::patience) != nullptr;
}

void PortalKeyboard::letGo() {
  read_.reset();
  limit_.reset();
  for (const auto key : std::views::reverse(std::exchange(down_, {}))) {
    if (mayPost()) send(key, false);
  }
}

PostResult PortalKeyboard::post(PasteChord chord, const RunningApplication& target) {
  const auto keys = keymap_.keysFor(chord);
  if (!keys || !mayPost()) return PostResult::unavailable;
  letGo();
  // A key that goes up and was not down is nothing, and shows whether the portal still takes keys.
  if (!send(KEY_LEFTCTRL, false)) return PostResult::unavailable;
  const auto front = workspace_.frontmostApplication();
  if (!front || !isSameWindow(*front, target)) return PostResult::targetNotInFront;
  // Where that is one keyboard with the user's own it lets go of what they hold; a lone modifier that goes up
  // would open a menu.
  bool takesKeys = send(neutralKey, true) && send(neutralKey, false);
  for (const auto modifier : modifierKeys) takesKeys = takesKeys && send(modifier, false);
  for (const auto key : *keys) {
    if (!takesKeys) break;
    down_.push_back(key);
    takesKeys = send(key, true);
  }
  if (!takesKeys) {
    letGo();
    return PostResult::unavailable;
  }
  send(keys->back(), false);
  down_.pop_back();
  read_ = clipboard_.onRead(
      [this, reader = pasteReader(target), postedAt = SystemClock().now()](const ClipboardRead& read) {
        const bool isText = read.kind == ClipboardRead::Kind::text;
        if (isText && read.at >= postedAt && isSameProgram(read.reader, reader))
          limit_ = executor_.after(Duration{}, [this] { letGo(); });
      });
  limit_ = executor_.after(RemoteDesktopSession::patience, [this] { letGo(); });
  return PostResult::posted;
}

}  // namespace murmel
