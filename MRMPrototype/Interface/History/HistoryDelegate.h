#pragma once

#include <QStyledItemDelegate>

namespace murmel {

/// Draws the lines of the history: days as headings; dictations with their time, length and first words.
class HistoryDelegate final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

}  // namespace murmel
