#pragma once

#include "Interface/Common/Icons.h"

#include <QAbstractButton>
#include <QColor>

namespace murmel {

/// A round button for a window that never has the keyboard.
class PillButton final : public QAbstractButton {
 public:
  static constexpr int diameter = 26;                 ///< logical pixels
  static constexpr QColor foreground{245, 245, 245};  ///< of whatever stands on the pill

  PillButton(Symbol symbol, const QString& name, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Symbol symbol_;
};

}  // namespace murmel
