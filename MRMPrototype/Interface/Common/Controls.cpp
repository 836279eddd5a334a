#include "Interface/Common/Controls.h"

#include "Interface/Common/Icons.h"
#include "Interface/Common/Style.h"

#include <QAbstractScrollArea>
#include <QCoreApplication>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOptionButton>
#include <QToolButton>
#include <QWheelEvent>
#include <algorithm>
#include <cstdlib>

namespace murmel {

namespace {

constexpr QSize switchSize(44, 24);
constexpr int minimumChoiceWidth = 160;
constexpr int fadeHeight = 28;

}  // namespace

Switch::Switch(QWidget* parent) : QCheckBox(parent) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  setCursor(Qt::PointingHandCursor);
}

QSize Switch::sizeHint() const {
  return switchSize + QSize(4, 4);  // room for the ring of the focus
}

bool Switch::hitButton(const QPoint& position) const {
  return rect().contains(position);
}

void Switch::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF track = QRectF(rect()).adjusted(2, 2, -2, -2);
  const auto& colours = palette();
  const auto radius = track.height() / 2;
  const auto off = isEnabled() ? colours.color(QPalette::PlaceholderText) : colours.color(QPalette::Mid);
  painter.setPen(isChecked() ? Qt::NoPen : QPen(off, 1.6));
  painter.setBrush(isChecked() ? colours.color(QPalette::Highlight) : colours.color(QPalette::AlternateBase));
  const auto inset = isChecked() ? 0.0 : 0.8;
  painter.drawRoundedRect(track.adjusted(inset, inset, -inset, -inset), radius, radius);
  const bool atRight = isChecked() != isRightToLeft();
  const QPointF knob(atRight ? track.right() - radius : track.left() + radius, track.center().y());
  painter.setPen(Qt::NoPen);
  painter.setBrush(isChecked() ? colours.color(QPalette::HighlightedText) : off);
  painter.drawEllipse(knob, radius - 4, radius - 4);
  QStyleOptionButton option;
  initStyleOption(&option);
  if (!hasFocus() || !option.state.testFlag(QStyle::State_KeyboardFocusChange)) return;
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(colours.color(QPalette::WindowText), 2));
  painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius + 2, radius + 2);
}

ChoiceBox::ChoiceBox(QWidget* parent) : QComboBox(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setSizeAdjustPolicy(QComboBox::AdjustToContents);
}

QSize ChoiceBox::minimumSizeHint() const {
  return {std::min(minimumChoiceWidth, sizeHint().width()), QComboBox::minimumSizeHint().height()};
}

void ChoiceBox::wheelEvent(QWheelEvent* event) {
  event->ignore();
}

QLabel* label(const QString& text, LabelRole role) {
  auto* made = new QLabel(text);
  made->setTextFormat(Qt::PlainText);
  made->setWordWrap(true);
  // Also a text in a language that is written from left to right, which would go to the left by itself.
  if (made->isRightToLeft()) made->setAlignment(Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter);
  auto font = made->font();
  const auto size = font.pointSizeF();
  switch (role) {
    case LabelRole::text:
      break;
    case LabelRole::second:
      font.setPointSizeF(size * 0.93);
      made->setForegroundRole(QPalette::PlaceholderText);
      break;
    case LabelRole::title:
      font.setPointSizeF(size * 1.6);
      font.setWeight(QFont::DemiBold);
      break;
    case LabelRole::heading:
      font.setWeight(QFont::DemiBold);
      break;
  }
  made->setFont(font);
  return made;
}

QLineEdit* searchField(const QString& what) {
  auto* field = new QLineEdit;
  field->setPlaceholderText(what);
  field->setAccessibleName(what);
  field->setClearButtonEnabled(true);
  // Also words in a language that is written from left to right, which would go to the left by themselves.
  if (field->isRightToLeft()) field->setAlignment(Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter);
  field->addAction(symbolIcon(Symbol::search), QLineEdit::LeadingPosition)->setText(what);
  for (auto* inner : field->findChildren<QToolButton*>()) {
    if (inner->accessibleName().isEmpty() && inner->text().isEmpty())
      inner->setAccessibleName(QCoreApplication::translate("Common", "Clear"));
  }
  return field;
}

namespace {

/// Covers a list or a page, and lets what goes on beyond its edges fade there.
class Fade final : public QWidget {
 public:
  explicit Fade(QAbstractScrollArea& area) : QWidget(&area), area_(area) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    area_.viewport()->installEventFilter(this);
    const auto* const bar = area_.verticalScrollBar();
    connect(bar, &QScrollBar::valueChanged, this, [this] { update(); });
    connect(bar, &QScrollBar::rangeChanged, this, [this] { update(); });
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Resize || event->type() == QEvent::Move || event->type() == QEvent::Show) {
      setGeometry(area_.viewport()->geometry());
      raise();
    }
    return QWidget::eventFilter(watched, event);
  }
  void paintEvent(QPaintEvent* /*event*/) override {
    const auto* const bar = area_.verticalScrollBar();
    const auto height = std::min(fadeHeight, QWidget::height() / 4);
    if (bar->value() > bar->minimum()) draw(0, height);
    if (bar->value() < bar->maximum()) draw(QWidget::height(), QWidget::height() - height);
  }

 private:
  /// The colour that is seen where the list is empty.
  [[nodiscard]] QColor ground() const {
    const QWidget* below = area_.viewport();
    while (!below->autoFillBackground() && !below->isWindow()) below = below->parentWidget();
    return below->palette().color(below->backgroundRole());
  }
  void draw(int edge, int inner) {
    auto colour = ground();
    QLinearGradient gradient(0, edge, 0, inner);
    gradient.setColorAt(0, colour);
    colour.setAlpha(0);
    gradient.setColorAt(1, colour);
    QPainter(this).fillRect(QRect(QPoint(0, std::min(edge, inner)), QSize(width(), std::abs(inner - edge))),
                            gradient);
  }

  QAbstractScrollArea& area_;
};

}  // namespace

void fadeAtTheEdges(QAbstractScrollArea& area) {
  new Fade(area);
}

QString literal(QString text) {
  return text.replace(u'&', QStringLiteral("&&"));
}

}  // namespace murmel
