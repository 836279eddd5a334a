#pragma once

#include <QString>
#include <vector>

namespace murmel {

/// The vocabulary's text as lines that a table can show and change. Whatever is not changed keeps its bytes:
/// comments, odd lines, spaces around "=", and the kind of its line end.
class VocabularyLines {
 public:
  struct Line {
    enum class Kind { entry, blank, withoutSign, withoutTerm };
    Kind kind = Kind::blank;
    QString term;
    QString replacement;
  };

  explicit VocabularyLines(QString text);

  [[nodiscard]] const QString& text() const { return text_; }
  [[nodiscard]] const std::vector<Line>& lines() const { return lines_; }
  [[nodiscard]] int entryCount() const;

  /// Each gives the whole text after the change. Line ends in a term or replacement become spaces, and so
  /// does "=" in a term, where it would end it.
  [[nodiscard]] QString replaced(std::size_t line, const QString& term, const QString& replacement) const;
  [[nodiscard]] QString removed(std::size_t line) const;
  [[nodiscard]] QString swapped(std::size_t line, std::size_t other) const;
  [[nodiscard]] QString appended(const QString& term, const QString& replacement) const;

  /// What an editor that knows only "\n" made of the text: lines that it left alone stay as they were.
  [[nodiscard]] QString edited(const QString& shown) const;

 private:
  struct Place {
    qsizetype start;
    qsizetype length;  ///< without the line end
    qsizetype next;    ///< where the following line starts
  };

  QString text_;
  std::vector<Line> lines_;
  std::vector<Place> places_;
};

}  // namespace murmel
