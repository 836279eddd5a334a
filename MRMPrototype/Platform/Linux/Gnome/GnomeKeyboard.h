#pragma once

#include "Platform/ClipboardPasteboard.h"
#include "Platform/KeyboardPoster.h"
#include "Platform/Linux/Bus/SessionBus.h"
#include "Platform/Linux/Wayland/UsersKeymap.h"

#include <cstdint>

namespace murmel {

/// Has the extension of GNOME Shell press keys, on a keyboard with the user's layout. What the user holds
/// down counts there and cannot be let go of in their stead. Main thread.
class GnomeKeyboard final : public KeyboardPoster {
 public:
  /// All outlive this.
  GnomeKeyboard(Executor& executor, SessionBus& bus, const UsersKeymap& keymap,
                ClipboardPasteboard& clipboard)
      : executor_(executor), bus_(bus), keymap_(keymap), clipboard_(clipboard) {}

  [[nodiscard]] bool mayPost() override;
  [[nodiscard]] bool canPost(PasteChord chord) override { return keymap_.keysFor(chord).has_value(); }
  void maskHeldModifiers() override {}
  [[nodiscard]] bool isHindered() override { return modifiersAreHeld(); }
  /// Waits longer than elsewhere: while one is held nothing can be pasted.
  Task<void> awaitReleasedModifiers() override;
  PostResult post(PasteChord chord, const RunningApplication& target) override;

 private:
  [[nodiscard]] bool modifiersAreHeld();
  /// The extension keeps the modifiers of a chord down until then.
  void letGoWhenRead(DesktopClient reader);

  Executor& executor_;
  SessionBus& bus_;
  const UsersKeymap& keymap_;
  ClipboardPasteboard& clipboard_;
  Registration read_;
};

}  // namespace murmel
