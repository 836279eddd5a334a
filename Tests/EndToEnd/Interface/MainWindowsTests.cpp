#include "Interface/PlatformWords.h"
#include "Interface/QtAlertPresenter.h"
#include "Interface/SetupWindow.h"
#include "Shortcut/ShortcutChoice.h"
#include "Shortcut/ShortcutHelp.h"
#include "Support/X11/WindowTests.h"
#include "Support/X11/XWindows.h"
#include "Support/XTestKeyboard.h"

#include <QComboBox>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

using namespace murmel;
using murmel::test::waitUntil;

namespace {

void bringToFront(QWidget& window) {
  const test::XObserver x;
  const auto id = static_cast<xcb_window_t>(window.winId());
  ASSERT_TRUE(waitUntil([&] {
    if (x.hasFocus(id)) return window.isActiveWindow();
    x.activate(id);
    return false;
  }));
}

class Setup : public ::testing::Test {
 protected:
  [[nodiscard]] bool shows(const QString& words) const {
    return std::ranges::any_of(window.findChildren<QLabel*>(), [&](const QLabel* label) {
      return label->isVisible() && label->text().contains(words);
    });
  }
  [[nodiscard]] QPushButton* button(const QString& title) const {
    for (auto* candidate : window.findChildren<QPushButton*>()) {
      if (candidate->text() == title) return candidate;
    }
    return nullptr;
  }
  [[nodiscard]] QComboBox& choice() const { return *window.findChild<QComboBox*>(); }

  std::vector<SetupCheck> checks{{"Microphone", true, "It is there."}, {"Key ring", false, "Is <locked>."}};
  ShortcutConfiguration shortcut = configuration(ShortcutChoice::functionKey);
  std::vector<std::string> calls;
  SetupWindow window{{
      .look =
          [this] {
            calls.emplace_back("look");
            return checks;
          },
      .shortcut = [this] { return shortcut; },
      .chooseShortcut = [this](const ShortcutConfiguration& chosen) { shortcut = chosen; },
      .shortcutNotice =
          [](const ShortcutConfiguration& asked) {
            return std::string(asked == configuration(ShortcutChoice::functionKey) ? "X11 has no Fn." : "");
          },
      .checkAgain = [this] { calls.emplace_back("again"); },
      .done = [this] { calls.emplace_back("done"); },
  }};
};

TEST_F(Setup, lists_what_works_and_what_does_not_and_looks_again_on_request) {
  window.present();
  bringToFront(window);
  EXPECT_TRUE(shows("✓  <b>Microphone</b><br>It is there."));
  EXPECT_TRUE(shows("✗  <b>Key ring</b><br>Is &lt;locked&gt;."));
  checks = {{"Key ring", true, "Is open."}};
  calls.clear();
  button("Check Again")->click();
  EXPECT_EQ(calls, (std::vector<std::string>{"again", "look"}));
  EXPECT_TRUE(shows("✓  <b>Key ring</b><br>Is open."));
  EXPECT_FALSE(shows("Microphone"));
  button("Done")->click();
  EXPECT_EQ(calls.back(), "done");
  EXPECT_FALSE(window.isVisible());
}

TEST_F(Setup, stores_the_shortcut_that_is_chosen_and_says_how_it_is_used) {
  window.present();
  bringToFront(window);
  EXPECT_EQ(choice().currentText(), "Fn");
  EXPECT_TRUE(shows("X11 has no Fn."));
  choice().setFocus();
  test::XTestKeyboard keyboard;
  const auto tapDown = [&] {
    keyboard.press(KEY_DOWN);
    keyboard.release(KEY_DOWN);
  };
  tapDown();
  ASSERT_TRUE(waitUntil([&] { return shortcut == configuration(ShortcutChoice::optionKey); }));
  EXPECT_TRUE(shows("Hold the shortcut while speaking, then release it."));
  EXPECT_FALSE(shows("X11 has no Fn."));
  tapDown();
  ASSERT_TRUE(waitUntil([&] { return shortcut == configuration(ShortcutChoice::doubleTapOption); }));
  EXPECT_EQ(choice().currentText(), "Double tap Alt");
  EXPECT_TRUE(shows("Tap Alt twice to start, then twice again to stop."));
}

TEST_F(Setup, shows_a_recorded_shortcut_and_keeps_it_until_another_is_chosen) {
  const ShortcutConfiguration recorded{ShortcutConfiguration::Kind::key, 12, 0x140000, "Q"};
  shortcut = recorded;
  window.present();
  EXPECT_EQ(choice().currentText(), "Ctrl+Super+Q");
  EXPECT_EQ(choice().count(), static_cast<int>(allCases<ShortcutChoice>().size()) + 1);
  EXPECT_EQ(shortcut, recorded);
  shortcut = configuration(ShortcutChoice::capsLock);
  window.showShortcut();
  EXPECT_EQ(choice().currentText(), "Caps Lock");
  EXPECT_EQ(choice().count(), static_cast<int>(allCases<ShortcutChoice>().size()));
}

TEST_F(Setup, is_as_high_as_its_texts_and_never_higher_than_the_screen) {
  window.present();
  bringToFront(window);
  const auto* scroll = window.findChild<QScrollArea*>();
  EXPECT_EQ(scroll->verticalScrollBar()->maximum(), 0) << "everything is to be seen";
  const int spare = scroll->viewport()->height() - scroll->widget()->sizeHint().height();
  EXPECT_LT(window.height(), 400);
  EXPECT_LT(spare, 60);
  checks.assign(80, checks.front());
  button("Check Again")->click();
  const auto available = window.screen()->availableGeometry();
  EXPECT_TRUE(waitUntil([&] { return scroll->verticalScrollBar()->maximum() > 0; }));
  EXPECT_GT(window.height(), available.height() / 2) << "it has grown at once";
  EXPECT_LE(window.frameGeometry().height(), available.height());
  EXPECT_TRUE(button("Done")->isVisible());
}

class Alerts : public ::testing::Test {
 protected:
  QMessageBox* shown() {
    QMessageBox* box = nullptr;
    const auto look = [&] {
      for (auto* widget : QApplication::topLevelWidgets()) {
        auto* candidate = qobject_cast<QMessageBox*>(widget);
        if (candidate != nullptr && candidate->isVisible()) box = candidate;
      }
      return box != nullptr;
    };
    return waitUntil(look) ? box : nullptr;
  }
  void ask(const std::string& decline) {
    presenter.show({"Title", "The desktop asks.", "Yes", decline},
                   [this](bool accepted) { answers.push_back(accepted); });
  }

  QtAlertPresenter presenter;
  std::vector<bool> answers;
};

TEST_F(Alerts, answer_once_with_the_button_that_was_pressed) {
  for (const bool accepted : {true, false}) {
    answers.clear();
    ask("No");
    EXPECT_TRUE(answers.empty()) << "it does not block";
    auto* box = shown();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text(), "The desktop asks.");
    for (auto* button : box->buttons()) {
      if (button->text() == (accepted ? "Yes" : "No")) button->click();
    }
    EXPECT_EQ(answers, std::vector<bool>{accepted});
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

TEST_F(Alerts, count_as_declined_when_the_window_is_closed) {
  ask("No");
  auto* box = shown();
  ASSERT_NE(box, nullptr);
  box->close();
  EXPECT_EQ(answers, std::vector<bool>{false});
}

}  // namespace
