#include "Interface/Settings/LevelBar.h"

#include "Interface/Common/Style.h"

#include <QCoreApplication>
#include <QPainter>
#include <algorithm>
#include <utility>

namespace murmel {

namespace {

constexpr double peakFall = 0.02;  ///< with each level, of about twenty a second
constexpr int levelsTogether = 100;

}  // namespace

LevelBar::LevelBar() {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setFixedHeight(sizeHint().height());
  setAccessibleName(QCoreApplication::translate("AudioPage", "Microphone level"));
}

void LevelBar::show(double level) {
  level_ = std::clamp(level, 0.0, 1.0);
  peak_ = std::max(level_, peak_ - peakFall);
  if (++levels_ % levelsTogether == 0) loudestBefore_ = std::exchange(loudest_, 0);
  loudest_ = std::max(loudest_, level_);
  update();
}

void LevelBar::clear() {
  level_ = 0;
  peak_ = 0;
  loudest_ = 0;
  loudestBefore_ = 0;
  update();
}

void LevelBar::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const auto& colours = palette();
  const QRectF groove = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
  const auto radius = groove.height() / 2;
  painter.setPen(QPen(outlineOf(colours), 1));
  painter.setBrush(colours.color(QPalette::AlternateBase));
  painter.drawRoundedRect(groove, radius, radius);
  if (peak_ <= 0) return;
  if (isRightToLeft()) {
    painter.translate(width(), 0);
    painter.scale(-1, 1);
  }
  painter.setPen(Qt::NoPen);
  painter.setBrush(colours.color(QPalette::Highlight));
  auto filled = groove;
  filled.setWidth(std::max(groove.height(), groove.width() * level_));
  painter.drawRoundedRect(filled, radius, radius);
  const auto x = std::max(groove.height(), groove.width() * peak_);
  painter.setPen(QPen(colours.color(QPalette::WindowText), 2));
  painter.drawLine(QPointF(x - 1, groove.top() + 3), QPointF(x - 1, groove.bottom() - 3));
}

QString microphoneVerdict(double loudest) {
  // Levels as the meter shows them, from 0 to 1.
  constexpr double silentBelow = 0.02;
  constexpr double quietBelow = 0.25;
  constexpr double loudFrom = 0.97;
  const char* verdict = QT_TRANSLATE_NOOP("AudioPage", "Too loud. Lower the input volume a little.");
  if (loudest < loudFrom) verdict = QT_TRANSLATE_NOOP("AudioPage", "The level is good.");
  if (loudest < quietBelow)
    verdict = QT_TRANSLATE_NOOP("AudioPage", "Very quiet. Come closer, or raise the input volume.");
  if (loudest < silentBelow)
    verdict = QT_TRANSLATE_NOOP("AudioPage", "Nothing is heard yet. Is the microphone muted?");
  return QCoreApplication::translate("AudioPage", verdict);
}

}  // namespace murmel
