#pragma once

#include "Platform/KeyboardPoster.h"
#include "Platform/Linux/Wayland/WaylandConnection.h"

#include <expected>
#include <memory>
#include <string>

#include <virtual-keyboard-unstable-v1.h>

namespace murmel {

/// Presses keys on a keyboard of its own, with a layout of its own: neither the user's layout nor what they
/// hold down on theirs matters. It stays for as long as this lives, since applications lose keys whenever a
/// keyboard comes or goes. Main thread.
class VirtualKeyboard final : public KeyboardPoster {
 public:
  /// `workspace` says who has the keyboard, and outlives this.
  static std::expected<std::unique_ptr<VirtualKeyboard>, std::string> open(Workspace& workspace);

  [[nodiscard]] bool mayPost() override { return !connection_->hasFailed(); }
  [[nodiscard]] bool canPost(PasteChord /*chord*/) override { return true; }
  void maskHeldModifiers() override {}
  Task<void> awaitReleasedModifiers() override;
  PostResult post(PasteChord chord, const RunningApplication& target) override;

 private:
  VirtualKeyboard(Workspace& workspace, std::unique_ptr<WaylandConnection> connection,
                  zwp_virtual_keyboard_manager_v1* manager);
  void send(std::uint32_t key, bool goesDown);
  void setModifiers(std::uint32_t modifiers);

  Workspace& workspace_;
  std::unique_ptr<WaylandConnection> connection_;
  WaylandObject<zwp_virtual_keyboard_manager_v1> manager_;
  WaylandObject<zwp_virtual_keyboard_v1> keyboard_;
};

}  // namespace murmel
