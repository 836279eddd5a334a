#include "Interface/QtAlertPresenter.h"
#include "Support/X11/WindowTests.h"

#include <QMessageBox>
#include <QPushButton>

namespace {

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
