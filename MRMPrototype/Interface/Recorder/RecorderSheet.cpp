#include "Interface/Recorder/RecorderSheet.h"

#include "Interface/PlatformWords.h"
#include "Platform/KeyModifiers.h"
#include "Shortcut/ShortcutChoice.h"

#include <QAccessible>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QTimer>
#include <QVBoxLayout>
#include <utility>
#include <variant>

namespace murmel {

namespace {

constexpr int sheetWidth = 540;
constexpr int markSize = 22;

}  // namespace

RecorderSheet::RecorderSheet(QWidget* parent, RecorderServices services,
                             std::function<void(const ShortcutConfiguration&)> save)
    : QDialog(parent),
      services_(std::move(services)),
      save_(std::move(save)),
      suspension_(services_.suspendShortcuts ? services_.suspendShortcuts() : Registration()),
      keys_(label({}, LabelRole::title)),
      help_(label({}, LabelRole::second)),
      conflict_(new NoticeBar(Severity::warning)) {
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowModality(Qt::WindowModal);
  setWindowTitle(inPlatformWords(ShortcutRecorder::sheetTitle));
  keys_->setAlignment(Qt::AlignCenter);
  help_->setAlignment(Qt::AlignCenter);
  auto* marks = new QHBoxLayout;
  marks->addStretch(1);
  for (auto*& mark : marks_) {
    mark = new QLabel;
    mark->setFixedSize(markSize, markSize);
    marks->addWidget(mark);
  }
  marks->addStretch(1);
  auto* leave = button(tr("Cancel"), [this] { reject(); });
  leave->setFocusPolicy(Qt::NoFocus);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(grid::large, grid::large, grid::large, grid::large);
  layout->setSpacing(grid::large);
  layout->addWidget(keys_);
  layout->addLayout(marks);
  layout->addWidget(help_);
  layout->addWidget(conflict_);
  layout->addStretch(1);
  layout->addWidget(buttonRow({leave}));
  setFixedWidth(sheetWidth);
  setFocusPolicy(Qt::StrongFocus);
  setFocus();
  show(recorder_);
  // Once nobody else listens any more.
  QTimer::singleShot(0, this, [this] { listen(); });
}

bool RecorderSheet::isLeft() {
  if (services_.session == nullptr || !services_.session->obstacle()) return false;
  // Not from inside the tap, which goes with the sheet.
  QTimer::singleShot(0, this, [this] { reject(); });
  return true;
}

void RecorderSheet::listen() {
  if (services_.session != nullptr) locking_ = services_.session->onChange([this] { isLeft(); });
  auto* source = services_.source;
  if (source != nullptr && source->hearsEveryKey()) {
    tap_ = source->install({}, [this](const ShortcutEvent& heard) {
      const auto* event = std::get_if<KeyEvent>(&heard);
      // What is typed into other windows is nobody's business; a locker leaves ours the active one.
      if (event == nullptr || !isActiveWindow() || isLeft()) return;
      auto named = *event;
      if (named.type == KeyEventType::keyDown && services_.probe != nullptr)
        named.characters = services_.probe->label(named.keyCode);
      // Not from inside the tap, which goes with the sheet.
      QTimer::singleShot(0, this, [this, named = std::move(named)] { take(named); });
    });
  }
  // A tap hears the keys of our own windows too: were both heard, each press would count twice.
  if (!tap_) localKeys_ = services_.localKeys.add([this](const KeyEvent& event) { take(event); });
}

void RecorderSheet::take(const KeyEvent& event) {
  const auto modifiers = event.flags & shortcutModifierMask;
  const bool isFirst = std::exchange(modifiers_, modifiers) == 0;
  const auto beginning = std::exchange(beginning_, std::nullopt);
  const bool isAlone = modifiers == keyModifier::command || modifiers == keyModifier::shift;
  if (event.type == KeyEventType::flagsChanged && isAlone && isFirst) {
    // Refused at once, it would undo what was confirmed before, and no chord with Super could be recorded.
    beginning_ = event;
    return;
  }
  if (beginning && event.type == KeyEventType::flagsChanged && modifiers == 0) feed(*beginning);
  feed(event);
}

void RecorderSheet::feed(const KeyEvent& event) {
  switch (recorder_.consume(event)) {
    case ShortcutRecorder::Outcome::recording:
      show(recorder_);
      break;
    case ShortcutRecorder::Outcome::cancelled:
      reject();
      break;
    case ShortcutRecorder::Outcome::confirmed: {
      const auto chosen = *recorder_.candidate();
      tap_.reset();
      localKeys_.reset();
      suspension_.reset();
      save_(chosen);
      accept();
      break;
    }
  }
}

void RecorderSheet::show(const ShortcutRecorder& recorder) {
  const auto& candidate = recorder.candidate();
  const auto title = candidate ? shortcutTitle(*candidate) : inPlatformWords(recorder.titleLine());
  const bool isNew = title != keys_->text();
  keys_->setText(title);
  help_->setText(inPlatformWords(recorder.helpLine()) + QStringLiteral("\n") + limits());
  const auto against = candidate && services_.notice ? services_.notice(*candidate) : std::string();
  if (isNew) conflict_->setText(inPlatformWords(against));
  for (int mark = 0; mark < ShortcutRecorder::requiredConfirmations; ++mark) {
    const bool isDone = candidate && mark < recorder.confirmations();
    const auto colour = isDone ? colourOf(Meaning::good, palette()) : outlineOf(palette());
    marks_.at(static_cast<std::size_t>(mark))
        ->setPixmap(
            symbolPixmap(isDone ? Symbol::good : Symbol::ring, markSize, colour, devicePixelRatioF()));
  }
  const auto done =
      tr("%1 of %2 times").arg(recorder.confirmations()).arg(ShortcutRecorder::requiredConfirmations);
  marks_.front()->setAccessibleName(done);
  setFixedHeight(layout()->totalHeightForWidth(sheetWidth));
  if (!isNew) return;
  setAccessibleName(windowTitle() + QStringLiteral(": ") + title);
  QAccessibleEvent told(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&told);
}

QString RecorderSheet::limits() const {
  if (services_.canHear && !services_.canHear(configuration(ShortcutChoice::controlKey)))
    return tr("This desktop hears no modifier key alone: hold modifiers together with a key.");
  return tr(
      "Most keyboards keep Fn to themselves: if nothing shows when you press it, it is not heard here.");
}

bool RecorderSheet::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
      // The last way out where no key can be heard otherwise.
      if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape)
        reject();
      event->accept();
      return true;
    default:
      return QDialog::event(event);
  }
}

}  // namespace murmel
