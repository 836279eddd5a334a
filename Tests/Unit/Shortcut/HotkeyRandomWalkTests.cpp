#include "Platform/KeyModifiers.h"
#include "Shortcut/HotkeyStateMachine.h"
#include "Shortcut/ShortcutChoice.h"
#include "Support/Testing.h"

using Kind = ShortcutConfiguration::Kind;
using Transition = HotkeyStateMachine::Transition;

namespace {

constexpr int eventsPerWalk = 40'000;

const std::map<VirtualKeyCode, std::uint64_t> modifierKeys{
    {virtualKey::leftOption, keyModifier::option},   {virtualKey::rightOption, keyModifier::option},
    {virtualKey::leftShift, keyModifier::shift},     {virtualKey::leftControl, keyModifier::control},
    {virtualKey::leftCommand, keyModifier::command}, {virtualKey::function, keyModifier::function},
};
const std::vector<VirtualKeyCode> ordinaryKeys{0, virtualKey::d, virtualKey::space, virtualKey::returnKey};

/// A keyboard under careless hands: keys go down and up in any order, repeat, and now and then an event is
/// told twice or a release comes without its press.
class CarelessHands {
 public:
  explicit CarelessHands(unsigned seed) : random_(seed) {}

  MRMHotkeyEvent next() {
    now_ += std::exponential_distribution<double>(8)(random_);
    // Mostly Option and a few keys at a time: otherwise clean taps never happen.
    const auto dice = below(100);
    if (dice < 4) return event(KeyEventType::keyUp, anyOrdinaryKey());  // stray, or a real one lost before
    if (dice < 8 && !held_.empty() && !isModifier(*held_.begin())) return repeat(*held_.begin());
    if (dice < 12) return event(KeyEventType::flagsChanged, virtualKey::capsLock);
    if (dice < 75 || held_.size() > 3) {
      return flip(held_.empty() || below(4) == 0 ? virtualKey::leftOption : *held_.begin());
    }
    return flip(below(2) == 0
                    ? anyOrdinaryKey()
                    : std::next(modifierKeys.begin(), below(static_cast<int>(modifierKeys.size())))->first);
  }

  /// Every key that is still down goes up.
  std::vector<MRMHotkeyEvent> letGo() {
    std::vector<MRMHotkeyEvent> events;
    while (!held_.empty()) events.push_back(flip(*held_.begin()));
    return events;
  }

 private:
  static bool isModifier(VirtualKeyCode key) { return modifierKeys.contains(key); }
  int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }
  VirtualKeyCode anyOrdinaryKey() {
    return ordinaryKeys[static_cast<std::size_t>(below(static_cast<int>(ordinaryKeys.size())))];
  }
  MRMHotkeyEvent event(KeyEventType type, VirtualKeyCode key, bool isRepeat = false) const {
    std::uint64_t modifiers = 0;
    for (const auto held : held_) {
      if (isModifier(held)) modifiers |= modifierKeys.at(held);
    }
    return {type, modifiers, key, isRepeat, now_};
  }
  MRMHotkeyEvent repeat(VirtualKeyCode key) const { return event(KeyEventType::keyDown, key, true); }
  MRMHotkeyEvent flip(VirtualKeyCode key) {
    const bool goesDown = held_.insert(key).second;
    if (!goesDown) held_.erase(key);
    if (isModifier(key)) return event(KeyEventType::flagsChanged, key);
    return event(goesDown ? KeyEventType::keyDown : KeyEventType::keyUp, key);
  }

  std::mt19937 random_;
  std::set<VirtualKeyCode> held_;
  double now_ = 1'000;
};

/// What a double tap is, told by looking back over everything that happened.
class TapHistory {
 public:
  /// Whether this event completes a double tap.
  bool completes(const MRMHotkeyEvent& event) {
    const bool option = event.type == KeyEventType::flagsChanged &&
                        (event.keyCode == virtualKey::leftOption || event.keyCode == virtualKey::rightOption);
    const bool isDown = (event.modifiers & keyModifier::option) != 0;
    if (option && isDown) {
      const bool clean = event.modifiers == keyModifier::option;
      word_ += wasDown_ ? (clean ? "" : "x") : (clean ? "D" : "Dx");
      wasDown_ = true;
    } else if (option && wasDown_) {
      wasDown_ = false;
      word_ += "U";
      releases_.push_back(event.timestamp);
    } else if (!option) {
      word_ += "x";
    }
    if (!option || isDown || !word_.ends_with("DUDU")) return false;
    const auto apart = releases_.back() - releases_[releases_.size() - 2];
    if (apart > 0.45) return false;
    word_.clear();  // both taps are used up
    return true;
  }

 private:
  std::string word_;
  std::vector<double> releases_;
  bool wasDown_ = false;
};

class Walk : public ::testing::TestWithParam<ShortcutConfiguration> {};

}  // namespace

TEST_P(Walk, PressesAndReleasesAlternateAndNothingSticks) {
  const auto& shortcut = GetParam();
  CarelessHands hands(20'261);
  HotkeyStateMachine machine, toldTwice;
  TapHistory taps;
  int presses = 0;
  int releases = 0;
  int toggles = 0;
  const auto consume = [&](const MRMHotkeyEvent& event) {
    const auto transition = machine.consume(event, shortcut);
    presses += transition == Transition::press;
    releases += transition == Transition::release;
    toggles += transition == Transition::toggle;
    ASSERT_TRUE(presses == releases || presses == releases + 1);
    ASSERT_EQ(toldTwice.consume(event, shortcut), transition);
    ASSERT_EQ(toldTwice.consume(event, shortcut), Transition::none) << "the same event again";
    if (shortcut.kind == Kind::doubleTapModifier) {
      ASSERT_EQ(transition == Transition::toggle, taps.completes(event));
    }
    if (shortcut.kind == Kind::modifiersOnly && event.type == KeyEventType::flagsChanged) {
      const auto required = shortcut.modifierRawValue;
      ASSERT_EQ(presses > releases, (event.modifiers & required) == required);
    }
  };
  for (int count = 0; count < eventsPerWalk; ++count) {
    consume(hands.next());
    if (HasFatalFailure()) return;
  }
  for (const auto& event : hands.letGo()) consume(event);
  EXPECT_EQ(presses, releases) << "all keys are up";
  const bool isHeld = shortcut.kind == Kind::key || shortcut.kind == Kind::modifiersOnly;
  const bool isTapped = shortcut.kind == Kind::doubleTapModifier || shortcut.kind == Kind::capsLock;
  EXPECT_EQ(presses > 100, isHeld) << presses << " presses: the walk must get there";
  EXPECT_EQ(toggles > 100, isTapped) << toggles << " toggles: the walk must get there";
}

INSTANTIATE_TEST_SUITE_P(
    OfManyEvents, Walk,
    ::testing::Values(configuration(ShortcutChoice::functionKey), configuration(ShortcutChoice::optionKey),
                      configuration(ShortcutChoice::doubleTapOption), configuration(ShortcutChoice::capsLock),
                      configuration(ShortcutChoice::disabled), configuration(ShortcutChoice::optionSpace),
                      ShortcutConfiguration{Kind::modifiersOnly, 56, 0xA0000, ""}),
    [](const auto& parameter) { return "Shortcut" + std::to_string(parameter.index); });
