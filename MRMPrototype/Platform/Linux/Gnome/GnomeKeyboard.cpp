#include "Platform/Linux/Gnome/GnomeKeyboard.h"

#include "Foundation/Async/Timers.h"
#include "Platform/Linux/Gnome/ShellExtension.h"

namespace murmel {

namespace {

constexpr Duration heldPollInterval = std::chrono::milliseconds(20);
constexpr int heldPollCount = 150;  // 3 s
constexpr Duration pasteLimit = std::chrono::seconds(3);

}  // namespace

bool GnomeKeyboard::mayPost() {
  return !bus_.ownerOf(shellExtension.service).empty();
}

bool GnomeKeyboard::modifiersAreHeld() {
  const auto answer = bus_.call(shellExtension, "HeldModifiers");
  std::uint32_t held = 0;
  return answer && sd_bus_message_read(answer.get(), "u", &held) >= 0 && held != 0;
}

Task<void> GnomeKeyboard::awaitReleasedModifiers() {
  for (int poll = 0; poll < heldPollCount && modifiersAreHeld(); ++poll) {
    auto waiting = sleepFor(executor_, heldPollInterval);
    co_await waiting;
  }
}

PostResult GnomeKeyboard::post(PasteChord chord, const RunningApplication& target) {
  const auto keys = keymap_.keysFor(chord);
  auto call = bus_.newCall(shellExtension, "Paste");
  if (!keys || !call || sd_bus_message_append(call.get(), "u", target.window) < 0 ||
      sd_bus_message_append_array(call.get(), 'u', keys->data(), keys->size() * sizeof(std::uint32_t)) < 0)
    return PostResult::unavailable;
  if (!mayPost()) return PostResult::unavailable;
  const auto answer = bus_.send(std::move(call), pasteLimit);
  std::uint32_t result = 0;
  // A shell that is busy presses them later: whether the text was read says what came of it.
  if (!answer || sd_bus_message_read(answer.get(), "u", &result) < 0) return PostResult::posted;
  constexpr std::uint32_t posted = 0;
  constexpr std::uint32_t notInFront = 1;
  if (result == posted) return PostResult::posted;
  return result == notInFront ? PostResult::targetNotInFront : PostResult::unavailable;
}

}  // namespace murmel
