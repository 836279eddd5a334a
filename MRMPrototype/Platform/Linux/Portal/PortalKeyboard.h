#pragma once

#include "Platform/ClipboardPasteboard.h"
#include "Platform/KeyboardPoster.h"
#include "Platform/Linux/Portal/RemoteDesktopSession.h"
#include "Platform/Linux/Wayland/UsersKeymap.h"

#include <cstdint>
#include <vector>

namespace murmel {

/// Presses keys through the portal, on a keyboard with the user's layout. Some desktops ask others before
/// they give a window a key, and tell it the modifiers of the moment at which the answer comes: these stay
/// down until the text was read. Main thread.
class PortalKeyboard final : public KeyboardPoster {
 public:
  /// `workspace` says who has the keyboard. All outlive this.
  PortalKeyboard(Executor& executor, RemoteDesktopSession& session, Workspace& workspace,
                 const UsersKeymap& keymap, ClipboardPasteboard& clipboard);
  ~PortalKeyboard() override { letGo(); }

  [[nodiscard]] bool mayPost() override { return session_.isOpen(); }
  [[nodiscard]] bool canPost(PasteChord chord) override { return keymap_.keysFor(chord).has_value(); }
  // Portals do not tell what is held.
  void maskHeldModifiers() override {}
  Task<void> awaitReleasedModifiers() override { co_return; }
  PostResult post(PasteChord chord, const RunningApplication& target) override;

 private:
  [[nodiscard]] BusMessage keyCall(std::uint32_t key, bool goesDown) const;
  /// One after the other: portals carry out side by side what is not waited for.
  bool send(std::uint32_t key, bool goesDown) const;
  void letGo();

  Executor& executor_;
  RemoteDesktopSession& session_;
  Workspace& workspace_;
  const UsersKeymap& keymap_;
  ClipboardPasteboard& clipboard_;
  std::vector<std::uint32_t> down_;  ///< modifiers of the last chord
  Registration read_;
  Registration limit_;
};

}  // namespace murmel
