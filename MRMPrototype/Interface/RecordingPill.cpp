#include "Interface/RecordingPill.h"

#include "Interface/Compositing.h"
#include "Interface/LevelMeter.h"
#include "Interface/PlatformWords.h"

#include <QBitmap>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <utility>

namespace murmel {

namespace {

constexpr int distanceFromEdge = 24;
constexpr int horizontalPadding = 16;
constexpr int verticalPadding = 9;
constexpr int longestText = 420;

const QColor background(28, 28, 32, 235);
const QColor foreground(245, 245, 245);
const QColor recordingDot(235, 70, 70);

QString words(CaptureCondition condition) {
  switch (condition) {
    case CaptureCondition::fine:
      break;
    case CaptureCondition::stalled:
      return QStringLiteral("The microphone has stopped");
    case CaptureCondition::silent:
      return QStringLiteral("The microphone is silent");
    case CaptureCondition::lagging:
      return QStringLiteral("Sound from the microphone is being lost");
    case CaptureCondition::clipping:
      return QStringLiteral("The microphone is too loud");
    case CaptureCondition::speakers:
      return QStringLiteral("No microphone: listening to the speakers");
    case CaptureCondition::tooQuiet:
      return QStringLiteral("The microphone is very quiet");
  }
  return {};
}

QString shown(const DictationState& state, CaptureCondition condition) {
  if (state.isRecording() && condition != CaptureCondition::fine) return words(condition);
  return inPlatformWords(state.title());
}

}  // namespace

RecordingPill::RecordingPill(std::function<void()> onClick)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                           Qt::WindowDoesNotAcceptFocus | Qt::X11BypassWindowManagerHint),
      onClick_(std::move(onClick)),
      text_(new QLabel(this)),
      meter_(new LevelMeter(this)) {
  setAttribute(Qt::WA_ShowWithoutActivating);
  setAttribute(Qt::WA_TranslucentBackground);
  setWindowTitle(QStringLiteral("Murmel"));
  auto colours = palette();
  colours.setColor(QPalette::WindowText, foreground);
  setPalette(colours);
  text_->setWordWrap(true);
  text_->setMaximumWidth(longestText);

  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(horizontalPadding, verticalPadding, horizontalPadding, verticalPadding);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  layout->addWidget(meter_);
  layout->addWidget(text_);
}

void RecordingPill::setEdge(Edge edge) {
  edge_ = edge;
  place();
}

void RecordingPill::update(const DictationState& state) {
  state_ = state;
  if (!state.isRecording()) {
    condition_ = CaptureCondition::fine;
    meter_->clear();
  }
  meter_->setVisible(state.isRecording());
  showText();
  appear();
}

void RecordingPill::showHint(const std::string& hint) {
  hint_ = hint;
  showText();
  appear();
}

void RecordingPill::appear() {
  setVisible(state_.which() != DictationState::Case::ready || !hint_.empty());
  if (isVisible()) raise();
}

void RecordingPill::setLevel(double level) {
  meter_->push(level);
}

void RecordingPill::showCaptureCondition(CaptureCondition condition) {
  condition_ = condition;
  showText();
}

void RecordingPill::showText() {
  const auto words = hint_.empty() ? shown(state_, condition_) : inPlatformWords(hint_);
  text_->setText(words);
  // A label that may wrap asks for less width than its text has.
  text_->setMinimumWidth(std::min(longestText, text_->fontMetrics().horizontalAdvance(words) + 1));
  adjustSize();
  place();
}

void RecordingPill::place() {
  const auto* screen = QGuiApplication::primaryScreen();
  if (screen == nullptr) return;
  const auto area = screen->availableGeometry().adjusted(distanceFromEdge, distanceFromEdge,
                                                         -distanceFromEdge, -distanceFromEdge);
  auto frame = rect();
  frame.moveCenter(area.center());
  switch (edge_) {
    case Edge::top:
      frame.moveTop(area.top());
      break;
    case Edge::right:
      frame.moveRight(area.right());
      break;
    case Edge::bottom:
      frame.moveBottom(area.bottom());
      break;
    case Edge::left:
      frame.moveLeft(area.left());
      break;
  }
  move(frame.topLeft());
}

void RecordingPill::showEvent(QShowEvent* /*event*/) {
  // A compositor may have come or gone since the last time.
  shape();
}

void RecordingPill::resizeEvent(QResizeEvent* /*event*/) {
  shape();
  place();
}

void RecordingPill::shape() {
  // Without a compositor there is no translucency, and the corners would be black: cut them off. The mask has
  // hard edges, so it is used only there.
  if (isComposited()) {
    clearMask();
    return;
  }
  QBitmap cut(size());
  cut.fill(Qt::color0);
  QPainter painter(&cut);
  painter.setBrush(Qt::color1);
  painter.setPen(Qt::NoPen);
  const double radius = height() / 2.0;
  painter.drawRoundedRect(rect(), radius, radius);
  painter.end();
  setMask(cut);
}

void RecordingPill::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(background);
  const double radius = height() / 2.0;
  painter.drawRoundedRect(rect(), radius, radius);
  if (state_.isRecording()) {
    constexpr double dotRadius = 3;
    painter.setBrush(recordingDot);
    painter.drawEllipse(QPointF(horizontalPadding / 2.0, height() / 2.0), dotRadius, dotRadius);
  }
}

void RecordingPill::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && rect().contains(event->pos())) onClick_();
}

}  // namespace murmel
