#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

class QAbstractScrollArea;

namespace murmel {

/// Something that is on or off at once; a check box drawn as a switch.
class Switch final : public QCheckBox {
 public:
  explicit Switch(QWidget* parent = nullptr);
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  [[nodiscard]] bool hitButton(const QPoint& position) const override;
};

/// A choice that the wheel does not change: whoever scrolls the page means the page.
class ChoiceBox : public QComboBox {
 public:
  explicit ChoiceBox(QWidget* parent = nullptr);
  /// Large letters on a small screen shorten it rather than push the page aside.
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void wheelEvent(QWheelEvent* event) override;
};

/// A label whose text is plain, wraps, and is never taken for markup.
enum class LabelRole { text, second, title, heading };
QLabel* label(const QString& text, LabelRole role = LabelRole::text);

/// A field to search with, and a button that clears it.
QLineEdit* searchField(const QString& what);

/// What goes on beyond the upper and lower edge fades there, so that a row which is cut looks like one.
void fadeAtTheEdges(QAbstractScrollArea& area);

/// The text of a button, menu entry or field label: an ampersand in it is an ampersand.
QString literal(QString text);

}  // namespace murmel
