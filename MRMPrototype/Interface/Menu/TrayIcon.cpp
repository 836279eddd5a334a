#include "Interface/Menu/TrayIcon.h"

#include <QPainter>
#include <QPixmap>
#include <utility>

namespace murmel {

namespace {

QColor inkOf(TrayLook look, bool isPanelDark) {
  const QColor rest = isPanelDark ? QColor(235, 235, 238) : QColor(54, 54, 60);
  switch (look) {
    case TrayLook::rest:
    case TrayLook::paused:
      return rest;
    case TrayLook::recording:
      return isPanelDark ? QColor(255, 92, 92) : QColor(206, 32, 41);
    case TrayLook::working:
      return isPanelDark ? QColor(246, 190, 80) : QColor(168, 104, 0);
    case TrayLook::trouble:
      return isPanelDark ? QColor(255, 150, 80) : QColor(196, 76, 0);
  }
  std::unreachable();
}

void draw(QPainter& painter, TrayLook look, const QColor& ink, double width) {
  if (look == TrayLook::paused) painter.setOpacity(0.55);
  const QPen pen(ink, width, Qt::SolidLine, Qt::RoundCap);
  painter.setPen(pen);
  const bool isFilled = look == TrayLook::recording || look == TrayLook::working;
  painter.setBrush(isFilled ? QBrush(ink) : QBrush(Qt::NoBrush));
  painter.drawRoundedRect(QRectF(9, 3, 6, 11), 3, 3);
  painter.setBrush(Qt::NoBrush);
  constexpr int sixteenths = 16;  // Qt counts angles in sixteenths of a degree
  painter.drawArc(QRectF(6, 6, 12, 12), 180 * sixteenths, 180 * sixteenths);
  painter.drawLine(QPointF(12, 18), QPointF(12, 21));
  if (look == TrayLook::paused) {
    painter.setOpacity(1);
    painter.drawLine(QPointF(4, 4), QPointF(20, 20));
  }
  if (look == TrayLook::trouble) {  // not by its colour alone
    painter.drawLine(QPointF(20.5, 3.5), QPointF(20.5, 9));
    painter.drawPoint(QPointF(20.5, 13));
  }
}

QPixmap drawn(TrayLook look, bool isPanelDark, int size) {
  QPixmap pixmap(size, size);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(size / 24.0, size / 24.0);
  // Not every panel tells its colour: around the symbol there is some of the other, for those that do not.
  constexpr int part = 170;
  draw(painter, look, isPanelDark ? QColor(0, 0, 0, part) : QColor(255, 255, 255, part), 4);
  draw(painter, look, inkOf(look, isPanelDark), 2);
  return pixmap;
}

}  // namespace

TrayLook trayLook(const DictationState& state, bool isPaused) {
  if (state.isRecording()) return TrayLook::recording;
  if (state.isBusy()) return TrayLook::working;
  const auto which = state.which();
  if (which == DictationState::Case::error || which == DictationState::Case::warning)
    return TrayLook::trouble;
  return isPaused ? TrayLook::paused : TrayLook::rest;
}

QIcon trayIcon(TrayLook look, bool isPanelDark) {
  QIcon icon;
  for (const int size : {16, 22, 24, 32, 48, 64}) icon.addPixmap(drawn(look, isPanelDark, size));
  return icon;
}

}  // namespace murmel
