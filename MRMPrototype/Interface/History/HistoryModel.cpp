#include "Interface/History/HistoryModel.h"

#include <QDateTime>
#include <QLocale>
#include <algorithm>
#include <cmath>

namespace murmel {

namespace {

/// What a line of the list shows of a text; the rest is beside the list.
constexpr qsizetype shownCharacters = 240;

QDateTime momentOf(double historyDate) {
  return QDateTime::fromMSecsSinceEpoch(std::llround((historyDate + historyReferenceDate) * 1000));
}

/// "English, Russian" in the user's language.
QString languages(const std::string& label) {
  auto names = QString::fromStdString(label).split(QStringLiteral(", "));
  for (auto& name : names) name = QCoreApplication::translate("Titles", name.toUtf8().constData());
  return names.join(QStringLiteral(", "));
}

QString textOf(const HistoryEntry& entry) {
  return QString::fromStdString(entry.text.reveal());
}

}  // namespace

int wordCount(const QString& text) {
  int count = 0;
  bool inWord = false;
  for (const auto character : text) {
    const bool isSpace = character.isSpace();
    if (!isSpace && !inWord) ++count;
    inWord = !isSpace;
  }
  return count;
}

void HistoryModel::show(std::vector<HistoryEntry> entries, const QString& search, WallTime now) {
  beginResetModel();
  lines_.clear();
  shownEntries_ = 0;
  shownWords_ = 0;
  today_ = momentOf(historyDate(now)).date();
  const auto words = search.toCaseFolded().split(u' ', Qt::SkipEmptyParts);
  QDate day;
  for (auto& entry : entries) {
    const auto text = textOf(entry);
    const auto folded = words.isEmpty() ? QString() : text.toCaseFolded();
    if (!std::ranges::all_of(words, [&](const QString& word) { return folded.contains(word); })) continue;
    const auto itsDay = momentOf(entry.createdAt).date();
    if (itsDay != day) lines_.push_back({std::nullopt, itsDay});
    day = itsDay;
    ++shownEntries_;
    shownWords_ += wordCount(text);
    lines_.push_back({std::move(entry), itsDay});
  }
  endResetModel();
}

const HistoryEntry* HistoryModel::entry(const QModelIndex& index) const {
  if (!index.isValid() || index.row() >= static_cast<int>(lines_.size())) return nullptr;
  const auto& entry = lines_[static_cast<std::size_t>(index.row())].entry;
  return entry ? &*entry : nullptr;
}

QModelIndex HistoryModel::indexOf(const Uuid& id) const {
  const auto found =
      std::ranges::find_if(lines_, [&](const Line& line) { return line.entry && line.entry->id == id; });
  return found == lines_.end() ? QModelIndex() : index(static_cast<int>(found - lines_.begin()));
}

QString HistoryModel::describe(const HistoryEntry& entry) {
  const auto moment = momentOf(entry.createdAt);
  const QLocale locale;
  QStringList parts{locale.toString(moment.date(), QLocale::LongFormat) + QStringLiteral(", ") +
                    locale.toString(moment.time(), QLocale::ShortFormat)};
  if (!entry.language.empty()) parts += languages(entry.language);
  parts += tr("%n word(s)", nullptr, wordCount(textOf(entry)));
  if (entry.unrecognizedParts.value_or(0) > 0)
    parts += tr("%n part(s) not recognized", nullptr, *entry.unrecognizedParts);
  return parts.join(QStringLiteral(" · "));
}

int HistoryModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(lines_.size());
}

QString HistoryModel::dayTitle(QDate day) const {
  if (day == today_) return tr("Today");
  if (day == today_.addDays(-1)) return tr("Yesterday");
  return QLocale().toString(day, QLocale::LongFormat);
}

QVariant HistoryModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const auto& line = lines_[static_cast<std::size_t>(index.row())];
  if (role == isDayRole) return !line.entry;
  if (!line.entry) {
    return role == Qt::DisplayRole || role == Qt::AccessibleTextRole ? dayTitle(line.day) : QVariant();
  }
  switch (role) {
    case Qt::DisplayRole:
      return textOf(*line.entry).left(shownCharacters).simplified();
    case Qt::AccessibleTextRole:
      return QString(QLocale().toString(momentOf(line.entry->createdAt).time(), QLocale::ShortFormat) +
                     QStringLiteral(": ") + textOf(*line.entry).left(shownCharacters).simplified());
    case timeRole:
      return QLocale().toString(momentOf(line.entry->createdAt).time(), QLocale::ShortFormat);
    case aboutRole:
      return tr("%n word(s)", nullptr, wordCount(textOf(*line.entry)));
    default:
      return {};
  }
}

Qt::ItemFlags HistoryModel::flags(const QModelIndex& index) const {
  return entry(index) != nullptr ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren
                                 : Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
}

}  // namespace murmel
