#include "Platform/Fake/FakeKeyEventTap.h"
#include "Platform/Qt/QtLocalKeyMonitor.h"
#include "Support/KeyboardKeys.h"
#include "Support/X11/WindowTests.h"
#include "Support/XTestKeyboard.h"

#include <QAction>
#include <QLineEdit>
#include <QVBoxLayout>

namespace {

constexpr Key control{KEY_LEFTCTRL, virtualKey::leftControl, keyModifier::control};
constexpr Key super{KEY_LEFTMETA, virtualKey::leftCommand, keyModifier::command};
constexpr Key letterD{KEY_D, virtualKey::d, 0};

class FakeWindow {
 public:
  FakeLocalKeyMonitor monitor;

  void press(const Key& key) { move(key, true); }
  void release(const Key& key) { move(key, false); }
  void settle() {}

 private:
  void move(const Key& key, bool goesDown) { monitor.deliver(keyboard_.moved(key, goesDown)); }
  CountingKeyboard keyboard_;
};

/// A line to type into, in a window with a shortcut of its own, and the user's keyboard.
class RealWindow {
 public:
  QtLocalKeyMonitor monitor;

  RealWindow() {
    auto* layout = new QVBoxLayout(&window_);
    layout->addWidget(line_);
    auto* action = new QAction(&window_);
    action->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_D));
    QObject::connect(action, &QAction::triggered, [this] { ++shortcutsTaken; });
    window_.addAction(action);
    window_.show();
    const test::XObserver x;
    const auto id = static_cast<xcb_window_t>(window_.winId());
    EXPECT_TRUE(waitUntil([&] {
      if (x.hasFocus(id)) return line_->hasFocus();
      x.activate(id);
      return false;
    }));
  }
  ~RealWindow() {
    for (const auto& key : {optionKey, shiftKey, control, super, letterD}) keyboard_.release(key.evdevCode);
  }

  void press(const Key& key) { keyboard_.press(key.evdevCode); }
  void release(const Key& key) { keyboard_.release(key.evdevCode); }
  void tap(std::uint32_t evdevCode) {
    keyboard_.press(evdevCode);
    keyboard_.release(evdevCode);
  }
  /// Until what was typed so far has come through: keys arrive in their order.
  void settle() {
    bool done = false;
    const auto registration = monitor.add([&](const KeyEvent& event) {
      if (event.keyCode == markCode && event.type == KeyEventType::keyUp) done = true;
    });
    tap(KEY_F12);
    EXPECT_TRUE(waitUntil([&] { return done; }));
  }
  [[nodiscard]] std::string text() const { return line_->text().toStdString(); }

  static constexpr VirtualKeyCode markCode = 111;  // F12
  int shortcutsTaken = 0;

 private:
  test::XTestKeyboard keyboard_;
  QWidget window_;
  QLineEdit* line_ = new QLineEdit;
};

/// What a monitor tells, without the key by which the window is made to settle.
class Heard {
 public:
  explicit Heard(LocalKeyMonitor& monitor)
      : registration_(monitor.add([this](const KeyEvent& event) {
          if (event.keyCode != RealWindow::markCode) events_.push_back(event);
        })) {}

  /// "down 2", "up 2", "flags 58 80000", with "repeat" and the modifiers where there are any.
  [[nodiscard]] std::vector<std::string> story() const {
    std::vector<std::string> lines;
    for (const auto& event : events_) {
      std::string line = event.type == KeyEventType::keyDown ? "down"
                         : event.type == KeyEventType::keyUp ? "up"
                                                             : "flags";
      line += " " + std::to_string(event.keyCode);
      for (const auto& key : {shiftKey, control, optionKey, super}) {
        if ((event.flags & key.flag) != 0) line += " +" + std::to_string(key.keyCode);
      }
      if (event.isRepeat) line += " repeat";
      lines.push_back(std::move(line));
    }
    return lines;
  }
  [[nodiscard]] const std::vector<KeyEvent>& events() const { return events_; }
  void stop() { registration_.reset(); }

 private:
  std::vector<KeyEvent> events_;
  Registration registration_;
};

template <class Window>
class LocalKeyMonitorContract : public ::testing::Test {
 public:
  Window window;
};
using Windows = ::testing::Types<FakeWindow, RealWindow>;
TYPED_TEST_SUITE(LocalKeyMonitorContract, Windows);

using Lines = std::vector<std::string>;

TYPED_TEST(LocalKeyMonitorContract, tells_every_key_once_with_the_modifiers_after_it) {
  Heard heard(this->window.monitor);
  this->window.press(control);
  this->window.press(shiftKey);
  this->window.press(letterD);
  this->window.release(shiftKey);
  this->window.release(letterD);
  this->window.release(control);
  this->window.settle();
  EXPECT_EQ(heard.story(), (Lines{"flags 59 +59", "flags 56 +56 +59", "down 2 +56 +59", "flags 56 +59",
                                  "up 2 +59", "flags 59"}));
}

