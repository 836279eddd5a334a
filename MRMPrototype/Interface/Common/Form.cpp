#include "Interface/Common/Form.h"

#include <QApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <utility>

namespace murmel {

namespace {

constexpr int columnWidth = 680;

void drawSheet(QWidget& sheet, const QColor& fill, const QColor& line) {
  QPainter painter(&sheet);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(line, 1));
  painter.setBrush(fill);
  painter.drawRoundedRect(QRectF(sheet.contentsRect()).adjusted(0.5, 0.5, -0.5, -0.5), grid::radius,
                          grid::radius);
}

}  // namespace

FormRow::FormRow(const QString& title, const QString& description, QWidget* control, Place place)
    : title_(label(title)),
      description_(label(description, LabelRole::second)),
      reason_(label({}, LabelRole::second)),
      control_(control) {
  auto* words = new QVBoxLayout;
  words->setSpacing(2);
  words->addWidget(title_);
  words->addWidget(description_);
  words->addWidget(reason_);
  title_->setVisible(!title.isEmpty());
  reason_->hide();
  reason_->setForegroundRole(QPalette::WindowText);
  setDescription(description);

  auto* line =
      new QBoxLayout(place == Place::beside ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom, this);
  line->setContentsMargins(4 * grid::unit, grid::medium, 4 * grid::unit, grid::medium);
  line->setSpacing(place == Place::beside ? grid::large : grid::small);
  line->addLayout(words, 1);
  if (control_ == nullptr) return;
  line->addWidget(control_, 0, place == Place::beside ? Qt::AlignVCenter : Qt::Alignment());
  if (control_->accessibleName().isEmpty()) control_->setAccessibleName(title);
  title_->setBuddy(control_);
}

void FormRow::setTitle(const QString& title) {
  title_->setText(title);
  title_->setVisible(!title.isEmpty());
  if (control_ != nullptr) control_->setAccessibleName(title);
}

void FormRow::setDescription(const QString& description) {
  description_->setText(description);
  description_->setVisible(!description.isEmpty());
  if (control_ != nullptr) control_->setAccessibleDescription(description);
}

void FormRow::setUnavailable(const QString& reason) {
  reason_->setText(reason);
  reason_->setVisible(!reason.isEmpty());
  if (control_ == nullptr) return;
  control_->setEnabled(reason.isEmpty());
  control_->setAccessibleDescription(reason.isEmpty() ? description_->text() : reason);
}

bool FormRow::matches(const QString& words) const {
  const auto all = (title_->text() + u' ' + description_->text() + u' ' + keywords_).toCaseFolded();
  return std::ranges::all_of(words.toCaseFolded().split(u' ', Qt::SkipEmptyParts),
                             [&](const QString& word) { return all.contains(word); });
}

Card::Card(QWidget* parent) : QFrame(parent), lines_(new QVBoxLayout(this)) {
  lines_->setContentsMargins(0, 0, 0, 0);
  lines_->setSpacing(0);
}

FormRow* Card::addRow(const QString& title, const QString& description, QWidget* control,
                      FormRow::Place place) {
  auto* row = new FormRow(title, description, control, place);
  lines_->addWidget(row);
  rows_.push_back(row);
  return row;
}

void Card::addWidget(QWidget* widget) {
  lines_->addWidget(widget);
}

void Card::paintEvent(QPaintEvent* /*event*/) {
  drawSheet(*this, palette().color(QPalette::Base), palette().color(QPalette::Mid));
  QPainter painter(this);
  // Between the pixels of the screen, lines would be of one width here and of another there.
  const auto scale = devicePixelRatioF();
  const auto thickness = std::max(1.0, std::floor(scale)) / scale;
  bool isFirst = true;
  for (int index = 0; index < lines_->count(); ++index) {
    const auto* const widget = lines_->itemAt(index)->widget();
    if (widget == nullptr || widget->isHidden()) continue;
    if (!std::exchange(isFirst, false))
      painter.fillRect(QRectF(4 * grid::unit, std::round(widget->y() * scale) / scale,
                              width() - 8 * grid::unit, thickness),
                       palette().color(QPalette::Mid));
  }
}

NoticeBar::NoticeBar(Severity severity, QWidget* parent)
    : QFrame(parent), severity_(severity), sign_(new QLabel), text_(label({})), line_(new QHBoxLayout(this)) {
  auto* line = line_;
  line->setContentsMargins(4 * grid::unit, grid::medium, grid::medium, grid::medium);
  line->setSpacing(grid::medium);
  setContentsMargins(0, 0, 0, grid::unit);  // from what follows
  line->addWidget(sign_, 0, Qt::AlignVCenter);
  line->addWidget(text_, 1);
  text_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  text_->setFocusPolicy(Qt::NoFocus);
  drawSign();
  hide();
}

void NoticeBar::drawSign() {
  const auto& colours = palette();
  const auto colour = severity_ == Severity::information ? colours.color(QPalette::Highlight)
                      : severity_ == Severity::warning   ? colourOf(Meaning::warning, colours)
                                                         : colourOf(Meaning::danger, colours);
  const auto symbol = severity_ == Severity::information ? Symbol::information : Symbol::warning;
  sign_->setPixmap(symbolPixmap(symbol, 20, colour, devicePixelRatioF()));
}

void NoticeBar::setText(const QString& text) {
  text_->setText(text);
  setAccessibleName(text);
  setVisible(!text.isEmpty());
}

void NoticeBar::setAction(const QString& title, std::function<void()> run) {
  line_->insertWidget(2, button(title, std::move(run)));
}

