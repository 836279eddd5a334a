#include "Interface/Settings/VocabularyLines.h"

#include <QStringList>
#include <algorithm>
#include <utility>

namespace murmel {

namespace {

VocabularyLines::Line parsed(QStringView line) {
  using Kind = VocabularyLines::Line::Kind;
  if (line.trimmed().isEmpty()) return {};
  const auto sign = line.indexOf(u'=');
  if (sign < 0) return {Kind::withoutSign, line.trimmed().toString(), {}};
  const auto term = line.first(sign).trimmed().toString();
  const auto replacement = line.sliced(sign + 1).trimmed().toString();
  return {term.isEmpty() ? Kind::withoutTerm : Kind::entry, term, replacement};
}

QString oneLine(QString text) {
  for (const auto end : {u'\n', u'\r', u'\x2028', u'\x2029'}) text.replace(QChar(end), u' ');
  return text.trimmed();
}

QString entryLine(const QString& term, const QString& replacement) {
  auto cleaned = oneLine(term);
  cleaned.replace(u'=', u' ');
  return cleaned + QStringLiteral(" = ") + oneLine(replacement);
}

}  // namespace

VocabularyLines::VocabularyLines(QString text) : text_(std::move(text)) {
  for (qsizetype start = 0; start < text_.size();) {
    auto end = start;
    while (end < text_.size() && text_[end] != u'\n' && text_[end] != u'\r') ++end;
    auto next = end;
    if (next < text_.size() && text_[next] == u'\r') ++next;
    if (next < text_.size() && text_[next] == u'\n') ++next;
    places_.push_back({start, end - start, next});
    lines_.push_back(parsed(QStringView(text_).sliced(start, end - start)));
    start = next;
  }
}

int VocabularyLines::entryCount() const {
  return static_cast<int>(std::ranges::count(lines_, Line::Kind::entry, &Line::kind));
}

QString VocabularyLines::replaced(std::size_t line, const QString& term, const QString& replacement) const {
  const auto& place = places_.at(line);
  auto text = text_;
  return text.replace(place.start, place.length, entryLine(term, replacement));
}

QString VocabularyLines::removed(std::size_t line) const {
  const auto& place = places_.at(line);
  auto text = text_;
  return text.remove(place.start, place.next - place.start);
}

QString VocabularyLines::swapped(std::size_t line, std::size_t other) const {
  const auto& first = places_.at(std::min(line, other));
  const auto& second = places_.at(std::max(line, other));
  const auto end = first.start + first.length;
  return text_.first(first.start) + text_.sliced(second.start, second.length) +
         text_.sliced(end, second.start - end) + text_.sliced(first.start, first.length) +
         text_.sliced(second.start + second.length);
}

QString VocabularyLines::appended(const QString& term, const QString& replacement) const {
  const bool needsEnd = !places_.empty() && places_.back().start + places_.back().length == text_.size();
  return text_ + (needsEnd ? QStringLiteral("\n") : QString()) + entryLine(term, replacement) + u'\n';
}

QString VocabularyLines::edited(const QString& shown) const {
  QStringList before;
  for (const auto& place : places_) before += text_.sliced(place.start, place.length);
  const bool endsWithLine =
      !places_.empty() && places_.back().next > places_.back().start + places_.back().length;
  if (endsWithLine || places_.empty()) before += QString();
  const auto after = shown.split(u'\n');
  qsizetype head = 0;
  const auto common = std::min(before.size(), after.size());
  while (head < common && before[head] == after[head]) ++head;
  if (head == before.size() && head == after.size()) return text_;
  qsizetype tail = 0;
  while (tail < common - head && before[before.size() - 1 - tail] == after[after.size() - 1 - tail]) ++tail;

  const auto startOf = [&](qsizetype line) {
    return line < static_cast<qsizetype>(places_.size()) ? places_[static_cast<std::size_t>(line)].start
                                                         : text_.size();
  };
  auto result = text_.first(startOf(head));
  const auto changed = after.sliced(head, after.size() - head - tail);
  // A line that was the last had no end; with something behind it, it needs one.
  if (head > 0 && !changed.isEmpty() && !result.endsWith(u'\n') && !result.endsWith(u'\r')) result += u'\n';
  result += changed.join(u'\n');
  if (tail > 0) {
    if (!changed.isEmpty()) result += u'\n';
    result += text_.sliced(startOf(before.size() - tail));
  } else if (changed.isEmpty() && head > 0) {
    // What followed the last line that is left is gone, and with it the end of that line.
    const auto& last = places_[static_cast<std::size_t>(head - 1)];
    result = text_.first(last.start + last.length);
  }
  return result;
}

}  // namespace murmel
