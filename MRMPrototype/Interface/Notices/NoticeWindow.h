#pragma once

#include "Interface/Common/Window.h"

#include <QCoreApplication>

class QVBoxLayout;

namespace murmel {

/// Messages where the desktop shows none. Comes up without taking the keyboard from whoever writes; deletes
/// itself when it is closed.
class NoticeWindow final : public Window {
  Q_DECLARE_TR_FUNCTIONS(NoticeWindow)
 public:
  NoticeWindow();

  void add(const QString& text);

 private:
  QVBoxLayout* messages_;
};

}  // namespace murmel
