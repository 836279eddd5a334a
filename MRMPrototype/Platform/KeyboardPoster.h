#pragma once

#include "Foundation/Async/Task.h"
#include "Foundation/RawValue.h"
#include "Platform/Workspace.h"

namespace murmel {

/// The key combinations by which applications paste.
enum class PasteChord { controlV, controlShiftV, shiftInsert };

template <>
inline constexpr auto rawValueTable<PasteChord> = std::to_array<RawValueRow<PasteChord>>({
    {PasteChord::controlV, "Ctrl+V"},
    {PasteChord::controlShiftV, "Ctrl+Shift+V"},
    {PasteChord::shiftInsert, "Shift+Insert"},
});

enum class PostResult {
  posted,
  targetNotInFront,  ///< another program would have got the keys: none was sent
  unavailable,       ///< the keys are not on the keyboard, or may not be posted: none was sent
};

/// Presses keys in the user's stead. Main thread.
class KeyboardPoster {
 public:
  virtual ~KeyboardPoster() = default;

  /// Whether this process may post keys at all.
  [[nodiscard]] virtual bool mayPost() = 0;
  /// Whether every key of the chord exists on the keyboard as it is laid out now.
  [[nodiscard]] virtual bool canPost(PasteChord chord) = 0;

  /// Presses a key that means nothing while the user holds a modifier: where a lone Alt or Super opens a menu
  /// when it goes up, it is not alone any more. Does nothing when none is held.
  virtual void maskHeldModifiers() = 0;

  /// Whether the user holds modifiers that would spoil a chord and cannot be released in their stead.
  [[nodiscard]] virtual bool isHindered() { return false; }

  /// Waits until the user holds no modifier that would spoil a chord, at most 400 ms.
  virtual Task<void> awaitReleasedModifiers() = 0;

  /// Releases modifiers that are still held and would spoil the chord, for good, and presses and releases the
  /// chord, provided that `target` has the keyboard at that very moment. Leaves no key down of its own.
  virtual PostResult post(PasteChord chord, const RunningApplication& target) = 0;
};

}  // namespace murmel
