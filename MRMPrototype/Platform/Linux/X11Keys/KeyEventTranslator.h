#pragma once

#include "Platform/KeyEvent.h"
#include "Platform/Linux/X11Keys/InjectedKeyList.h"
#include "Platform/Linux/X11Keys/KeyLayout.h"

#include <bitset>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <vector>

namespace murmel {

/// X key codes end at 255.
using PressedKeySet = std::bitset<256>;

/// A key event as the X server reports it.
struct RawKey {
  std::uint32_t keyCode = 0;
  bool goesDown = false;
  std::uint32_t time = 0;    ///< milliseconds of the server's clock
  std::uint16_t source = 0;  ///< the device
  bool isSynthetic = false;  ///< from XTest: injected by some program, perhaps ours
  bool isRepeat = false;     ///< said to be one by the server
};

/// Makes key events of the server's raw ones, which carry no modifiers: it keeps the set of keys that the
/// user holds, each with the role that it had when it went down, so that a release means the same key even if
/// the layout has changed in between. Injected keys that we announced are left out and not held by the user.
class KeyEventTranslator {
 public:
  /// The two halves of a repeat are at most this far apart, by the server's clock and on their way here. They
  /// carry the same time, or nearly so when the server is busy; no finger is that quick.
  static constexpr std::uint32_t repeatGapMilliseconds = 10;

  /// The list must outlive this.
  explicit KeyEventTranslator(InjectedKeyList& injected) : injected_(injected) {}

  /// Appends what `raw` (and perhaps what was withheld before it) means.
  void consume(const RawKey& raw, const KeyLayout& layout, std::vector<KeyEvent>& events);

  /// Whether the last release still waits: a press of the same key right after it would make it a repeat.
  /// Nested and remote servers repeat in that way.
  [[nodiscard]] bool isWithholdingRelease() const { return withheldRelease_.has_value(); }
  /// No such press has come: the release was real.
  void tellWithheldRelease(const KeyLayout& layout, std::vector<KeyEvent>& events);

  /// The layout's locks have changed. What they hold down counts as held, as it does for other programs.
  void locksChanged(const KeyLayout& layout, std::vector<KeyEvent>& events);

  /// Brings the set of held keys in line with the server's. Releases that were missed are made up for; keys
  /// that went down unseen only count as modifiers from now on. What we injected is not the user's: it
  /// neither holds a key nor lets one go.
  void reconcile(const PressedKeySet& serverKeys, const KeyLayout& layout, std::vector<KeyEvent>& events);

 private:
  void press(const RawKey& raw, const KeyLayout& layout, std::vector<KeyEvent>& events);
  [[nodiscard]] bool mayBeRepeat(const RawKey& release) const;
  void release(std::uint32_t keyCode, const KeyLayout& layout, std::vector<KeyEvent>& events);
  [[nodiscard]] bool takeInjected(const RawKey& raw);
  [[nodiscard]] KeyEvent event(KeyEventType type, const KeyRole& role, const KeyLayout& layout) const;

  InjectedKeyList& injected_;
  std::map<std::uint32_t, KeyRole> held_;
  /// Announced keys that are down now.
  std::set<std::uint32_t> injectedDown_;
  /// Held keys that we let go on the server: the user still has the finger on them.
  std::set<std::uint32_t> letGoByUs_;
  std::optional<RawKey> withheldRelease_;
  std::uint64_t stuck_ = 0;  ///< as last told
};

}  // namespace murmel