TYPED_TEST(LocalKeyMonitorContract, tells_option_and_command_from_each_other_and_from_shift) {
  Heard heard(this->window.monitor);
  this->window.press(shiftKey);
  this->window.press(optionKey);
  this->window.release(optionKey);
  this->window.release(shiftKey);
  this->window.press(super);
  this->window.release(super);
  this->window.settle();
  EXPECT_EQ(heard.story(), (Lines{"flags 56 +56", "flags 58 +56 +58", "flags 58 +56", "flags 56",
                                  "flags 55 +55", "flags 55"}));
}

TYPED_TEST(LocalKeyMonitorContract, tells_several_monitors_and_none_that_has_left) {
  Heard one(this->window.monitor);
  Heard other(this->window.monitor);
  this->window.press(letterD);
  this->window.settle();
  one.stop();
  this->window.release(letterD);
  this->window.settle();
  EXPECT_EQ(one.story(), (Lines{"down 2"}));
  EXPECT_EQ(other.story(), (Lines{"down 2", "up 2"}));
}

TEST(QtLocalKeyMonitor, lets_keys_pass_to_the_window_and_says_what_they_write) {
  RealWindow window;
  Heard heard(window.monitor);
  window.tap(KEY_D);
  window.press(shiftKey);
  window.tap(KEY_1);
  window.release(shiftKey);
  window.settle();
  EXPECT_EQ(window.text(), "d!");
  ASSERT_EQ(heard.events().size(), 6U);
  EXPECT_EQ(heard.events()[0].characters, "D");
  EXPECT_EQ(heard.events()[3].characters, "!");
  EXPECT_EQ(heard.events()[2].characters, "") << "a modifier writes nothing";
}

TEST(QtLocalKeyMonitor, tells_keys_that_a_shortcut_of_the_window_takes) {
  RealWindow window;
  Heard heard(window.monitor);
  window.press(control);
  window.tap(KEY_D);
  window.release(control);
  window.settle();
  EXPECT_EQ(window.shortcutsTaken, 1);
  EXPECT_EQ(heard.story(), (Lines{"flags 59 +59", "down 2 +59", "up 2 +59", "flags 59"}));
}

TEST(QtLocalKeyMonitor, keeps_a_modifier_while_the_other_key_of_it_is_down) {
  RealWindow window;
  Heard heard(window.monitor);
  constexpr Key rightControl{KEY_RIGHTCTRL, virtualKey::rightControl, keyModifier::control};
  window.press(control);
  window.press(rightControl);
  window.release(control);
  window.release(rightControl);
  window.settle();
  EXPECT_EQ(heard.story(), (Lines{"flags 59 +59", "flags 62 +59", "flags 59 +59", "flags 62"}));
}

TEST(QtLocalKeyMonitor, tells_caps_lock_when_it_goes_down_only) {
  RealWindow window;
  Heard heard(window.monitor);
  window.tap(KEY_CAPSLOCK);
  window.tap(KEY_CAPSLOCK);
  window.settle();
  EXPECT_EQ(heard.story(), (Lines{"flags 57", "flags 57"}));
}

TEST(QtLocalKeyMonitor, does_not_take_alt_gr_for_option) {
  RealWindow window;
  ASSERT_EQ(std::system("setxkbmap de"), 0);  // NOLINT(cert-env33-c,concurrency-mt-unsafe)
  window.settle();
  Heard heard(window.monitor);
  window.tap(KEY_RIGHTALT);
  window.settle();
  ASSERT_EQ(std::system("setxkbmap us"), 0);  // NOLINT(cert-env33-c,concurrency-mt-unsafe)
  ASSERT_EQ(heard.events().size(), 2U);
  for (const auto& event : heard.events()) {
    EXPECT_EQ(event.type, KeyEventType::flagsChanged);
    EXPECT_NE(event.keyCode, virtualKey::rightOption);
    EXPECT_EQ(event.flags & shortcutModifierMask, 0U);
  }
  window.settle();
}

TEST(QtLocalKeyMonitor, lets_go_what_is_held_when_another_application_takes_the_focus) {
  RealWindow window;
  Heard heard(window.monitor);
  window.press(control);
  window.press(letterD);
  ASSERT_TRUE(waitUntil([&] { return heard.events().size() == 2; }));
  const test::ForeignWindow other;
  ASSERT_TRUE(waitUntil([&] { return other.takesFocus(); }));
  EXPECT_TRUE(waitUntil([&] { return heard.events().size() == 4; }));
  EXPECT_EQ(heard.events().back().flags & shortcutModifierMask, 0U);
}

const test::Surroundings windows(__FILE__, test::windowApplication);

}  // namespace
