#include "Foundation/Async/Clock.h"
#include "Interface/PlatformWords.h"
#include "Interface/Recorder/RecorderSheet.h"
#include "Platform/Fake/FakeSessionGuard.h"
#include "Platform/KeyModifiers.h"
#include "Platform/Linux/X11Keys/X11KeyEventTap.h"
#include "Platform/Linux/X11Keys/X11KeyboardProbe.h"
#include "Platform/Qt/QtExecutor.h"
#include "Platform/Qt/QtLocalKeyMonitor.h"
#include "Support/X11/WindowTests.h"
#include "Support/XTestKeyboard.h"

#include <QLineEdit>
#include <QPointer>

namespace {

class Recorder : public ::testing::Test {
 protected:
  void open(bool withTap) {
    parent.show();
    bringToFront(parent);
    sheet = new RecorderSheet(
        &parent,
        {.localKeys = localKeys,
         .source = withTap ? &source : nullptr,
         .probe = &probe,
         .session = &session,
         .suspendShortcuts = [this] { return Registration([this] { isSuspended = false; }); },
         .notice =
             [this](const ShortcutConfiguration& shortcut) {
               const bool isTaken = shortcut.kind == ShortcutConfiguration::Kind::key &&
                                    probe.isTaken(shortcut.keyCode, shortcut.modifierRawValue);
               return std::string(isTaken ? "taken" : "");
             }},
        [this](const ShortcutConfiguration& shortcut) { saved = shortcut; });
    sheet->open();
    bringToFront(*sheet);
    QCoreApplication::processEvents();
  }
  /// The window manager's menus open when it likes, and take the pointer for themselves.
  void TearDown() override {
    const test::XObserver x;
    EXPECT_TRUE(waitUntil([&] {
      const auto asking = xcb_grab_pointer(x.connection(), 0, x.screen().root, 0, XCB_GRAB_MODE_ASYNC,
                                           XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE, XCB_CURRENT_TIME);
      const auto taken = test::XObserver::own(xcb_grab_pointer_reply(x.connection(), asking, nullptr));
      if (taken && taken->status == XCB_GRAB_STATUS_SUCCESS) return true;
      chord({KEY_ESC});
      return false;
    }));
  }
  /// Asks once: a later request for the parent would take the keyboard from its sheet.
  static void bringToFront(const QWidget& window) {
    const test::XObserver x;
    const auto id = static_cast<xcb_window_t>(window.winId());
    ASSERT_TRUE(waitUntil([&] {
      const auto managed = x.property(x.screen().root, "_NET_CLIENT_LIST");
      return std::ranges::find(managed, id) != managed.end();
    }));
    if (!window.isActiveWindow()) x.activate(id);
    ASSERT_TRUE(waitUntil([&] { return window.isActiveWindow(); }));
  }
  /// Down in this order, up in the other.
  void chord(const std::vector<std::uint32_t>& keys) {
    for (const auto key : keys) keyboard.press(key);
    for (auto key = keys.rbegin(); key != keys.rend(); ++key) keyboard.release(*key);
    QCoreApplication::processEvents();
  }

  QtExecutor executor;
  SystemClock clock;
  InjectedKeyList injected{clock};
  X11KeyEventTap taps{executor, injected, X11KeyEnvironment::fromProcess()};
  KeyTapShortcutSource source{taps};
  QtLocalKeyMonitor localKeys;
  X11KeyboardProbe probe;
  FakeSessionGuard session;
  test::XTestKeyboard keyboard;
  QWidget parent;
  QPointer<RecorderSheet> sheet;
  std::optional<ShortcutConfiguration> saved;
  bool isSuspended = true;
};

TEST_F(Recorder, takes_what_is_pressed_three_times_in_a_row) {
  struct Row {
    std::vector<std::uint32_t> keys;
    std::string title;
  };
  constexpr auto ctrl = KEY_LEFTCTRL;
  constexpr auto alt = KEY_LEFTALT;
  constexpr auto shift = KEY_LEFTSHIFT;
  constexpr auto super = KEY_LEFTMETA;
  const std::vector<Row> rows{
      {{ctrl, super}, "Ctrl+Super"},
      {{KEY_RIGHTCTRL}, "Ctrl"},
      {{alt}, "Alt"},
      {{ctrl, alt, shift, super}, "Ctrl+Alt+Shift+Super"},
      {{ctrl, KEY_TAB}, "Ctrl+Tab"},
      {{ctrl, alt, KEY_DELETE}, "Ctrl+Alt+Delete"},
      {{alt, KEY_F8}, "Alt+F8"},
      {{ctrl, KEY_SEMICOLON}, "Ctrl+;"},
      {{ctrl, super, KEY_SPACE}, "Ctrl+Super+Space"},
  };
  for (const bool withTap : {true, false}) {
    for (const auto& row : rows) {
      saved.reset();
      open(withTap);
      for (int time = 0; time < ShortcutRecorder::requiredConfirmations; ++time) {
        EXPECT_FALSE(saved) << row.title;
        chord(row.keys);
      }
      ASSERT_TRUE(waitUntil([this] { return saved.has_value(); }))
          << row.title << (withTap ? " by the tap" : "");
      EXPECT_EQ(shortcutTitle(*saved).toStdString(), row.title);
      ASSERT_TRUE(waitUntil([this] { return sheet.isNull(); }));
      chord({KEY_ESC});  // whatever the window manager has opened
    }
  }
}

TEST_F(Recorder, hears_no_password_of_a_screen_locker) {
  open(true);
  chord({KEY_LEFTALT, KEY_F8});
  chord({KEY_LEFTALT, KEY_F8});
  session.becomeSilently(SessionObstacle::locked);
  chord({KEY_LEFTALT, KEY_F8});
  EXPECT_TRUE(waitUntil([this] { return sheet.isNull(); }));
  EXPECT_FALSE(saved);
}

TEST_F(Recorder, refuses_what_types_and_leaves_with_escape) {
  open(true);
  chord({KEY_A});
  chord({KEY_LEFTSHIFT, KEY_A});
  const auto says = [this](const QString& words) {
    return std::ranges::any_of(sheet->findChildren<QLabel*>(), [&](const QLabel* label) {
      return label->isVisible() && label->text().contains(words);
    });
  };
  EXPECT_TRUE(waitUntil([&] { return says("would also type"); }));
  chord({KEY_LEFTMETA});
  EXPECT_TRUE(waitUntil([&] { return says("Super was detected"); }));
  chord({KEY_LEFTALT, KEY_SPACE});
  EXPECT_TRUE(waitUntil([&] { return says("taken"); })) << "the window manager has reserved it";
  chord({KEY_ESC});
  chord({KEY_ESC});
  EXPECT_TRUE(waitUntil([this] { return sheet.isNull(); }));
  EXPECT_FALSE(saved);
  EXPECT_FALSE(isSuspended);
}

}  // namespace
