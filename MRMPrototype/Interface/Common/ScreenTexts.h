#pragma once

#include <array>
#include <span>
#include <string_view>

namespace murmel {

/// A text of the core and what this desktop's screens say for it. "%1", "%2" and so on, in this order in the
/// core's text, stand for what differs from time to time; "%paste" on the screen's side for the keys that
/// paste.
struct ScreenText {
  enum class Argument {
    none,
    detail,    ///< shown as it is
    text,      ///< itself a text of the table
    shortcut,  ///< a title of keys in symbols
  };

  std::string_view core;
  const char* screen;  ///< the translations' source
  Argument argument = Argument::none;
};

/// A text that the screen says in the core's words.
constexpr ScreenText same(const char* text, ScreenText::Argument argument = ScreenText::Argument::none) {
  return {text, text, argument};
}

/// Every text of the core that a person sees.
std::array<std::span<const ScreenText>, 2> screenTexts();
/// Those of them that tell what was tried, and what does not work here.
std::span<const ScreenText> checkTexts();

}  // namespace murmel
