#pragma once

#include "Foundation/Registration.h"
#include "MRMDirectUpdater/DirectUpdater.h"

#include <QCoreApplication>
#include <QWidget>
#include <string>

class QLabel;
class QProgressBar;
class QPushButton;

namespace murmel {

/// What a line about an update says.
QString updateWords(const UpdateStatus& status);

/// In the settings: how the update stands, what is new in it, and the next step, which is always the user's.
/// Main thread.
class UpdatePanel final : public QWidget {
  Q_DECLARE_TR_FUNCTIONS(UpdatePanel)
 public:
  /// `packageCommand`: what updates a package of the system. The updater outlives the panel.
  UpdatePanel(DirectUpdater& updater, const std::string& packageCommand);

 private:
  void show();

  DirectUpdater& updater_;
  QString packageCommand_;
  QLabel* state_;
  QLabel* lastCheck_;
  QLabel* notes_;
  QProgressBar* progress_;
  QPushButton* check_;
  QPushButton* install_;
  QPushButton* installWhenIdle_;
  QPushButton* cancel_;
  Registration changes_;
};

}  // namespace murmel
