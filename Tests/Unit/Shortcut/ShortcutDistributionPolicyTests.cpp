#include "Platform/KeyModifiers.h"
#include "Shortcut/ShortcutChoice.h"
#include "Shortcut/ShortcutDistributionPolicy.h"
#include "Support/Testing.h"

using Kind = ShortcutConfiguration::Kind;

namespace {

const auto fn = configuration(ShortcutChoice::functionKey);
const auto fallback = configuration(ShortcutChoice::commandShiftD);

struct Row {
  std::string_view when;
  ShortcutConfiguration stored, direct, appStore;
};

std::vector<Row> rows() {
  using namespace keyModifier;
  const ShortcutConfiguration optionX{Kind::key, 7, option, "X"};
  const ShortcutConfiguration fnOptionX{Kind::key, 7, option | function, "X"};
  const auto chord = [](std::uint64_t modifiers) {
    return ShortcutConfiguration{Kind::modifiersOnly, 55, modifiers, ""};
  };
  return {
      {"a combination is kept everywhere", optionX, optionX, optionX},
      {"its foreign bits go", {Kind::key, 7, option | capsLock | 1, "X"}, optionX, optionX},
      {"Fn in a combination is for direct only", fnOptionX, fnOptionX, fallback},
      {"Shift does not make a combination", {Kind::key, 7, shift, "X"}, fn, fallback},
      {"Fn does not make a combination", {Kind::key, 7, function | shift, "X"}, fn, fallback},
      {"Command alone", chord(command), fn, fallback},
      {"Control alone", chord(control), chord(control), fallback},
      {"Fn alone", chord(function), chord(function), fallback},
      {"two that are refused alone", chord(command | shift), chord(command | shift), fallback},
      {"Caps Lock does not count as the second", chord(shift | capsLock), fn, fallback},
      {"double tap of Option is brought into form",
       ShortcutConfiguration{Kind::doubleTapModifier, 61, option | capsLock, "x"},
       configuration(ShortcutChoice::doubleTapOption), fallback},
      {"double tap of another modifier", {Kind::doubleTapModifier, 59, control, ""}, fn, fallback},
      {"Caps Lock is brought into form", ShortcutConfiguration{Kind::capsLock, 3, option, "?"},
       configuration(ShortcutChoice::capsLock), fallback},
      {"disabled is brought into form", ShortcutConfiguration{Kind::disabled, 3, option, "?"},
       configuration(ShortcutChoice::disabled), fallback},
  };
}

}  // namespace

TEST(ShortcutDistributionPolicy, RepairsWhatAChannelCannotServe) {
  using enum MRMDistributionChannel;
  for (const auto& row : rows()) {
    EXPECT_EQ(ShortcutDistributionPolicy::sanitize(row.stored, direct), row.direct) << row.when;
    EXPECT_EQ(ShortcutDistributionPolicy::sanitize(row.stored, appStore), row.appStore) << row.when;
  }
}
