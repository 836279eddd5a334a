#include "Interface/Pill/RecordingPill.h"

#include "Foundation/Crypto/Wipe.h"
#include "Interface/Common/Icons.h"
#include "Interface/Common/Style.h"
#include "Interface/Pill/LevelMeter.h"
#include "Interface/Pill/PillButton.h"
#include "Interface/Pill/PillPlace.h"
#include "Interface/Pill/ShortLabel.h"
#include "Interface/PlatformWords.h"

#include <QBitmap>
#include <QBoxLayout>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QStyleHints>
#include <QtMath>
#include <chrono>
#include <utility>

namespace murmel {

namespace {

constexpr int padding = 14;
constexpr int widestLine = 380;
constexpr int widestUpright = 150;
constexpr int mostLines = 3;
constexpr int signSize = 20;
constexpr double largestRadius = 22;
/// How often a picture of the level is made.
constexpr std::chrono::milliseconds pictureInterval(40);

static_assert(static_cast<int>(OverlayPosition::left) == static_cast<int>(IndicatorSurface::Edge::left));

const QColor background(28, 28, 32, 235);
const QColor edgeLine(255, 255, 255, 46);
const QColor secondRank(186, 186, 194);
const QColor recordingRed(255, 98, 98);
const QColor warningAmber(250, 190, 90);

}  // namespace

QString RecordingPill::shown() const {
  if (!hint_.empty()) return inPlatformWords(hint_);
  if (!state_.isRecording()) return inPlatformWords(state_.title(), pasteKeys());
  switch (condition_) {
    case CaptureCondition::fine:
      break;
    case CaptureCondition::stalled:
      return tr("The microphone has stopped");
    case CaptureCondition::silent:
      return tr("The microphone is silent");
    case CaptureCondition::lagging:
      return tr("Sound from the microphone is being lost");
    case CaptureCondition::clipping:
      return tr("The microphone is too loud");
    case CaptureCondition::speakers:
      return tr("No microphone: listening to the speakers");
    case CaptureCondition::tooQuiet:
      return tr("The microphone is very quiet");
  }
  return inPlatformWords(state_.title());
}

QString RecordingPill::pasteKeys() const {
  // Before the first dictation nobody can be asked, and no text speaks of them.
  if (state_.which() == DictationState::Case::ready || !actions_.pasteKeys) return {};
  const auto keys = actions_.pasteKeys();
  return QString::fromLatin1(keys.data(), static_cast<qsizetype>(keys.size()));
}

/// How the recording ends, as long as there is nothing better to show.
QString RecordingPill::advice() const {
  if (state_.which() != DictationState::Case::listening || condition_ != CaptureCondition::fine) return {};
  if (actions_.isHeld && actions_.isHeld()) return tr("Speak, then let go");
  return actions_.surface != nullptr ? tr("Speak, then press again")
                                     : tr("Speak, then press again or click here");
}

RecordingPill::RecordingPill(PillActions actions)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                           Qt::WindowDoesNotAcceptFocus | Qt::X11BypassWindowManagerHint),
      actions_(std::move(actions)),
      words_(new ShortLabel(mostLines, ShortLabel::Keeps::beginning, this)),
      soFar_(new ShortLabel(mostLines - 1, ShortLabel::Keeps::end, this)),
      sign_(new QLabel(this)),
      elapsed_(new QLabel(this)),
      meter_(new LevelMeter(this)),
      stop_(new PillButton(Symbol::stop, tr("Stop and insert"), this)),
      cancel_(new PillButton(Symbol::remove, tr("Discard"), this)),
      dismiss_(new PillButton(Symbol::close, tr("Dismiss"), this)),
      layout_(new QBoxLayout(QBoxLayout::LeftToRight, this)) {
  setAttribute(Qt::WA_ShowWithoutActivating);
  setAttribute(Qt::WA_TranslucentBackground);
  setAttribute(Qt::WA_AlwaysShowToolTips);
  setWindowTitle(QStringLiteral("Murmel"));
  auto colours = palette();
  colours.setColor(QPalette::WindowText, PillButton::foreground);
  colours.setColor(QPalette::PlaceholderText, secondRank);
  setPalette(colours);
  soFar_->setForegroundRole(QPalette::PlaceholderText);
  sign_->setFixedSize(signSize, signSize);
  elapsed_->setForegroundRole(QPalette::PlaceholderText);
  elapsed_->setAccessibleDescription(tr("Time of the recording"));
  QObject::connect(stop_, &QAbstractButton::clicked, this, [this] { actions_.toggle(); });
  QObject::connect(cancel_, &QAbstractButton::clicked, this, [this] { actions_.cancel(); });
  QObject::connect(dismiss_, &QAbstractButton::clicked, this, [this] { dismiss(); });
  followScreens();

  auto* words = new QVBoxLayout;
  words->setSpacing(grid::unit / 2);
  words->addWidget(words_);
  words->addWidget(soFar_);
  layout_->setSizeConstraint(QLayout::SetFixedSize);
  layout_->setSpacing(grid::small);
  layout_->addWidget(sign_, 0, Qt::AlignCenter);
  layout_->addWidget(meter_, 0, Qt::AlignCenter);
  layout_->addLayout(words);
  layout_->addWidget(elapsed_, 0, Qt::AlignCenter);
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(grid::small);
  for (auto* part : {stop_, cancel_, dismiss_}) buttons->addWidget(part);
  layout_->addLayout(buttons);
  layout_->setAlignment(buttons, Qt::AlignCenter);
  constexpr int milliseconds = 1'000;
  second_.setInterval(milliseconds);
  QObject::connect(&second_, &QTimer::timeout, this, [this] { showElapsed(); });
  if (actions_.compositor != nullptr)
    compositing_ = actions_.compositor->didChange().subscribe([this] { shape(); });
  arrange();
}

