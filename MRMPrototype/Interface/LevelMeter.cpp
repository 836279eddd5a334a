#include "Interface/LevelMeter.h"

#include <QPainter>
#include <algorithm>

namespace murmel {

namespace {

constexpr int barWidth = 3;
constexpr int barGap = 2;
constexpr int meterHeight = 18;
/// Silence is a row of dots, so that one sees the meter at all.
constexpr double shortestBar = 3;

}  // namespace

LevelMeter::LevelMeter(QWidget* parent) : QWidget(parent) {
  setFixedSize(static_cast<int>(barCount) * (barWidth + barGap) - barGap, meterHeight);
}

void LevelMeter::push(double level) {
  std::ranges::rotate(levels_, levels_.begin() + 1);
  levels_.back() = std::clamp(level, 0.0, 1.0);
  update();
}

void LevelMeter::clear() {
  levels_.fill(0);
  update();
}

void LevelMeter::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(palette().color(QPalette::WindowText));
  double x = 0;
  for (const auto level : levels_) {
    const double height = std::max(shortestBar, level * meterHeight);
    painter.drawRoundedRect(QRectF(x, (meterHeight - height) / 2, barWidth, height), barWidth / 2.0,
                            barWidth / 2.0);
    x += barWidth + barGap;
  }
}

}  // namespace murmel
