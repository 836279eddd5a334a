#include "Interface/Pill/PillButton.h"

#include <QPainter>

namespace murmel {

PillButton::PillButton(Symbol symbol, const QString& name, QWidget* parent)
    : QAbstractButton(parent), symbol_(symbol) {
  setFocusPolicy(Qt::NoFocus);
  setFixedSize(diameter, diameter);
  setAccessibleName(name);
  setToolTip(name);
  setCursor(Qt::PointingHandCursor);
  setAttribute(Qt::WA_Hover);
}

void PillButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  constexpr int pressed = 90;
  constexpr int hovered = 62;
  constexpr int resting = 34;
  painter.setBrush(QColor(255, 255, 255, isDown() ? pressed : underMouse() ? hovered : resting));
  painter.drawEllipse(rect());
  constexpr int inset = 5;
  painter.drawPixmap(rect().adjusted(inset, inset, -inset, -inset),
                     symbolPixmap(symbol_, diameter - 2 * inset, foreground, devicePixelRatioF()));
}

}  // namespace murmel
