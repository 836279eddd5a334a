#pragma once

#include "Foundation/Async/Clock.h"
#include "History/HistoryEntry.h"

#include <QAbstractListModel>
#include <QCoreApplication>
#include <QDate>
#include <optional>
#include <vector>

namespace murmel {

/// Words as a person counts them: what white space separates.
int wordCount(const QString& text);

/// The history as a list: a line for each day, below it its dictations, newest first; only those that contain
/// all the words that are looked for.
class HistoryModel final : public QAbstractListModel {
  Q_DECLARE_TR_FUNCTIONS(HistoryModel)
 public:
  enum Role { isDayRole = Qt::UserRole, timeRole, aboutRole };

  /// `now`: for "Today" and "Yesterday".
  void show(std::vector<HistoryEntry> entries, const QString& search, WallTime now);

  /// Nothing for the line of a day.
  [[nodiscard]] const HistoryEntry* entry(const QModelIndex& index) const;
  [[nodiscard]] QModelIndex indexOf(const Uuid& id) const;
  [[nodiscard]] int shownEntries() const { return shownEntries_; }
  [[nodiscard]] int shownWords() const { return shownWords_; }
  /// "Monday, 3 March 2025, 14:05 · German · 42 words"
  [[nodiscard]] static QString describe(const HistoryEntry& entry);

  [[nodiscard]] int rowCount(const QModelIndex& parent) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  struct Line {
    std::optional<HistoryEntry> entry;
    QDate day;
  };
  [[nodiscard]] QString dayTitle(QDate day) const;

  std::vector<Line> lines_;
  QDate today_;
  int shownEntries_ = 0;
  int shownWords_ = 0;
};

}  // namespace murmel
