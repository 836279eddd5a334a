#include "Interface/Pill/ShortLabel.h"

#include <QPainter>
#include <QTextLayout>
#include <algorithm>

namespace murmel {

namespace {

/// The words broken into lines of this width; a word that is wider is broken too.
QStringList linesOf(const QString& words, const QFont& font, int width) {
  QTextLayout layout(words, font);
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout.setTextOption(option);
  QStringList lines;
  layout.beginLayout();
  for (auto line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(width);
    lines += words.mid(line.textStart(), line.textLength()).trimmed();
  }
  layout.endLayout();
  return lines;
}

}  // namespace

ShortLabel::ShortLabel(int lines, Keeps keeps, QWidget* parent)
    : QLabel(parent), lines_(lines), keeps_(keeps) {
  setTextFormat(Qt::PlainText);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);  // no narrower than its column
}

void ShortLabel::setWords(const QString& words) {
  if (words == text()) return;
  setText(words);
  setAccessibleName(words);
  arrange();
}

void ShortLabel::setLines(int lines) {
  lines_ = lines;
  arrange();
}

void ShortLabel::setRoom(int width) {
  room_ = width;
  arrange();
}

void ShortLabel::arrange() {
  // What nobody can see needs no measuring: a text of an hour would take its time.
  constexpr qsizetype mostOfALine = 400;
  auto words = text().simplified();
  const auto most = mostOfALine * lines_;
  const bool isLong = words.size() > most;
  if (isLong) words = keeps_ == Keeps::end ? words.right(most) : words.left(most);
  arranged_ = linesOf(words, font(), room_);
  const bool isCut = isLong || arranged_.size() > lines_;
  if (isCut && keeps_ == Keeps::beginning) {
    const auto rest = arranged_.mid(lines_ - 1).join(u' ') + (isLong ? QStringLiteral("…") : QString());
    arranged_ = arranged_.mid(0, lines_ - 1) << fontMetrics().elidedText(rest, Qt::ElideRight, room_);
  } else if (isCut) {
    arranged_ = arranged_.mid(arranged_.size() - lines_);
    arranged_.front() =
        fontMetrics().elidedText(QStringLiteral("… ") + arranged_.front(), Qt::ElideLeft, room_);
  }
  setToolTip(isCut ? Qt::convertFromPlainText(text()) : QString());
  updateGeometry();
  update();
}

QSize ShortLabel::sizeHint() const {
  int width = 0;
  for (const auto& line : arranged_) width = std::max(width, fontMetrics().horizontalAdvance(line) + 1);
  return {width, fontMetrics().lineSpacing() * std::max<int>(1, static_cast<int>(arranged_.size()))};
}

void ShortLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setPen(palette().color(foregroundRole()));
  int y = 0;
  for (const auto& line : arranged_) {
    painter.drawText(QRect(0, y, width(), fontMetrics().lineSpacing()), static_cast<int>(alignment()), line);
    y += fontMetrics().lineSpacing();
  }
}

}  // namespace murmel
