#pragma once

#include "Platform/Linux/Keys/KeyRole.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

struct xkb_keymap;
struct xkb_state;

namespace murmel {

/// The keyboard layout with its locks and its active group. Modifier keys are what the layout makes of them
/// (Caps Lock may be a Control key); every other key is known by its place, whatever it writes.
class KeyLayout {
 public:
  /// The xkb state's locks and groups, as the server announces them.
  struct State {
    std::uint32_t baseModifiers = 0;
    std::uint32_t latchedModifiers = 0;
    std::uint32_t lockedModifiers = 0;
    std::uint32_t baseGroup = 0;
    std::uint32_t latchedGroup = 0;
    std::uint32_t lockedGroup = 0;
  };

  /// Takes over both references; neither may be null.
  KeyLayout(xkb_keymap* keymap, xkb_state* state);
  /// The layout of a rule set's names ("de", "us,ru", options "ctrl:nocaps"), all locks off. Nothing when it
  /// does not exist.
  static std::optional<KeyLayout> named(const std::string& layout, const std::string& variant = "",
                                        const std::string& options = "");

  void update(const State& state);

  /// `keyCode` is X's.
  [[nodiscard]] KeyRole role(std::uint32_t keyCode) const;
  [[nodiscard]] bool capsLockIsOn() const;
  /// The modifiers that are down for other programs though no key is: latched or locked by sticky keys or by
  /// a keyboard on the screen. Bits of `keyModifier`.
  [[nodiscard]] std::uint64_t stuckModifiers() const;
  /// What the key writes by itself (UTF-8), or is called ("F4"); empty otherwise.
  [[nodiscard]] std::string characters(std::uint32_t keyCode) const;

 private:
  [[nodiscard]] std::uint32_t symbol(std::uint32_t keyCode) const;
  [[nodiscard]] std::uint64_t flagsOf(std::uint32_t modifiers) const;
  /// What goes down with the key, by the actions of the layout.
  [[nodiscard]] std::uint64_t modifiersSetBy(std::uint32_t keyCode) const;

  struct KeymapDeleter {
    void operator()(xkb_keymap* keymap) const;
  };
  struct StateDeleter {
    void operator()(xkb_state* state) const;
  };
  std::unique_ptr<xkb_keymap, KeymapDeleter> keymap_;
  std::unique_ptr<xkb_state, StateDeleter> state_;
};

}  // namespace murmel
