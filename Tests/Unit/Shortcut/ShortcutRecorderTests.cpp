#include "Platform/KeyModifiers.h"
#include "Shortcut/ShortcutRecorder.h"
#include "Support/Testing.h"

using namespace murmel::keyModifier;
using Kind = ShortcutConfiguration::Kind;
using enum ShortcutRecorder::Outcome;

namespace {

const std::string standingHelp =
    "Fn, Option, and Control work alone. Command and Shift must be combined with another modifier or a key. "
    "Press Esc to cancel.";
const std::string typingWarning =
    "A single typing key would also type in your current app. Use Fn, Option, Control, or add a modifier.";
const std::string commandWarning =
    "⌘ was detected. Command and Shift cannot be used alone because normal Mac typing uses them constantly. "
    "Use Fn, Option, Control, or hold two modifiers together.";

KeyEvent pressed(VirtualKeyCode key, std::uint64_t modifiers, std::string characters = "") {
  return {KeyEventType::keyDown, modifiers, key, false, std::move(characters)};
}
KeyEvent repeated(VirtualKeyCode key) {
  return {KeyEventType::keyDown, 0, key, true, "x"};
}

KeyEvent released(VirtualKeyCode key, std::uint64_t modifiers = 0) {
  return {KeyEventType::keyUp, modifiers, key, false, ""};
}
KeyEvent changed(VirtualKeyCode key, std::uint64_t modifiers) {
  return {KeyEventType::flagsChanged, modifiers, key, false, ""};
}

using Keys = std::vector<KeyEvent>;

Keys times(int count, const Keys& keys) {
  Keys all;
  for (int index = 0; index < count; ++index) all.insert(all.end(), keys.begin(), keys.end());
  return all;
}

Keys operator+(Keys left, const Keys& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

const Keys optionX{changed(58, option), pressed(7, option, "x"), released(7, option), changed(58, 0)};
const Keys optionXModifierFirst{changed(58, option), pressed(7, option, "x"), changed(58, 0), released(7)};
const Keys optionAlone{changed(58, option), changed(58, 0)};
const Keys commandAlone{changed(55, command), changed(55, 0)};
const Keys pressedOptionShift{changed(58, option), changed(56, option | shift), changed(56, option),
                              changed(58, 0)};

struct Recorded {
  std::string_view when;
  Keys keys;
  ShortcutRecorder::Outcome outcome;
  std::string title;
  int confirmations = 0;
  std::string help = standingHelp;
};

}  // namespace

TEST(ShortcutRecorder, FollowsWhatIsPressed) {
  const std::vector<Recorded> rows{
      {"nothing yet", {}, recording, "Press and release your shortcut three times"},
      {"Esc cancels", {pressed(53, 0)}, cancelled, "Press and release your shortcut three times"},
      {"a key with a modifier is the candidate", {optionX[0], optionX[1]}, recording, "⌥X"},
      {"its repeats are no typing", Keys{optionX[0], optionX[1], changed(58, 0), repeated(7)}, recording,
       "⌥X"},
      {"its release confirms once", optionX, recording, "⌥X", 1},
      {"three times are enough", times(3, optionX), confirmed, "⌥X", 3},
      {"letting go of the modifier first confirms too", times(2, optionXModifierFirst), recording, "⌥X", 2},
      {"a modifier alone", times(3, optionAlone), confirmed, "⌥", 3},
      {"a chord counts with every modifier that took part", times(3, pressedOptionShift), confirmed, "⌥⇧", 3},
      {"the modifiers of a combination are no chord of their own", optionX + optionX, recording, "⌥X", 2},
      {"nor are those that join before all are let go",
       optionX + Keys{changed(58, option), pressed(7, option, "x"), released(7, option),
                      changed(56, option | shift)},
       recording, "⌥X", 2},
      {"another shortcut starts to count anew", times(2, optionX) + optionAlone, recording, "⌥", 1},
      {"a typing key is refused",
       {pressed(0, 0, "a"), released(0)},
       recording,
       "A detected",
       0,
       typingWarning},
      {"Shift does not make it a shortcut",
       Keys{changed(56, shift), pressed(0, shift, "A"), released(0, shift), changed(56, 0)}, recording,
       "⇧A detected", 0, typingWarning},
      {"Command alone is refused by its name", commandAlone, recording, "⌘ detected", 0, commandWarning},
      {"modifiers that join a held key are not a chord",
       Keys{optionX[0], optionX[1], changed(56, option | shift), optionX[2]}, recording, "⌥X", 1},
      {"nothing of a combination stays for the next chord", optionX + commandAlone, recording, "⌘ detected",
       0, commandWarning},
      {"a refusal forgets the count", times(2, optionX) + commandAlone + optionX, recording, "⌥X", 1},
      {"Command becomes a chord with a second modifier",
       Keys{changed(55, command), changed(59, command | control)}, recording, "⌃⌘"},
      {"Caps Lock is no part of a shortcut",
       Keys{changed(57, capsLock), changed(58, option | capsLock), changed(58, capsLock)}, recording, "⌥", 1},
  };
  for (const auto& row : rows) {
    ShortcutRecorder recorder;
    auto outcome = recording;
    for (const auto& event : row.keys) outcome = recorder.consume(event);
    EXPECT_EQ(outcome, row.outcome) << row.when;
    EXPECT_EQ(recorder.titleLine(), row.title) << row.when;
    EXPECT_EQ(recorder.confirmations(), row.confirmations) << row.when;
    EXPECT_EQ(recorder.helpLine(), row.help) << row.when;
  }
}

TEST(ShortcutRecorder, GivesTheShortcutAsItIsStored) {
  ShortcutRecorder recorder;
  for (const auto& event : times(3, optionX)) recorder.consume(event);
  EXPECT_EQ(recorder.candidate(), (ShortcutConfiguration{Kind::key, 7, option, "X"}));

  ShortcutRecorder chords;
  for (const auto& event :
       times(3, {changed(55, command | capsLock), changed(60, command | shift), changed(55, 0)})) {
    chords.consume(event);
  }
  EXPECT_EQ(chords.candidate(), (ShortcutConfiguration{Kind::modifiersOnly, 60, command | shift, ""}));
}

TEST(ShortcutRecorder, NamesKeys) {
  const std::vector<std::pair<KeyEvent, std::string>> rows{
      {pressed(49, 0, " "), "Space"},    {pressed(36, 0, "\r"), "Return"},
      {pressed(126, 0, ""), "↑"},        {pressed(7, 0, "x"), "X"},
      {pressed(2, 0, "в"), "В"},         {pressed(27, 0, "ß"), "SS"},
      {pressed(96, 0, ""), "Key 96"},    {pressed(65535, 0, ""), "Key 65535"},
      {pressed(7, 0, "\xFF"), "\uFFFD"},
  };
  for (const auto& [event, label] : rows) EXPECT_EQ(recorderKeyLabel(event), label);
}
