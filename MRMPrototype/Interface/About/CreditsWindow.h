#pragma once

#include "Interface/About/Credits.h"
#include "Interface/Common/Window.h"

#include <QCoreApplication>
#include <vector>

class QLabel;
class QListWidget;
class QPlainTextEdit;

namespace murmel {

/// What Murmel is made of, with the license of each. Deletes itself when it is closed.
class CreditsWindow final : public Window {
  Q_DECLARE_TR_FUNCTIONS(CreditsWindow)
 public:
  explicit CreditsWindow(std::vector<Credit> credits);

 private:
  void fill();
  void show(int row);
  static QString kindTitle(Credit::Kind kind);

  std::vector<Credit> credits_;
  QListWidget* list_;
  QLabel* name_;
  QLabel* about_;
  QPlainTextEdit* text_;
};

}  // namespace murmel
