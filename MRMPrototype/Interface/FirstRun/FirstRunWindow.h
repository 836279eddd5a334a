#pragma once

#include "Interface/Common/Window.h"
#include "Interface/FirstRun/FirstRunServices.h"

#include <QCoreApplication>
#include <vector>

class QLabel;
class QPushButton;
class QStackedWidget;

namespace murmel {

class ShortcutStep;

/// Leads from a bare installation to the first dictated words, in five steps. It can be left at any step and
/// opened again; only words that have arrived finish it. Deletes itself when it is closed.
class FirstRunWindow final : public Window {
  Q_DECLARE_TR_FUNCTIONS(FirstRunWindow)
 public:
  enum class Step { welcome, model, microphone, shortcut, tryIt };

  explicit FirstRunWindow(FirstRunServices services);

  /// Looks again at what works, and comes to the front.
  void present(Step step = Step::welcome);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void go(int step);
  void goOn();
  void showNext();
  void succeed();

  FirstRunServices services_;
  QStackedWidget* pages_;
  ShortcutStep* shortcut_ = nullptr;
  QLabel* progress_;
  QPushButton* later_;
  QPushButton* back_;
  QPushButton* next_;
  bool hasSucceeded_ = false;
};

}  // namespace murmel
