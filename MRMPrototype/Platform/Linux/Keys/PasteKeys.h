#pragma once

#include "Platform/KeyboardPoster.h"

#include <cstdint>
#include <span>

#include <linux/input-event-codes.h>

namespace murmel {

/// The keys of a chord in the order in which they go down, by the kernel's numbers: the modifiers first. They
/// are those of a layout with Latin letters.
inline std::span<const std::uint32_t> keysOf(PasteChord chord) {
  static constexpr std::uint32_t controlV[] = {KEY_LEFTCTRL, KEY_V};
  static constexpr std::uint32_t controlShiftV[] = {KEY_LEFTCTRL, KEY_LEFTSHIFT, KEY_V};
  static constexpr std::uint32_t shiftInsert[] = {KEY_LEFTSHIFT, KEY_INSERT};
  switch (chord) {
    case PasteChord::controlV:
      return controlV;
    case PasteChord::controlShiftV:
      return controlShiftV;
    case PasteChord::shiftInsert:
      break;
  }
  return shiftInsert;
}

}  // namespace murmel
