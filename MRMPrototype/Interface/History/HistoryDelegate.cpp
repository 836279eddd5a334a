#include "Interface/History/HistoryDelegate.h"

#include "Interface/Common/Style.h"
#include "Interface/History/HistoryModel.h"

#include <QPainter>
#include <QTextLayout>

namespace murmel {

namespace {

constexpr int maximumLines = 2;

QFont bold(QFont font) {
  font.setWeight(QFont::DemiBold);
  return font;
}

/// The first lines of a text, the last one with an ellipsis when there is more.
void drawLines(QPainter& painter, const QRect& rect, const QString& text, const QFont& font,
               const QColor& colour, Qt::LayoutDirection direction) {
  QTextLayout layout(text, font);
  QTextOption option;
  // The signs at the end of a sentence go by its language, the edge that it begins at by the window's.
  const auto way = text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight;
  const auto edge = (direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignAbsolute;
  option.setTextDirection(way);
  option.setAlignment(edge);
  painter.setLayoutDirection(way);
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout.setTextOption(option);
  const QFontMetrics metrics(font);
  painter.setPen(colour);
  layout.beginLayout();
  for (int number = 0; number < maximumLines; ++number) {
    auto line = layout.createLine();
    if (!line.isValid()) break;
    line.setLineWidth(rect.width());
    const QPoint place(rect.left(), rect.top() + number * metrics.lineSpacing());
    const bool isLast = number == maximumLines - 1 && line.textStart() + line.textLength() < text.size();
    if (isLast) {
      painter.setFont(font);
      painter.drawText(QRect(place, QSize(rect.width(), metrics.lineSpacing())),
                       static_cast<int>(Qt::AlignVCenter | edge),
                       metrics.elidedText(text.mid(line.textStart()), Qt::ElideRight, rect.width()));
    } else {
      line.draw(&painter, place);
    }
  }
  layout.endLayout();
}

}  // namespace

void HistoryDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  const auto& palette = option.palette;
  if (index.data(HistoryModel::isDayRole).toBool()) {
    painter->setFont(bold(option.font));
    painter->setPen(palette.color(QPalette::PlaceholderText));
    painter->drawText(option.rect.adjusted(grid::medium, 0, -grid::medium, -grid::unit),
                      Qt::AlignBottom | Qt::AlignLeading, index.data().toString());
    painter->restore();
    return;
  }
  const bool isSelected = option.state.testFlag(QStyle::State_Selected);
  if (isSelected) {
    painter->setPen(Qt::NoPen);
    painter->setBrush(palette.color(QPalette::Highlight));
    painter->drawRoundedRect(option.rect.adjusted(grid::unit, 1, -grid::unit, -1), grid::controlRadius,
                             grid::controlRadius);
  }
  const auto ink = palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text);
  const auto second = isSelected ? ink : palette.color(QPalette::PlaceholderText);
  const auto area = option.rect.adjusted(grid::medium, grid::small, -grid::medium, -grid::small);
  const QFontMetrics metrics(option.font);
  painter->setFont(option.font);
  painter->setPen(second);
  const QRect head(area.topLeft(), QSize(area.width(), metrics.height()));
  painter->drawText(head, Qt::AlignLeading | Qt::AlignVCenter, index.data(HistoryModel::timeRole).toString());
  painter->drawText(head, Qt::AlignTrailing | Qt::AlignVCenter,
                    index.data(HistoryModel::aboutRole).toString());
  drawLines(*painter, area.adjusted(0, metrics.height() + 2, 0, 0), index.data().toString(), option.font, ink,
            option.direction);
  painter->restore();
}

QSize HistoryDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const QFontMetrics metrics(option.font);
  if (index.data(HistoryModel::isDayRole).toBool()) return {0, metrics.height() + 4 * grid::unit};
  return {0, metrics.height() + maximumLines * metrics.lineSpacing() + 2 + 2 * grid::small};
}

}  // namespace murmel
