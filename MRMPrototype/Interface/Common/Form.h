#pragma once

#include "Interface/Common/Controls.h"
#include "Interface/Common/Icons.h"
#include "Interface/Common/Style.h"

#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <functional>
#include <vector>

class QHBoxLayout;
class QVBoxLayout;

namespace murmel {

/// One line of a form: what it is, what it does, and the control beside or below it. Screen readers say the
/// title and the explanation with the control.
class FormRow final : public QWidget {
 public:
  enum class Place { beside, below };

  FormRow(const QString& title, const QString& description, QWidget* control, Place place = Place::beside);

  void setTitle(const QString& title);
  void setDescription(const QString& description);
  /// Why the control can do nothing here; it is switched off and the reason stands below. Empty: it can.
  void setUnavailable(const QString& reason);
  /// Further words that the search finds this line by.
  void setKeywords(const QString& keywords) { keywords_ = keywords; }
  [[nodiscard]] bool matches(const QString& words) const;
  [[nodiscard]] QWidget* control() const { return control_; }

 private:
  QLabel* title_;
  QLabel* description_;
  QLabel* reason_;
  QWidget* control_;
  QString keywords_;
};

/// Lines that belong together, on one sheet.
class Card final : public QFrame {
 public:
  explicit Card(QWidget* parent = nullptr);

  FormRow* addRow(const QString& title, const QString& description, QWidget* control,
                  FormRow::Place place = FormRow::Place::beside);
  void addWidget(QWidget* widget);
  [[nodiscard]] const std::vector<FormRow*>& rows() const { return rows_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QVBoxLayout* lines_;
  std::vector<FormRow*> rows_;
};

enum class Severity { information, warning, error };

/// One sentence that wants to be noticed, with at most one action, and a way to dismiss it.
class NoticeBar final : public QFrame {
 public:
  explicit NoticeBar(Severity severity, QWidget* parent = nullptr);

  /// Hidden while the text is empty.
  void setText(const QString& text);
  void setAction(const QString& title, std::function<void()> run);
  void setDismissal(std::function<void()> dismissed);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void drawSign();

  Severity severity_;
  QLabel* sign_;
  QLabel* text_;
  QHBoxLayout* line_;
};

/// A page of cards under a title; scrolls when it is higher than the window.
class FormPage : public QScrollArea {
 public:
  explicit FormPage(const QString& title, const QString& introduction = {});

  Card* addCard(const QString& heading = {}, const QString& description = {});
  void addWidget(QWidget* widget);
  [[nodiscard]] QString title() const { return title_; }
  /// Shows only the lines that contain all these words; all lines when there are none. Gives their number.
  int filter(const QString& words);

 protected:
  /// What arrives by keyboard is scrolled to.
  bool eventFilter(QObject* watched, QEvent* event) override;
  bool focusNextPrevChild(bool next) override;

 private:
  struct Section {
    QWidget* heading;
    QWidget* description;
    Card* card;
  };

  QString title_;
  QVBoxLayout* column_;
  std::vector<Section> sections_;
};

/// What stands below a page, between the edges of its cards also where the window is wide.
QWidget* pageFoot(QWidget* content);

/// A row of buttons, and of what they are about, in reading order from the end of the line.
QWidget* buttonRow(const std::vector<QWidget*>& buttons);

QPushButton* button(const QString& title, std::function<void()> run);
/// Without words on it; `name` is for screen readers and the tool tip.
QPushButton* symbolButton(Symbol symbol, const QString& name, std::function<void()> run);

}  // namespace murmel
