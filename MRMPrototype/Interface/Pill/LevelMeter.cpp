#include "Interface/Pill/LevelMeter.h"

#include "Interface/Common/Style.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

namespace murmel {

namespace {

constexpr int barWidth = 3;
constexpr int barGap = 2;
constexpr int meterHeight = 18;
/// Silence is a row of dots, so that one sees the meter at all.
constexpr double shortestBar = 3;
constexpr double gaugeHeight = 0.7;

}  // namespace

LevelMeter::LevelMeter(QWidget* parent) : QWidget(parent) {
  setFixedSize(static_cast<int>(barCount) * (barWidth + barGap) - barGap, meterHeight);
}

void LevelMeter::push(double level) {
  const auto shown = std::clamp(level, 0.0, 1.0);
  if (!mayMove(*this)) {
    // Nothing runs by: the row fills like a gauge, in steps.
    const auto filled = static_cast<std::size_t>(std::lround(shown * static_cast<double>(levels_.size())));
    for (std::size_t bar = 0; bar < levels_.size(); ++bar) levels_.at(bar) = bar < filled ? gaugeHeight : 0;
    update();
    return;
  }
  std::ranges::rotate(levels_, levels_.begin() + 1);
  levels_.back() = shown;
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
