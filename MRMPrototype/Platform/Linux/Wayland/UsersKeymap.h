#pragma once

#include "Foundation/Async/Executor.h"
#include "Foundation/Async/Signal.h"
#include "Platform/KeyboardPoster.h"
#include "Platform/Linux/Wayland/WaylandConnection.h"

#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <xkbcommon/xkbcommon.h>

namespace murmel {

/// The layouts of the user's keyboard. The compositor tells them to programs without a window, too, but not
/// which of them is chosen. Main thread.
class UsersKeymap {
 public:
  static std::expected<std::unique_ptr<UsersKeymap>, std::string> open(Executor& executor);
  ~UsersKeymap();
  UsersKeymap(const UsersKeymap&) = delete;
  UsersKeymap& operator=(const UsersKeymap&) = delete;

  /// What the key writes without modifiers in the first layout that has it write something in Latin script or
  /// that is no letter; by the kernel's number of the key.
  [[nodiscard]] std::optional<xkb_keysym_t> symbolOf(std::uint32_t key) const;
  /// The key that writes this in each layout that can write it; nothing when it is another one in some, or in
  /// none.
  [[nodiscard]] std::optional<std::uint32_t> keyFor(xkb_keysym_t symbol) const;
  /// The keys of a chord in the order in which they go down; nothing when the V is not on the keyboard, or in
  /// several places.
  [[nodiscard]] std::optional<std::vector<std::uint32_t>> keysFor(PasteChord chord) const;
  /// The user has another layout now.
  [[nodiscard]] Signal<>& didChange() { return didChange_; }

 private:
  UsersKeymap(Executor& executor, std::unique_ptr<WaylandConnection> connection);
  void haveKeyboard(bool isThere);
  void read(int file, std::uint32_t size);
  [[nodiscard]] xkb_keysym_t symbol(xkb_keycode_t key, xkb_layout_index_t layout) const;

  std::unique_ptr<WaylandConnection> connection_;
  WaylandObject<wl_keyboard> keyboard_;
  std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> context_;
  std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)> keymap_{nullptr, &xkb_keymap_unref};
  Signal<> didChange_;
  Registration watch_;
};

}  // namespace murmel