RecordingPill::~RecordingPill() {
  wipe(recognised_);
}

void RecordingPill::setEdge(OverlayPosition edge) {
  edge_ = edge;
  arrange();
}

void RecordingPill::setShownAtRest(bool shown) {
  isShownAtRest_ = shown;
  render();
}

void RecordingPill::addRecognised(const SpokenText& words) {
  if (!state_.isBusy()) return;
  if (!recognised_.empty()) recognised_ += ' ';
  recognised_ += words.reveal();
  render();
}

void RecordingPill::update(const DictationState& state) {
  const bool begins = state.isRecording() && !state_.isRecording();
  if (state != state_) isDismissed_ = false;
  state_ = state;
  if (!state.isBusy() || begins) wipe(recognised_);
  if (begins) {
    recordingSince_.start();
    second_.start();
  }
  if (!state.isRecording()) {
    second_.stop();
    condition_ = CaptureCondition::fine;
    meter_->clear();
  }
  render();
}

void RecordingPill::showHint(const std::string& hint) {
  hint_ = hint;
  render();
}

void RecordingPill::setLevel(double level) {
  meter_->push(level);
  if (actions_.surface == nullptr || awaitsPicture_) return;
  awaitsPicture_ = true;
  QTimer::singleShot(pictureInterval, this, &RecordingPill::presentPicture);
}

void RecordingPill::showCaptureCondition(CaptureCondition condition) {
  condition_ = condition;
  render();
}

void RecordingPill::dismiss() {
  isDismissed_ = true;
  render();
}

bool RecordingPill::isResting() const {
  return (state_.which() == DictationState::Case::ready || isDismissed_) && hint_.empty();
}

bool RecordingPill::isTrouble() const {
  const auto which = state_.which();
  return which == DictationState::Case::error || which == DictationState::Case::warning;
}

