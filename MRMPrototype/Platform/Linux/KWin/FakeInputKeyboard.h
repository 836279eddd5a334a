#pragma once

#include "Platform/KeyboardPoster.h"
#include "Platform/Linux/Wayland/UsersKeymap.h"
#include "Platform/Linux/Wayland/WaylandConnection.h"

#include <expected>
#include <memory>
#include <string>

#include <fake-input.h>

namespace murmel {

/// Presses keys on the user's own keyboard, as KWin sees it: with the user's layout, and with whatever they
/// hold down. KWin lets programs do so that a desktop file names. Main thread.
class FakeInputKeyboard final : public KeyboardPoster {
 public:
  /// `workspace` says who has the keyboard; it and the keymap outlive this.
  static std::expected<std::unique_ptr<FakeInputKeyboard>, std::string> open(Workspace& workspace,
                                                                             const UsersKeymap& keymap);

  [[nodiscard]] bool mayPost() override { return !connection_->hasFailed(); }
  [[nodiscard]] bool canPost(PasteChord chord) override { return keymap_.keysFor(chord).has_value(); }
  void maskHeldModifiers() override;
  Task<void> awaitReleasedModifiers() override;
  PostResult post(PasteChord chord, const RunningApplication& target) override;

 private:
  FakeInputKeyboard(Workspace& workspace, const UsersKeymap& keymap,
                    std::unique_ptr<WaylandConnection> connection, org_kde_kwin_fake_input* input);
  void send(std::uint32_t key, bool goesDown);

  Workspace& workspace_;
  const UsersKeymap& keymap_;
  std::unique_ptr<WaylandConnection> connection_;
  WaylandObject<org_kde_kwin_fake_input> input_;
};

}  // namespace murmel
