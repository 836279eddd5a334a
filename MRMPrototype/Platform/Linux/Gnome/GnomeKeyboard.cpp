#include "Platform/Linux/Gnome/GnomeKeyboard.h"

#include "Foundation/Async/Clock.h"
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

void GnomeKeyboard::letGoWhenRead(DesktopClient reader) {
  // The shell's look at what is new comes before.
  read_ = clipboard_.onRead([this, reader, postedAt = SystemClock().now()](const ClipboardRead& read) {
    const bool isText = read.kind == ClipboardRead::Kind::text;
    if (isText && read.at >= postedAt && isSameProgram(read.reader, reader))
      bus_.tell(shellExtension, "LetGo");
  });
}

PostResult GnomeKeyboard::post(PasteChord chord, const RunningApplication& target) {
  const auto keys = keymap_.keysFor(chord);
  auto call = bus_.newCall(shellExtension, "Paste");
  if (!keys || !call || sd_bus_message_append(call.get(), "u", target.window) < 0 ||
      sd_bus_message_append_array(call.get(), 'u', keys->data(), keys->size() * sizeof(std::uint32_t)) < 0)
    return PostResult::unavailable;
  if (!mayPost()) return PostResult::unavailable;
  const auto answer = bus_.send(std::move(call), pasteLimit);
  letGoWhenRead(pasteReader(target));
  std::uint32_t result = 0;
  // A shell that is busy presses them later: whether the text was read says what came of it.
  if (!answer || sd_bus_message_read(answer.get(), "u", &result) < 0) return PostResult::posted;
  constexpr std::uint32_t posted = 0;
  constexpr std::uint32_t notInFront = 1;
  if (result == posted) return PostResult::posted;
  return result == notInFront ? PostResult::targetNotInFront : PostResult::unavailable;
}

}  // namespace murmel