void RecordingPill::arrange() {
  const bool isUpright = !isHorizontal(edge_);
  layout_->setDirection(isUpright ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
  const auto alignment = isUpright ? Qt::AlignHCenter : Qt::AlignLeading;
  for (auto* label : {words_, soFar_}) {
    label->setRoom(isUpright ? widestUpright : widestLine);
    label->setAlignment(alignment | Qt::AlignVCenter);
  }
  render();
}

void RecordingPill::render() {
  const bool isRecording = state_.isRecording() && hint_.empty();
  const bool rests = isResting();
  words_->setVisible(!rests);
  const auto below = recognised_.empty() && hint_.empty() ? advice() : QString::fromStdString(recognised_);
  words_->setLines(recognised_.empty() ? mostLines : 1);
  words_->setWords(shown());
  soFar_->setVisible(!rests && !below.isEmpty());
  soFar_->setWords(below);
  meter_->setVisible(isRecording);
  elapsed_->setVisible(isRecording);
  const bool hasButtons = actions_.surface == nullptr;
  stop_->setVisible(hasButtons && isRecording);
  cancel_->setVisible(hasButtons && state_.isBusy() && hint_.empty());
  dismiss_->setVisible(hasButtons && !rests && isTrouble() && hint_.empty());
  showSign();
  showElapsed();
  const int across = rests ? padding - grid::unit / 2 : padding;
  layout_->setContentsMargins(across, padding - grid::unit, across, padding - grid::unit);
  if (rests) layout_->setContentsMargins(grid::medium, grid::medium, grid::medium, grid::medium);
  setAccessibleName(rests ? tr("Start Dictation") : words_->text());
  setToolTip(rests ? tr("Start Dictation") : QString());
  adjustSize();
  place();
  appear();
}

void RecordingPill::showSign() {
  const bool rests = isResting();
  const bool isWarning =
      condition_ != CaptureCondition::fine || state_.which() == DictationState::Case::warning;
  const bool isError = state_.which() == DictationState::Case::error;
  const bool isCalm = hint_.empty() && !rests && !isWarning && !isError;
  sign_->setVisible(rests || !isCalm || state_.isRecording());
  const auto symbol = rests || isCalm                           ? Symbol::microphone
                      : hint_.empty() && (isWarning || isError) ? Symbol::warning
                                                                : Symbol::information;
  const auto colour = rests                  ? PillButton::foreground
                      : isError              ? recordingRed
                      : isWarning            ? warningAmber
                      : state_.isRecording() ? recordingRed
                                             : PillButton::foreground;
  sign_->setPixmap(symbolPixmap(symbol, signSize, colour, devicePixelRatioF()));
  sign_->setAccessibleName(isError ? tr("Error") : isWarning ? tr("Warning") : QString());
}

void RecordingPill::showElapsed() {
  if (!recordingSince_.isValid()) return;
  constexpr qint64 minute = 60;
  constexpr qint64 second = 1'000;
  const auto seconds = recordingSince_.elapsed() / second;
  elapsed_->setText(QStringLiteral("%1:%2").arg(seconds / minute).arg(seconds % minute, 2, 10, QChar(u'0')));
}

void RecordingPill::presentPicture() {
  awaitsPicture_ = false;
  if (isResting()) return;
  const auto* screen = QGuiApplication::primaryScreen();
  const int scale = screen == nullptr ? 1 : qCeil(screen->devicePixelRatio());
  QImage image(size() * scale, QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(scale);
  image.fill(Qt::transparent);
  QWidget::render(&image, {}, {}, QWidget::DrawChildren);
  IndicatorSurface::Picture picture{
      {}, image.width(), image.height(), scale, static_cast<IndicatorSurface::Edge>(edge_)};
  picture.pixels.reserve(static_cast<std::size_t>(image.width()) * static_cast<std::size_t>(image.height()));
  for (int row = 0; row < image.height(); ++row) {
    const auto* line = reinterpret_cast<const std::uint32_t*>(image.constScanLine(row));
    picture.pixels.insert(picture.pixels.end(), line, line + image.width());
  }
  actions_.surface->show(picture);
}

void RecordingPill::appear() {
  if (actions_.surface != nullptr) {
    isResting() ? actions_.surface->hide() : presentPicture();
    return;
  }
  const bool isNeeded = !isResting() || isShownAtRest_;
  setVisible(isNeeded);
  if (isNeeded) raise();
}

QRect RecordingPill::area() const {
  auto* chosen = actions_.screen ? actions_.screen() : nullptr;
  if (chosen == nullptr) chosen = QGuiApplication::primaryScreen();
  return chosen == nullptr ? QRect() : chosen->availableGeometry();
}

/// Where the monitor it is on goes, or shrinks, the indicator would stay outside until there is news.
void RecordingPill::followScreens() {
  const auto follow = [this](const QScreen* screen) {
    QObject::connect(screen, &QScreen::availableGeometryChanged, this, [this] { place(); });
  };
  for (const auto* screen : QGuiApplication::screens()) follow(screen);
  QObject::connect(qGuiApp, &QGuiApplication::screenAdded, this, follow);
  // Told before it is gone.
  QObject::connect(
      qGuiApp, &QGuiApplication::screenRemoved, this, [this] { place(); }, Qt::QueuedConnection);
}

void RecordingPill::place() {
  if (isDragged_) return;
  const auto free = area();
  if (free.isValid()) move(pillPlace(size(), free, edge_));
}

void RecordingPill::showEvent(QShowEvent* /*event*/) {
  shape();
}

void RecordingPill::resizeEvent(QResizeEvent* /*event*/) {
  shape();
  place();
}

double RecordingPill::cornerRadius() const {
  return std::min({largestRadius, height() / 2.0, width() / 2.0});
}

void RecordingPill::shape() {
  // Without a compositor there is no translucency, and the corners would be black: cut them off. The mask has
  // hard edges, so it is used only there.
  if (actions_.compositor == nullptr || actions_.compositor->isThere()) {
    clearMask();
    return;
  }
  QBitmap cut(size());
  cut.fill(Qt::color0);
  QPainter painter(&cut);
  painter.setBrush(Qt::color1);
  painter.setPen(Qt::NoPen);
  painter.drawRoundedRect(rect(), cornerRadius(), cornerRadius());
  painter.end();
  setMask(cut);
}

void RecordingPill::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(edgeLine);
  painter.setBrush(background);
  const auto frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
  painter.drawRoundedRect(frame, cornerRadius(), cornerRadius());
}

void RecordingPill::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) grip_ = event->pos();
}

void RecordingPill::mouseMoveEvent(QMouseEvent* event) {
  if (!grip_) return;
  const auto distance = (event->pos() - *grip_).manhattanLength();
  isDragged_ = isDragged_ || distance >= QGuiApplication::styleHints()->startDragDistance();
  if (isDragged_) move(event->globalPosition().toPoint() - *grip_);
}

void RecordingPill::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !std::exchange(grip_, std::nullopt)) return;
  if (!std::exchange(isDragged_, false)) {
    if (rect().contains(event->pos())) actions_.toggle();
    return;
  }
  setEdge(nearestEdge(frameGeometry().center(), area()));
  if (actions_.moved) actions_.moved(edge_);
}

}  // namespace murmel