void NoticeBar::setDismissal(std::function<void()> dismissed) {
  line_->addWidget(
      symbolButton(Symbol::close, QCoreApplication::translate("Common", "Dismiss"), std::move(dismissed)));
}

void NoticeBar::paintEvent(QPaintEvent* /*event*/) {
  const auto& colours = palette();
  auto colour = severity_ == Severity::information ? colours.color(QPalette::Highlight)
                : severity_ == Severity::warning   ? colourOf(Meaning::warning, colours)
                                                   : colourOf(Meaning::danger, colours);
  auto fill = colour;
  fill.setAlphaF(0.10F);
  colour.setAlphaF(0.45F);
  drawSheet(*this, fill, colour);
}

void NoticeBar::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange) drawSign();
  QFrame::changeEvent(event);
}

FormPage::FormPage(const QString& title, const QString& introduction) : title_(title) {
  auto* content = new QWidget;
  auto* line = new QHBoxLayout(content);
  line->setContentsMargins(grid::large, grid::large, grid::large, grid::large);
  auto* column = new QWidget;
  column->setMaximumWidth(columnWidth);
  column_ = new QVBoxLayout(column);
  column_->setContentsMargins(0, 0, 0, 0);
  column_->setSpacing(grid::small);
  line->addStretch(1);
  line->addWidget(column, 1000);
  line->addStretch(1);

  column_->addWidget(label(title, LabelRole::title));
  if (!introduction.isEmpty()) column_->addWidget(label(introduction, LabelRole::second));
  column_->addSpacing(grid::small);
  column_->addStretch(1);

  // The bar stands in the margin: pages with and without one have the same edges.
  verticalScrollBar()->installEventFilter(this);
  setWidget(content);
  setWidgetResizable(true);
  setFrameShape(QFrame::NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFocusPolicy(Qt::NoFocus);
  setAccessibleName(title);
  fadeAtTheEdges(*this);
}

Card* FormPage::addCard(const QString& heading, const QString& description) {
  Section section{nullptr, nullptr, new Card};
  if (!heading.isEmpty()) {
    auto* line = label(heading, LabelRole::heading);
    line->setContentsMargins(0, grid::medium, 0, 0);
    section.heading = line;
    addWidget(line);
  }
  if (!description.isEmpty()) {
    section.description = label(description, LabelRole::second);
    addWidget(section.description);
  }
  addWidget(section.card);
  sections_.push_back(section);
  return section.card;
}

void FormPage::addWidget(QWidget* widget) {
  column_->insertWidget(column_->count() - 1, widget);
}

int FormPage::filter(const QString& words) {
  int found = 0;
  for (const auto& section : sections_) {
    int shown = 0;
    for (auto* row : section.card->rows()) {
      // A line that its page has hidden stays so: the property says who did it.
      const bool isHiddenByPage = row->isHidden() && !row->property("filtered").toBool();
      if (isHiddenByPage) continue;
      const bool matches = row->matches(words);
      row->setProperty("filtered", !matches);
      row->setVisible(matches);
      if (matches) ++shown;
    }
    for (auto* part : {section.heading, section.description, static_cast<QWidget*>(section.card)})
      if (part != nullptr) part->setVisible(words.isEmpty() || shown > 0);
    found += shown;
  }
  return found;
}

bool FormPage::eventFilter(QObject* watched, QEvent* event) {
  const bool appears = event->type() == QEvent::Show;
  if (watched == verticalScrollBar() && (appears || event->type() == QEvent::Hide)) {
    const auto rest = grid::large - (appears ? verticalScrollBar()->sizeHint().width() : 0);
    const bool isAtLeft = isRightToLeft();
    widget()->layout()->setContentsMargins(isAtLeft ? rest : grid::large, grid::large,
                                           isAtLeft ? grid::large : rest, grid::large);
  }
  return QScrollArea::eventFilter(watched, event);
}

bool FormPage::focusNextPrevChild(bool next) {
  const bool moved = QScrollArea::focusNextPrevChild(next);
  if (auto* focused = QApplication::focusWidget(); moved && widget()->isAncestorOf(focused))
    ensureWidgetVisible(focused, grid::large, 3 * grid::large);
  return moved;
}

QWidget* pageFoot(QWidget* content) {
  auto* foot = new QWidget;
  auto* line = new QHBoxLayout(foot);
  line->setContentsMargins(grid::large, grid::small, grid::large, grid::medium);
  content->setMaximumWidth(columnWidth);
  line->addStretch(1);
  line->addWidget(content, 1000);
  line->addStretch(1);
  return foot;
}

QWidget* buttonRow(const std::vector<QWidget*>& buttons) {
  auto* row = new QWidget;
  auto* line = new QHBoxLayout(row);
  line->setContentsMargins(0, 0, 0, 0);
  line->setSpacing(grid::small);
  line->addStretch(1);
  for (auto* button : buttons) line->addWidget(button);
  return row;
}

QPushButton* button(const QString& title, std::function<void()> run) {
  auto* made = new QPushButton(literal(title));
  made->setAutoDefault(false);
  if (run) QObject::connect(made, &QPushButton::clicked, made, std::move(run));
  return made;
}

QPushButton* symbolButton(Symbol symbol, const QString& name, std::function<void()> run) {
  auto* made = button({}, std::move(run));
  made->setIcon(symbolIcon(symbol));
  made->setFlat(true);
  made->setAccessibleName(name);
  made->setToolTip(name);
  made->setFixedSize(grid::controlHeight, grid::controlHeight);
  return made;
}

}  // namespace murmel
