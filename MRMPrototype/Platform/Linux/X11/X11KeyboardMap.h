#pragma once

#include "Platform/Linux/X11/X11Connection.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include <xkbcommon/xkbcommon.h>

namespace murmel {

/// A key and, where another layout group than the active one gives its symbol, that group.
struct X11Key {
  xcb_keycode_t code = 0;
  std::optional<std::uint8_t> otherGroup;
};

struct X11HeldModifier {
  xcb_keycode_t code = 0;
  std::uint16_t modifiers =
      0;  ///< what it makes the others: bits of `xcb_mod_mask_t`; 0: that stands nowhere
};

/// The keyboard as it is laid out now: which key gives which symbol, and which keys are held. Main thread.
class X11KeyboardMap {
 public:
  /// Null when the server has no XKB extension.
  static std::unique_ptr<X11KeyboardMap> open(X11Connection& connection);
  ~X11KeyboardMap();
  X11KeyboardMap(const X11KeyboardMap&) = delete;
  X11KeyboardMap& operator=(const X11KeyboardMap&) = delete;

  /// The key that gives `symbol` without any modifier: in the layout group that is active, else in another
  /// one.
  std::optional<X11Key> keyFor(xkb_keysym_t symbol);

  /// Makes a layout group the active one; the number of that which was, nothing when the server does not say.
  std::optional<std::uint8_t> exchangeGroup(std::uint8_t group);

  /// A key that gives no symbol in any layout, which no application has a use for.
  std::optional<xcb_keycode_t> keyWithoutSymbol();

  /// Held keys that are modifiers, but not locks.
  std::vector<X11HeldModifier> heldModifiers();

 private:
  explicit X11KeyboardMap(X11Connection& connection, std::int32_t device, std::uint8_t event);
  void refresh();
  [[nodiscard]] bool gives(xkb_keycode_t key, xkb_layout_index_t group, xkb_keysym_t symbol) const;
  [[nodiscard]] bool isLock(xkb_keycode_t key) const;
  [[nodiscard]] bool isNamedModifier(xkb_keycode_t key) const;

  X11Connection& connection_;
  std::int32_t device_;
  std::uint8_t event_;
  xkb_context* context_;
  xkb_keymap* keymap_ = nullptr;
  bool isStale_ = true;
};

}  // namespace murmel
